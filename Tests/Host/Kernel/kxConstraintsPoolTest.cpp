// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxConstraintsPool.h"

#include "Kernel/kxNodeKeys.h"
#include "Support/SceneTest.h"

namespace {

using kxConstraintsPoolTest = kxtest::SceneTest;

TEST_F(kxConstraintsPoolTest, TakesTheConstraintsWhoseEndsAllLieBelow)
{
    const osg::NodePtr node = addNode(osg::Group::create());
    const osg::NodePtr below = addNodeBelow(node, osg::Group::create());
    const osg::NodePtr outside = addNode(osg::Group::create());
    const osg::MaterialPoolPtr scene = kxScenegraph::getMaterialPool();
    const auto add = [&scene](const std::vector<std::string> &ends) {
        const auto constraint = osg::Constraint::create();
        {
            const osg::CPEditor edit(constraint, osg::Constraint::EndsFieldMask);
            constraint->editEnds() = ends;
        }
        const osg::CPEditor edit(scene, osg::MaterialPool::ConstraintsFieldMask);
        scene->editConstraints().push_back(constraint);
        return constraint;
    };
    add({kxNodeKeys::make(below), kxNodeKeys::make(outside)});
    const auto inside = add({kxNodeKeys::make(below), kxNodeKeys::make(node)});
    add({});
    const osg::FCRef<osg::MaterialPool> core(osg::MaterialPool::create());
    kxConstraintsPool pool(core.get());

    EXPECT_TRUE(pool.createFrom(node));
    ASSERT_EQ(core->getConstraints().size(), 1U);
    EXPECT_EQ(core->getConstraints()[0], inside);
    pool.reset();
    pool.reset();
    EXPECT_TRUE(core->getConstraints().empty());
    EXPECT_EQ(scene->getConstraints().size(), 3U);

    EXPECT_FALSE(pool.createFrom(below)) << "one end is the node above";
    EXPECT_FALSE(pool.createFrom(nullptr));
}

} // namespace
