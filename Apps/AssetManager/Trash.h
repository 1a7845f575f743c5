// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Result.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QString>

#include <vector>

/// What was deleted from a library, in a hidden folder of the library itself: nothing is lost, and nothing has to be copied.
class Trash
{
    Q_DECLARE_TR_FUNCTIONS(Trash)

public:
    struct Entry
    {
        QString path;   ///< of what was deleted, where it is now
        QString origin; ///< the folder that it was in
        QDateTime deleted;
    };

    explicit Trash(const QString &library) : _library(library) {}

    /// A new place for what lies at \a path, whose folder is made; it remembers where that was. Fails with a sentence for people.
    osg::Result<QString> makePlaceFor(const QString &path) const;
    /// The same for what is kept without having been deleted: entries() leave it out.
    osg::Result<QString> makeHiddenPlaceFor(const QString &path) const;
    /// The latest first.
    std::vector<Entry> entries() const;
    /// Removes everything for good. False when something is left.
    bool empty() const;

    /// Whether the path is in some library's trash.
    static bool isTrash(const QString &path);

private:
    QString folder() const;
    QString makeName() const;

    QString _library;
};
