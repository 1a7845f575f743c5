// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/// Brings a directory to another place, also on another drive.
class DirectoryMove
{
public:
    DirectoryMove() = delete;

    /// "" or, in a sentence, why not; then everything is as before. Expects that there is nothing at \a to.
    static QString move(const QString &from, const QString &to);
};
