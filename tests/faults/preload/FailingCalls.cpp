// A library to load before the program (LD_PRELOAD). It counts the calls by which the program reaches its files, and
// lets those fail that the plan names. The program itself knows nothing of it.

#include "faults/FaultPlan.h"

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using tarvin::test::FailingCall;
using tarvin::test::FaultPlan;

constexpr int mostDescriptors = 4096;

// Of the files that count.
std::atomic<bool> isCounted[mostDescriptors];

template <typename Function>
Function Next(const char* name) {
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

FaultPlan* MapPlan() {
    const char* const name = std::getenv(tarvin::test::faultPlanVariable);
    if (name == nullptr)
        return nullptr;
    static const auto open = Next<int (*)(const char*, int, ...)>("open");
    static const auto close = Next<int (*)(int)>("close");
    const int descriptor = open(name, O_RDWR | O_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    void* const mapped = ::mmap(nullptr, sizeof(FaultPlan), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    close(descriptor);
    return mapped == MAP_FAILED ? nullptr : static_cast<FaultPlan*>(mapped);
}

FaultPlan* Plan() {
    static FaultPlan* const plan = MapPlan();
    return plan;
}

// Counts the call. True, with errno set, if it is to fail.
bool Fails(FailingCall call) {
    FaultPlan* const plan = Plan();
    if (plan == nullptr)
        return false;
    const std::int32_t number = ++plan->counts[static_cast<std::size_t>(call)];
    if (call != plan->call || number < plan->first || number > plan->last)
        return false;
    ++plan->failed;
    errno = plan->error;
    return true;
}

bool IsBelowFolder(const char* path) {
    const FaultPlan* const plan = Plan();
    return plan != nullptr && path != nullptr && plan->folder[0] != '\0' &&
           std::strncmp(path, plan->folder.data(), std::strlen(plan->folder.data())) == 0;
}

bool IsCounted(int descriptor) {
    return descriptor >= 0 && descriptor < mostDescriptors && isCounted[descriptor];
}

bool IsDevice(const char* path) {
    struct stat state = {};
    return ::stat(path, &state) == 0 && S_ISCHR(state.st_mode);
}

template <typename Call>
int CountedOpen(const char* path, const Call& call) {
    if (!IsBelowFolder(path) || IsDevice(path))
        return call();
    if (Fails(FailingCall::Open))
        return -1;
    const int descriptor = call();
    if (descriptor >= 0 && descriptor < mostDescriptors)
        isCounted[descriptor] = true;
    return descriptor;
}

mode_t ModeOf(int flags, std::va_list arguments) {
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? static_cast<mode_t>(va_arg(arguments, int)) : 0;
}

}

extern "C" {

int open(const char* path, int flags, ...) {
    static const auto next = Next<int (*)(const char*, int, ...)>("open");
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return CountedOpen(path, [&] { return next(path, flags, mode); });
}

int open64(const char* path, int flags, ...) {
    static const auto next = Next<int (*)(const char*, int, ...)>("open64");
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return CountedOpen(path, [&] { return next(path, flags, mode); });
}

ssize_t write(int descriptor, const void* bytes, size_t byteCount) {
    static const auto next = Next<ssize_t (*)(int, const void*, size_t)>("write");
    return IsCounted(descriptor) && Fails(FailingCall::Write) ? -1 : next(descriptor, bytes, byteCount);
}

ssize_t pwrite64(int descriptor, const void* bytes, size_t byteCount, off64_t offset) {
    static const auto next = Next<ssize_t (*)(int, const void*, size_t, off64_t)>("pwrite64");
    return IsCounted(descriptor) && Fails(FailingCall::Write) ? -1 : next(descriptor, bytes, byteCount, offset);
}

int fsync(int descriptor) {
    static const auto next = Next<int (*)(int)>("fsync");
    return IsCounted(descriptor) && Fails(FailingCall::Sync) ? -1 : next(descriptor);
}

int fdatasync(int descriptor) {
    static const auto next = Next<int (*)(int)>("fdatasync");
    return IsCounted(descriptor) && Fails(FailingCall::Sync) ? -1 : next(descriptor);
}

int rename(const char* from, const char* to) {
    static const auto next = Next<int (*)(const char*, const char*)>("rename");
    return IsBelowFolder(to) && Fails(FailingCall::Rename) ? -1 : next(from, to);
}

int link(const char* from, const char* to) {
    static const auto next = Next<int (*)(const char*, const char*)>("link");
    return IsBelowFolder(to) && Fails(FailingCall::Rename) ? -1 : next(from, to);
}

// The descriptor is closed in any case, as the system does it.
int close(int descriptor) {
    static const auto next = Next<int (*)(int)>("close");
    const bool isFile = IsCounted(descriptor);
    if (isFile)
        isCounted[descriptor] = false;
    const int result = next(descriptor);
    return isFile && Fails(FailingCall::Close) ? -1 : result;
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*), void* argument) {
    static const auto next =
        Next<int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)>("pthread_create");
    return Fails(FailingCall::Thread) ? EAGAIN : next(thread, attributes, body, argument);
}
}
