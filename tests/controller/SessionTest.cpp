#include "controller/Session.h"

#include "DoubleLine.h"

#include <sstream>

#include <doctest/doctest.h>

using namespace tarvin::controller;
using namespace tarvin::controller::test;

namespace {

const ProgramDouble::Lines threeLines = {"N10 G1 X5", "N20 ~%s", "N30 M30"};

struct Run {
    ProgramDouble program;
    tarvin::test::ManualClock clock;
    DoubleLine line{program, clock};
    ProgramDouble::Lines fileLines = threeLines;
    std::string output;

    Run() { program.files["7"] = threeLines; }

    // Runs the commands. The arguments leave out the line, and every file name stands for `fileLines`.
    int operator()(const std::string& arguments) {
        std::vector<std::string> words = {"--pty", "unused"};
        std::istringstream stream(arguments);
        for (std::string word; stream >> word;)
            words.push_back(word);
        const auto options = ParseCommandLine(words);
        REQUIRE(options);
        const std::vector<ProgramDouble::Lines> files(options->commands.size(), fileLines);
        std::ostringstream text;
        const int status = RunCommands(*options, files, line, clock, text);
        output = text.str();
        return status;
    }
};

ProgramDouble::Lines ManyLines(int count) {
    ProgramDouble::Lines lines;
    for (int number = 0; number < count; ++number) {
        std::ostringstream text;
        text << "N" << number << " G01 X" << number * 37 % 1000 << " Y@-1";
        lines.push_back(text.str());
    }
    return lines;
}

}

TEST_CASE("Session: right exchanges pass, with every misbehaviour that a program has to bear") {
    const std::string table[] = {
        "test put 5 f check 5 f get 5 refuse-get 99 check 7 f",
        "--no-connect test put 5 f check 5 f",
        "--split --seed 4 test put 5 f check 5 f",
        "--noise 100 --split test put 5 f check 5 f",
        "--delay 20 test put 5 f check 5 f",
        "--nak-every 1 check 7 f check 7 f",
        "--nak-every 2 put 5 f check 5 f",
        "--garble 40 --seed 3 test",
        "--drop 40 --seed 2 test",
        "send ABTS expect AATS send ABSE7 expect AAAK",
    };
    for (const std::string& arguments : table) {
        CAPTURE(arguments);
        for (const std::size_t arrivalSize : {1U, 7U, 4096U}) {
            Run run;
            run.line.arrivalSize = arrivalSize;
            // After "expect AAAK" the first data line follows, which no command asks for.
            const bool leavesLine = arguments.starts_with("send");
            CHECK(run(arguments) == (leavesLine ? ExitStatus::failed : ExitStatus::right));
            CHECK_MESSAGE(run.output.ends_with(leavesLine ? "asked for\n" : "ok\n"), run.output);
            if (run.program.files.count("5") != 0)
                CHECK(run.program.files["5"] == threeLines);
        }
    }
}

TEST_CASE("Session: damaged data lines are asked for again") {
    for (const std::string arguments : {"--garble-received 6 check 7 f", "--drop-received 6 check 7 f",
                                        "--garble-received 2 --drop-received 2 --nak-every 3 check 7 f"}) {
        Run run;
        run.fileLines = run.program.files["7"] = ManyLines(100);
        CAPTURE(arguments);
        CHECK_MESSAGE(run("--seed 3 " + arguments) == ExitStatus::right, run.output);
        CHECK(run.output.find(" 0 repeats") == std::string::npos);
        // The program sends a line three times. When all three are damaged, it gives up.
        CHECK(run("--garble-received 100 check 7 f") == ExitStatus::failed);
        CHECK(run.output.find("line 1: refused with AAAK03") != std::string::npos);
    }
}

