// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

#include <QCoreApplication>
#include <QIcon>

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
    /// The asset's name; "" where there is none or nobody knows it.
    QString assetName() const { return _assetName; }
    /// For tool tips and screen readers; "" without an asset.
    QString text() const;
    /// Drawn in the palette's colours; a null icon without an asset.
    QIcon icon() const;

private:
    Kind _kind = Kind::NoAsset;
    QString _assetName;
};
