#pragma once
// Lets calls to the disk fail within a test program, as the test decides. It reaches the calls of the libraries that
// are linked into the program with tarvin_failing_disk, and not those of the C++ library.

#include <functional>

namespace tarvin::test {

enum class DiskCall { Open, Write, Sync, Rename, Link, Truncate, Remove, Lease };

// The error number with which the call fails, or 0: it succeeds. `path` is the name that the call makes or removes;
// empty for calls on an open file.
using DiskFaults = std::function<int(DiskCall call, const char* path)>;

// A write that is answered so stores half of its bytes.
inline constexpr int halfWritten = -1;

// Empty: every call goes to the system. One thread.
void SetDiskFaults(DiskFaults newFaults);

}
