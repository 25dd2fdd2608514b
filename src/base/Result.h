#pragma once
// The one form in which an operation reports a failure.

#include "base/KelText.h"

#include <cassert>
#include <optional>
#include <utility>

namespace tarvin {

// The reason for a failure.
struct Error {
    // For people: the system's words or the program's own. Without a full stop, so that it can follow a colon.
    KelText text;
    // The device no longer exists: another attempt must open it again first.
    bool isGone = false;
    // Another program uses the file: a later attempt may succeed.
    bool isBusy = false;
};

// A value, or the reason for the failure. Tests as true if it holds a value.
template <class T = void>
class [[nodiscard]] Result {
public:
    Result(T value) : value(std::move(value)) {}
    Result(Error error) : error(std::move(error)) {}

    explicit operator bool() const { return value.has_value(); }

    // Each of these requires a value.
    T& operator*() {
        assert(value);
        return *value;
    }
    const T& operator*() const {
        assert(value);
        return *value;
    }
    T* operator->() { return &**this; }
    const T* operator->() const { return &**this; }

    // The value; after a failure `fallback`.
    T ValueOr(T fallback) const { return value.value_or(std::move(fallback)); }

    // Requires a failure.
    const Error& Reason() const {
        assert(!value);
        return error;
    }

private:
    std::optional<T> value;
    Error error;
};

// Success, or the reason for the failure. Tests as true on success.
template <>
class [[nodiscard]] Result<void> {
public:
    Result() = default;
    Result(Error error) : error(std::move(error)) {}

    explicit operator bool() const { return !error; }

    // Requires a failure.
    const Error& Reason() const {
        assert(error);
        return *error;
    }

private:
    std::optional<Error> error;
};

}
