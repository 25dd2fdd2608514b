#pragma once
// The one form in which an operation says that it failed.

#include "base/KelText.h"

#include <cassert>
#include <optional>
#include <utility>

namespace tarvin {

// Why an operation failed.
struct Error {
    // For people: the system's words, or our own. Without a full stop, so that it can follow a colon.
    KelText text;
    // The device itself no longer exists: another attempt needs it to be opened again.
    bool isGone = false;
};

// A value, or the reason why there is none. Tests as true with a value.
template <class T = void>
class [[nodiscard]] Result {
public:
    Result(T newValue) : value(std::move(newValue)) {}
    Result(Error newError) : error(std::move(newError)) {}

    explicit operator bool() const { return value.has_value(); }

    // Require a value.
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

    // Requires a failure.
    const Error& Reason() const {
        assert(!value);
        return error;
    }

private:
    std::optional<T> value;
    Error error;
};

// Success, or the reason for the failure.
template <>
class [[nodiscard]] Result<void> {
public:
    Result() = default;
    Result(Error newError) : error(std::move(newError)) {}

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
