// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

#include <QCoreApplication>
#include <QIcon>

#include <string>

/// How an object of the scene stands to the asset that it came from.
class AssetState
{
    Q_DECLARE_TR_FUNCTIONS(AssetState)

public:
    enum class Kind {
        NoAsset,
        AsStored,
        EditedHere, ///< the object was changed after it was loaded
        Outdated,   ///< the stored asset was changed since
        NotFound    ///< the asset is not in an open library
    };

    explicit AssetState(const osg::AttachmentContainerPtr &container);

    Kind kind() const { return _kind; }
    /// The asset's; "" where there is none.
    const std::string &uuid() const { return _uuid; }
    /// Whether the object was changed after it was loaded, also where the asset is not in an open library.
    bool isEdited() const { return _isEdited; }
    /// Whether the stored asset was changed since, also where the object was too. Reads what is stored, if its drive answers.
    bool isStoredNewer() const;
    /// For tool tips and screen readers; "" without an asset.
    QString text() const;
    /// The mark of tiles; a null icon without an asset.
    QIcon icon() const;

private:
    Kind _kind = Kind::NoAsset;
    std::string _uuid;
    QString _assetName; ///< "" where nobody knows it
    bool _isEdited = false;
    std::uint32_t _loadedChecksum = 0; ///< of the payload that the object was loaded from
};