TEST_CASE("Session: each fault of the program fails the command with its reason") {
    struct Row {
        std::string arguments;
        Fault fault;
        std::size_t answer;
        const char* reason;
    };
    // Of a download, answer 0 is the acknowledgement and answer 2 is the second of three lines.
    const Row table[] = {
        {"test", Fault::Silence, 0, ""},
        {"test", Fault::WrongChecksum, 0, ""},
        {"test", Fault::OtherMessage, 0, "\"ABAK\" came instead of \"AATS\""},
        {"test", Fault::SecondAnswer, 0, "came without being asked for"},
        {"test", Fault::LineFeed, 0, "\"[0a]\" came without being asked for"},
        {"put 5 f", Fault::GivesUp, 0, "refused with AAAK03"},
        {"put 5 f", Fault::Silence, 0, "no answer in 5 s"},
        {"put 5 f", Fault::Silence, 2, "line 2: no answer in 5 s"},
        {"put 5 f", Fault::WrongChecksum, 2, "line 2: \"AAAKp\" came, which has a wrong checksum"},
        {"put 5 f", Fault::GivesUp, 4, "end of the file: refused with AAAK03"},
        {"put 5 f", Fault::SecondAnswer, 1, "line 2: \"AAAK\" came without being asked for"},
        {"put 5 f", Fault::SecondAnswer, 4, "came without being asked for"},
        {"get 7", Fault::WrongChecksum, 0, "wrong checksum"},
        {"get 7", Fault::MissingCarriageReturn, 3, "no carriage return"},
        {"get 7", Fault::Endless, 2, "line 2: no carriage return in"},
        {"get 7", Fault::EmptyLine, 2, "line 2: \"AADA\" came instead of"},
        {"get 7", Fault::LineFeed, 2, "line 2: \"[0a]\" came"},
        {"get 7", Fault::SecondAnswer, 2, "line 2: \"AADAN20 ~%s\" came without being asked for"},
        {"get 7", Fault::WrongChecksumForever, 1, "line 1: refused with AAAK03"},
        {"get 7", Fault::WrongChecksum, 4, "line 4: \"AAEFs\" came, which has a wrong checksum"},
        {"get 7", Fault::SecondAnswer, 4, "\"AAEF\" came without being asked for"},
        {"get 7", Fault::Silence, 4, "line 4: no answer in 5 s"},
        {"get 7", Fault::OtherMessage, 2, "line 2: \"ABAK\" came instead of"},
        {"--nak-every 2 get 7", Fault::OtherRepeat, 2, "line 2: the repeated line is not the line that was refused"},
        {"--nak-every 2 get 7", Fault::EndForRepeat, 2, "line 2: the end of the file came instead of the refused line"},
        {"get 7", Fault::FourthTime, 2, "line 2: refused 3 times, and it was sent once more"},
        {"--garble-received 100 get 7", Fault::FourthTime, 9, "line 1: refused 3 times, and it was sent once more"},
        {"check 7 f", Fault::LostLine, 2, "line 2: \"N30 M30\" came, but the file has"},
        {"check 7 f", Fault::LineTwice, 2, "line 2: \"N10 G1 X5\" came, but the file has"},
        {"check 7 f", Fault::EarlyEnd, 3, "line 3: the end came, but the file has \"N30 M30\""},
        {"refuse-get 7", Fault::None, 0, "\"AAAK\" came instead of \"AAAK01\""},
        {"refuse-put 5", Fault::None, 0, "\"AAAK\" came instead of \"AAAK03\""},
        {"refuse-get 99", Fault::GivesUp, 0, "refused with AAAK03"},
        {"get 99", Fault::None, 0, "refused with AAAK01"},
        {"--start-character 18 get 7", Fault::None, 0, "came without the start character"},
    };
    for (const Row& row : table) {
        Run run;
        run.program.fault = row.fault;
        run.program.faultyAnswer = row.answer;
        CAPTURE(row.arguments);
        CAPTURE(static_cast<int>(row.fault));
        // An empty reason: the fault is mended, because the controller repeats link tests.
        const bool isMended = *row.reason == '\0';
        CHECK(run("--no-connect " + row.arguments) == (isMended ? ExitStatus::right : ExitStatus::failed));
        CHECK_MESSAGE(run.output.find(isMended ? "1 repeats, ok" : row.reason) != std::string::npos, run.output);
        CHECK(isMended == (run.output.find("FAILED") == std::string::npos));
    }
}

TEST_CASE("Session: a wrong checksum in a data line costs one repeat") {
    Run run;
    run.program.fault = Fault::WrongChecksum;
    run.program.faultyAnswer = 2;
    CHECK(run("--no-connect check 7 f") == ExitStatus::right);
    CHECK_MESSAGE(run.output.find(" 1 repeats, ok") != std::string::npos, run.output);
}

TEST_CASE("Session: connecting repeats the link test until it is answered, and accepts late answers") {
    Run run;
    run.program.heldLinkTests = 2;
    run.program.startCharacter.assign(1, '\x12');
    CHECK_MESSAGE(run("--start-character 18 check 7 f test refuse-get 99") == ExitStatus::right, run.output);
    run.program.heldLinkTests = 1000;
    CHECK(run("--connect 2 test") == ExitStatus::failed);
    CHECK(run.output == "connect: FAILED: nobody answers the link test in 2 s\n");
}

