// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "RandomNumbers.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "SceneGraph/UEnvironmentMaterial.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/UberMaterial.h"

#include <string>
#include <vector>

/// Materials of every kind that refer to each other, some in the scene's pool, and the scene's own sky; the same for the
/// same numbers. It holds them all.
class RandomMaterials
{
public:
    explicit RandomMaterials(RandomNumbers &random);

    const std::vector<osg::MaterialPtr> &all() const { return _all; }
    const std::vector<osg::UEnvironmentMaterialPtr> &environments() const { return _environments; }
    /// An environment material, a switch of them, the scene's own switch, or null.
    osg::MaterialPtr anyEnvironment();

    static osg::ImagePtr makeImage(RandomNumbers &random);

private:
    void keep(const osg::MaterialPtr &material, const std::string &name);
    void makeEnvironment();
    void makeEnvironmentSwitch();
    void makeSurface();
    void makeUber();
    void makeComposite();
    void decorate(const osg::MaterialPtr &material);

    RandomNumbers &_random;
    std::vector<osg::FCRef<osg::Material>> _held;
    std::vector<osg::MaterialPtr> _all;
    std::vector<osg::UEnvironmentMaterialPtr> _environments;
    std::vector<osg::UEnvironmentSwitchMaterialPtr> _switches;
    std::vector<osg::UBRDFMaterialPtr> _surfaces;
};
