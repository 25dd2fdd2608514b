#pragma once
// The program's side of the line as far as the controller can tell, with one fault on request, so that the controller
// can be shown that fault. Shares nothing with the real program. One thread at a time.

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::controller::test {

enum class Fault {
    None,
    Silence,               // no answer
    WrongChecksum,         // the checksum character is another one
    WrongChecksumForever,  // and so are those of the repeats
    MissingCarriageReturn, // the message does not end
    LineFeed,              // a line feed behind the carriage return
    SecondAnswer,          // the message twice
    LostLine,              // the line after is sent in place of the line
    LineTwice,             // the line before is sent in place of the line
    OtherRepeat,           // a refused line comes back changed
    EndForRepeat,          // the end in place of a refused line
    FourthTime,            // a line damaged three times comes once more, and is right
    EmptyLine,             // a data line without data
    EarlyEnd,              // the end in place of the line
    Endless,               // a line that does not come to an end
    OtherMessage,          // something that is no message of the program
    GivesUp,               // AAAK03
};

class ProgramDouble {
public:
    using Lines = std::vector<std::string>;

    // The fault happens to answer number `faultyAnswer`, counted from 0 over all messages that are answered.
    Fault fault = Fault::None;
    std::size_t faultyAnswer = 0;
    // Put before the answer to a download request.
    std::string startCharacter;
    // Link tests that are not answered at once: after the first one that is, with the next message that is none.
    std::size_t heldLinkTests = 0;

    std::map<std::string, Lines> files;
    bool canWrite = true;

    // Takes bytes from the line and returns those that go back.
    std::string Receive(std::string_view bytes);

private:
    std::string Handle(const std::string& message);
    std::string HandleDownload(const std::string& message);
    std::string NextLine();
    std::string Answer(const std::string& text, bool isRepeat = false);

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
