// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxDefaultEnvironment.h"

#include "Kernel/kxScenegraph.h"
#include "Kernel/kxUberMaterialUtils.h"
#include "SceneGraph/Environment.h"

osg::MaterialPtr kxDefaultEnvironment::getDefault()
{
    const osg::NodePtr node = kxScenegraph::getDefaultEnvironmentNode();
    const auto environment = node ? osg::EnvironmentPtr::dcast(node->getCore()) : osg::EnvironmentPtr();
    if (!environment || !kxUberMaterialUtils::isEnvironmentMaterial(environment->getMaterial()))
        return nullptr;
    return environment->getMaterial();
}

osg::UEnvironmentSwitchMaterialPtr kxDefaultEnvironment::getSwitch()
{
    return osg::UEnvironmentSwitchMaterialPtr::dcast(getDefault());
}
