#include "end-to-end/ServiceFixture.h"
#include "faults/FaultPlan.h"
#include "harness/SystemCallPosix.h"
#include "harness/Transcript.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

constexpr int lineCount = 12;

// In a file that the program maps too.
class SharedPlan {
public:
    explicit SharedPlan(const std::filesystem::path& path) : path(path) {
        const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        RequireCall(file >= 0 && ::ftruncate(file, sizeof(FaultPlan)) == 0, path.native());
        void* const mapped = ::mmap(nullptr, sizeof(FaultPlan), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        RequireCall(mapped != MAP_FAILED && ::close(file) == 0, path.native());
        plan = new (mapped) FaultPlan;
    }
    ~SharedPlan() { ::munmap(plan, sizeof(FaultPlan)); }
    SharedPlan(const SharedPlan&) = delete;
    SharedPlan& operator=(const SharedPlan&) = delete;

    FaultPlan* operator->() const { return plan; }
    std::int32_t Count(FailingCall call) const { return plan->counts[static_cast<std::size_t>(call)]; }
    const std::filesystem::path path;

private:
    FaultPlan* plan;
};

struct Fault {
    FailingCall call;
    int error;
    std::int32_t first;
    std::int32_t last;
};

std::string Line(int number) {
    return "N" + std::to_string(number) + " G01 X" + std::to_string(number * 7);
}

std::string NewFile(int lines = lineCount) {
    std::string text;
    for (int number = 0; number < lines; ++number)
        text += Line(number) + "\r\n";
    return text;
}

const std::string oldFile = "OLD 1\r\nOLD 2\r\n";
const std::string sentFile = "SENT 1\r\nSENT 2\r\nSENT 3\r\n";

// What a controller knows after one upload of 1 over an older file and one download of 2.
struct Experience {
    bool hasLink = false;
    int linesAcknowledged = 0;
    bool isStored = false; // the end of the upload is acknowledged
    bool isReceived = false;
    std::string received;
};

class Machine {
public:
    explicit Machine(ServiceFixture& fixture) : fixture(fixture) {}

