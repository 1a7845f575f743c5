// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// The program's results on standard output, apart from everything else that is written there.
///
/// The library prints diagnostic lines on standard output. From its construction on, this object has them go to standard
/// error when they are wanted and nowhere otherwise, so that results can be parsed. A reader who goes away early is no
/// failure; a disk that is full is.
class ResultStream
{
public:
    explicit ResultStream(bool showsDiagnostics);
    ~ResultStream();
    ResultStream(const ResultStream &) = delete;
    ResultStream &operator=(const ResultStream &) = delete;

    /// Writes \a text, made printable, and a line end.
    void line(const std::string &text);
    /// Writes the text as it is.
    void write(const std::string &text);

    /// Where the results go, for a process that goes on with them.
    int descriptor() const { return _descriptor; }

    /// Why results are missing from the output, or "".
    const std::string &failure() const { return _failure; }

private:
    int _descriptor = -1;
    bool _isClosed = false;
    std::string _failure;
};
