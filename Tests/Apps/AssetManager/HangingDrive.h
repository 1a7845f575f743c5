// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

/// While one lives, the drive that a folder lies on does not answer: whoever asks the system for what is there waits until it is
/// let go. The system's functions that look at files and folders are replaced for that, for the whole of the test program.
///
/// What the main thread asks, which made this, is answered at once, and noted: the window would stand still. One at a time.
class HangingDrive
{
public:
    explicit HangingDrive(const QString &folder);
    /// Lets go, and waits until nobody waits any more.
    ~HangingDrive();
    HangingDrive(const HangingDrive &) = delete;
    HangingDrive &operator=(const HangingDrive &) = delete;

    void letGo();
    /// What others ask, such as "stat /folder/file".
    QStringList waiting() const;
    QStringList askedByMainThread() const;
};
