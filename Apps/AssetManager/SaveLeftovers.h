// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

/// What a save of a new asset leaves in a folder where it fails: half of it, which would be taken for an asset.
class SaveLeftovers
{
public:
    /// Just before the save.
    explicit SaveLeftovers(const QString &folder);

    /// The directories of assets that are there since then and lack something.
    void remove() const;
    /// Those of them that nothing is in, where others may be whole assets.
    void removeEmpty() const;

private:
    QStringList directories() const;
    QStringList newOnes() const;

    QString _folder;
    QStringList _before;
};
