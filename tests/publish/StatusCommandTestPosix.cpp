#include "harness/CommandResult.h"
#include "harness/SystemCallPosix.h"
#include "harness/TemporaryInstallation.h"
#include "publish/Json.h"
#include "publish/PublishedExample.h"
#include "publish/StatusCommand.h"
#include "publish/StatusFile.h"

#include <cstdlib>
#include <fstream>

#include <doctest/doctest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

CommandResult Run(const std::vector<KelText>& arguments) {
    return RunCommand(RunStatusCommand, arguments);
}

// An installation with settings for LASER, and a runtime folder with what the test publishes.
class Shop {
public:
    Shop() {
        ::setenv("TARVINDL_HOME", installation.Path().c_str(), 1);
        ::setenv("TARVINDL_RUNTIME", run.Path().c_str(), 1);
        ::setenv("XDG_RUNTIME_DIR", "/nowhere", 1);
    }

    // A status of a machine that runs and of which all is well.
    PublishedStatus Well(const KelText& machine) const {
        PublishedStatus status = PublishedExample();
        status.machine = machine;
        status.installation = FromPath(WholePath(installation.Path()));
        status.snapshot.progress.reset();
        status.snapshot.heldSince.reset();
        status.snapshot.recent = std::make_shared<const TransferRecords>();
        return status;
    }

    std::filesystem::path FileOf(const KelText& machine) const {
        return run.Path() / StatusFileName(machine, installation.Path());
    }

    void Publish(const PublishedStatus& status) const {
        REQUIRE(WriteStatusFile(FileOf(status.machine), ToJson(status, PresentOf(SteadyClock()))));
    }

    const TemporaryInstallation installation;
    const TemporaryFolder run;
};

std::optional<Clock::TimePoint> Before(std::chrono::minutes time) {
    return SteadyClock().Now() - time;
}

}

TEST_CASE("tarvindl-status: the exit code is the worst state of the machines") {
    const Shop shop;
    CHECK(Run({}).exitCode == 2);
    CHECK(Run({}).output == "LASER: not running\n");
    PublishedStatus status = shop.Well(u"LASER");
    shop.Publish(status);
    CHECK(Run({}).exitCode == 0);
    CHECK(Run({}).output.starts_with("LASER: ready, errors 4, repeats 2, since "));

    struct Case {
        const char* start;
        int exitCode;
        void (*change)(PublishedStatus&);
    };
    const Case cases[] = {
        {"LASER: held, ", 0, [](PublishedStatus& changed) { changed.snapshot.heldSince = Before(6min); }},
        {"LASER: held, ", 1, [](PublishedStatus& changed) { changed.snapshot.heldSince = Before(8min); }},
        {"LASER: held, ", 0,
         [](PublishedStatus& changed) {
             changed.snapshot.heldSince = Before(8min);
             changed.settings.attentionMinutes = 0;
         }},
        {"LASER: sending 4711, 63 %, 12.5 lines/s, ", 0,
         [](PublishedStatus& changed) { changed.snapshot.progress = PublishedExample().snapshot.progress; }},
        {"LASER: silent 4711, 63 %, ", 1,
         [](PublishedStatus& changed) {
             changed.snapshot.progress = PublishedExample().snapshot.progress;
             changed.snapshot.isConversation = true;
             changed.snapshot.quietSince = Before(8min);
         }},
        {"LASER: failed 1000, ", 1,
         [](PublishedStatus& changed) { changed.snapshot.recent = PublishedExample().snapshot.recent; }},
        {"LASER: no link, ", 2, [](PublishedStatus& changed) { changed.snapshot.hasLink = false; }},
        // The number of this process, which started at another time.
        {"LASER: died, ", 2, [](PublishedStatus& changed) { changed.processStart = u"earlier"; }},
        {"LASER: unknown, published by a program of the computer ELSEWHERE", 3,
         [](PublishedStatus& changed) { changed.program.computer = u"ELSEWHERE"; }},
    };
    for (const Case& each : cases) {
        CAPTURE(each.start);
        PublishedStatus changed = status;
        each.change(changed);
        shop.Publish(changed);
        const CommandResult result = Run({});
        CHECK_MESSAGE(result.output.starts_with(each.start), result.output);
        CHECK(result.exitCode == each.exitCode);
    }
    shop.Publish(status);
    status = shop.Well(u"PUNCH");
    status.snapshot.hasLink = false;
    shop.Publish(status);
    CHECK(Run({}).exitCode == 2);
    CHECK(Run({u"LASER"}).exitCode == 0);
    CHECK(Run({u"laser", u"PUNCH"}).exitCode == 2);
    CHECK(Run({u"LASER", u"OTHER"}).exitCode == 3);
    CHECK(Run({u"OTHER"}).errors == "tarvindl-status: no machine is known by the name OTHER.\n");
    CHECK(Run({u"--wrong"}).exitCode == 3);
}

