#pragma once
// Runs transfers one after the other between the campaign's controller and the program, and sums up the judgements.
// Failures throw. One thread.

#include "campaign/BadLine.h"
#include "campaign/CampaignOptions.h"
#include "campaign/NcFiles.h"
#include "campaign/ProgramUnderTest.h"
#include "campaign/Tally.h"

namespace tarvin::campaign {

class Campaign {
public:
    // Starts the program. `options` and `tally` outlive the campaign.
    Campaign(const CampaignOptions& options, Tally& tally);
    ~Campaign() { program.Stop(); }
    Campaign(const Campaign&) = delete;
    Campaign& operator=(const Campaign&) = delete;

    // The number of transfers of the run: 1 to this.
    std::uint32_t TransferCount() const;
    // Runs the transfer with this number, judges it and adds it to the tally.
    void Run(std::uint32_t transfer);
    // Transfers whose falsification the judge has missed, or sound ones that it has condemned.
    int MisjudgedCount() const { return misjudgedCount; }
    // The traffic of the last transfer, one message a line, and the lines that the program has logged.
    const std::string& Trace() const { return trace; }

private:
    TransferKind KindOf(std::uint32_t transfer) const;
    void StartProgram();
    void RestartProgram(const std::string& place);
    std::string PlaceOf(std::uint32_t transfer) const;
    std::string DescribeTraffic() const;
    TransferRecord Transfer(std::uint32_t transfer);
    bool IsFalsified(std::uint32_t transfer) const;
    BadLine::Plan PlanOf(std::uint32_t transfer) const;
    bool IsRightAbout(std::uint32_t transfer, const Judgement& judgement) const;
    void Falsify(TransferRecord& record, const std::string& name) const;
    bool IsMute();
    void Add(std::uint32_t transfer, const TransferRecord& record, const Judgement& judgement);

    const CampaignOptions& options;
    Tally& tally;
    ProgramUnderTest program;
    NcFiles files;
    BadLine line;
    CampaignController controller;
    int misjudgedCount = 0;
    std::string trace;
};

}
