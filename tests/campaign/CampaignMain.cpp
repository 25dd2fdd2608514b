// tarvin-campaign: runs transfers over a bad line and judges each of them.

#include "campaign/Campaign.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

using namespace tarvin::campaign;

volatile std::sig_atomic_t isStopping = 0;

int RunCampaign(const CampaignOptions& options) {
    Tally tally;
    const bool keepsState = !options.stateFile.empty() && !options.only;
    if (keepsState) {
        if (const auto loaded = tally.Load(options.stateFile, options.run); !loaded) {
            std::fprintf(stderr, "tarvin-campaign: %s\n", tarvin::ToUtf8(loaded.Reason().text).c_str());
            return 2;
        }
    }
    Campaign campaign(options, tally);
    if (options.only) {
        campaign.Run(*options.only);
        std::printf("%s\n", campaign.Trace().c_str());
    }
    for (; !options.only && !isStopping && tally.next <= campaign.TransferCount();) {
        campaign.Run(tally.next++);
        if (!keepsState)
            continue;
        if (const auto saved = tally.Save(options.stateFile, options.run); !saved) {
            std::fprintf(stderr, "tarvin-campaign: %s\n", tarvin::ToUtf8(saved.Reason().text).c_str());
            return 2;
        }
    }
    std::printf("tarvin-campaign %s\n%s", options.run.c_str(), tally.Table().c_str());
    if (campaign.MisjudgedCount() == 0)
        return 0;
    std::printf("\nThe judge was wrong about %d transfers.\n", campaign.MisjudgedCount());
    return 1;
}

}

int main(int argumentCount, char** arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + argumentCount);
    const auto options = ParseCampaignOptions(words);
    if (!options) {
        std::fprintf(stderr, "tarvin-campaign: %s\n", tarvin::ToUtf8(options.Reason().text).c_str());
        return 2;
    }
    if (options->wantsHelp) {
        std::fwrite(campaignHelp.data(), 1, campaignHelp.size(), stdout);
        return 0;
    }
    // The transfer that runs is finished, and the table shows the sums so far.
    for (const int signal : {SIGINT, SIGTERM})
        std::signal(signal, [](int) { isStopping = 1; });
    try {
        return RunCampaign(*options);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "tarvin-campaign: %s\n", failure.what());
        return 2;
    }
}