TEST_CASE("tarvindl-status: a name does not leave the line, and JSON has all that is published") {
    const Shop shop;
    shop.Publish(shop.Well(u"../A\x1b[2J\nB"));
    const CommandResult lines = Run({u"../A\x1b[2J\nB"});
    CHECK(lines.output.starts_with("../A [2J B: ready"));
    CHECK(lines.output.find('\x1b') == std::string::npos);
    for (const auto& entry : std::filesystem::directory_iterator(shop.run.Path()))
        CHECK(entry.path().filename().string().starts_with(".._A"));
    const auto array = ReadJson(Run({u"--json"}).output);
    REQUIRE(array);
    const auto& elements = std::get<JsonValue::Array>(array->content);
    REQUIRE(elements.size() == 2);
    CHECK(std::get<KelText>(elements[0].Find(u"machine")->content) == u"../A\x1b[2J\nB");
    CHECK(std::get<KelText>(elements[0].Find(u"published")->Find(u"settings")->Find(u"port")->content) == u"COM1");
    CHECK(std::holds_alternative<std::monostate>(elements[1].Find(u"published")->content));
}

TEST_CASE("tarvindl-status: a file that no program of ours has written is unknown and delays nothing") {
    const Shop shop;
    const auto file = shop.FileOf(u"LASER");
    const auto check = [&](const std::string& reason) {
        const CommandResult result = Run({});
        CHECK(result.exitCode == 3);
        CHECK_MESSAGE(result.output.find(reason) != std::string::npos, result.output);
        std::filesystem::remove(file);
    };
    std::ofstream(file).close();
    std::filesystem::resize_file(file, std::uintmax_t{1} << 30);
    check("the file is too long");
    RequireCall(::mkfifo(file.c_str(), 0666) == 0, "mkfifo");
    check("no regular file");
    shop.Publish(shop.Well(u"OTHER"));
    std::filesystem::rename(shop.FileOf(u"OTHER"), shop.installation / "elsewhere");
    std::filesystem::create_symlink(shop.installation / "elsewhere", file);
    check(file.string() + ": ");
    if (::geteuid() == 0) {
        shop.Publish(shop.Well(u"LASER"));
        RequireCall(::chown(file.c_str(), 12345, 12345) == 0, "chown");
        check("belongs to a user who does not own its folder");
    }
    CHECK(Run({}).output == "LASER: not running\n");
}

TEST_CASE("WriteStatusFile: group and mode are the folder's and 0640, and a link that waits there is not followed") {
    const TemporaryFolder folder;
    const auto file = folder / "LASER.json";
    folder.WriteFile("victim", "kept");
    for (const mode_t mask : {mode_t{0777}, mode_t{0}}) {
        std::filesystem::remove(folder / "LASER.json.new");
        std::filesystem::remove(file);
        std::filesystem::create_symlink("victim", folder / "LASER.json.new");
        std::filesystem::create_symlink("victim", file);
        if (::geteuid() == 0)
            RequireCall(::chown(folder.Path().c_str(), 0, 4321) == 0, "chown");
        const mode_t usual = ::umask(mask);
        const auto written = WriteStatusFile(file, "content");
        ::umask(usual);
        REQUIRE(written);
        struct stat state = {};
        RequireCall(::lstat(file.c_str(), &state) == 0, "stat");
        CHECK((state.st_mode & 07777) == 0640);
        CHECK(S_ISREG(state.st_mode));
        if (::geteuid() == 0)
            CHECK(state.st_gid == 4321);
        CHECK(ReadStatusFile(file).ValueOr("") == "content");
    }
    CHECK(folder.ReadFile("victim") == "kept");
}
