#include "campaign/Campaign.h"

#include "campaign/CampaignFrame.h"

#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <utility>

namespace tarvin::campaign {

namespace {

constexpr auto longestLinkTest = std::chrono::seconds(2);
constexpr char xon = 0x11;
constexpr char xoff = 0x13;

// An upload from which the program learns whether this controller sends checksums. No two lines are the same.
std::vector<std::string> WarmUpLines() {
    std::vector<std::string> lines;
    for (int index = 1; index <= 20; ++index)
        lines.push_back("N" + std::to_string(index) + " G01 X" + std::to_string(17 * index));
    return lines;
}

// True if the last of the two control characters that reached the program has stopped its output.
bool HasStrayXoff(const std::vector<LineEvent>& traffic) {
    bool isHeld = false;
    for (const LineEvent& event : traffic) {
        const bool hasArrived = event.kind == LineEvent::Kind::Arrived && event.direction == Direction::ToProgram;
        for (const char byte : hasArrived ? event.bytes : std::string())
            isHeld = byte == xoff || (isHeld && byte != xon);
    }
    return isHeld;
}

std::string_view NameOf(TransferKind kind) {
    return kind == TransferKind::Upload ? "upload" : "download";
}

}

Campaign::Campaign(const CampaignOptions& options, Tally& tally)
    : options(options),
      tally(tally),
      program(options.program),
      files(program.NcFolder(), options.seed),
      line(-1),
      controller(line, options.controller) {
    StartProgram();
}

std::uint32_t Campaign::TransferCount() const {
    return options.transfers * (options.uploads && options.downloads ? 2 : 1);
}

TransferKind Campaign::KindOf(std::uint32_t transfer) const {
    const bool isUpload = options.uploads && (!options.downloads || transfer % 2 == 1);
    return isUpload ? TransferKind::Upload : TransferKind::Download;
}

void Campaign::StartProgram() {
    program.Start();
    line.Reconnect(program.LineDescriptor());
    line.Begin({});
    const auto outcome = controller.Upload(NcFiles::NumberOf(0), WarmUpLines());
    if (!outcome.isDone)
        throw std::runtime_error("the program takes no upload over a good line");
    files.Restore();
}

void Campaign::RestartProgram(const std::string& place) {
    if (const std::string end = program.Stop(); !end.empty())
        tally.Report(place + "the program " + end);
    StartProgram();
}

std::string Campaign::PlaceOf(std::uint32_t transfer) const {
    return "seed " + std::to_string(options.seed) + ", transfer " + std::to_string(transfer) + " (" +
           std::string(NameOf(KindOf(transfer))) + "): ";
}

// Two link tests: the first one ends an unfinished transfer, and some programs close its file at the message after
// that.
bool Campaign::IsMute() {
    return !controller.TestLink(longestLinkTest) || !controller.TestLink(longestLinkTest);
}

bool Campaign::IsFalsified(std::uint32_t transfer) const {
    return options.sabotage != Sabotage::None && (transfer % 4 == 1 || transfer % 4 == 2);
}

BadLine::Plan Campaign::PlanOf(std::uint32_t transfer) const {
    BadLine::Plan plan = {options.seed, transfer, 0, 0, options.kinds, false};
    plan.forgesFirstDataLine = options.sabotage == Sabotage::Line && IsFalsified(transfer);
    if (options.sabotage == Sabotage::None) {
        plan.damageToProgram = options.damageToProgram;
        plan.damageToController = options.damageToController;
    }
    return plan;
}

// The judge must notice this: the last character of the first line becomes another one.
void Campaign::Falsify(TransferRecord& record, const std::string& name) const {
    const bool isUpload = record.kind == TransferKind::Upload;
    std::vector<std::string> lines = isUpload ? NcFiles::Lines(files.Read(name).value_or("")) : record.controller.lines;
    if (lines.empty())
        return;
    char& last = lines.front().back();
    last = last == '0' ? '1' : '0';
    if (isUpload)
        files.Write(name, NcFiles::Content(lines));
    else
        record.controller.lines = lines;
}

TransferRecord Campaign::Transfer(std::uint32_t transfer) {
    TransferRecord record;
    record.kind = KindOf(transfer);
    record.number = NcFiles::NumberOf(transfer);
    record.sendsChecksums = options.controller.sendsChecksums;
    const std::string name = NcFiles::NameOf(transfer);
    const bool isUpload = record.kind == TransferKind::Upload;
    record.expected = isUpload ? files.NewLines(transfer) : files.OlderLines(transfer);

    program.ForgetWords();
    line.Begin(PlanOf(transfer));
    record.controller =
        isUpload ? controller.Upload(record.number, record.expected) : controller.Download(record.number);
    line.EndDamage();
    record.damageCount = line.DamageCount();
    record.traffic = line.Traffic();
    record.isMute = IsMute();
    record.program = program.LastWord(record.controller.isDone ? ProgramWord::Completed : ProgramWord::Errors);
    if (options.sabotage == Sabotage::File && IsFalsified(transfer))
        Falsify(record, name);

    const auto content = isUpload ? files.Read(name) : NcFiles::Content(record.controller.lines);
    record.actual = NcFiles::Lines(content.value_or(""));
    record.isWhole = content == NcFiles::Content(record.expected);
    record.isOlderWhole = isUpload && content == NcFiles::Content(files.OlderLines(transfer));
    return record;
}

void Campaign::Add(std::uint32_t transfer, const TransferRecord& record, const Judgement& judgement) {
    const TransferKind kind = record.kind;
    const auto addIf = [this, kind](Count count, bool condition) {
        if (condition)
            tally.Add(kind, count);
    };
    tally.Add(kind, judgement);
    addIf(Count::Hit, record.damageCount > 0);
    addIf(Count::CompletedNotWhole, record.program == ProgramWord::Completed && !record.isWhole);
    addIf(Count::PartUnderFinalName,
          kind == TransferKind::Upload && !record.controller.isDone && !record.isWhole && !record.isOlderWhole);
    addIf(Count::Mute, record.isMute);
    addIf(Count::MuteAfterXoff, record.isMute && HasStrayXoff(record.traffic));
    addIf(Count::Refusals, record.controller.wasRefused);
    tally.Add(kind, Count::Repeats, static_cast<std::uint64_t>(record.controller.repeatCount));
    tally.Add(kind, Count::Restarts, static_cast<std::uint64_t>(record.controller.restartCount));

    const std::string place = PlaceOf(transfer);
    const auto changes = files.ChangesBeside(NcFiles::NameOf(transfer));
    for (const std::string& name : changes.overwritten) {
        tally.Add(kind, Count::OtherOverwritten);
        tally.Report(place + "overwrote another file, " + Readable(name));
    }
    for (const std::string& name : changes.created) {
        tally.Add(kind, Count::OtherCreated);
        tally.Report(place + "created another file, " + Readable(name));
    }
    if (judgement.cause)
        tally.Report(place + std::string(TitleOf(*judgement.cause)) + ": " + judgement.detail);
    if (record.isMute)
        tally.Report(place + "the program does not answer a link test");
}

// Whether the judge has found the sabotage, or its absence.
bool Campaign::IsRightAbout(std::uint32_t transfer, const Judgement& judgement) const {
    if (!IsFalsified(transfer))
        return judgement.verdict == Verdict::Identical;
    return judgement.verdict == Verdict::SilentDifference &&
           (options.sabotage != Sabotage::Line || judgement.cause == Cause::RightChecksum);
}

void Campaign::Run(std::uint32_t transfer) {
    const auto start = std::chrono::steady_clock::now();
    const TransferRecord record = Transfer(transfer);
    const Judgement judgement = Judge(record);
    Add(transfer, record, judgement);
    if (options.sabotage != Sabotage::None && !IsRightAbout(transfer, judgement))
        ++misjudgedCount;
    files.Restore();
    trace = DescribeTraffic();
    // A mute program would fail all that follow.
    if (record.isMute)
        RestartProgram(PlaceOf(transfer));
    const auto took = std::chrono::steady_clock::now() - start;
    tally.Add(record.kind, Count::Milliseconds,
              static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(took).count()));
}

std::string Campaign::DescribeTraffic() const {
    std::string text;
    const LineEvent* before = nullptr;
    for (const LineEvent& event : line.Traffic()) {
        // A message that comes as it was sent, right away, needs one line.
        const LineEvent* sent = std::exchange(before, &event);
        if (sent != nullptr && event.kind == LineEvent::Kind::Arrived && sent->kind == LineEvent::Kind::Sent &&
            event.bytes == sent->bytes && !sent->isDamaged)
            continue;
        char time[24] = "";
        std::snprintf(time, sizeof time, "%10.3f ms ", static_cast<double>(event.time.count()) / 1000);
        text += time;
        text += event.kind == LineEvent::Kind::Sent ? "sent " : "     came ";
        text += event.direction == Direction::ToProgram ? "to program    " : "to controller ";
        text += Readable(event.bytes) + (event.isDamaged ? "   <- " : "") +
                (event.isDamaged && event.damage.empty() ? "damaged" : event.damage) + "\n";
    }
    return text + "\nactivity log of the program:\n" + program.Words();
}

}