TEST_CASE("Session: a transfer that the controller itself damages never passes") {
    struct Row {
        std::string arguments;
        int status;
        const char* lastLine;
    };
    const Row table[] = {
        {"--drop 100 get 7 test", ExitStatus::failed, "get 7: FAILED: no answer in 5 s\n"},
        {"--drop 100 --timeout 0.25 test", ExitStatus::failed, "test: FAILED: no answer in 0.25 s, 3 times\n"},
        {"--garble 100 put 5 f", ExitStatus::failed, ""},
        {"--garble 100 get 7", ExitStatus::failed, ""},
        {"--stop-after 2 check 7 f check 7 f", ExitStatus::stopped, "0 repeats, ok\n"},
        {"--stop-after 2 put 5 f", ExitStatus::stopped, "stopped after line 2\n"},
        {"--stop-after 2 check 7 f get 99", ExitStatus::failed, "could not open the file for reading\n"},
        {"--stop-after 9 check 7 f", ExitStatus::right, "0 repeats, ok\n"},
    };
    for (const Row& row : table) {
        CAPTURE(row.arguments);
        for (int seed = 0; seed < 20; ++seed) {
            Run run;
            CHECK(run("--seed " + std::to_string(seed) + " " + row.arguments) == row.status);
            CHECK_MESSAGE(run.output.ends_with(row.lastLine), run.output);
        }
    }
}

TEST_CASE("Session: an upload passes only if the program has stored the right lines") {
    int rightCount = 0;
    int damagedCount = 0;
    for (int seed = 0; seed < 300; ++seed) {
        Run run;
        const int status = run("--garble 15 --seed " + std::to_string(seed) + " put 5 f");
        CAPTURE(seed);
        CHECK((status == ExitStatus::failed || run.program.files["5"] == threeLines));
        rightCount += status == ExitStatus::right ? 1 : 0;
        damagedCount += run.output.find("went out damaged and were acknowledged") != std::string::npos ? 1 : 0;
    }
    CHECK(rightCount > 0);
    CHECK(damagedCount > 0);
}

TEST_CASE("Session: turnaround is the program's time only") {
    Run run;
    run.line.readTime = std::chrono::milliseconds(3);
    for (const char* options : {"", "--delay 20 ", "--split "}) {
        CHECK(run(std::string(options) + "put 5 f") == ExitStatus::right);
        CHECK_MESSAGE(run.output.find("turnaround median 3.000 ms, p99 3.000 ms, max 3.000 ms") != std::string::npos,
                      run.output);
    }
    TurnaroundRecord record;
    CHECK(record.Summarize().count == 0);
    for (int answer = 200; answer > 0; --answer)
        record.Add(std::chrono::microseconds(answer));
    const TurnaroundRecord::Summary summary = record.Summarize();
    CHECK(summary.count == 200);
    CHECK(summary.median == std::chrono::microseconds(100));
    CHECK(summary.percentile99 == std::chrono::microseconds(198));
    CHECK(summary.longest == std::chrono::microseconds(200));
}

TEST_CASE("Session: a seed repeats every byte, and a message without misbehaviour is one write") {
    const std::string spoiled = "--no-connect --noise 50 --garble 10 --split --drop 1 --seed ";
    Run first;
    Run second;
    Run other;
    const int status = first(spoiled + "11 test put 5 f");
    CHECK(second(spoiled + "11 test put 5 f") == status);
    other(spoiled + "12 test put 5 f");
    CHECK(first.line.written == second.line.written);
    CHECK(first.line.writeCount == second.line.writeCount);
    CHECK(first.line.written != other.line.written);
    Run plain;
    CHECK(plain("--no-connect test get 7") == ExitStatus::right);
    CHECK(plain.line.writeCount == 5);
}

TEST_CASE("Session: the trace shows each message as it was sent or received") {
    Run run;
    run.fileLines[1] = run.program.files["7"][1] = "N20 \xE4\t%s";
    CHECK(run("--trace --no-connect --nak-every 2 check 7 f") == ExitStatus::right);
    CHECK(
        run.output.starts_with("-> ABSE7\n<- AAAK\n<- AADAN10 G1 X5\n-> ABAK\n<- AADAN20 [e4][09]%s\n-> ABNK\n"
                               "<- AADAN20 [e4][09]%s\n-> ABAK\n<- AADAN30 M30\n-> ABAK\n<- AAEF\ncheck 7: 3 lines, "));
    CHECK(run("--trace --no-connect --drop 100 put 5 f") == ExitStatus::failed);
    CHECK(run.output.starts_with("-> ABST5 (lost)\n"));
}
