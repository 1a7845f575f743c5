// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxNodeKeys.h"

#include "SceneGraph/MaterialPool.h"
#include "Support/SceneTest.h"

namespace {

using kxNodeKeysTest = kxtest::SceneTest;

TEST_F(kxNodeKeysTest, MakesAKeyOnce)
{
    const osg::NodePtr node = addNode(osg::Group::create());
    EXPECT_EQ(kxNodeKeys::get(node), "");

    const std::string key = kxNodeKeys::make(node);

    EXPECT_EQ(key.size(), 36U);
    EXPECT_EQ(kxNodeKeys::make(node), key);
    EXPECT_EQ(kxNodeKeys::get(node), key);
    EXPECT_EQ(kxNodeKeys::find(kxScenegraph::getRoot(), key), node);
    EXPECT_FALSE(kxNodeKeys::find(kxScenegraph::getRoot(), ""));
    EXPECT_EQ(kxNodeKeys::make(nullptr), "");
    EXPECT_EQ(kxNodeKeys::below(node), std::set{key});
}

TEST_F(kxNodeKeysTest, RenewsKeysAndWhatRefersToThem)
{
    const osg::NodePtr root = addNode(osg::Group::create());
    const osg::NodePtr node = addNodeBelow(root, osg::Group::create());
    const std::string old = kxNodeKeys::make(node);
    const auto constraint = osg::Constraint::create();
    {
        const osg::CPEditor edit(constraint, osg::Constraint::EndsFieldMask);
        constraint->editEnds() = std::vector<std::string>{old, "elsewhere"};
    }
    const auto pool = osg::MaterialPool::create();
    addNodeBelow(root, pool);
    {
        const osg::CPEditor edit(pool, osg::MaterialPool::ConstraintsFieldMask);
        pool->editConstraints().push_back(constraint);
    }

    kxNodeKeys::renew(root);

    EXPECT_NE(kxNodeKeys::get(node), old);
    EXPECT_EQ(constraint->getEnds()[0], kxNodeKeys::get(node));
    EXPECT_EQ(constraint->getEnds()[1], "elsewhere");
}

} // namespace
