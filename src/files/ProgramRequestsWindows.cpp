#include "base/Process.h"
#include "base/WindowsApi.h"
#include "files/ProgramRequests.h"

#include <array>
#include <cassert>
#include <iterator>
#include <string>
#include <thread>
#include <utility>

#include <sddl.h>

namespace tarvin {

namespace {

constexpr wchar_t wantedEvent[] = L"wanted";
// In the order of RequestAnswer.
constexpr std::array<const wchar_t*, 3> answerEvents = {L"done", L"later", L"refused"};

// The events of the program with this process number. A window belongs to the session of its user. A service runs in a
// session of its own, so requests to reload are for the whole system.
std::wstring EventName(RequestKind kind, const KelText& address, const wchar_t* what) {
    const wchar_t* const head = kind == RequestKind::Raise ? L"Local\\TarvinDL " : L"Global\\TarvinDL reload ";
    return head + ToPath(address).native() + L" " + what;
}

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

// The owner, administrators and the system may use the event. The system's default would keep administrators from the
// events of a service that runs under an account of its own.
HANDLE NewEvent(const std::wstring& name) {
    PSECURITY_DESCRIPTOR rights = nullptr;
    if (!::ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:(A;;GA;;;OW)(A;;GA;;;BA)(A;;GA;;;SY)",
                                                                SDDL_REVISION_1, &rights, nullptr))
        return nullptr;
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, rights, FALSE};
    HANDLE made = ::CreateEventW(&attributes, FALSE, FALSE, name.c_str());
    ::LocalFree(rights);
    return made;
}

struct AnswerEvents {
    AnswerEvents(RequestKind kind, const KelText& address)
        : events{Handle(NewEvent(EventName(kind, address, answerEvents[0]))),
                 Handle(NewEvent(EventName(kind, address, answerEvents[1]))),
                 Handle(NewEvent(EventName(kind, address, answerEvents[2])))} {}

    bool AreUsable() const {
        return events[0].Get() != nullptr && events[1].Get() != nullptr && events[2].Get() != nullptr;
    }

    const std::array<Handle, 3> events;
};

}

struct ProgramRequests::Endpoint {
    Endpoint(RequestKind kind, const KelText& address)
        : wanted(NewEvent(EventName(kind, address, wantedEvent))),
          answers(std::make_shared<AnswerEvents>(kind, address)),
          stop(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}

    bool IsUsable() const { return wanted.Get() != nullptr && answers->AreUsable() && stop.Get() != nullptr; }

    void Run(const std::function<void(Answer)>& take) const {
        const HANDLE watched[] = {wanted.Get(), stop.Get()};
        while (::WaitForMultipleObjects(static_cast<DWORD>(std::size(watched)), watched, FALSE, INFINITE) ==
               WAIT_OBJECT_0)
            take([kept = answers](RequestAnswer answer) {
                ::SetEvent(kept->events[static_cast<std::size_t>(answer)].Get());
            });
    }

    const Handle wanted;
    const std::shared_ptr<AnswerEvents> answers;
    const Handle stop;
    std::thread thread;
};

ProgramRequests::ProgramRequests(RequestKind kind)
    : address(ToText(static_cast<std::int64_t>(OwnProcessId()))), endpoint(std::make_unique<Endpoint>(kind, address)) {
    if (!endpoint->IsUsable()) {
        endpoint.reset();
        address.clear();
    }
}

ProgramRequests::~ProgramRequests() {
    End();
}

void ProgramRequests::End() {
    if (endpoint && endpoint->thread.joinable()) {
        ::SetEvent(endpoint->stop.Get());
        endpoint->thread.join();
    }
    endpoint.reset();
}

void ProgramRequests::Serve(std::function<void(Answer)> take) {
    if (!endpoint)
        return;
    assert(!endpoint->thread.joinable());
    endpoint->thread = std::thread([this, kept = std::move(take)] { endpoint->Run(kept); });
}

RequestOutcome RequestFrom(RequestKind kind, const KelText& address, std::chrono::milliseconds patience) {
    const auto open = [&](const wchar_t* what, DWORD access) {
        return ::OpenEventW(access, FALSE, EventName(kind, address, what).c_str());
    };
    constexpr DWORD readAnswer = EVENT_MODIFY_STATE | SYNCHRONIZE;
    const Handle wanted(open(wantedEvent, EVENT_MODIFY_STATE));
    const Handle done(open(answerEvents[0], readAnswer));
    const Handle later(open(answerEvents[1], readAnswer));
    const Handle refused(open(answerEvents[2], readAnswer));
    for (const Handle* const each : {&wanted, &done, &later, &refused}) {
        if (each->Get() == nullptr)
            return RequestOutcome::Gone;
    }
    const auto number = static_cast<DWORD>(LeadingNumber(address).value_or(0));
    // Windows may refuse the process of a service under another account; its end is then noticed by the time alone.
    const Handle process(::OpenProcess(SYNCHRONIZE, FALSE, number));
    // Without this the system lets the other window blink only.
    if (kind == RequestKind::Raise)
        ::AllowSetForegroundWindow(number);
    // A late answer to an earlier request does not count.
    for (const Handle* const each : {&done, &later, &refused})
        ::ResetEvent(each->Get());
    ::SetEvent(wanted.Get());
    const HANDLE watched[] = {done.Get(), later.Get(), refused.Get(), process.Get()};
    const DWORD count = process.Get() == nullptr ? 3 : 4;
    switch (::WaitForMultipleObjects(count, watched, FALSE, static_cast<DWORD>(patience.count()))) {
    case WAIT_OBJECT_0:
        return RequestOutcome::Done;
    case WAIT_OBJECT_0 + 1:
        return RequestOutcome::Later;
    case WAIT_OBJECT_0 + 2:
        return RequestOutcome::Refused;
    case WAIT_OBJECT_0 + 3:
        return RequestOutcome::Gone;
    default:
        return RequestOutcome::Silent;
    }
}

}
