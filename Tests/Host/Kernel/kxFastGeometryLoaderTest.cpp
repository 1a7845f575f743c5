// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxFastGeometryLoader.h"

#include "Kernel/NodeUtils.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxNodeKeys.h"
#include "Kernel/kxNodeUtils.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/ReferenceAttachment.h"
#include "SceneGraph/SceneFile.h"
#include "Support/SceneTest.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

class kxFastGeometryLoaderTest : public kxtest::SceneTest
{
protected:
    /// A node "Car" with a child "Wheel", and a pool with a material, a camera, and a constraint of the two.
    void writeCar()
    {
        const osg::FCRef<osg::Node> car(NodeUtils::createNodeWithCore(osg::Group::create(), nullptr, "Car"));
        const osg::NodePtr wheel = NodeUtils::createNodeWithCore(osg::Group::create(), car, "Wheel");
        const auto pool = osg::MaterialPool::create();
        NodeUtils::createNodeWithCore(pool, car, "");
        const auto constraint = osg::Constraint::create();
        {
            const osg::CPEditor edit(constraint, osg::Constraint::EndsFieldMask);
            constraint->editEnds() = std::vector{kxNodeKeys::make(wheel), kxNodeKeys::make(car)};
        }
        const auto set = osg::LightLinkSet::create();
        const osg::CPEditor edit(pool, osg::AllFieldMask);
        pool->editMaterials().push_back(newMaterial("Paint"));
        pool->editCameras().push_back(osg::UberCamera::create());
        pool->editConstraints().push_back(constraint);
        pool->editLightLinkSets().push_back(set);
        ASSERT_TRUE(kxNodeUtils::writeNode(car, path.c_str(), true));
    }

    kxtest::TemporaryFolder folder;
    std::string path = folder.file("car.osb");
    kxFastGeometryLoader loader;
};

TEST_F(kxFastGeometryLoaderTest, GivesANodeThatNobodyHolds)
{
    writeCar();

    const osg::NodePtr node = loader.load(path.c_str());

    ASSERT_TRUE(node);
    EXPECT_EQ(node->getRefCount(), 0);
    EXPECT_EQ(osg::getName(node), "Car");
    EXPECT_EQ(node->getNChildren(), 2U) << "the pool stays unless it is to be merged";
    EXPECT_FALSE(osg::findAttachment<osg::ReferenceAttachment>(node));
    const osg::FCRef<osg::Node> owner(node);
}

TEST_F(kxFastGeometryLoaderTest, MovesWhatPoolsHoldIntoTheScene)
{
    writeCar();
    loader.setMaterialPoolHandling(kxFastGeometryLoader::MergeIntoScene);

    const osg::FCRef<osg::Node> node(loader.load(path.c_str()));

    ASSERT_EQ(node->getNChildren(), 1U) << "the pool's node went";
    const osg::MaterialPoolPtr scene = kxScenegraph::getMaterialPool();
    EXPECT_EQ(osg::getName(*(scene->getMaterials().end() - 1)), "Paint");
    EXPECT_EQ(scene->getCameras().size(), 1U);
    EXPECT_EQ(scene->getLightLinkSets().size(), 1U);
    ASSERT_EQ(scene->getConstraints().size(), 1U);
    EXPECT_EQ(scene->getConstraints()[0]->getEnds()[0], kxNodeKeys::get(node->getChild(0))) << "linked again";
    EXPECT_EQ(scene->getConstraints()[0]->getEnds()[1], kxNodeKeys::get(node));
}

TEST_F(kxFastGeometryLoaderTest, LinksASecondCopyToItself)
{
    writeCar();
    loader.setMaterialPoolHandling(kxFastGeometryLoader::MergeIntoScene);

    const osg::FCRef<osg::Node> first(loader.load(path.c_str()));
    const osg::FCRef<osg::Node> second(loader.load(path.c_str()));

    EXPECT_NE(kxNodeKeys::get(first), kxNodeKeys::get(second));
    const auto &constraints = kxScenegraph::getMaterialPool()->getConstraints();
    ASSERT_EQ(constraints.size(), 2U);
    EXPECT_EQ(constraints[0]->getEnds()[1], kxNodeKeys::get(first));
    EXPECT_EQ(constraints[1]->getEnds()[1], kxNodeKeys::get(second));
}

TEST_F(kxFastGeometryLoaderTest, HangsTheNodeWhereItIsTold)
{
    writeCar();
    const osg::NodePtr parent = addNode(osg::Group::create());
    addNodeBelow(parent, osg::Group::create(), "A");
    loader.setAddFileInfo(true);

    loader.setParent(parent, 0);
    const osg::NodePtr first = loader.load(path.c_str());
    loader.setParent(parent, -1);
    const osg::NodePtr last = loader.load(path.c_str());

    EXPECT_EQ(parent->findChild(first), 0);
    EXPECT_EQ(parent->findChild(last), 2);
    EXPECT_EQ(osg::findAttachment<osg::ReferenceAttachment>(last)->getSource(), path);
}

TEST_F(kxFastGeometryLoaderTest, SaysWhyThereIsNoNode)
{
    ASSERT_TRUE(osg::writeSceneFile(path, {newMaterial().get()}));
    const std::size_t before = osg::FieldContainerFactory::the().livingContainerCount();
    const kxLogRecorder log;

    EXPECT_FALSE(loader.load(path.c_str()));
    EXPECT_FALSE(loader.load(folder.file("none.osb").c_str()));
    EXPECT_FALSE(loader.load(nullptr));

    EXPECT_EQ(osg::FieldContainerFactory::the().livingContainerCount(), before);
    ASSERT_EQ(log.lines().size(), 3U);
    EXPECT_EQ(log.lines()[0], "Failed to load a node from '" + path + "': the file holds none.");
    EXPECT_THAT(log.lines()[1], HasSubstr("none.osb"));
}

} // namespace
