#include "app/ServiceSettings.h"

#include "files/FileNames.h"
#include "files/Profile.h"

namespace tarvin {

namespace {

constexpr std::size_t maximumPathUnits = 4096;
constexpr std::int32_t usualMegabytes = 10;
constexpr std::int32_t mostMegabytes = 1000;

KelText WithMachineName(KelText text, const KelText& machineName) {
    constexpr KelTextView mark = u"%s";
    const KelText name = FileNameFor(machineName);
    if (text.find(mark) == KelText::npos) {
        const std::filesystem::path path = ToPath(text);
        const std::filesystem::path file = ToPath(FromPath(path.stem()) + u" " + name + FromPath(path.extension()));
        return FromPath(path.parent_path() / file);
    }
    for (auto found = text.find(mark); found != KelText::npos; found = text.find(mark, found + name.size()))
        text.replace(found, mark.size(), name);
    return text;
}

}

ServiceSettings ReadServiceSettings(const Installation& installation, const KelText& machineName) {
    const Profile profile = Profile::Read(installation.PathsFile()).ValueOr(Profile(""));
    ServiceSettings settings;
    const KelText file = profile.Text(u"Service", u"comms log", u"", maximumPathUnits);
    if (!file.empty())
        settings.commsLog = installation.Folder() / ToPath(WithMachineName(file, machineName));
    const std::int32_t megabytes = profile.Integer(u"Service", u"comms log size", usualMegabytes);
    const bool isSensible = megabytes >= 1 && megabytes <= mostMegabytes;
    settings.commsLogSizeLimit = static_cast<std::uint64_t>(isSensible ? megabytes : usualMegabytes) << 20;
    return settings;
}

}
