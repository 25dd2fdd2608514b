// A serial device on the communications calls with a synchronous handle.

#include "base/System.h"
#include "base/WindowsApi.h"
#include "controller/ControllerLine.h"

#include <algorithm>

namespace tarvin::controller {

namespace {

// A read or write returns at least this often to look at its deadline. A byte that arrives ends a read at once.
constexpr DWORD longestCallMilliseconds = 20;

KelText LastSystemError() {
    return SystemErrorText(::GetLastError());
}

class DeviceLine : public ControllerLine {
public:
    // Takes over the handle.
    explicit DeviceLine(HANDLE handle) : handle(handle) {}
    ~DeviceLine() override { ::CloseHandle(handle); }
    DeviceLine(const DeviceLine&) = delete;
    DeviceLine& operator=(const DeviceLine&) = delete;

    Status Read(char* bytes, std::size_t capacity, Clock::TimePoint deadline, std::size_t& byteCount) override {
        byteCount = 0;
        const DWORD wanted = static_cast<DWORD>(std::min<std::size_t>(capacity, 1U << 16));
        for (;;) {
            DWORD count = 0;
            if (!::ReadFile(handle, bytes, wanted, &count, nullptr))
                return Fail();
            byteCount = count;
            if (count > 0)
                return Status::Done;
            if (SteadyClock().Now() >= deadline)
                return Status::TimedOut;
        }
    }

    Status Write(std::string_view bytes, Clock::TimePoint deadline) override {
        while (!bytes.empty()) {
            const DWORD wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1U << 16));
            DWORD count = 0;
            if (!::WriteFile(handle, bytes.data(), wanted, &count, nullptr))
                return Fail();
            bytes.remove_prefix(count);
            if (count == 0 && SteadyClock().Now() >= deadline)
                return Status::TimedOut;
        }
        return Status::Done;
    }

    Status WaitForPeer(Clock::TimePoint) override { return Status::Done; }

    void Pause(Clock::Duration duration) override {
        ::Sleep(static_cast<DWORD>(std::chrono::ceil<std::chrono::milliseconds>(duration).count()));
    }

    const std::string& LastError() const override { return lastError; }

private:
    Status Fail() {
        lastError = ToUtf8(LastSystemError());
        return Status::Failed;
    }

    const HANDLE handle;
    std::string lastError;
};

bool SetUp(HANDLE handle, unsigned bitsPerSecond) {
    DCB settings = {};
    settings.DCBlength = sizeof settings;
    if (!::GetCommState(handle, &settings))
        return false;
    settings.BaudRate = bitsPerSecond;
    settings.ByteSize = 8;
    settings.Parity = NOPARITY;
    settings.StopBits = ONESTOPBIT;
    settings.fBinary = TRUE;
    settings.fParity = FALSE;
    settings.fOutxCtsFlow = FALSE;
    settings.fOutxDsrFlow = FALSE;
    settings.fDsrSensitivity = FALSE;
    settings.fOutX = FALSE;
    settings.fInX = FALSE;
    settings.fNull = FALSE;
    settings.fErrorChar = FALSE;
    settings.fAbortOnError = FALSE;
    settings.fDtrControl = DTR_CONTROL_ENABLE;
    settings.fRtsControl = RTS_CONTROL_ENABLE;
    COMMTIMEOUTS timeouts = {};
    // These three values together make a read return the bytes that are there at once, or wait for the first one.
    timeouts.ReadIntervalTimeout = MAXDWORD;
    timeouts.ReadTotalTimeoutMultiplier = MAXDWORD;
    timeouts.ReadTotalTimeoutConstant = longestCallMilliseconds;
    timeouts.WriteTotalTimeoutConstant = longestCallMilliseconds;
    return ::SetCommState(handle, &settings) && ::SetCommTimeouts(handle, &timeouts) &&
           ::PurgeComm(handle, PURGE_RXCLEAR | PURGE_TXCLEAR);
}

}

Result<std::unique_ptr<ControllerLine>> OpenDevice(const std::string& device, unsigned bitsPerSecond) {
    // Names such as COM10 open only with this prefix.
    const std::string path = device.starts_with("\\\\") ? device : "\\\\.\\" + device;
    HANDLE handle = ::CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return Error{FromUtf8(device + ": ") + LastSystemError()};
    if (!SetUp(handle, bitsPerSecond)) {
        const Error error = {FromUtf8(device + ": ") + LastSystemError()};
        ::CloseHandle(handle);
        return error;
    }
    return std::unique_ptr<ControllerLine>(std::make_unique<DeviceLine>(handle));
}

}
