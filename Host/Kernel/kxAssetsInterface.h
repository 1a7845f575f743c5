// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "Kernel/kxInterfaceObject.h"
#include "SceneGraph/Node.h"

#include <string>
#include <vector>

/// What a library of assets offers to other modules. Main thread only.
class KX_KERNEL_EXPORT kxAssetsInterface : public kxInterfaceObject
{
public:
    static const void *staticInterfaceType();

    const void *interfaceType() const override;
    const char *interfaceTypeName() const override;
    ~kxAssetsInterface() override;

    /// Shows that the object can be reached.
    virtual void test() = 0;
    /// Has the asset manager load sceneplates below \a parent, in their order, and the modules refresh once afterwards.
    virtual void loadSceneplateAssets(const std::vector<std::string> &uuids, osg::NodePtr parent) = 0;

protected:
    kxAssetsInterface() = default;
};
