#include "port/DeviceRightsPosix.h"

#include "base/FirstUseMessages.h"
#include "base/Process.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarvin {

namespace {

constexpr int mostGroups = 1024;

KelText GroupName(gid_t id) {
    std::array<char, 16384> buffer = {};
    group entry = {};
    group* found = nullptr;
    if (::getgrgid_r(id, &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
        return FromUtf8(found->gr_name);
    return ToText(id);
}

bool IsListed(gid_t id) {
    std::array<char, 16384> buffer = {};
    passwd entry = {};
    passwd* user = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &user) != 0 || user == nullptr)
        return false;
    std::vector<gid_t> groups(mostGroups);
    int count = mostGroups;
    if (::getgrouplist(user->pw_name, user->pw_gid, groups.data(), &count) < 0)
        return false;
    return std::find(groups.begin(), groups.begin() + count, id) != groups.begin() + count;
}

bool HasGroup(gid_t id) {
    std::vector<gid_t> groups(mostGroups);
    const int count = ::getgroups(mostGroups, groups.data());
    return ::getegid() == id ||
           (count > 0 && std::find(groups.begin(), groups.begin() + count, id) != groups.begin() + count);
}

}

bool GroupMayOpen(mode_t mode) {
    constexpr mode_t needed = S_IRGRP | S_IWGRP;
    return (mode & needed) == needed;
}

DeviceRights RightsOf(const std::filesystem::path& device) {
    DeviceRights rights;
    rights.device = FromPath(device);
    rights.user = UserName();
    struct stat file = {};
    if (::stat(device.c_str(), &file) != 0)
        return rights;
    rights.mode = file.st_mode;
    rights.group = GroupName(file.st_gid);
    rights.isGroupOfRoot = file.st_gid == 0;
    rights.isMember = IsListed(file.st_gid);
    rights.hasGroup = HasGroup(file.st_gid);
    return rights;
}

PortAdvice AdviceFor(const DeviceRights& rights) {
    const auto fill = [&](KelTextView text) { return Filled(text, {rights.device, rights.group, rights.user}); };
    const KelText user = ShellWord(rights.user);
    if (GroupMayOpen(rights.mode) && !rights.isGroupOfRoot) {
        if (rights.hasGroup)
            return {fill(text::portAdvice::refused), {}};
        if (rights.isMember)
            return {fill(text::portAdvice::logInAgain), {}};
        return {fill(text::portAdvice::notMember),
                Filled(text::portCommand::addToGroup, {ShellWord(rights.group), user})};
    }
    return {fill(text::portAdvice::noGroup), Filled(text::portCommand::giveDevice, {user, ShellWord(rights.device)})};
}

KelText ShellWord(KelTextView text) {
    const bool isPlain = !text.empty() && text.front() != u'-' && std::all_of(text.begin(), text.end(), [](char16_t c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
               KelTextView(u"_./:@+,-").find(c) != KelTextView::npos;
    });
    if (isPlain)
        return KelText(text);
    KelText word = u"'";
    for (const char16_t c : text)
        word += c == u'\'' ? KelText(u"'\\''") : KelText(1, c);
    return word + u"'";
}

}
