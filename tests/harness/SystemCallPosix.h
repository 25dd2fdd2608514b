#pragma once
// Turns a failed system call into an exception with the system's own words, which a test shows as its failure.

#include <cerrno>
#include <string>
#include <string_view>
#include <system_error>

namespace tarvin::test {

// Call at once after the system call: its error number is still in errno then.
inline void RequireCall(bool hasSucceeded, std::string_view operation) {
    if (!hasSucceeded)
        throw std::system_error(errno, std::generic_category(), std::string(operation));
}

}
