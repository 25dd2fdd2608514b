// The order and the arguments of the communications calls, and what the port makes of each of their answers.

#include "line/PortLink.h"
#include "port/PortNames.h"
#include "port/SerialPortWindows.h"

#include <atomic>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace std::chrono_literals;

namespace {

// The system as the port sees it. There is one at a time, because the calls are plain functions.
struct FakeSystem {
    std::vector<std::string> calls;
    std::map<std::string, DWORD> failures; // by call, the error that it gives
    DCB found = {};                        // the state of the port when it is opened
    DCB committed = {};
    COMSTAT status = {};
    DWORD errors = 0;
    std::string toRead;
    std::string written;
    DWORD acceptedBytes = 100; // of one write
};

FakeSystem* theSystem = nullptr;

const HANDLE portHandle = reinterpret_cast<HANDLE>(0x1234);

template <typename... Arguments>
BOOL Call(const std::string& name, const Arguments&... arguments) {
    std::ostringstream text;
    text << name;
    ((text << ' ' << arguments), ...);
    theSystem->calls.push_back(text.str());
    const auto failure = theSystem->failures.find(name);
    if (failure == theSystem->failures.end())
        return TRUE;
    ::SetLastError(failure->second);
    return FALSE;
}

std::string Narrow(std::wstring_view text) {
    return std::filesystem::path(text).string();
}

CommCalls FakeCalls() {
    CommCalls calls;
    calls.createFile = [](LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD disposition,
                          DWORD flags, HANDLE pattern) -> HANDLE {
        const bool isPlain = security == nullptr && pattern == nullptr && access == (GENERIC_READ | GENERIC_WRITE);
        return Call("CreateFile", Narrow(name), isPlain, share, disposition, flags) ? portHandle : INVALID_HANDLE_VALUE;
    };
    calls.closeHandle = [](HANDLE) -> BOOL { return Call("CloseHandle"); };
    calls.setupComm = [](HANDLE, DWORD input, DWORD output) -> BOOL { return Call("SetupComm", input, output); };
    calls.getCommState = [](HANDLE, LPDCB state) -> BOOL {
        const DWORD length = state->DCBlength;
        *state = theSystem->found;
        return Call("GetCommState", length == sizeof(DCB));
    };
    calls.buildCommDcb = [](LPCWSTR mode, LPDCB state) -> BOOL {
        return Call("BuildCommDCB", Narrow(mode)) && ::BuildCommDCBW(mode, state);
    };
    calls.setCommState = [](HANDLE, LPDCB state) -> BOOL {
        theSystem->committed = *state;
        return Call("SetCommState");
    };
    calls.setCommTimeouts = [](HANDLE, LPCOMMTIMEOUTS times) -> BOOL {
        return Call("SetCommTimeouts", times->ReadIntervalTimeout, times->ReadTotalTimeoutMultiplier,
                    times->ReadTotalTimeoutConstant, times->WriteTotalTimeoutMultiplier,
                    times->WriteTotalTimeoutConstant);
    };
    calls.purgeComm = [](HANDLE, DWORD what) -> BOOL { return Call("PurgeComm", what); };
    calls.escapeCommFunction = [](HANDLE, DWORD what) -> BOOL { return Call("EscapeCommFunction", what); };
    calls.clearCommError = [](HANDLE, LPDWORD errors, LPCOMSTAT status) -> BOOL {
        *errors = theSystem->errors;
        *status = theSystem->status;
        return Call("ClearCommError");
    };
    calls.readFile = [](HANDLE, LPVOID room, DWORD size, LPDWORD count, LPOVERLAPPED overlapped) -> BOOL {
        *count = static_cast<DWORD>(theSystem->toRead.copy(static_cast<char*>(room), size));
        return Call("ReadFile", size, overlapped == nullptr);
    };
    calls.writeFile = [](HANDLE, LPCVOID bytes, DWORD size, LPDWORD count, LPOVERLAPPED overlapped) -> BOOL {
        *count = std::min(size, theSystem->acceptedBytes);
        theSystem->written.append(static_cast<const char*>(bytes), *count);
        return Call("WriteFile", size, overlapped == nullptr);
    };
    calls.timeBeginPeriod = [](UINT period) -> MMRESULT { return static_cast<MMRESULT>(!Call("begin", period)); };
    calls.timeEndPeriod = [](UINT period) -> MMRESULT { return static_cast<MMRESULT>(!Call("end", period)); };
    return calls;
}

class Fixture {
public:
    Fixture() { theSystem = &system; }
    ~Fixture() { theSystem = nullptr; }

