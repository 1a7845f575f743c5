// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

/// Lets events happen while Python runs on the main thread, and ends it when it is told.
///
/// A thread asks the interpreter again and again for a call between two of its instructions. That costs a script nothing
/// else, and its first moments nothing at all. One for each process works at a time.
class ScriptWatch
{
public:
    ScriptWatch();
    ~ScriptWatch();
    ScriptWatch(const ScriptWatch &) = delete;
    ScriptWatch &operator=(const ScriptWatch &) = delete;

    /// Both expect Python's lock.
    void begin();
    void end();

    /// Raises KeyboardInterrupt at the next of these calls; from the second time on wherever the script then is.
    void stop();

private:
    static int service(void *watch);
    int processEvents();
    void knock(const std::stop_token &isOver);

    std::jthread _thread;
    std::mutex _mutex;
    std::condition_variable_any _condition;
    int _stops = 0;         ///< how often stop() was called
    int _interruptions = 0; ///< how many of them were answered
};
