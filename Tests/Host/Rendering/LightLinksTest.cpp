// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/LightLinks.h"

#include "Kernel/kxNodeKeys.h"
#include "SceneGraph/EditCP.h"

#include <gtest/gtest.h>

namespace {

using namespace kxRender;
using Indices = std::vector<std::uint32_t>;

enum class Kind { Inclusive, Exclusive };

/// A tree of a parent and its child, and two lights with the keys "sun" and "lamp".
class LightLinksTest : public testing::Test
{
protected:
    LightLinksTest()
    {
        const osg::CPEditor edit(_parent.get(), osg::Node::ChildrenFieldMask);
        _parent->addChild(_child.get());
    }

    std::string parent() const { return kxNodeKeys::make(_parent.get()); }
    std::string child() const { return kxNodeKeys::make(_child.get()); }

    void addSet(Kind kind, const std::vector<std::string> &lights, const std::vector<std::string> &members)
    {
        const osg::FCRef<osg::MaterialPool> pool(osg::MaterialPool::create());
        const osg::LightLinkSetPtr set = osg::LightLinkSet::create();
        {
            const osg::CPEditor edit(set, osg::AllFieldMask);
            set->editLights() = lights;
            set->editMembers() = members;
            set->setIsExclusive(kind == Kind::Exclusive);
        }
        {
            const osg::CPEditor edit(pool.get(), osg::MaterialPool::LightLinkSetsFieldMask);
            pool->editLightLinkSets().push_back(nullptr);
            pool->editLightLinkSets().push_back(set);
        }
        _links.add(*pool);
    }

    Indices outside() const { return at(_links.outside()); }
    Indices atParent() const { return at(_links.below(_links.outside(), _parent.get())); }
    Indices atChild() const { return at(_links.below(_links.below(_links.outside(), _parent.get()), _child.get())); }

private:
    Indices at(const LightLinks::Place &place) const { return _links.lightsAt(place, {"sun", "lamp", ""}); }

    LightLinks _links;
    osg::FCRef<osg::Node> _child{osg::makeNodeFor(nullptr)};
    osg::FCRef<osg::Node> _parent{osg::makeNodeFor(nullptr)};
};

TEST_F(LightLinksTest, LightsEverythingWithoutSets)
{
    EXPECT_EQ(outside(), (Indices{0, 1, 2}));
    EXPECT_EQ(atChild(), (Indices{0, 1, 2}));
}

TEST_F(LightLinksTest, LightsTheMembersOfASetAndWhatLiesBelow)
{
    addSet(Kind::Inclusive, {"lamp"}, {parent()});

    EXPECT_EQ(outside(), (Indices{0, 2}));
    EXPECT_EQ(atParent(), (Indices{0, 1, 2}));
    EXPECT_EQ(atChild(), (Indices{0, 1, 2}));
}

TEST_F(LightLinksTest, DoesNotLightWhatLiesAboveAMember)
{
    addSet(Kind::Inclusive, {"lamp"}, {child()});

    EXPECT_EQ(atParent(), (Indices{0, 2}));
    EXPECT_EQ(atChild(), (Indices{0, 1, 2}));
}

TEST_F(LightLinksTest, LeavesTheMembersOfAnExclusiveSetOut)
{
    addSet(Kind::Exclusive, {"lamp", "sun"}, {child()});

    EXPECT_EQ(outside(), (Indices{0, 1, 2}));
    EXPECT_EQ(atParent(), (Indices{0, 1, 2}));
    EXPECT_EQ(atChild(), (Indices{2}));
}

TEST_F(LightLinksTest, LightsTheMembersOfAllItsSets)
{
    addSet(Kind::Inclusive, {"lamp"}, {"elsewhere"});
    addSet(Kind::Inclusive, {"lamp"}, {child()});

    EXPECT_EQ(atParent(), (Indices{0, 2}));
    EXPECT_EQ(atChild(), (Indices{0, 1, 2}));
}

TEST_F(LightLinksTest, LeavesOutAlsoWhatAnotherSetHasAsMember)
{
    addSet(Kind::Inclusive, {"lamp"}, {parent()});
    addSet(Kind::Exclusive, {"lamp"}, {child()});

    EXPECT_EQ(outside(), (Indices{0, 2}));
    EXPECT_EQ(atParent(), (Indices{0, 1, 2}));
    EXPECT_EQ(atChild(), (Indices{0, 2}));
}

TEST_F(LightLinksTest, HeedsNoSetWithoutMembers)
{
    addSet(Kind::Inclusive, {"lamp"}, {});
    addSet(Kind::Exclusive, {"sun"}, {});

    EXPECT_EQ(atChild(), (Indices{0, 1, 2}));
}

TEST_F(LightLinksTest, DoesNotTakeAnEmptyKeyForThatOfANode)
{
    addSet(Kind::Exclusive, {"lamp"}, {""});
    addSet(Kind::Inclusive, {""}, {});

    EXPECT_EQ(atChild(), (Indices{0, 1, 2})) << "neither a node nor a light without a key is named";
}

} // namespace
