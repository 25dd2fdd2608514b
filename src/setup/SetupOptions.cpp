#include "setup/SetupOptions.h"

#include <algorithm>
#include <iterator>
#include <system_error>

namespace tarvin {

namespace {

// Each sets one setting.
constexpr struct {
    KelTextView option;
    KelTextView setting;
} choiceOptions[] = {{u"--extension", u"file extension"},
                     {u"--speed", u"baudrate"},
                     {u"--controller", u"controller"},
                     {u"--language", u"language"}};

constexpr KelTextView valueOptions[] = {u"--installation", u"--port",       u"--folder",  u"--upload",
                                        u"--download",     u"--set",        u"--units",   u"--extension",
                                        u"--speed",        u"--controller", u"--language"};
constexpr KelTextView switches[] = {u"--system", u"--list-ports", u"--show", u"--reload", u"--yes"};

bool IsOneOf(std::span<const KelTextView> names, KelTextView name) {
    return std::ranges::find(names, name) != names.end();
}

class Reader {
public:
    Result<SetupRequest> Read(std::span<const KelText> words) {
        while (!words.empty()) {
            if (const auto taken = Take(words); !taken)
                return taken.Reason();
        }
        const bool makes = request.port || !request.choices.empty() || !request.folders.empty();
        if (request.showsSettings && (makes || !request.changes.empty() || request.reloads || request.listsPorts))
            return Error{u"--show goes with no other option but --installation and --system"};
        if (request.place.isSystem && !request.place.folder.empty())
            return Error{u"--system and --installation exclude each other"};
        return request;
    }

private:
    // Takes the first word, with its value.
    Result<> Take(std::span<const KelText>& words) {
        const KelText word = words.front();
        words = words.subspan(1);
        if (!word.starts_with(u"--")) {
            request.machine += (request.machine.empty() ? u"" : u" ") + word;
            return {};
        }
        const std::size_t equals = word.find(u'=');
        const KelText name = word.substr(0, equals);
        const bool hasValue = equals != KelText::npos;
        if (IsOneOf(switches, name))
            return hasValue ? Error{name + u" takes no value"} : TakeSwitch(name);
        if (!IsOneOf(valueOptions, name))
            return Error{u"unknown option: " + name};
        if (!hasValue && words.empty())
            return Error{name + u" needs a value"};
        const KelText value = hasValue ? word.substr(equals + 1) : words.front();
        if (!hasValue)
            words = words.subspan(1);
        return TakeValue(name, value);
    }

    Result<> TakeSwitch(KelTextView name) {
        if (name == u"--system")
            request.place.isSystem = true;
        else if (name == u"--list-ports")
            request.listsPorts = true;
        else if (name == u"--show")
            request.showsSettings = true;
        else if (name == u"--reload")
            request.reloads = true;
        else
            request.neverAsks = true;
        return {};
    }

    Result<> TakeValue(const KelText& name, const KelText& value) {
        const auto choice = std::ranges::find_if(choiceOptions, [&](const auto& each) { return each.option == name; });
        if (choice != std::end(choiceOptions)) {
            request.choices.push_back({KelText(choice->setting), value});
            return {};
        }
        if (name == u"--set") {
            const auto change = NamedValueOf(value);
            if (!change)
                return change.Reason();
            request.changes.push_back(*change);
            return {};
        }
        if (value.empty())
            return Error{name + u" needs a value"};
        if (name == u"--installation")
            request.place.folder = ToPath(value);
        else if (name == u"--port")
            request.port = value;
        else if (name == u"--units")
            request.units = ToPath(value);
        else
            TakeFolder(name, value);
        return {};
    }

    // A program that runs elsewhere finds the folder by its full path alone.
    void TakeFolder(KelTextView name, const KelText& value) {
        std::error_code error;
        const auto folder = std::filesystem::absolute(ToPath(value), error).lexically_normal();
        request.folders.push_back(folder);
        if (name != u"--download")
            request.choices.push_back({u"upload path", FromPath(folder)});
        if (name != u"--upload")
            request.choices.push_back({u"download path", FromPath(folder)});
    }

    SetupRequest request;
};

}

Result<SetupRequest> ReadSetupOptions(std::span<const KelText> words) {
    return Reader().Read(words);
}

}
