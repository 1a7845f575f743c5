// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetsExport.h"
#include "Kernel/kxBRDFEnvironmentSetter.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/UEnvironmentMaterial.h"

#include <cstdint>
#include <map>
#include <memory>
#include <set>

/// Prepares an environment for being written, and undoes that on request and when it goes.
///
/// Meanwhile the choices of its environment switches stand in the switches' places, and a pool below it holds its part of
/// the light-link sets. Copies restore the same changes: the first one does, the others find nothing to do. Main thread
/// only.
class KX_ASSETS_EXPORT kxSaveEnvironment
{
public:
    kxSaveEnvironment();
    kxSaveEnvironment(const kxSaveEnvironment &) = default;
    kxSaveEnvironment &operator=(const kxSaveEnvironment &) = default;
    ~kxSaveEnvironment();

    /// False for what is no environment, and for one without an environment material. unprepare() all the same.
    bool prepare(const osg::NodePtr &envNode);
    void unprepare();

    /// The material that stands for the environment; null before prepare().
    osg::UEnvironmentMaterialPtr getAssignedEnvironmentMaterial() const;

private:
    using Choices = std::map<osg::MaterialPtr, osg::UEnvironmentMaterialPtr>;

    void prepareLightLinkSets(const osg::NodePtr &envNode);
    void unprepareLightLinkSets();
    bool prepareEnvironmentSwitches(const osg::NodePtr &envNode);
    void unprepareEnvironmentSwitches();
    int getEnvironmentGeometrySwitchIndex(const osg::NodePtr &envNode) const;
    osg::UEnvironmentMaterialPtr findChoices(const osg::NodePtr &envNode, const std::set<osg::MaterialPtr> &materials,
                                             Choices &choices) const;
    void replaceSwitches(const osg::NodePtr &envNode, const Choices &choices);

    struct Assignment
    {
        osg::FCRef<osg::Material> material;
        osg::FCRef<osg::NodeCore> core; ///< lives on in clones where the node goes
    };

    /// By the nodes' ids; shared with copies.
    std::shared_ptr<std::map<std::uint32_t, Assignment>> _replaced;
    kxBRDFEnvironmentSetter _environments;
    osg::FCRef<osg::UEnvironmentMaterial> _assigned;
    osg::FCRef<osg::Node> _lightLinkNode;
};
