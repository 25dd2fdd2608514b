#pragma once
// The command line of the campaign. Any thread.

#include "base/Result.h"
#include "campaign/CampaignController.h"
#include "campaign/ProgramUnderTest.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::campaign {

// A fault that the campaign makes itself, to see that its judge notices.
//   File  after the end of the transfer a line of the stored or received program changes
//   Line  the line changes the first data line of the transfer, and its checksum with it
// The line damages nothing else then, and only the transfers 1 and 2 of each four are falsified.
enum class Sabotage { None, File, Line };

struct CampaignOptions {
    std::uint32_t seed = 1;
    std::uint32_t transfers = 100; // of each direction
    bool uploads = true;
    bool downloads = true;
    unsigned damageToProgram = 15; // of 1000 messages
    unsigned damageToController = 15;
    std::vector<DamageKind> kinds = OrdinaryKinds();
    CampaignController::Options controller;
    ProgramUnderTest::Options program = {"tarvindl-service", {}, "None"};
    Sabotage sabotage = Sabotage::None;
    std::filesystem::path stateFile; // empty: none
    std::optional<std::uint32_t> only;
    bool wantsHelp = false;
    std::string run; // the options that decide the result, on one line
};

// Fails at the first argument that is wrong.
Result<CampaignOptions> ParseCampaignOptions(std::span<const std::string> arguments);

// The text that --help prints.
extern const std::string_view campaignHelp;

}
