#include "port/SerialPortWindows.h"

#include "base/System.h"
#include "port/PortNames.h"

#include <algorithm>
#include <iterator>

namespace tarvin {

namespace {

// A wait of one millisecond takes up to sixteen otherwise, which would be the program's answering time.
constexpr UINT timerMilliseconds = 1;

// ERROR_NO_SUCH_DEVICE, which older headers lack.
constexpr DWORD noSuchDevice = 433;

// What the drivers of plug-in adapters answer on a handle whose device was pulled out; they do not agree on one.
bool MeansGone(DWORD error) {
    constexpr DWORD known[] = {
        ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_INVALID_HANDLE,       ERROR_BAD_UNIT,
        ERROR_NOT_READY,      ERROR_BAD_COMMAND,   ERROR_GEN_FAILURE,          noSuchDevice,
        ERROR_DEV_NOT_EXIST,  ERROR_IO_DEVICE,     ERROR_DEVICE_NOT_CONNECTED, ERROR_DEVICE_REMOVED};
    return std::ranges::find(known, error) != std::end(known);
}

PortError Failure(DWORD error) {
    return {true, MeansGone(error), SystemErrorText(error)};
}

PortError Check(BOOL succeeded) {
    return succeeded ? PortError() : Failure(::GetLastError());
}

}

std::unique_ptr<SerialPort> MakeSerialPort(const PortNames& names) {
    return std::make_unique<SerialPortWindows>(names);
}

SerialPortWindows::SerialPortWindows(const PortNames& portNames, const CommCalls& commCalls)
    : names(portNames), calls(commCalls), wakeEvent(::CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
    controlBlock.DCBlength = sizeof controlBlock;
}

SerialPortWindows::~SerialPortWindows() {
    SerialPortWindows::Close();
    ::CloseHandle(wakeEvent);
}

PortError SerialPortWindows::Open(const KelText& portName) {
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

PortError SerialPortWindows::Close() {
    if (!IsOpen())
        return {};
    const PortError error = Check(calls.closeHandle(handle));
    handle = INVALID_HANDLE_VALUE;
    calls.timeEndPeriod(timerMilliseconds);
    return error;
}

PortError SerialPortWindows::SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) {
    return Check(calls.setupComm(handle, static_cast<DWORD>(inputBytes), static_cast<DWORD>(outputBytes)));
}

PortError SerialPortWindows::FetchState() {
    return Check(calls.getCommState(handle, &controlBlock));
}

PortError SerialPortWindows::ApplyMode(const std::string& mode) {
    const KelText text = FromUtf8(mode);
    return Check(calls.buildCommDcb(reinterpret_cast<const wchar_t*>(text.c_str()), &controlBlock));
}

PortError SerialPortWindows::CommitState(const std::optional<FlowControl>& flow) {
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

PortError SerialPortWindows::SetTimeouts(std::chrono::milliseconds writeTotal) {
    COMMTIMEOUTS timeouts = {};
    timeouts.ReadIntervalTimeout = 0xFFFFFFFF;
    timeouts.WriteTotalTimeoutConstant = static_cast<DWORD>(writeTotal.count());
    return Check(calls.setCommTimeouts(handle, &timeouts));
}

void SerialPortWindows::Purge() {
    calls.purgeComm(handle, PURGE_TXCLEAR);
    calls.purgeComm(handle, PURGE_RXCLEAR);
}

PortError SerialPortWindows::GetStatus(LineStatus& status) {
    DWORD errors = 0;
    COMSTAT line = {};
    if (!calls.clearCommError(handle, &errors, &line))
        return Failure(::GetLastError());
    status.errors = errors;
    status.ctsHold = line.fCtsHold != 0;
    status.dsrHold = line.fDsrHold != 0;
    status.rlsdHold = line.fRlsdHold != 0;
    status.xoffHold = line.fXoffHold != 0;
    status.xoffSent = line.fXoffSent != 0;
    status.inputCount = line.cbInQue;
    status.outputCount = line.cbOutQue;
    return {};
}

PortError SerialPortWindows::Read(std::span<std::uint8_t> room, std::size_t& byteCount) {
    DWORD count = 0;
    const BOOL succeeded = calls.readFile(handle, room.data(), static_cast<DWORD>(room.size()), &count, nullptr);
    byteCount = count;
    return Check(succeeded);
}

PortError SerialPortWindows::Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) {
    byteCount = 0;
    HANDLE thread = nullptr;
    ::DuplicateHandle(::GetCurrentProcess(), ::GetCurrentThread(), ::GetCurrentProcess(), &thread, THREAD_TERMINATE,
                      FALSE, 0);
    {
        const std::lock_guard lock(writeMutex);
        writingThread = isCancelled ? nullptr : thread;
    }
    DWORD count = 0;
    DWORD error = ERROR_OPERATION_ABORTED;
    if (writingThread != nullptr) {
        const BOOL succeeded = calls.writeFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr);
        error = succeeded ? ERROR_SUCCESS : ::GetLastError();
    }
    {
        const std::lock_guard lock(writeMutex);
        writingThread = nullptr;
    }
    ::CloseHandle(thread);
    byteCount = count;
    // A write that the closing of the program has cancelled is no fault of the line.
    return error == ERROR_SUCCESS || error == ERROR_OPERATION_ABORTED ? PortError() : Failure(error);
}

void SerialPortWindows::Wait(std::chrono::nanoseconds longest, Awaited awaited) {
    // Nothing wakes a synchronous handle's owner when bytes arrive; without a port only commands and timers count.
    const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(longest).count();
    const bool isPortAwaited = IsOpen() && awaited == Awaited::BytesToo;
    const DWORD timeout = isPortAwaited && milliseconds > 0 ? 1 : static_cast<DWORD>(milliseconds);
    ::WaitForSingleObject(wakeEvent, timeout);
}

void SerialPortWindows::Wake() {
    ::SetEvent(wakeEvent);
}

void SerialPortWindows::CancelWrite() {
    const std::lock_guard lock(writeMutex);
    isCancelled = true;
    if (writingThread != nullptr)
        calls.cancelSynchronousIo(writingThread);
}

}
