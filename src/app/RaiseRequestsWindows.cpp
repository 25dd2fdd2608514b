#include "app/RaiseRequests.h"
#include "base/Process.h"
#include "base/WindowsApi.h"

#include <cassert>
#include <iterator>
#include <string>
#include <thread>
#include <utility>

namespace tarvin {

namespace {

// The events of the program with this process number. Each session of the system has its own.
std::wstring EventName(const KelText& address, const wchar_t* what) {
    return L"Local\\TarvinDL " + ToPath(address).native() + L" " + what;
}

constexpr wchar_t raiseEvent[] = L"raise";
constexpr wchar_t raisedEvent[] = L"raised";

class Handle {
public:
    explicit Handle(HANDLE handle) : handle(handle) {}
    ~Handle() {
        if (handle != nullptr)
            ::CloseHandle(handle);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    HANDLE Get() const { return handle; }

private:
    const HANDLE handle;
};

}

struct RaiseRequests::Endpoint {
    explicit Endpoint(const KelText& address)
        : wanted(::CreateEventW(nullptr, FALSE, FALSE, EventName(address, raiseEvent).c_str())),
          raised(
              std::make_shared<Handle>(::CreateEventW(nullptr, FALSE, FALSE, EventName(address, raisedEvent).c_str()))),
          stop(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}

    bool IsUsable() const { return wanted.Get() != nullptr && raised->Get() != nullptr && stop.Get() != nullptr; }

    void Run(const std::function<void(Answer)>& raise) const {
        const HANDLE watched[] = {wanted.Get(), stop.Get()};
        while (::WaitForMultipleObjects(static_cast<DWORD>(std::size(watched)), watched, FALSE, INFINITE) ==
               WAIT_OBJECT_0)
            raise([kept = raised] { ::SetEvent(kept->Get()); });
    }

    const Handle wanted;
    const std::shared_ptr<Handle> raised;
    const Handle stop;
    std::thread thread;
};

RaiseRequests::RaiseRequests()
    : address(ToText(static_cast<std::int64_t>(OwnProcessId()))), endpoint(std::make_unique<Endpoint>(address)) {
    if (!endpoint->IsUsable()) {
        endpoint.reset();
        address.clear();
    }
}

RaiseRequests::~RaiseRequests() {
    if (!endpoint || !endpoint->thread.joinable())
        return;
    ::SetEvent(endpoint->stop.Get());
    endpoint->thread.join();
}

void RaiseRequests::Serve(std::function<void(Answer)> raise) {
    if (!endpoint)
        return;
    assert(!endpoint->thread.joinable());
    endpoint->thread = std::thread([this, kept = std::move(raise)] { endpoint->Run(kept); });
}

RaiseOutcome RequestRaise(const KelText& address, std::chrono::milliseconds patience) {
    const Handle wanted(::OpenEventW(EVENT_MODIFY_STATE, FALSE, EventName(address, raiseEvent).c_str()));
    const Handle raised(::OpenEventW(EVENT_MODIFY_STATE | SYNCHRONIZE, FALSE, EventName(address, raisedEvent).c_str()));
    const auto process = static_cast<DWORD>(LeadingNumber(address).value_or(0));
    const Handle program(::OpenProcess(SYNCHRONIZE, FALSE, process));
    if (wanted.Get() == nullptr || raised.Get() == nullptr || program.Get() == nullptr)
        return RaiseOutcome::Gone;
    // Without this the system lets the other window blink only.
    ::AllowSetForegroundWindow(process);
    // A late answer to an earlier request does not count.
    ::ResetEvent(raised.Get());
    ::SetEvent(wanted.Get());
    const HANDLE watched[] = {raised.Get(), program.Get()};
    switch (::WaitForMultipleObjects(static_cast<DWORD>(std::size(watched)), watched, FALSE,
                                     static_cast<DWORD>(patience.count()))) {
    case WAIT_OBJECT_0:
        return RaiseOutcome::Raised;
    case WAIT_OBJECT_0 + 1:
        return RaiseOutcome::Gone;
    default:
        return RaiseOutcome::Silent;
    }
}

}
