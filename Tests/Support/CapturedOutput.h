// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace kxtest {

/// Holds back what the process writes to one of its standard streams, by whatever means, and hands it to the test.
///
/// Works on the file descriptor, so that printf, std::cout, and direct writes are seen in the order they were made.
/// One per descriptor at a time.
class CapturedOutput
{
public:
    enum Stream { StandardOutput = 1, StandardError = 2 };

    explicit CapturedOutput(Stream stream = StandardOutput);
    /// Ends the capture; what was not asked for is lost.
    ~CapturedOutput();
    CapturedOutput(const CapturedOutput &) = delete;
    CapturedOutput &operator=(const CapturedOutput &) = delete;

    /// Ends the capture, gives the stream back, and returns all that was written; the same text on each further call.
    std::string text();

private:
    void end();

    int _descriptor;
    int _original;
    int _file;
    std::string _text;
};

} // namespace kxtest
