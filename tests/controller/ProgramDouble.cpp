#include "ProgramDouble.h"

#include "controller/ControllerFrame.h"

#include <utility>

namespace tarvin::controller::test {

namespace {

std::string FrameOf(std::string_view text) {
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
            if (!incoming.starts_with(code::linkTest))
                replies += std::exchange(heldAnswers, {});
            replies += Handle(incoming);
            incoming.clear();
        }
    }
    return replies;
}

std::string ProgramDouble::Handle(const std::string& message) {
    const std::string messageCode = message.substr(0, 4);
    const std::string payload = message.size() > 4 ? message.substr(4, message.size() - 5) : "";
    if (messageCode == code::uploadData && isUploading) {
        files[uploadNumber].push_back(payload);
        return Answer(code::acknowledge);
    }
    if (messageCode == code::uploadEnd && isUploading) {
        isUploading = false;
        return Answer(code::acknowledge);
    }
    if (messageCode == code::linkTest) {
        if (heldLinkTests == 0)
            return Answer(code::linkTestAnswer);
        --heldLinkTests;
        heldAnswers += Answer(code::linkTestAnswer);
        return {};
    }
    if (messageCode == code::uploadRequest) {
        uploadNumber = payload;
        isUploading = canWrite;
        return Answer(canWrite ? code::acknowledge : code::cannotGoOn);
    }
    if (messageCode == code::downloadRequest && files.count(payload) == 0)
        return startCharacter + Answer(code::cannotRead);
    if (messageCode == code::downloadRequest) {
        downloadLines = files[payload];
        nextLine = 0;
        refusals = 0;
        isDownloading = true;
        const std::string acknowledged = Answer(code::acknowledge);
        return startCharacter + acknowledged + NextLine();
    }
    return isDownloading ? HandleDownload(message) : std::string();
}

std::string ProgramDouble::HandleDownload(const std::string& message) {
    if (message.starts_with(code::dataGood)) {
        refusals = 0;
        return NextLine();
    }
    if (message.starts_with(code::dataBad) && (++refusals < 3 || fault == Fault::FourthTime))
        return Answer(lastDataMessage, true);
    isDownloading = false;
    return Answer(code::cannotGoOn);
}

std::string ProgramDouble::NextLine() {
    const bool isFaulty = answers == faultyAnswer;
    if (isFaulty && fault == Fault::LostLine)
        ++nextLine;
    if (isFaulty && fault == Fault::LineTwice)
        --nextLine;
    if (nextLine >= downloadLines.size() || (isFaulty && fault == Fault::EarlyEnd)) {
        isDownloading = false;
        return Answer(code::downloadEnd);
    }
    lastDataMessage = std::string(code::downloadData) + downloadLines[nextLine++];
    return Answer(lastDataMessage);
}

std::string ProgramDouble::Answer(std::string_view text, bool isRepeat) {
    const bool isFaulty = answers == faultyAnswer;
    if (!isRepeat)
        ++answers;
    const bool wasFaulty = isRepeat && answers == faultyAnswer + 1;
    std::string frame = FrameOf(text);
    if (wasFaulty && fault == Fault::OtherRepeat)
        return FrameOf(std::string(text) + "0");
    if (wasFaulty && fault == Fault::EndForRepeat)
        return FrameOf(code::downloadEnd);
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
        return FrameOf(code::downloadData);
    case Fault::Endless:
        return std::string(5000, 'x');
    case Fault::OtherMessage:
        return FrameOf(code::dataGood);
    case Fault::GivesUp:
        return FrameOf(code::cannotGoOn);
    default:
        return frame;
    }
}

}
