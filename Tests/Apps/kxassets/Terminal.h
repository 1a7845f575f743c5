// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace kxtest {

/// Runs the command line program on a terminal of its own.
class Terminal
{
public:
    /// \a folder is the program's working directory; its library is in KXASSETS_LIBRARY.
    Terminal(const std::string &folder, const std::vector<std::string> &arguments);
    /// Kills the program when it still runs.
    ~Terminal();
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    /// Reads until \a text was shown; false when the program ended, or showed nothing for minutes, without it.
    bool waitFor(const std::string &text);
    /// Types the key that interrupts.
    void interrupt() const;
    /// Reads until the program ends. Its exit code, or -1 when a signal ended it.
    int waitForEnd();
    /// All that was shown until now.
    const std::string &shown() const { return _shown; }

private:
    bool read();

    pid_t _process = -1;
    int _terminal = -1;
    std::string _shown;
};

} // namespace kxtest
