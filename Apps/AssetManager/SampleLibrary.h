// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/// The library that comes with the program, to try things with.
class SampleLibrary final
{
public:
    /// Where it lies, "" where there is none.
    static QString find();

    /// The folder in which a person may change it: where the build left it that one, of an installed one, which belongs to all
    /// who use the computer, a copy among the person's own data, made at the first call. "" with \a trouble when there can be
    /// none.
    static QString prepare(const QString &found, QString &trouble);

private:
    static QString installed();
};
