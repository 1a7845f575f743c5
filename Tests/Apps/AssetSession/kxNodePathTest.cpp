// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxNodePath.h"

#include "Kernel/NodeUtils.h"
#include "SceneGraph/Group.h"

#include <gtest/gtest.h>

namespace {

class kxNodePathTest : public testing::Test
{
protected:
    static osg::NodePtr add(const osg::NodePtr &parent, const std::string &name)
    {
        return NodeUtils::createNodeWithCore(osg::Group::create(), parent, name);
    }
    std::vector<osg::NodePtr> roots() const { return {car.get(), lamp.get()}; }
    /// The node, or the reason why there is none.
    std::string reasonOf(const std::string &path) const
    {
        const auto node = kxNodePath::find(path, roots());
        return node ? "found" : node.reason();
    }

    osg::FCRef<osg::Node> car{add(nullptr, "Car")};
    osg::FCRef<osg::Node> lamp{add(nullptr, "Lamp")};
    osg::NodePtr first = add(car, "Wheel");
    osg::NodePtr second = add(car, "Wheel");
    osg::NodePtr unnamed = add(car, "");
    osg::NodePtr odd = add(second, "A/B#1\\");
};

TEST_F(kxNodePathTest, LeadsThereAndBack)
{
    EXPECT_EQ(kxNodePath::of(car.get(), roots()), "Car");
    EXPECT_EQ(kxNodePath::of(first, roots()), "Car/Wheel#1");
    EXPECT_EQ(kxNodePath::of(second, roots()), "Car/Wheel#2");
    EXPECT_EQ(kxNodePath::of(unnamed, roots()), "Car/#3");
    EXPECT_EQ(kxNodePath::of(odd, roots()), "Car/Wheel#2/A\\/B\\#1\\\\");
    EXPECT_EQ(kxNodePath::of(car.get(), {lamp.get()}), "");
    EXPECT_EQ(kxNodePath::of(nullptr, roots()), "");
    for (const osg::NodePtr &node : {car.get(), lamp.get(), first, second, unnamed, odd}) {
        const auto found = kxNodePath::find(kxNodePath::of(node, roots()), roots());
        ASSERT_TRUE(found);
        EXPECT_EQ(found.value(), node);
    }
}

TEST_F(kxNodePathTest, SaysWhereItDoesNotLeadOn)
{
    EXPECT_EQ(reasonOf(""), "an empty path names no node");
    EXPECT_EQ(reasonOf("Bus"), "the scene has no 'Bus', but Car, Lamp");
    EXPECT_EQ(reasonOf("Car/Wheel"), "'Car' has several parts named 'Wheel': Wheel#1, Wheel#2");
    EXPECT_EQ(reasonOf("Car/Wheel#3"), "'Car' has no 'Wheel#3', but Wheel#1, Wheel#2, #3");
    EXPECT_EQ(reasonOf("Lamp/Bulb"), "'Lamp' has no parts");
    EXPECT_EQ(reasonOf("Car/Wheel#x"), "'Car/Wheel#x': a number sign is followed by a number from 1 on");
    EXPECT_EQ(reasonOf("Car/Wheel#0"), "'Car/Wheel#0': a number sign is followed by a number from 1 on");
    EXPECT_EQ(kxNodePath::find("Car", {}).reason(), "the scene has no parts");
}

TEST_F(kxNodePathTest, ListsAFewOfMany)
{
    for (int i = 0; i < 20; ++i)
        add(lamp, "Bulb " + std::to_string(i));

    EXPECT_EQ(reasonOf("Lamp/x"),
              "'Lamp' has no 'x', but Bulb 0, Bulb 1, Bulb 2, Bulb 3, Bulb 4, Bulb 5, Bulb 6, Bulb 7, ...");
}

} // namespace
