#include "port/SerialPortWindows.h"

#include "base/System.h"
#include "port/PortNames.h"

#include <algorithm>
#include <cassert>
#include <iterator>

namespace tarvin {

namespace {

// The period of the system's clock while a port is open. With the usual period a wait of 1 ms takes up to 16 ms, and an
// answer to the controller as long.
constexpr UINT timerMilliseconds = 1;

// ERROR_NO_SUCH_DEVICE, which older mingw headers do not have.
constexpr DWORD noSuchDevice = 433;

// The errors that drivers of USB adapters give on a handle whose device was pulled out. Each driver has its own.
bool MeansGone(DWORD error) {
    constexpr DWORD known[] = {
        ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_INVALID_HANDLE,       ERROR_BAD_UNIT,
        ERROR_NOT_READY,      ERROR_BAD_COMMAND,   ERROR_GEN_FAILURE,          noSuchDevice,
        ERROR_DEV_NOT_EXIST,  ERROR_IO_DEVICE,     ERROR_DEVICE_NOT_CONNECTED, ERROR_DEVICE_REMOVED};
    return std::ranges::find(known, error) != std::end(known);
}

Error Failure(DWORD error) {
    return {SystemErrorText(error), MeansGone(error)};
}

Result<> Check(BOOL succeeded) {
    return succeeded ? Result<>() : Failure(::GetLastError());
}

}

std::unique_ptr<SerialPort> MakeSerialPort(const PortNames& names) {
    return std::make_unique<SerialPortWindows>(names);
}

SerialPortWindows::SerialPortWindows(const PortNames& names, const CommCalls& calls)
    : names(names), calls(calls), wakeEvent(::CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
    controlBlock.DCBlength = sizeof controlBlock;
}

SerialPortWindows::~SerialPortWindows() {
    (void)SerialPortWindows::Close();
    ::CloseHandle(wakeEvent);
}

Result<> SerialPortWindows::Open(const KelText& portName) {
    assert(!IsOpen());
    const auto path = names.DeviceOf(portName);
    if (!path)
        return Failure(ERROR_FILE_NOT_FOUND);
    handle = calls.createFile(path->c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (!IsOpen())
        return Failure(::GetLastError());
    calls.timeBeginPeriod(timerMilliseconds);
    return {};
}

Result<> SerialPortWindows::Close() {
    if (!IsOpen())
        return {};
    Result<> result = Check(calls.closeHandle(handle));
    handle = INVALID_HANDLE_VALUE;
    calls.timeEndPeriod(timerMilliseconds);
    return result;
}

Result<> SerialPortWindows::SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) {
    assert(IsOpen());
    return Check(calls.setupComm(handle, static_cast<DWORD>(inputBytes), static_cast<DWORD>(outputBytes)));
}

Result<> SerialPortWindows::FetchState() {
    assert(IsOpen());
    return Check(calls.getCommState(handle, &controlBlock));
}

Result<> SerialPortWindows::ApplyMode(const std::string& mode) {
    assert(IsOpen());
    const KelText text = FromUtf8(mode);
    return Check(calls.buildCommDcb(reinterpret_cast<const wchar_t*>(text.c_str()), &controlBlock));
}

Result<> SerialPortWindows::CommitState(const std::optional<FlowControl>& flow) {
    assert(IsOpen());
    // Without DSR sensitivity a cable that lacks the wire still brings bytes in; only a flow control can ask for it.
    controlBlock.fDsrSensitivity = FALSE;
    controlBlock.XonChar = xon;
    controlBlock.XoffChar = xoff;
    if (flow) {
        controlBlock.fOutX = controlBlock.fInX = flow->software;
        controlBlock.fOutxCtsFlow = flow->ctsOutput;
        controlBlock.fOutxDsrFlow = flow->dsrOutput;
        controlBlock.fDsrSensitivity = flow->dsrSensitivity;
        controlBlock.fRtsControl = flow->rtsHandshake ? RTS_CONTROL_HANDSHAKE : RTS_CONTROL_ENABLE;
        controlBlock.fDtrControl = flow->dtrHandshake ? DTR_CONTROL_HANDSHAKE : DTR_CONTROL_ENABLE;
    }
    return Check(calls.setCommState(handle, &controlBlock));
}

Result<> SerialPortWindows::SetTimeouts(std::chrono::milliseconds writeTotal) {
    assert(IsOpen());
    COMMTIMEOUTS timeouts = {};
    // The longest interval together with no total times: a read gives what has arrived and returns at once.
    timeouts.ReadIntervalTimeout = 0xFFFFFFFF;
    timeouts.WriteTotalTimeoutConstant = static_cast<DWORD>(writeTotal.count());
    return Check(calls.setCommTimeouts(handle, &timeouts));
}

void SerialPortWindows::Purge() {
    assert(IsOpen());
    calls.purgeComm(handle, PURGE_TXCLEAR);
    calls.purgeComm(handle, PURGE_RXCLEAR);
}

Result<LineStatus> SerialPortWindows::GetStatus() {
    assert(IsOpen());
    DWORD errors = 0;
    COMSTAT line = {};
    if (!calls.clearCommError(handle, &errors, &line))
        return Failure(::GetLastError());
    LineStatus status;
    status.errors.parity = (errors & CE_RXPARITY) != 0 ? 1 : 0;
    status.errors.framing = (errors & CE_FRAME) != 0 ? 1 : 0;
    status.errors.overrun = (errors & (CE_OVERRUN | CE_RXOVER)) != 0 ? 1 : 0;
    status.errors.breaks = (errors & CE_BREAK) != 0 ? 1 : 0;
    status.holds.cts = line.fCtsHold != 0;
    status.holds.dsr = line.fDsrHold != 0;
    status.holds.rlsd = line.fRlsdHold != 0;
    status.holds.xoff = line.fXoffHold != 0;
    status.holds.xoffSent = line.fXoffSent != 0;
    status.inputCount = line.cbInQue;
    status.outputCount = line.cbOutQue;
    return status;
}

Result<std::size_t> SerialPortWindows::Read(std::span<std::uint8_t> room) {
    assert(IsOpen() && !room.empty());
    DWORD count = 0;
    if (!calls.readFile(handle, room.data(), static_cast<DWORD>(room.size()), &count, nullptr))
        return Failure(::GetLastError());
    return std::size_t{count};
}

Result<> SerialPortWindows::Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) {
    assert(IsOpen());
    byteCount = 0;
    // CancelSynchronousIo takes a thread, and a real handle of it: the one of GetCurrentThread means each caller
    // itself.
    HANDLE thread = nullptr;
    ::DuplicateHandle(::GetCurrentProcess(), ::GetCurrentThread(), ::GetCurrentProcess(), &thread, THREAD_TERMINATE,
                      FALSE, 0);
    bool mayWrite = false;
    {
        const MutexLock lock(writeMutex);
        writingThread = isCancelled ? nullptr : thread;
        mayWrite = writingThread != nullptr;
    }
    DWORD count = 0;
    DWORD error = ERROR_OPERATION_ABORTED;
    if (mayWrite) {
        const BOOL succeeded = calls.writeFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr);
        error = succeeded ? ERROR_SUCCESS : ::GetLastError();
    }
    {
        const MutexLock lock(writeMutex);
        writingThread = nullptr;
    }
    ::CloseHandle(thread);
    byteCount = count;
    // The end of the program has cancelled the write: the line has no fault.
    return error == ERROR_SUCCESS || error == ERROR_OPERATION_ABORTED ? Result<>() : Failure(error);
}

Result<> SerialPortWindows::ReleaseXoff() {
    assert(IsOpen());
    calls.purgeComm(handle, PURGE_TXCLEAR);
    return Check(calls.escapeCommFunction(handle, SETXON));
}

void SerialPortWindows::Wait(std::chrono::nanoseconds longest, Awaited awaited) {
    assert(longest >= std::chrono::nanoseconds::zero());
    // A synchronous handle has no event for bytes that arrive, so the caller looks again after a millisecond.
    const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(longest).count();
    const bool isPortAwaited = IsOpen() && awaited == Awaited::BytesToo;
    const DWORD timeout = isPortAwaited && milliseconds > 0 ? 1 : static_cast<DWORD>(milliseconds);
    ::WaitForSingleObject(wakeEvent, timeout);
}

void SerialPortWindows::Wake() {
    ::SetEvent(wakeEvent);
}

void SerialPortWindows::CancelWrite() {
    const MutexLock lock(writeMutex);
    isCancelled = true;
    if (writingThread != nullptr)
        calls.cancelSynchronousIo(writingThread);
}

}
