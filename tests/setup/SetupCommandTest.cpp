#include "setup/SetupCommand.h"

#include "base/Process.h"
#include "files/MachineLock.h"
#include "harness/TemporaryFolder.h"
#include "settings/SettingsRecord.h"
#include "settings/SettingsStore.h"

#include <filesystem>
#include <sstream>
#include <vector>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
namespace fs = std::filesystem;

namespace {

struct CommandResult {
    int exitCode = 0;
    std::string output;
    std::string errors;

    bool Says(const std::string& text) const { return (output + errors).find(text) != std::string::npos; }
};

class SetupConsoleTest {
public:
    // With `answers` someone sits at the terminal.
    CommandResult Run(std::vector<KelText> words, const char* answers = nullptr) const {
        words.insert(words.begin(), {u"--installation", FromPath(Home())});
        std::istringstream input(answers == nullptr ? "" : answers);
        std::ostringstream output;
        std::ostringstream errors;
        const int exitCode = RunSetupCommand(words, {input, output, errors, answers != nullptr});
        return {exitCode, output.str(), errors.str()};
    }

    fs::path Home() const { return folder / "home"; }
    KelText Nc() const { return FromPath(folder / "nc"); }

    DownloadSettings Settings(const KelText& machine) const {
        return SettingsStore(Home(), machine, u"").Load({}).settings;
    }

    TemporaryFolder folder;
};

}

TEST_CASE("SetupCommand: an installation and its machines are made once, and a second run says so") {
    const SetupConsoleTest setup;
    const std::vector<KelText> words = {u"LASER",   u"2",       u"--port", u"com3",  u"--folder",
                                        setup.Nc(), u"--speed", u"9600",   u"--yes", u"--extension=.nc"};
    const auto first = setup.Run(words);
    CAPTURE(first.output + first.errors);
    CHECK(first.exitCode == 0);
    CHECK(first.Says("Made the installation"));
    CHECK(first.Says("Made the machine LASER 2"));
    CHECK(fs::is_directory(setup.folder / "nc"));
    CHECK(fs::is_directory(setup.Home() / "NC Files"));
    const DownloadSettings made = setup.Settings(u"LASER 2");
    CHECK(made.port == u"COM3");
    CHECK(made.baudRate == u"9600");
    CHECK(made.fileExtension == u"nc");
    CHECK(ToPath(made.uploadPath).parent_path() == setup.folder / "nc");
    const std::string file = setup.folder.ReadFile("home/LASER 2.INI");
    const auto second = setup.Run(words);
    CHECK(second.exitCode == 0);
    CHECK(second.Says("Already so: the installation"));
    CHECK(second.Says("Already so: the settings of LASER 2"));
    CHECK_FALSE(second.Says("Made"));
    CHECK(setup.folder.ReadFile("home/LASER 2.INI") == file);
    // Another machine, and a change of the first.
    CHECK(setup.Run({u"PUNCH", u"--port", u"COM4", u"--yes"}).Says("Made the machine PUNCH"));
    CHECK(setup.Run({u"LASER 2", u"--speed", u"19200", u"--yes"}).Says("Changed the settings of LASER 2"));
    CHECK(setup.Settings(u"LASER 2").baudRate == u"19200");
    CHECK(setup.Settings(u"LASER 2").port == u"COM3");
}

TEST_CASE("SetupCommand: it asks on a terminal only, and again after a wrong answer") {
    const SetupConsoleTest setup;
    const auto silent = setup.Run({u"LASER"});
    CHECK(silent.exitCode == 1);
    CHECK(silent.Says("--port"));
    CHECK_FALSE(fs::exists(setup.Home() / "LASER.INI"));
    CHECK(setup.Run({u"LASER", u"--yes"}, "COM5\n").exitCode == 1);
    // Name, port, speed twice, two folders, extension, controller, language.
    const auto asked = setup.Run({u"--upload", setup.Nc()}, "LASER\nCOM5\n9601\n4800\n\nnc\nby hand\n\n");
    CAPTURE(asked.output + asked.errors);
    CHECK(asked.exitCode == 0);
    CHECK(asked.Says("baudrate cannot be \"9601\""));
    CHECK(setup.Settings(u"LASER").port == u"COM5");
    CHECK(setup.Settings(u"LASER").baudRate == u"4800");
    CHECK(setup.Settings(u"LASER").fileExtension == u"nc");
    CHECK(setup.Settings(u"LASER").controllerKind == controllerByHand);
}

