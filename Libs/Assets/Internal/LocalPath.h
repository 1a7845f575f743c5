// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QUrl>

class QDir;

namespace kxAssetsInternal {

/// The path of the entry that the URL names, without slashes at its end: they would lead through a link.
QString entryPath(const QUrl &url);

/// Whether something is there, if only a link that leads nowhere.
bool isTaken(const QString &path);
/// Whether the name is taken in the directory; an empty name never is.
bool isTaken(const QDir &directory, const QString &name);

/// Where the entry itself is, whatever links lead to the directory that holds it; a link at the end is not followed.
/// Empty for an empty path and in a directory that does not exist.
QString placeOf(const QString &path);

/// Renames what is at \a from, file, directory or link; false, and nothing changes, when the name is taken.
bool renameEntry(const QString &from, const QString &to);

} // namespace kxAssetsInternal
