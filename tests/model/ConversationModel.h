#pragma once
// The program's side of the conversation as a small state machine, written from docs/protocol.md. It shares no code
// with the program, so that the two can be compared.

#include "model/Event.h"
#include "model/View.h"

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <vector>

namespace tarvin::test {

// What a machine is set to, and what lies in its folder at the beginning.
struct Situation {
    enum class Check { Off, EndTheUpload, WaitForTheRepeat };

    std::string name;
    int delaySeconds = 0;
    bool hasStartCharacter = false;
    Check check = Check::EndTheUpload;
    bool sendsChecksums = false;
    int replacedFilesKept = 5;
    // The system cannot tell whether another program is writing a file.
    bool hidesWriters = false;
    Files files;
    // Numbers whose ".part" another program is writing.
    std::vector<std::string> writtenElsewhere;
    // The prelude and the events may change what the controller is taken for. It takes eight messages.
    bool learnsChecksums = false;
    // Every history of messages is a state of its own while checksums are learned, so there are too many further down.
    int deepest = 100;
    std::vector<Event> prelude;
    std::vector<Event> alphabet;
};

inline constexpr char startCharacter = 0x12;

class ConversationModel {
public:
    explicit ConversationModel(const Situation& situation);

    void Handle(const Event& event);

    View Seen() const;
    // Everything that the future depends on. Two models with equal keys behave alike.
    std::string Key() const;

private:
    enum class Phase { Idle, Delay, Look, Downloading, Uploading, Naming };

    struct Message {
        std::string text;
        bool isRight = false;
        bool isDamaged = false;
        int driverErrors = 0;

        bool Holds(const char* code) const { return text.find(code) != std::string::npos; }
        bool HoldsKnownCode() const;
        std::string Payload() const;
        std::string Number() const;
    };

    void Receive(const Event& event);
    void Pass(std::chrono::milliseconds duration);
    void LoseLink();
    void Release();

    void Learn(const Message& message);
    void Answer(const Message& message);
    bool RepeatsLastAnswer(const Message& message);
    bool RefusesLostTransfer(const Message& message);
    bool IsDamagedPartOfUpload(const Message& message) const;
    bool AwaitsRepeat(const Message& message) const;
    void OnDamagedPart(const Message& message);
    void OnData(const Message& message);
    void OnUploadEnd();
    void TryName();
    void RefuseEnd();
    void OnUploadRequest(const Message& message);
    void OnDownloadRequest(const Message& message);
    void BeginDownload();
    void StartDownload();
    void SendNextLine();
    void EndDownload(int newState, const char* answer);

    void Send(const std::string& text);
    void SendLast(const std::string& text, const std::string& repeatedBy);
    void Put(const std::string& frame);
    bool IsHeldUp() const { return isHeld && !waiting.empty(); }
    static void Count(const Message& message, Quality& quality);
    bool HasTransfer() const { return phase != Phase::Idle; }
    void Fail();
    void Record(bool isUpload, const char* outcome, std::int64_t bytes, std::size_t lineCount, const Quality& its);
    void Refuse(int newState, bool isUpload, std::string newNumber, const Quality& its);
    void KeepWhole();

    const Situation* situation;
    Phase phase = Phase::Idle;
    int state = 0;
    std::string number; // of the transfer or refused request last named; empty for a damaged one
    Quality quality;    // of the transfer

    // A download.
    std::string askedNumber;
    std::chrono::milliseconds remaining = {}; // of the delay, of the look, or until the name is given up
    std::vector<std::string> lines;           // with their ends
    std::size_t linesTaken = 0;
    std::string lastDataMessage;
    int failedAttempts = 0;

    // An upload.
    std::string uploadNumber;
    std::string stored;
    std::size_t storedLines = 0;
    bool hasLine = false;
    bool isPartThere = false;
    bool isOlderKept = false;
    int damagedInARow = 0;

    std::int64_t bytesDone = 0;
    std::int64_t bytesTotal = 0;

    std::string lastAnswer;
    std::string lastAnswerRepeatedBy;
    int lastAnswerRepeats = 0;
    bool hasLostTransfer = false;

    bool sendsChecksums = false;
    std::deque<std::string> rightTexts; // of the last 16 messages with data; empty for wrong ones
    int wrongInARow = 0;

    bool isHeld = false;
    std::chrono::milliseconds heldFor = {};
    std::vector<std::string> waiting; // frames that the hold keeps back
    std::string lastMessage;

    DiskFault fault = DiskFault::None;
    bool isNameHeld = false;
    Files files;
    std::vector<std::string> fresh;                           // files that were stored in this run
    std::map<std::string, std::vector<std::string>> replaced; // older contents, oldest first
    std::map<std::string, std::vector<std::string>> whole;    // uploads that could not take their name

    // Of the last event.
    std::string sent;
    std::vector<std::string> records;
};

}