TEST_CASE("SetupCommand: each answer is tried when it is given, and the end of the input makes nothing") {
    const SetupConsoleTest setup;
    for (const char* answers : {"", "LASER\n", "LASER\nCOM5\n", "LASER\nCOM5\n\n\n\n\n\n"}) {
        CAPTURE(answers);
        const auto ended = setup.Run({}, answers);
        CHECK(ended.exitCode == 1);
        CHECK(ended.Says("The input has ended before the last question"));
        CHECK_FALSE(fs::exists(setup.Home()));
    }
    // Options that are refused are told before the first question.
    CHECK_FALSE(setup.Run({u"LASER", u"--speed", u"9601"}, "COM5\n").Says("Port,"));
    CHECK(setup.Run({u"LA\nSER"}, "COM5\n").Says("A machine's name"));
    setup.folder.WriteFile("file", "");
    const std::string file = (setup.folder / "file").string();
    const auto asked = setup.Run({}, (" LA\tSER \nLASER\nCOM300\nCOM5\n4800\n" + file + "\n" + file + "/below\n" +
                                      (setup.folder / "in").string() + "\n\nn/c\nnc\n\n\n")
                                         .c_str());
    CAPTURE(asked.output + asked.errors);
    CHECK(asked.exitCode == 0);
    CHECK(asked.Says("A machine's name has no control characters"));
    CHECK(asked.Says("COM300"));
    CHECK(asked.Says("upload path: This "));
    CHECK(asked.Says("file/below cannot be made"));
    CHECK(asked.Says("file extension: "));
    CHECK(setup.Settings(u"LASER").port == u"COM5");
    CHECK(setup.Settings(u"LASER").baudRate == u"4800");
    CHECK(setup.Settings(u"LASER").fileExtension == u"nc");
    CHECK(ToPath(setup.Settings(u"LASER").uploadPath).parent_path() == setup.folder / "in");
}

TEST_CASE("SetupCommand: a refusal changes nothing") {
    const SetupConsoleTest setup;
    const KelText below = setup.Nc() + u"/a/b";
    const auto refused = [&](const std::vector<KelText>& words) {
        const auto result = setup.Run(words);
        CAPTURE(result.output + result.errors);
        CHECK(result.exitCode == 1);
        CHECK_FALSE(fs::exists(setup.folder / "nc"));
        return result;
    };
    refused({u"LASER", u"--port", u"COM3", u"--folder", below, u"--speed", u"9601"});
    refused({u"LASER", u"--port", u"/dev/none", u"--folder", below});
    refused({u"LASER ", u"--port", u"COM3", u"--folder", below});
    refused({u"LA\nSER", u"--port", u"COM3", u"--folder", below});
    // The programs would take these for options, or could not make their files.
    refused({u"LASER --check", u"--port", u"COM3", u"--folder", below});
    refused({u"/l=German", u"--port", u"COM3", u"--folder", below});
    refused({KelText(201, u'L'), u"--port", u"COM3", u"--folder", below});
    CHECK_FALSE(fs::exists(setup.Home()));
    // The same in an installation, and with a settings file that the system refuses.
    REQUIRE(setup.Run({u"--yes"}).exitCode == 0);
    const std::string paths = setup.folder.ReadFile("home/KEL.INI");
    refused({u"LASER", u"--port", u"/dev/null", u"--folder", below, u"--language", u"\u007f"});
    fs::create_directory(setup.Home() / "LASER.INI");
    refused({u"LASER", u"--port", u"COM3", u"--folder", below});
    CHECK(setup.folder.ReadFile("home/KEL.INI") == paths);
    fs::remove(setup.Home() / "LASER.INI");
    CHECK(setup.Run({u"LASER", u"--port", u"COM3", u"--folder", below, u"--yes"}).exitCode == 0);
    CHECK(fs::is_directory(ToPath(below)));
    CHECK(setup.Run({u"MILL", u"--port", u"COM3", u"--yes"}).Says("LASER has COM3 too"));
}

TEST_CASE("SetupCommand: output that cannot be written is a failure") {
    const SetupConsoleTest setup;
    REQUIRE(setup.Run({u"LASER", u"--port", u"COM3", u"--yes"}).exitCode == 0);
    for (const std::vector<KelText>& words :
         {std::vector<KelText>{u"--help"}, {u"LASER", u"--show", u"--installation", FromPath(setup.Home())}}) {
        std::istringstream input;
        std::ostream output(nullptr);
        std::ostringstream errors;
        CHECK(RunSetupCommand(words, {input, output, errors, false}) == 1);
        CHECK(errors.str() == "tarvindl-setup: the output cannot be written.\n");
    }
}

