#include "ProgramDouble.h"

#include "controller/ControllerFrame.h"

#include <utility>

namespace tarvin::controller::test {

namespace {

std::string Frame(const std::string& text) {
    std::string frame;
    BuildFrame(text, frame);
    return frame;
}

}

std::string ProgramDouble::Receive(std::string_view bytes) {
    std::string replies;
    for (const char byte : bytes) {
        if (byte >= 0x20 && byte <= 0x7E) {
            incoming += byte;
        } else if (byte == '\r' && !incoming.empty()) {
            if (!incoming.starts_with("ABTS"))
                replies += std::exchange(heldAnswers, {});
            replies += Handle(incoming);
            incoming.clear();
        }
    }
    return replies;
}

std::string ProgramDouble::Handle(const std::string& message) {
    const std::string code = message.substr(0, 4);
    const std::string payload = message.size() > 4 ? message.substr(4, message.size() - 5) : "";
    if (code == "ABAD" && isUploading) {
        files[uploadNumber].push_back(payload);
        return Answer("AAAK");
    }
    if (code == "ABEF" && isUploading) {
        isUploading = false;
        return Answer("AAAK");
    }
    if (code == "ABTS") {
        if (heldLinkTests == 0)
            return Answer("AATS");
        --heldLinkTests;
        heldAnswers += Answer("AATS");
        return {};
    }
    if (code == "ABST") {
        uploadNumber = payload;
        isUploading = canWrite;
        return Answer(canWrite ? "AAAK" : "AAAK03");
    }
    if (code == "ABSE" && files.count(payload) == 0)
        return startCharacter + Answer("AAAK01");
    if (code == "ABSE") {
        downloadLines = files[payload];
        nextLine = 0;
        refusals = 0;
        isDownloading = true;
        const std::string acknowledge = Answer("AAAK");
        return startCharacter + acknowledge + NextLine();
    }
    return isDownloading ? HandleDownload(message) : std::string();
}

std::string ProgramDouble::HandleDownload(const std::string& message) {
    if (message.starts_with("ABAK")) {
        refusals = 0;
        return NextLine();
    }
    if (message.starts_with("ABNK") && (++refusals < 3 || fault == Fault::FourthTime))
        return Answer(lastDataMessage, true);
    isDownloading = false;
    return Answer("AAAK03");
}

std::string ProgramDouble::NextLine() {
    const bool isFaulty = answers == faultyAnswer;
    if (isFaulty && fault == Fault::LostLine)
        ++nextLine;
    if (isFaulty && fault == Fault::LineTwice)
        --nextLine;
    if (nextLine >= downloadLines.size() || (isFaulty && fault == Fault::EarlyEnd)) {
        isDownloading = false;
        return Answer("AAEF");
    }
    lastDataMessage = "AADA" + downloadLines[nextLine++];
    return Answer(lastDataMessage);
}

std::string ProgramDouble::Answer(const std::string& text, bool isRepeat) {
    const bool isFaulty = answers == faultyAnswer;
    if (!isRepeat)
        ++answers;
    const bool wasFaulty = isRepeat && answers == faultyAnswer + 1;
    std::string frame = Frame(text);
    if (wasFaulty && fault == Fault::OtherRepeat)
        return Frame(text + "0");
    if (wasFaulty && fault == Fault::EndForRepeat)
        return Frame("AAEF");
    if (wasFaulty && (fault == Fault::WrongChecksumForever || (fault == Fault::FourthTime && refusals < 3)))
        frame[frame.size() - 2] ^= 1;
    if (!isFaulty)
        return frame;
    switch (fault) {
    case Fault::Silence:
        return {};
    case Fault::WrongChecksum:
    case Fault::WrongChecksumForever:
    case Fault::FourthTime:
        frame[frame.size() - 2] ^= 1;
        return frame;
    case Fault::MissingCarriageReturn:
        return frame.substr(0, frame.size() - 1);
    case Fault::LineFeed:
        return frame + "\n";
    case Fault::SecondAnswer:
        return frame + frame;
    case Fault::EmptyLine:
        return Frame("AADA");
    case Fault::Endless:
        return std::string(5000, 'x');
    case Fault::OtherMessage:
        return Frame("ABAK");
    case Fault::GivesUp:
        return Frame("AAAK03");
    default:
        return frame;
    }
}

}
