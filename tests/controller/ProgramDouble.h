#pragma once
// Takes the program's place at the other end of the line, and makes one fault on request that the controller has to
// notice. Written without the real program's code. One thread at a time.

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::controller::test {

enum class Fault {
    None,
    Silence,               // no answer
    WrongChecksum,         // a wrong checksum character
    WrongChecksumForever,  // a wrong checksum character, also in each repeat
    MissingCarriageReturn, // the message does not end
    LineFeed,              // a line feed after the carriage return
    SecondAnswer,          // the message twice
    LostLine,              // the next line instead of the line
    LineTwice,             // the previous line instead of the line
    OtherRepeat,           // the repeat of a refused line differs
    EndForRepeat,          // the end instead of the repeat of a refused line
    FourthTime,            // a line is damaged three times and comes a fourth time, whole
    EmptyLine,             // a data line without data
    EarlyEnd,              // the end instead of the line
    Endless,               // a line without an end
    OtherMessage,          // a message that only a controller sends
    GivesUp,               // AAAK03
};

class ProgramDouble {
public:
    using Lines = std::vector<std::string>;

    // The fault strikes the answer with this number. Answers to all messages count, from 0.
    Fault fault = Fault::None;
    std::size_t faultyAnswer = 0;
    // Sent before the answer to a download request.
    std::string startCharacter;
    // This many link tests are not answered at once. Their answers come late, before the answer to the next message
    // that is not a link test.
    std::size_t heldLinkTests = 0;

    std::map<std::string, Lines> files;
    bool canWrite = true;

    // Takes the controller's bytes and returns the program's.
    std::string Receive(std::string_view bytes);

private:
    std::string Handle(const std::string& message);
    std::string HandleDownload(const std::string& message);
    std::string NextLine();
    std::string Answer(std::string_view text, bool isRepeat = false);

    std::string incoming;
    std::size_t answers = 0;
    std::string heldAnswers;
    std::string uploadNumber;
    bool isUploading = false;
    bool isDownloading = false;
    Lines downloadLines;
    std::size_t nextLine = 0;
    int refusals = 0;
    std::string lastDataMessage;
};

}
