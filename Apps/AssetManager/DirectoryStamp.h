// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QtGlobal>

/// What tells by a look at a directory whether it is as it was: its files with their sizes and times, of which nothing is read.
///
/// The time of the directory alone says nothing of files that are overwritten where they are.
class DirectoryStamp
{
public:
    /// Of nothing at all.
    DirectoryStamp() = default;
    explicit DirectoryStamp(const QString &directory);

    friend bool operator==(const DirectoryStamp &a, const DirectoryStamp &b) { return a._digest == b._digest; }
    friend bool operator!=(const DirectoryStamp &a, const DirectoryStamp &b) { return !(a == b); }

private:
    quint64 _digest = 0;
};
