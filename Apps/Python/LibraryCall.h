// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxLogRecorder.h"
#include "SceneGraph/Result.h"

#include <pybind11/pybind11.h>

#include <cstdio>
#include <exception>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>

namespace kxPython {

/// What scripts see of a failure: kx.Error, with the library's own text.
class Error : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Surrounds one call of the library. Its lines for developers do not mix with the script's output; warnings in the log
/// become Python's, and errors the text of an exception.
class LibraryCall
{
public:
    LibraryCall();
    ~LibraryCall();
    LibraryCall(const LibraryCall &) = delete;
    LibraryCall &operator=(const LibraryCall &) = delete;

    /// Throws an Error: the log's errors, or \a otherwise where there are none.
    [[noreturn]] void fail(const std::string &otherwise) const;
    /// The value, or throws an Error with the reason.
    template <class T> T take(osg::Result<T> result) const
    {
        if (!result)
            throw Error(result.reason());
        return std::move(result.value());
    }
    static void check(const osg::Result<void> &result)
    {
        if (!result)
            throw Error(result.reason());
    }

private:
    std::FILE *_output;
    bool _isLogShown;
    kxLogRecorder _log;
};

/// A script's function that is told of progress and may answer False to stop. Safe on any thread while the interpreter's
/// lock is released.
class Progress
{
public:
    explicit Progress(pybind11::object function) : _function(std::move(function)) {}

    /// Whether to go on. What the function throws, and an interrupt, is kept and ends the work.
    bool operator()(const std::function<pybind11::object(const pybind11::object &function)> &call);
    bool wasStopped() const { return _isStopped; }
    /// Throws what the function threw. Expects the interpreter's lock.
    void rethrow();

private:
    pybind11::object _function;
    std::exception_ptr _exception;
    bool _isStopped = false;
};

} // namespace kxPython
