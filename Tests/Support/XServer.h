// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include <sys/types.h>

namespace kxtest {

/// An X server without a screen (Xvfb) of this process alone, so that tests that run beside each other share neither
/// pointer nor focus. It ends with this object, and with the process, however that ends.
class XServer
{
public:
    /// Waits until clients can connect.
    XServer();
    ~XServer();
    XServer(const XServer &) = delete;
    XServer &operator=(const XServer &) = delete;

    /// As in the environment variable DISPLAY; "" when the server did not start.
    const std::string &display() const { return _display; }
    /// Why it did not start.
    const std::string &reason() const { return _reason; }

private:
    void start(int announcement);
    std::string readDisplay(int announcement);

    pid_t _process = -1;
    std::string _display;
    std::string _reason;
};

} // namespace kxtest
