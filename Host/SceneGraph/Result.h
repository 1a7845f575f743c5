// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace osg {

/// Why something failed: UTF-8, one line, names the file or object concerned.
struct Failure
{
    std::string reason;
};

/// A value, or the reason why there is none.
template <class T> class [[nodiscard]] Result
{
public:
    Result(T value) : _content(std::move(value)) {}
    Result(Failure failure) : _content(std::move(failure)) {}

    explicit operator bool() const { return std::holds_alternative<T>(_content); }
    /// Expects success.
    const T &value() const { return std::get<T>(_content); }
    T &value() { return std::get<T>(_content); }
    /// Expects failure.
    const std::string &reason() const { return std::get<Failure>(_content).reason; }

private:
    std::variant<T, Failure> _content;
};

/// Done, or the reason why not.
template <> class [[nodiscard]] Result<void>
{
public:
    Result() = default;
    Result(Failure failure) : _failure(std::move(failure)) {}

    explicit operator bool() const { return !_failure; }
    /// Expects failure.
    const std::string &reason() const { return _failure->reason; }

private:
    std::optional<Failure> _failure;
};

} // namespace osg
