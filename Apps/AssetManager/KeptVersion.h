// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/DirectoryStamp.h"
#include "AssetManager/Trash.h"

#include <QCoreApplication>
#include <QString>

/// What a file or directory of a library was before something else took its place.
///
/// It lies hidden in the trash of the library, and goes for good with the object; where the drive does not answer then, with
/// the trash.
class KeptVersion
{
    Q_DECLARE_TR_FUNCTIONS(KeptVersion)

public:
    /// Nothing as yet.
    explicit KeptVersion(const Trash &trash) : _trash(trash) {}
    KeptVersion(KeptVersion &&other) noexcept;
    KeptVersion &operator=(KeptVersion &&other) noexcept;
    ~KeptVersion();

    /// Copies what is at \a path, which may be nothing at all. The answer is "" or, in a sentence, why it cannot be kept. To be
    /// called once.
    QString keep(const QString &path);

    /// Whether something else is there now, or at \a now where the newer version went to another place.
    bool isReplacedAt(const QString &now) const;
    void setPlaceOfNewer(const QString &now) { _now = now; }

    /// Where the version is that is not the kept one.
    const QString &place() const { return _now; }

    /// Keeps the one version and puts the other back to its place; a second call puts all back as it was. The answer is ""
    /// or, in a sentence, why not; then everything is as before.
    QString exchange();

private:
    QString moveBoth(const QString &place) const;
    void discard();

    Trash _trash;
    QString _kept;            ///< empty: there was nothing
    QString _former;          ///< the place of what is kept
    QString _now;             ///< the place of what took its place
    DirectoryStamp _original; ///< of the directory when it was kept
};
