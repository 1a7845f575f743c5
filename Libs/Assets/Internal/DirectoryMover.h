// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QUrl>

class kxLocalUrlManager;

namespace kxAssetsInternal {

/// Moves folders of a library into others, and joins those of one name. Assets are never joined with others.
class DirectoryMover
{
public:
    enum class Collision {
        Asks, ///< whether folders of one name are to be joined
        Joins ///< them without asking
    };

    explicit DirectoryMover(kxLocalUrlManager &manager) : _manager(manager) {}

    /// \a result gets the new place, whether or not the folder comes to be there.
    bool move(const QUrl &source, const QUrl &targetDirectory, QUrl &result, Collision collision);
    bool merge(const QUrl &source, const QUrl &target);

private:
    bool moveDirectory(const QUrl &directory, const QUrl &target);

    kxLocalUrlManager &_manager;
};

} // namespace kxAssetsInternal
