#include "harness/DiskFaultsPosix.h"

#include <cerrno>
#include <cstdarg>
#include <utility>

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

namespace tarvin::test {

namespace {

DiskFaults faults;

// True, with errno set, if the call is to fail.
bool Fails(DiskCall call, const char* path) {
    const int error = faults ? faults(call, path) : 0;
    if (error > 0)
        errno = error;
    return error > 0;
}

}

void SetDiskFaults(DiskFaults newFaults) {
    faults = std::move(newFaults);
}

}

using tarvin::test::DiskCall;
using tarvin::test::Fails;

// The linker leads each call of these functions to __wrap_..., and __real_... to the function itself.
extern "C" {

int __real_open(const char* path, int flags, ...);
ssize_t __real_write(int descriptor, const void* bytes, std::size_t byteCount);
int __real_fsync(int descriptor);
int __real_rename(const char* path, const char* target);
int __real_link(const char* path, const char* other);
int __real_ftruncate(int descriptor, off_t byteCount);
int __real_unlink(const char* path);
int __real_fcntl(int descriptor, int command, ...);

int __wrap_open(const char* path, int flags, ...) {
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0) {
        std::va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    return Fails(DiskCall::Open, path) ? -1 : __real_open(path, flags, mode);
}

ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t byteCount) {
    const int answer = tarvin::test::faults ? tarvin::test::faults(DiskCall::Write, "") : 0;
    if (answer > 0) {
        errno = answer;
        return -1;
    }
    return __real_write(descriptor, bytes, answer == tarvin::test::halfWritten ? (byteCount + 1) / 2 : byteCount);
}

int __wrap_fsync(int descriptor) {
    return Fails(DiskCall::Sync, "") ? -1 : __real_fsync(descriptor);
}

int __wrap_rename(const char* path, const char* target) {
    return Fails(DiskCall::Rename, target) ? -1 : __real_rename(path, target);
}

int __wrap_link(const char* path, const char* other) {
    return Fails(DiskCall::Link, other) ? -1 : __real_link(path, other);
}

int __wrap_ftruncate(int descriptor, off_t byteCount) {
    return Fails(DiskCall::Truncate, "") ? -1 : __real_ftruncate(descriptor, byteCount);
}

int __wrap_unlink(const char* path) {
    return Fails(DiskCall::Remove, path) ? -1 : __real_unlink(path);
}

int __wrap_fcntl(int descriptor, int command, ...) {
    std::va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (command == F_SETLEASE && Fails(DiskCall::Lease, ""))
        return -1;
    return __real_fcntl(descriptor, command, argument);
}
}
