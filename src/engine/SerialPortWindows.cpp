#include "engine/SerialPortWindows.h"

#include "engine/PortNames.h"
#include "framework/SystemErrorText.h"

namespace tarvin {

namespace {

PortError Failure(DWORD error) {
    const bool gone = error == ERROR_DEVICE_NOT_CONNECTED || error == ERROR_GEN_FAILURE || error == ERROR_BAD_COMMAND ||
                      error == ERROR_ACCESS_DENIED || error == ERROR_DEVICE_REMOVED || error == ERROR_FILE_NOT_FOUND;
    return {true, gone, SystemErrorText(error)};
}

PortError Check(BOOL succeeded) {
    return succeeded ? PortError() : Failure(::GetLastError());
}

}

std::unique_ptr<SerialPort> MakeSerialPort(const PortNames& names) {
    return std::make_unique<SerialPortWindows>(names);
}

SerialPortWindows::SerialPortWindows(const PortNames& portNames)
    : names(portNames), wakeEvent(::CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
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
    handle = ::CreateFileW(path->c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    return Check(IsOpen());
}

PortError SerialPortWindows::Close() {
    if (!IsOpen())
        return {};
    const PortError error = Check(::CloseHandle(handle));
    handle = INVALID_HANDLE_VALUE;
    return error;
}

PortError SerialPortWindows::SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) {
    return Check(::SetupComm(handle, static_cast<DWORD>(inputBytes), static_cast<DWORD>(outputBytes)));
}

PortError SerialPortWindows::FetchState() {
    return Check(::GetCommState(handle, &controlBlock));
}

PortError SerialPortWindows::ApplyMode(const std::string& mode) {
    const KelText text = FromUtf8(mode);
    return Check(::BuildCommDCBW(reinterpret_cast<const wchar_t*>(text.c_str()), &controlBlock));
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
    return Check(::SetCommState(handle, &controlBlock));
}

PortError SerialPortWindows::SetTimeouts(std::chrono::milliseconds writeTotal) {
    COMMTIMEOUTS timeouts = {};
    timeouts.ReadIntervalTimeout = 0xFFFFFFFF;
    timeouts.WriteTotalTimeoutConstant = static_cast<DWORD>(writeTotal.count());
    return Check(::SetCommTimeouts(handle, &timeouts));
}

void SerialPortWindows::Purge() {
    ::PurgeComm(handle, PURGE_TXCLEAR);
    ::PurgeComm(handle, PURGE_RXCLEAR);
}

PortError SerialPortWindows::GetStatus(LineStatus& status) {
    DWORD errors = 0;
    COMSTAT line = {};
    if (!::ClearCommError(handle, &errors, &line))
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
    const BOOL succeeded = ::ReadFile(handle, room.data(), static_cast<DWORD>(room.size()), &count, nullptr);
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
        const BOOL succeeded = ::WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr);
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
        ::CancelSynchronousIo(writingThread);
}

}
