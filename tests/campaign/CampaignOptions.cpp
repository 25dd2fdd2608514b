#include "campaign/CampaignOptions.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <map>
#include <sstream>

namespace tarvin::campaign {

const std::string_view campaignHelp =
    "Usage: tarvin-campaign [OPTION...]\n"
    "\n"
    "Runs transfers between a controller of its own and the service over a line that damages messages, and\n"
    "tells what arrived whole, which errors either side knows, and what differs without a word.\n"
    "\n"
    "  --seed N                          the damage and the files depend on it (1)\n"
    "  --transfers N                     of each direction (100)\n"
    "  --direction up|down|both          with both, odd numbers are uploads, even ones downloads (both)\n"
    "  --damage-per-thousand-messages N  of both directions (15)\n"
    "  --damage-to-program N, --damage-to-controller N\n"
    "                                    of one direction\n"
    "  --kinds KIND[,KIND...]            of damage: flip, drop, double, swap, insert, delay, lose (all)\n"
    "  --habit repeat|ask|restart        what the controller does without a good answer (repeat):\n"
    "                                      repeat   waits, then sends its message again, three times; then\n"
    "                                               begins anew\n"
    "                                      ask      sends \"ABNK\" for a damaged answer or a missing data line\n"
    "                                      restart  begins anew at once\n"
    "  --checksums on|off                the controller computes its checksum characters (on)\n"
    "  --answer-time MILLISECONDS        how long the controller waits for an answer (200)\n"
    "  --program PATH                    the service; an older build will do (this build's)\n"
    "  --check off|end|repeat            the setting \"Check incoming messages\" (the program's default)\n"
    "  --flow TEXT                       the setting \"Flow Control\" (None)\n"
    "  --state FILE                      keeps the sums after each transfer; a run that was stopped goes on\n"
    "  --only N                          runs this transfer alone and prints its traffic\n"
    "  --sabotage file|line              falsifies every second pair of transfers on a good line. Exit code 1 if\n"
    "                                    the judge is wrong about one transfer\n";

namespace {

using Values = std::map<std::string, std::function<void()>>;

// Calls what belongs to the value. False if it is none of them.
bool Choose(const std::string& value, const Values& values) {
    const auto found = values.find(value);
    if (found == values.end())
        return false;
    found->second();
    return true;
}

template <class Number>
bool ReadNumber(const std::string& value, Number& number) {
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    return error == std::errc() && end == value.data() + value.size();
}

bool ReadRate(const std::string& value, unsigned& rate) {
    return ReadNumber(value, rate) && rate <= 1000;
}

bool ReadKinds(const std::string& value, std::vector<DamageKind>& kinds) {
    kinds.clear();
    std::istringstream names(value);
    for (std::string name; std::getline(names, name, ',');) {
        const auto& known = OrdinaryKinds();
        const auto found = std::ranges::find(known, std::string_view(name), NameOf);
        if (found == known.end())
            return false;
        kinds.push_back(*found);
    }
    return !kinds.empty();
}

bool SetOption(CampaignOptions& options, const std::string& name, const std::string& value) {
    auto& check = options.program.check;
    auto& habit = options.controller.habit;
    if (name == "--seed")
        return ReadNumber(value, options.seed);
    if (name == "--transfers")
        return ReadNumber(value, options.transfers);
    if (name == "--damage-per-thousand-messages") {
        const bool isRead = ReadRate(value, options.damageToProgram);
        options.damageToController = options.damageToProgram;
        return isRead;
    }
    if (name == "--damage-to-program")
        return ReadRate(value, options.damageToProgram);
    if (name == "--damage-to-controller")
        return ReadRate(value, options.damageToController);
    if (name == "--kinds")
        return ReadKinds(value, options.kinds);
    if (name == "--answer-time") {
        int milliseconds = 0;
        const bool isRead = ReadNumber(value, milliseconds) && milliseconds > 0;
        options.controller.answerTime = std::chrono::milliseconds(milliseconds);
        return isRead;
    }
    if (name == "--direction") {
        return Choose(
            value,
            {{"up", [&] { options.downloads = false; }}, {"down", [&] { options.uploads = false; }}, {"both", [] {}}});
    }
    if (name == "--habit") {
        return Choose(value, {{"repeat", [&] { habit = Habit::Repeat; }},
                              {"ask", [&] { habit = Habit::AskAgain; }},
                              {"restart", [&] { habit = Habit::Restart; }}});
    }
    if (name == "--checksums") {
        return Choose(value, {{"on", [&] { options.controller.sendsChecksums = true; }},
                              {"off", [&] { options.controller.sendsChecksums = false; }}});
    }
    if (name == "--check") {
        return Choose(value, {{"off", [&] { check = IncomingCheck::Off; }},
                              {"end", [&] { check = IncomingCheck::End; }},
                              {"repeat", [&] { check = IncomingCheck::Repeat; }}});
    }
    if (name == "--sabotage") {
        return Choose(value, {{"file", [&] { options.sabotage = Sabotage::File; }},
                              {"line", [&] { options.sabotage = Sabotage::Line; }}});
    }
    if (name == "--program")
        options.program.program = std::filesystem::absolute(value).string();
    else if (name == "--flow")
        options.program.flowControl = value;
    else if (name == "--state")
        options.stateFile = value;
    else if (name == "--only")
        return ReadNumber(value, options.only.emplace());
    else
        return false;
    return true;
}

}

Result<CampaignOptions> ParseCampaignOptions(std::span<const std::string> arguments) {
    CampaignOptions options;
    for (std::size_t index = 0; index < arguments.size(); index += 2) {
        const std::string& name = arguments[index];
        if (name == "--help") {
            options.wantsHelp = true;
            return options;
        }
        if (index + 1 == arguments.size() || !SetOption(options, name, arguments[index + 1])) {
            const std::string value = index + 1 < arguments.size() ? " " + arguments[index + 1] : "";
            return Error{FromUtf8("wrong or incomplete option: " + name + value + " (see --help)")};
        }
        // Where the sums are kept does not change them.
        if (name != "--state")
            options.run += (options.run.empty() ? "" : " ") + name + " " + arguments[index + 1];
    }
    return options;
}

}
