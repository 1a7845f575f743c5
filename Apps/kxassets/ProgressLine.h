// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <string>

/// One line on a terminal's standard error that says how far a long task is, its rate and the time left; nothing at all
/// in a pipe or file.
class ProgressLine
{
public:
    /// \a what is what the numbers count, such as "files".
    ProgressLine(std::string task, std::string what);
    ~ProgressLine();
    ProgressLine(const ProgressLine &) = delete;
    ProgressLine &operator=(const ProgressLine &) = delete;

    /// \a total 0: not known.
    void show(std::size_t done, std::size_t total);
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    std::string _task;
    std::string _what;
    bool _isTerminal;
    bool _isShown = false;
    Clock::time_point _start = Clock::now();
    Clock::time_point _shown;
};
