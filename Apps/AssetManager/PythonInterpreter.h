// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/// The Python interpreter inside this process. Main thread only.
///
/// It is started once and never ended: modules written in C, kx among them, cannot be started a second time in a process.
class PythonInterpreter
{
public:
    PythonInterpreter() = delete;

    /// Starts it where that has not happened. "" or why it cannot be started. Expects that nobody holds Python's lock.
    static QString start();
};
