// SPDX-License-Identifier: Apache-2.0
#include "NodeFixture.h"

#include "Kernel/NodeUtils.h"
#include "Kernel/kxNodeKeys.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/Constraint.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/NameAttachment.h"

osg::NodePtr NodeFixture::addNode(const osg::NodePtr &parent, const osg::NodeCorePtr &core, const std::string &name)
{
    return NodeUtils::createNodeWithCore(core, parent, name);
}

osg::NodePtr NodeFixture::addGroup(const osg::NodePtr &parent, const std::string &name)
{
    return addNode(parent, osg::Group::create(), name);
}

osg::NodePtr NodeFixture::addPlaced(const osg::NodePtr &parent, const std::string &name, const osg::Vec3d &translation)
{
    const auto core = osg::Transform3D::create();
    {
        const osg::CPEditor edit(core, osg::Transform3D::TranslationFieldMask);
        core->setTranslation(translation);
    }
    return addNode(parent, core, name);
}

osg::NodePtr NodeFixture::addSquare(const osg::NodePtr &parent, const std::string &name,
                                    const osg::MaterialPtr &material)
{
    const auto geometry = osg::Geometry::create();
    {
        const osg::CPEditor edit(geometry, osg::AllFieldMask);
        geometry->editPositions() = std::vector<osg::Vec3f>{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
        geometry->editIndices() = std::vector<std::uint32_t>{0, 1, 2, 3};
        geometry->editFaceSizes() = std::vector<std::uint32_t>{4};
        geometry->setMaterial(material);
    }
    return addNode(parent, geometry, name);
}

void NodeFixture::addConstraint(const osg::NodePtr &a, const osg::NodePtr &b)
{
    const auto constraint = osg::Constraint::create();
    {
        const osg::CPEditor edit(constraint, osg::Constraint::EndsFieldMask);
        constraint->editEnds() = std::vector{kxNodeKeys::make(a), kxNodeKeys::make(b)};
    }
    const osg::MaterialPoolPtr pool = kxScenegraph::getMaterialPool();
    const osg::CPEditor edit(pool, osg::MaterialPool::ConstraintsFieldMask);
    pool->editConstraints().push_back(constraint);
}

void NodeFixture::setUuid(const osg::NodePtr &node, const std::string &uuid)
{
    const auto attachment = osg::AssetAttachment::createAssetAttachment(node);
    const osg::CPEditor edit(attachment, osg::AssetAttachment::UuidFieldMask);
    attachment->setUuid(uuid);
}

std::string NodeFixture::uuidOfNode(const osg::NodePtr &node)
{
    const auto attachment = osg::AssetAttachment::getAssetAttachment(node);
    return attachment ? attachment->getUuid() : "none";
}

std::string NodeFixture::describe(const osg::NodePtr &node)
{
    std::string text = osg::getName(node);
    for (std::size_t i = 0; i < node->getNChildren(); ++i)
        text += (i == 0 ? "(" : " ") + describe(node->getChild(i)) + (i + 1 == node->getNChildren() ? ")" : "");
    return text;
}
