// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/LibraryActions.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <string>
#include <vector>

/// What the merge of a folder with another one moves, so that it can be taken back. It is made before the merge, and asked
/// when the registry knows where the assets lie afterwards.
class FolderMerge
{
public:
    using AssetsIn = std::function<std::vector<std::string>(const QString &directory)>;

    FolderMerge(const QString &from, const QString &to, const AssetsIn &assetsIn);

    /// What is at another place now: assets, files, and folders of which the other one had none.
    std::vector<LibraryActions::Move> moves() const;
    /// Folders that went because all in them was moved, each after the one that held it.
    QStringList emptied() const;

private:
    struct Planned
    {
        LibraryActions::Move move;
        bool isAsset = false; ///< merging may give its directory another name
    };

    void look(const QString &from, const QString &to, const AssetsIn &assetsIn);

    std::vector<Planned> _planned;
    QStringList _joined;
};