    Experience Work() {
        Experience experience;
        experience.hasLink = TestLink();
        if (!experience.hasLink)
            return experience;
        Upload(experience);
        Download(experience);
        return experience;
    }

private:
    bool HasServiceEnded() const {
        siginfo_t ended = {};
        return ::waitid(P_PID, static_cast<id_t>(fixture.service->Id()), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
               ended.si_pid != 0;
    }

    bool TestLink() {
        for (int attempt = 0; attempt < 100 && !HasServiceEnded(); ++attempt) {
            fixture.terminal->Write(Message("ABTS"));
            if (fixture.terminal->Read(6, 100ms) == Message("AATS"))
                return true;
        }
        return false;
    }

    // The next message of the program.
    std::string Answer() {
        std::size_t end = arrived.find('\r');
        while (end == std::string::npos) {
            const std::string more = fixture.terminal->Read(1, 10s);
            if (more.empty())
                return "silence";
            arrived += more;
            end = arrived.find('\r');
        }
        std::string answer = arrived.substr(0, end + 1);
        arrived.erase(0, end + 1);
        return answer;
    }

    std::string Ask(const std::string& question) {
        fixture.terminal->Write(Message(question));
        return Answer();
    }

    void Upload(Experience& experience) {
        if (Ask("ABST1") != Message("AAAK"))
            return;
        for (int number = 0; number < lineCount; ++number) {
            if (Ask("ABAD" + Line(number)) != Message("AAAK"))
                return;
            ++experience.linesAcknowledged;
        }
        experience.isStored = Ask("ABEF") == Message("AAAK");
    }

    void Download(Experience& experience) {
        if (Ask("ABSE2") != Message("AAAK"))
            return;
        for (std::string message = Answer();; message = Ask("ABAK")) {
            experience.isReceived = message == Message("AAEF");
            if (!message.starts_with("AADA"))
                return;
            experience.received += message.substr(4, message.size() - 6) + "\r\n";
        }
    }

    ServiceFixture& fixture;
    std::string arrived; // and not yet read as a message
};

// Somewhere in the folder of NC files there is a file that begins with these lines.
bool IsKept(const TemporaryInstallation& installation, const std::string& lines) {
    const std::filesystem::directory_iterator entries(installation.NcFolder());
    return std::any_of(begin(entries), end(entries), [&](const auto& entry) {
        return entry.is_regular_file() &&
               installation.ReadFile("NC/" + entry.path().filename().string()).starts_with(lines);
    });
}

struct Run {
    std::array<std::int32_t, failingCallCount> counts;
    std::int32_t failed;
};

// One life of the service with the fault, and a next one without.
Run LiveThrough(const Fault& fault) {
    ServiceFixture fixture;
    fixture.WriteSettings("[Port Settings]\nbaudrate=19200\ntransmit delay=0\nflow control=None\n"
                          "[Files]\nfile extension=nc\n");
    fixture.installation.WriteFile("NC/1.nc", oldFile);
    fixture.installation.WriteFile("NC/2.nc", sentFile);
    const TemporaryFolder outside;
    SharedPlan plan(outside / "plan");
    fixture.installation.Path().native().copy(plan->folder.data(), plan->folder.size() - 1);
    plan->call = fault.call;
    plan->error = fault.error;
    plan->first = fault.first;
    plan->last = fault.last;

    fixture.Start([&] {
        ::setenv(faultPlanVariable, plan.path.c_str(), 1);
        ::setenv("LD_PRELOAD", TARVIN_FAILING_CALLS, 1);
    });
    const Experience experience = Machine(fixture).Work();
    const int exitCode = fixture.Stop();
    const std::string output = fixture.service->Output();
    CAPTURE(output);
    CAPTURE(experience.linesAcknowledged);

    // A program that cannot start says why; one that has started ends in order.
    CHECK((experience.hasLink ? exitCode == 0 : !output.empty()));
    // With the values of a first run the files have no extension.
    const bool hasSettings = output.find("The settings file cannot be read") == std::string::npos;
    const std::string stored = fixture.installation.ReadFile("NC/1.nc");
    CHECK((stored == NewFile() || (stored == oldFile && !(experience.isStored && hasSettings))));
    CHECK(IsKept(fixture.installation, NewFile(experience.linesAcknowledged)));
    CHECK(fixture.installation.ReadFile("NC/2.nc") == sentFile);
    CHECK((!experience.isReceived || experience.received == sentFile));
    CHECK(sentFile.starts_with(experience.received));
    const bool isTold = output.find(std::strerror(fault.error)) != std::string::npos ||
                        output.find("it has changed while it was read") != std::string::npos;
    CHECK((isTold || !experience.hasLink || (experience.isStored && experience.isReceived)));

    fixture.Start();
    CHECK(fixture.service->WaitForOutput("LASER COM1:19200,N,8,1,None"));
    const Experience next = Machine(fixture).Work();
    CHECK(next.isStored);
    CHECK(next.isReceived);
    CHECK(fixture.installation.ReadFile("NC/1.nc") == NewFile());
    CHECK(fixture.Stop() == 0);
    ChildProcess history("tarvin-history", {{"--csv"}, {{"TARVINDL_HOME", fixture.installation.Path().native()}}});
    CHECK(history.WaitForExit() == 0);

    Run run = {{}, plan->failed};
    std::copy(plan->counts.begin(), plan->counts.end(), run.counts.begin());
    return run;
}

// All places, or with a usual run a sample of them.
std::int32_t Stride(std::int32_t count) {
    constexpr std::int32_t sample = 10;
    return std::getenv("TARVIN_ALL_FAULTS") != nullptr ? 1 : std::max(count / sample, 1);
}

void FailEach(FailingCall call, int error) {
    const Run whole = LiveThrough({call, error, 0, 0});
    const std::int32_t count = whole.counts[static_cast<std::size_t>(call)];
    REQUIRE(count > 0);
    MESSAGE("calls: ", count);
    std::int32_t failures = 0;
    for (std::int32_t number = 1; number <= count; number += Stride(count)) {
        CAPTURE(number);
        failures += LiveThrough({call, error, number, number}).failed;
        const Run lasting = LiveThrough({call, error, number, std::numeric_limits<std::int32_t>::max()});
        failures += lasting.failed;
    }
    CHECK(failures > 0);
}

}

TEST_CASE("Faults: whichever file cannot be opened, acknowledged lines and old files stay") {
    FailEach(FailingCall::Open, EACCES);
}

TEST_CASE("Faults: whichever write fails, acknowledged lines and old files stay") {
    FailEach(FailingCall::Write, ENOSPC);
}

TEST_CASE("Faults: whatever does not reach the disk, acknowledged lines and old files stay") {
    FailEach(FailingCall::Sync, EIO);
}

TEST_CASE("Faults: whatever cannot be renamed, acknowledged lines and old files stay") {
    FailEach(FailingCall::Rename, EIO);
}

TEST_CASE("Faults: whichever file cannot be closed, acknowledged lines and old files stay") {
    FailEach(FailingCall::Close, EIO);
}

TEST_CASE("Faults: a program without a thread says why it does not start, or goes on") {
    FailEach(FailingCall::Thread, EAGAIN);
}
