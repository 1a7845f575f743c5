// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

namespace kximport {

/// Takes the scene graph's log lines for itself for as long as it lives; afterwards they go to standard error again.
///
/// For processes that parse, and own their log: one at a time.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    /// What the newest line says about the file \a path after naming it, once: without its beginning where that names
    /// the file. "" where there is no line.
    std::string takeReason(const std::string &path);

private:
    struct State;
    std::shared_ptr<State> _state;
};

} // namespace kximport