    // The engine's link, with a port on the fake system.
    std::unique_ptr<PortLink> MakeLink() {
        return std::make_unique<PortLink>(std::make_unique<SerialPortWindows>(names, FakeCalls()));
    }
    // Opens the port and keeps its problems.
    void Open(PortLink& link, const DownloadSettings& settings) {
        for (PortProblem& problem : link.Open(settings, u"LASER"))
            problems.push_back(std::move(problem));
    }

    FakeSystem system;
    PortNames names{"KEL.INI"};
    std::vector<PortProblem> problems;
};

using Strings = std::vector<std::string>;

const Strings configuration = {"CreateFile \\\\.\\COM12 1 0 3 128",
                               "begin 1",
                               "SetupComm 4000 1000",
                               "GetCommState 1",
                               "BuildCommDCB baud=2400 parity=N data=8 stop=1",
                               "SetCommState",
                               "SetCommTimeouts 4294967295 0 0 0 10000",
                               "PurgeComm 4",
                               "PurgeComm 8"};

const Strings closing = {"PurgeComm 4", "PurgeComm 8", "CloseHandle", "end 1"};

DownloadSettings Settings(const KelText& flowControl = u"Xon/Xoff") {
    DownloadSettings settings;
    settings.port = u"COM12";
    settings.baudRate = u"2400";
    settings.parity = u"None";
    settings.dataBits = u"8";
    settings.stopBits = u"1";
    settings.flowControl = flowControl;
    return settings;
}

Strings Joined(Strings first, const Strings& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

}

TEST_CASE("SerialPortWindows: opening, configuring, opening again and closing make these calls in this order") {
    Fixture fixture;
    {
        const auto link = fixture.MakeLink();
        fixture.Open(*link, Settings());
        CHECK(fixture.system.calls == configuration);
        CHECK(link->Title() == u"LASER COM12:2400,N,8,1,Xon/Xoff");
        fixture.Open(*link, Settings());
        CHECK(fixture.system.calls == Joined(Joined(configuration, closing), configuration));
        fixture.system.calls.clear();
        link->Close();
        CHECK(fixture.system.calls == closing);
    }
    // The destructor does not close a port again.
    CHECK(fixture.system.calls == closing);
    CHECK(fixture.problems.empty());
}

TEST_CASE("SerialPortWindows: each failed step is reported in the system's words, and a refused step ends the "
          "configuration") {
    struct Case {
        std::string call;
        const char16_t* caption;
        std::size_t callCount; // of the configuration's, from the first
        bool isPurged;
        bool isLinked;
    };
    const Case cases[] = {
        {"CreateFile", u"Open Comm", 1, false, false},       {"SetupComm", u"Set Comm Buffer Sizes", 7, true, true},
        {"GetCommState", u"Get Comm State", 7, true, true},  {"BuildCommDCB", u"Update Comm State", 5, true, false},
        {"SetCommState", u"Set Comm State", 6, true, false}, {"SetCommTimeouts", u"Setup_Timeouts", 7, true, false},
    };
    for (const Case& each : cases) {
        CAPTURE(each.call);
        Fixture fixture;
        fixture.system.failures[each.call] = ERROR_NOT_ENOUGH_MEMORY;
        const auto link = fixture.MakeLink();
        fixture.Open(*link, Settings());
        Strings expected(configuration.begin(), configuration.begin() + static_cast<std::ptrdiff_t>(each.callCount));
        if (each.isPurged)
            expected = Joined(expected, {"PurgeComm 4", "PurgeComm 8"});
        // A device that refuses the settings would run in another mode.
        const bool isClosedAgain = each.call == "SetCommState";
        if (isClosedAgain)
            expected = Joined(expected, closing);
        // A port that is not open leaves the clock of the system as it is.
        CHECK(fixture.system.calls == expected);
        CHECK(link->IsOpen() == (each.call != "CreateFile" && !isClosedAgain));
        CHECK(link->Title() == (each.isLinked ? u"LASER COM12:2400,N,8,1,Xon/Xoff" : u"LASER - No Link"));
        REQUIRE(fixture.problems.size() == 1);
        CHECK(fixture.problems[0].stepName == each.caption);
        // The words of the system, without the line end that it adds.
        CHECK(fixture.problems[0].text.starts_with(u"COM12\n"));
        CHECK(fixture.problems[0].text.size() > 10);
        CHECK(fixture.problems[0].text.find(u'\r') == KelText::npos);
    }
    Fixture fixture;
    const auto link = fixture.MakeLink();
    fixture.Open(*link, Settings());
    fixture.system.failures["CloseHandle"] = ERROR_NOT_ENOUGH_MEMORY;
    fixture.Open(*link, Settings());
    REQUIRE(fixture.problems.size() == 1);
    CHECK(fixture.problems[0].stepName == u"Close Previous Connection");
    CHECK(link->Title() == u"LASER COM12:2400,N,8,1,Xon/Xoff");
}

TEST_CASE("SerialPortWindows: the control block gets the handshake of the settings and keeps its other fields") {
    struct Case {
        const char16_t* flowControl;
        bool cts;
        bool dsr;
        // fOutX and fInX, fOutxCtsFlow, fOutxDsrFlow, fDsrSensitivity, fRtsControl, fDtrControl
        std::vector<DWORD> expected;
    };
    constexpr DWORD enable = RTS_CONTROL_ENABLE;
    constexpr DWORD handshake = RTS_CONTROL_HANDSHAKE;
    const Case cases[] = {
        {u"Xon/Xoff", true, true, {1, 1, 0, 0, 0, enable, enable}},
        {u"None", true, true, {0, 0, 0, 0, 0, enable, enable}},
        {u"Hardware", true, false, {0, 0, 1, 0, 1, handshake, enable}},
        {u"Hardware", false, true, {0, 0, 0, 1, 1, enable, handshake}},
        {u"Hardware", false, false, {0, 0, 0, 0, 1, enable, enable}},
        {u"Combined", true, true, {1, 1, 1, 1, 1, handshake, handshake}},
        // No known flow control: the handshake stays as it was found, without the sensitivity.
        {u"", true, true, {0, 1, 1, 0, 0, RTS_CONTROL_TOGGLE, DTR_CONTROL_DISABLE}},
    };
    for (const Case& each : cases) {
        CAPTURE(ToUtf8(each.flowControl));
        CAPTURE(each.cts);
        Fixture fixture;
        DCB& found = fixture.system.found;
        found.DCBlength = sizeof found;
        found.fInX = found.fOutxCtsFlow = found.fDsrSensitivity = found.fErrorChar = 1;
        found.fRtsControl = RTS_CONTROL_TOGGLE;
        found.fTXContinueOnXoff = 1;
        found.XonLim = 77;
        found.XoffLim = 88;
        found.ErrorChar = 'e';
        DownloadSettings settings = Settings(each.flowControl);
        settings.baudRate = u"19200";
        settings.parity = u"Even";
        settings.dataBits = u"7";
        settings.stopBits = u"2";
        settings.ctsFlow = each.cts;
        settings.dsrFlow = each.dsr;
        const auto link = fixture.MakeLink();
        fixture.Open(*link, settings);
        const DCB& state = fixture.system.committed;
        CHECK(std::vector<DWORD>{state.fOutX, state.fInX, state.fOutxCtsFlow, state.fOutxDsrFlow, state.fDsrSensitivity,
                                 state.fRtsControl, state.fDtrControl} == each.expected);
        CHECK(state.BaudRate == 19200);
        CHECK(state.Parity == EVENPARITY);
        CHECK(state.ByteSize == 7);
        CHECK(state.StopBits == TWOSTOPBITS);
        CHECK(state.XonChar == 0x11);
        CHECK(state.XoffChar == 0x13);
        CHECK(std::vector<DWORD>{state.XonLim, state.XoffLim, state.fTXContinueOnXoff, state.fErrorChar} ==
              std::vector<DWORD>{77, 88, 1, 1});
        CHECK(state.ErrorChar == 'e');
    }
}

TEST_CASE("SerialPortWindows: a status gives each hold, count and error in its own field") {
    Fixture fixture;
    SerialPortWindows port(fixture.names, FakeCalls());
    REQUIRE(port.Open(u"COM1"));
    const auto told = [&] {
        const auto status = port.GetStatus();
        REQUIRE(status);
        const LineHolds& holds = status->holds;
        return std::vector<std::size_t>{holds.cts,      holds.dsr,          holds.rlsd,         holds.xoff,
                                        holds.xoffSent, status->inputCount, status->outputCount};
    };
    COMSTAT& line = fixture.system.status;
    line.fCtsHold = line.fRlsdHold = line.fXoffSent = 1;
    line.cbInQue = 12;
    line.cbOutQue = 34;
    CHECK(told() == std::vector<std::size_t>{1, 0, 1, 0, 1, 12, 34});
    line = {};
    line.fDsrHold = line.fXoffHold = line.fEof = line.fTxim = 1;
    CHECK(told() == std::vector<std::size_t>{0, 1, 0, 1, 0, 0, 0});
    const auto errors = [&](DWORD flags) {
        fixture.system.errors = flags;
        return port.GetStatus()->errors;
    };
    CHECK(errors(CE_FRAME | CE_BREAK) == LineErrors{0, 1, 0, 1});
    CHECK(errors(CE_RXPARITY | CE_OVERRUN) == LineErrors{1, 0, 1, 0});
    CHECK(errors(CE_RXOVER) == LineErrors{0, 0, 1, 0});
    CHECK(errors(0) == LineErrors{});
}

TEST_CASE("SerialPortWindows: each call tells a device that was pulled out from one that has a fault") {
    struct Case {
        DWORD error;
        bool isGone;
    };
    for (const auto& [error, isGone] :
         {Case{ERROR_DEVICE_NOT_CONNECTED, true}, Case{ERROR_GEN_FAILURE, true}, Case{ERROR_BAD_COMMAND, true},
          Case{ERROR_ACCESS_DENIED, true}, Case{433, true}, Case{ERROR_NOT_ENOUGH_MEMORY, false},
          Case{ERROR_OPERATION_ABORTED, false}, Case{ERROR_COUNTER_TIMEOUT, false}}) {
        CAPTURE(error);
        Fixture fixture;
        SerialPortWindows port(fixture.names, FakeCalls());
        REQUIRE(port.Open(u"COM1"));
        for (const char* call : {"ClearCommError", "ReadFile", "WriteFile"})
            fixture.system.failures[call] = error;
        std::uint8_t byte = 0;
        const auto status = port.GetStatus();
        REQUIRE_FALSE(status);
        CHECK(status.Reason().isGone == isGone);
        const auto read = port.Read({&byte, 1});
        REQUIRE_FALSE(read);
        CHECK(read.Reason().isGone == isGone);
        // The program itself cancels a write: this is no fault.
        std::size_t count = 0;
        const Result<> write = port.Write({&byte, 1}, count);
        REQUIRE(!write == (error != ERROR_OPERATION_ABORTED));
        CHECK((!write && write.Reason().isGone) == isGone);
    }
}

TEST_CASE("SerialPortWindows: reads and writes are synchronous, and a write that timed out gives its byte count") {
    Fixture fixture;
    SerialPortWindows port(fixture.names, FakeCalls());
    REQUIRE(port.Open(u"COM1"));
    fixture.system.calls.clear();
    fixture.system.toRead = "abc";
    fixture.system.acceptedBytes = 2;
    std::uint8_t room[50] = {};
    const auto read = port.Read(room);
    REQUIRE(read);
    CHECK(*read == 3);
    std::size_t count = 0;
    CHECK(port.Write({room, 3}, count));
    CHECK(count == 2);
    CHECK(fixture.system.written == "ab");
    CHECK(fixture.system.calls == Strings{"ReadFile 50 1", "WriteFile 3 1"});
}

TEST_CASE("SerialPortWindows: a cancel ends a write that waits, and later writes take nothing") {
    Fixture fixture;
    static HANDLE readEnd = nullptr;
    CommCalls calls = FakeCalls();
    // A pipe without a reader: a write to its handle really waits.
    calls.createFile = [](LPCWSTR, DWORD, DWORD, LPSECURITY_ATTRIBUTES, DWORD, DWORD, HANDLE) -> HANDLE {
        HANDLE writeEnd = INVALID_HANDLE_VALUE;
        CHECK(::CreatePipe(&readEnd, &writeEnd, nullptr, 4096));
        return writeEnd;
    };
    calls.closeHandle = &::CloseHandle;
    calls.writeFile = [](HANDLE handle, LPCVOID bytes, DWORD size, LPDWORD count, LPOVERLAPPED overlapped) -> BOOL {
        Call("WriteFile");
        return ::WriteFile(handle, bytes, size, count, overlapped);
    };
    SerialPortWindows port(fixture.names, calls);
    REQUIRE(port.Open(u"COM1"));
    const std::vector<std::uint8_t> bytes(1000000);
    std::atomic<bool> hasEnded = false;
    bool isSuccess = false;
    std::size_t count = 0;
    std::thread writer([&] {
        isSuccess = static_cast<bool>(port.Write(bytes, count));
        hasEnded = true;
    });
    // A pipe that holds bytes is full. The test cannot see whether the write waits yet, so it cancels again and again,
    // as the engine does.
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    DWORD held = 0;
    while (held == 0 && ::PeekNamedPipe(readEnd, nullptr, 0, nullptr, &held, nullptr)) {
        if (std::chrono::steady_clock::now() > deadline)
            break;
    }
    CHECK_FALSE(hasEnded);
    while (!hasEnded && std::chrono::steady_clock::now() < deadline) {
        port.CancelWrite();
        std::this_thread::yield();
    }
    const bool isCancelled = hasEnded;
    ::CloseHandle(readEnd);
    writer.join();
    CHECK(isCancelled);
    CHECK(isSuccess);
    fixture.system.calls.clear();
    CHECK(port.Write(bytes, count));
    CHECK(count == 0);
    CHECK(fixture.system.calls.empty());
}

TEST_CASE("SerialPortWindows: a wait ends after a millisecond or a wake, and without a port after its whole time") {
    Fixture fixture;
    SerialPortWindows port(fixture.names, FakeCalls());
    const auto lasted = [&](std::chrono::nanoseconds longest) {
        const auto begin = std::chrono::steady_clock::now();
        port.Wait(longest, SerialPort::Awaited::BytesToo);
        return std::chrono::steady_clock::now() - begin;
    };
    CHECK(lasted(50ms) >= 45ms);
    port.Wake();
    CHECK(lasted(1h) < 10s);
    REQUIRE(port.Open(u"COM1"));
    CHECK(lasted(1h) < 10s);
}
