// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/// What people know something on the disk by. Main thread only.
class ShownName
{
public:
    ShownName() = delete;

    /// Of the asset in a directory, or that a file belongs to: the name that it was given. Of anything else that of the folder or
    /// file. What is not there any more is named as well.
    static QString of(const QString &path);
};
