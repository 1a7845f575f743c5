// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxSceneplateUtils.h"

#include "Kernel/kxLogRecorder.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Switch.h"
#include "Support/SceneTest.h"
#include "Support/TemporaryFolder.h"

namespace {

class kxSceneplateUtilsTest : public kxtest::SceneTest
{
protected:
    static osg::NodePtr addPlate(const osg::NodePtr &parent, const std::string &name, bool isFront)
    {
        const auto plate = osg::Sceneplate::create();
        {
            const osg::CPEditor edit(plate, osg::Sceneplate::IsFrontFieldMask);
            plate->setIsFront(isFront);
        }
        return addNodeBelow(parent, plate, name);
    }
};

TEST_F(kxSceneplateUtilsTest, KnowsTheKindsOfPlates)
{
    const osg::NodePtr root = kxSceneplateUtils::getSceneplateRoot();
    ASSERT_TRUE(root);

    EXPECT_EQ(kxSceneplateUtils::getNodeType(addPlate(root, "", true)), 1);
    EXPECT_EQ(kxSceneplateUtils::getNodeType(addPlate(root, "", false)), 2);
    EXPECT_EQ(kxSceneplateUtils::getNodeType(addNodeBelow(root, osg::Group::create())), 4);
    EXPECT_EQ(kxSceneplateUtils::getNodeType(addNodeBelow(root, osg::Switch::create())), 8);
    EXPECT_EQ(kxSceneplateUtils::getNodeType(nullptr), 0);
    EXPECT_FALSE(root->getParent()) << "plates are no part of the scene's tree";
    kxScenegraph::closeDocument();
    EXPECT_FALSE(kxSceneplateUtils::getSceneplateRoot());
}

TEST_F(kxSceneplateUtilsTest, WritesAndReadsPlates)
{
    const kxtest::TemporaryFolder folder;
    const std::string path = folder.file("plates.osb");
    const osg::NodePtr group = addNodeBelow(kxSceneplateUtils::getSceneplateRoot(), osg::Group::create(), "Logos");
    addPlate(group, "Maßstab", false);

    EXPECT_TRUE(kxSceneplateUtils::saveNodes(path, {nullptr, group}));
    const auto loaded = kxSceneplateUtils::loadNodes(path);

    ASSERT_EQ(loaded.size(), 1U);
    EXPECT_EQ(osg::findDifference(loaded[0].get(), group), std::nullopt);
    EXPECT_FALSE(kxSceneplateUtils::saveNodes(path, {nullptr}));
    EXPECT_FALSE(kxSceneplateUtils::saveNodes(folder.file("none/plates.osb"), {group}));
    const kxLogRecorder log;
    EXPECT_TRUE(kxSceneplateUtils::loadNodes(folder.file("none.osb")).empty());
    EXPECT_EQ(log.lines().size(), 1U);
}

} // namespace
