#include "controller/CommandLine.h"

#include "controller/Session.h"
#include "harness/TemporaryFolder.h"

#include <sstream>

#include <doctest/doctest.h>

using namespace tarvin::controller;
using tarvin::test::TemporaryFolder;

namespace {

std::vector<std::string> Words(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

}

TEST_CASE("CommandLine: commands and options come in any order, and values have their units") {
    const auto parsed =
        ParseCommandLine(Words("get 1 get 2 file --timeout=0.5 --pty link get 3 --garble 12.5 --delay 40 "
                               "put 007 test check 4 get --seed 18446744073709551615 refuse-get 5"));
    REQUIRE(parsed);
    const ControllerOptions& options = *parsed;
    std::string commands;
    for (const Command& command : options.commands)
        commands += command.name + "," + command.number + "," + command.file + ";";
    CHECK(commands == "get,1,;get,2,file;get,3,;put,007,test;check,4,get;refuse-get,5,;");
    CHECK(options.conversation.answerTime == std::chrono::milliseconds(500));
    CHECK(options.delayBeforeMessages == std::chrono::milliseconds(40));
    CHECK(options.misbehaviour.garble == 125'000);
    CHECK(options.misbehaviour.seed == UINT64_MAX);
    CHECK(options.connects);
}

TEST_CASE("CommandLine: wrong usage is refused with its reason, before a line or file is made") {
    struct Row {
        std::string arguments;
        std::string reason;
    };
    const TemporaryFolder folder;
    const std::string link = (folder / "link").string();
    const std::string pty = "--pty " + link;
    const Row table[] = {
        {"test", "one of --port and --pty is needed"},
        {pty + " --port COM1 test", "one of --port and --pty is needed"},
        {pty, "no command"},
        {pty + " tset", "unknown command tset"},
        {pty + " --tset test", "unknown option --tset"},
        {pty + " test --timeout", "--timeout needs a value"},
        {pty + " test --trace=1", "--trace takes no value"},
        {pty + " --garble 101 test", "--garble: \"101\""},
        {pty + " --garble nan test", "--garble: \"nan\""},
        {pty + " --drop 5x test", "--drop: \"5x\""},
        {pty + " --nak-every 0 test", "--nak-every: \"0\""},
        {pty + " --timeout -1 test", "--timeout: \"-1\""},
        {pty + " --start-character 13 test", "--start-character: \"13\""},
        {pty + " put 5", "put needs a file"},
        {pty + " get", "get needs a file number"},
        {pty + " put 5 " + (folder / "missing").string(), "missing: "},
        {pty + " check 5 " + folder.Path().string(), folder.Path().string()},
    };
    for (const Row& row : table) {
        CAPTURE(row.arguments);
        std::ostringstream output;
        std::ostringstream errors;
        CHECK(RunController(Words(row.arguments), "1", output, errors) == ExitStatus::usage);
        CHECK_MESSAGE(errors.str().find(row.reason) != std::string::npos, errors.str());
        CHECK(output.str().empty());
    }
    CHECK(std::filesystem::is_empty(folder.Path()));
}
