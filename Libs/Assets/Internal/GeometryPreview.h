// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Image.h"
#include "SceneGraph/Node.h"

#include <QString>

namespace kxAssetsInternal {

/// See kxGeometryAssetItem::renderPreview(). \a label says what is being done.
osg::ImagePtr renderGeometryPreview(const osg::NodePtr &node, const QString &label);

} // namespace kxAssetsInternal
