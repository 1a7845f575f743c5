// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <string>
#include <system_error>

/// Why something could not be written, as far as a person can do something about it.
class DiskTrouble
{
public:
    DiskTrouble() = delete;

    enum class Kind { None, Full, Forbidden, Other };

    /// What a person may use up of a disk counts as the disk.
    static Kind of(const std::error_code &error);
    /// Finds out by writing a small file there, which goes again: for what failed without saying why.
    static Kind whenWritingInto(const QString &directory);
    /// A sentence that follows one that says what failed; \a other where nothing better is known.
    static QString advice(const QString &directory, const QString &other);
    /// The same where the error is known, in words that people know who do not know the system's.
    static QString sentence(const std::error_code &error);
    /// The same where a text has the system's words for the error in it; "" where they are not found.
    static QString sentenceFor(const std::string &text);
};