TEST_CASE("SetupCommand: settings are set all or none, and what is shown can be read back") {
    const SetupConsoleTest setup;
    REQUIRE(setup.Run({u"LASER", u"--port", u"COM3", u"--yes"}).exitCode == 0);
    const std::string before = setup.folder.ReadFile("home/LASER.INI");
    const auto refused = setup.Run({u"LASER", u"--set", u"silence=7", u"--set", u"parity=Both", u"--set", u"speed=1",
                                    u"--set", u"upload path=" + setup.Nc(), u"--set", u"transmit delay=31"});
    CHECK(refused.exitCode == 1);
    CHECK(refused.Says("parity cannot be \"Both\". Allowed: None, Odd, Even, Mark, Space"));
    CHECK(refused.Says("There is no setting \"speed\""));
    CHECK(refused.Says("upload path: This folder does not exist."));
    CHECK(refused.Says("a number from 0 to 30"));
    CHECK(setup.folder.ReadFile("home/LASER.INI") == before);
    REQUIRE(setup.Run({u"LASER", u"--set", u"silence=7", u"--set=Parity=even"}).exitCode == 0);
    // The service will run in another folder.
    REQUIRE(setup.Run({u"LASER", u"--set", u"upload path=."}).exitCode == 0);
    CHECK(ToPath(setup.Settings(u"LASER").uploadPath).is_absolute());
    const auto shown = setup.Run({u"LASER", u"--show"});
    CHECK(shown.Says("\nparity=Even\n"));
    setup.folder.WriteFile("home/COPY.INI", shown.output);
    CHECK(setup.Run({u"COPY", u"--show"}).output == shown.output);
    // What is left of a damaged file is shown, and what is wrong with it.
    const std::string record = EncodeRecord(setup.Settings(u"LASER"));
    setup.folder.WriteFile("home/MILL.INI", record.substr(0, record.size() - 20));
    const auto damaged = setup.Run({u"MILL", u"--show"});
    CHECK(damaged.exitCode == 1);
    CHECK(damaged.errors.find("MILL.INI are damaged") != std::string::npos);
    // So is a file that is something else; a change keeps it beside the new settings.
    setup.folder.WriteFile("home/SAW.INI", "a letter");
    const auto foreign = setup.Run({u"SAW", u"--show"});
    CHECK(foreign.exitCode == 1);
    CHECK(foreign.Says("SAW.INI holds no settings"));
    CHECK(setup.Run({u"SAW", u"--set", u"baudrate=2400"}).Says("SAW.INI holds no settings"));
    CHECK(setup.folder.ReadFile("home/SAW.INI.bad") == "a letter");
    // A misspelt name makes no machine.
    CHECK(setup.Run({u"LAZER", u"--set", u"silence=7"}).exitCode == 1);
    CHECK(setup.Run({u"LAZER", u"--show"}).exitCode == 1);
    CHECK_FALSE(fs::exists(setup.Home() / "LAZER.INI"));
}

TEST_CASE("SetupCommand: a folder that cannot be made or a damaged installation is told, and nothing else is done") {
    const SetupConsoleTest setup;
    setup.folder.WriteFile("nc", "a file");
    const auto refused = setup.Run({u"LASER", u"--port", u"COM3", u"--folder", setup.Nc(), u"--yes"});
    CHECK(refused.exitCode == 1);
    CHECK(refused.Says("upload path: This "));
    CHECK_FALSE(fs::exists(setup.Home()));
    fs::create_directory(setup.Home());
    setup.folder.WriteFile("home/KEL.INI", "[PORTS]\nCOM1=/dev/a\n");
    CHECK(setup.Run({u"--yes"}).exitCode == 1);
    CHECK(setup.folder.ReadFile("home/KEL.INI") == "[PORTS]\nCOM1=/dev/a\n");
}

TEST_CASE("SetupCommand: a change says that a running program needs a reload, and a wrong command line is refused") {
    const SetupConsoleTest setup;
    REQUIRE(setup.Run({u"LASER", u"--port", u"COM3", u"--yes"}).exitCode == 0);
    CHECK(setup.Run({u"LASER", u"--reload"}).Says("No program serves LASER now"));
    MachineLock lock(setup.Home() / "LASER.INI");
    REQUIRE(lock.Take({MachineHolder::Kind::Service, OwnProcessId(), u"anna", ComputerName(), {}, {}}));
    CHECK(setup.Run({u"LASER", u"--set", u"silence=7"}).Says("They count after: tarvindl-setup LASER --reload"));
    CHECK_FALSE(setup.Run({u"LASER", u"--set", u"silence=7"}).Says("--reload"));
    const auto gone = setup.Run({u"LASER", u"--reload"});
    CHECK(gone.exitCode == 1);
    CHECK(gone.Says("takes no requests of this user"));
    for (const auto& words : std::vector<std::vector<KelText>>{
             {u"--foo"}, {u"--port"}, {u"--yes=1"}, {u"--set", u"silence"}, {u"--show", u"--reload"}, {u"--system"}})
        CHECK(setup.Run(words).exitCode == 2);
}
