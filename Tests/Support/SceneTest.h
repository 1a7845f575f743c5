// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxScenegraph.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/MultiMaterial.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <gtest/gtest.h>

#include <string>

namespace kxtest {

/// A fresh scene for each test, and none after it.
class SceneTest : public testing::Test
{
protected:
    SceneTest() { kxScenegraph::newDocument(); }
    ~SceneTest() override { kxScenegraph::closeDocument(); }

    /// Below the root; kept by it.
    static osg::NodePtr addNode(const osg::NodeCorePtr &core, const std::string &name = {})
    {
        return addNodeBelow(kxScenegraph::getRoot(), core, name);
    }

    static osg::NodePtr addNodeBelow(const osg::NodePtr &parent, const osg::NodeCorePtr &core,
                                     const std::string &name = {})
    {
        const osg::NodePtr node = osg::makeNodeFor(core);
        osg::setName(node, name);
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->addChild(node);
        return node;
    }

    static void remove(const osg::NodePtr &node)
    {
        const osg::NodePtr parent = node->getParent();
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->subChild(node);
    }

    static osg::GeometryPtr geometryWith(const osg::MaterialPtr &material)
    {
        const osg::GeometryPtr geometry = osg::Geometry::create();
        const osg::CPEditor edit(geometry, osg::Geometry::MaterialFieldMask);
        geometry->setMaterial(material);
        return geometry;
    }

    template <class Composite> static osg::FCRef<Composite> compositeOf(const std::vector<osg::MaterialPtr> &materials)
    {
        osg::FCRef<Composite> composite(Composite::create());
        const osg::CPEditor edit(composite.get(), osg::MultiMaterial::MaterialsFieldMask);
        for (const osg::MaterialPtr &material : materials)
            composite->addMaterial(material);
        return composite;
    }

    static osg::FCRef<osg::Material> newMaterial(const std::string &name = {})
    {
        osg::FCRef<osg::Material> material(osg::UBRDFMaterial::create());
        if (!name.empty())
            osg::setName(material.get(), name);
        return material;
    }

    static void setUuid(const osg::AttachmentContainerPtr &container, const std::string &uuid)
    {
        const osg::AssetAttachmentPtr asset = osg::AssetAttachment::createAssetAttachment(container);
        const osg::CPEditor edit(asset, osg::AssetAttachment::UuidFieldMask);
        asset->setUuid(uuid);
    }

    static osg::FCRef<osg::Material> newAssetMaterial(const std::string &uuid)
    {
        osg::FCRef<osg::Material> material = newMaterial();
        setUuid(material, uuid);
        return material;
    }
};

} // namespace kxtest
