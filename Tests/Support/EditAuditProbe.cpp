// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/FCPtr.h"

#include <gtest/gtest.h>

namespace {

// Fails by the audit alone: it expects nothing.
TEST(EditAuditProbe, ChangesAFieldOutsideAnEdit)
{
    const osg::FCRef<osg::AssetAttachment> attachment(osg::AssetAttachment::create());

    attachment->setUserEdited(true);
}

} // namespace
