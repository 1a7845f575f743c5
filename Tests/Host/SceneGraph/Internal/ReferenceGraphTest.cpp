// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/ReferenceGraph.h"

#include "SceneGraph/JsonAttachment.h"
#include "SceneGraph/NameAttachment.h"

#include <gtest/gtest.h>

namespace {

using namespace osg;

TEST(ReferenceGraphTest, AcceptsNothingAtAll)
{
    EXPECT_EQ(ReferenceGraph().findFault(0), std::nullopt);
    EXPECT_EQ(ReferenceGraph().findFault(3), std::nullopt);
}

TEST(ReferenceGraphTest, AcceptsSharing)
{
    ReferenceGraph graph;
    graph.addReference(0, 1);
    graph.addReference(0, 2);
    graph.addReference(1, 3);
    graph.addReference(2, 3);
    graph.addReference(2, 3);

    EXPECT_EQ(graph.findFault(4), std::nullopt);
}

TEST(ReferenceGraphTest, AcceptsReferencesToEarlierNumbers)
{
    ReferenceGraph graph;
    graph.addReference(2, 1);
    graph.addReference(1, 0);

    EXPECT_EQ(graph.findFault(3), std::nullopt);
}

TEST(ReferenceGraphTest, RefusesCycles)
{
    ReferenceGraph self;
    self.addReference(1, 1);
    EXPECT_EQ(self.findFault(2), "A container contains itself");

    ReferenceGraph graph;
    graph.addReference(0, 1);
    graph.addReference(1, 2);
    graph.addReference(2, 3);
    graph.addReference(3, 1);
    EXPECT_EQ(graph.findFault(4), "A container contains itself");
}

TEST(ReferenceGraphTest, RefusesASecondParent)
{
    ReferenceGraph graph;
    graph.addChild(0, 2);
    graph.addReference(1, 2);
    EXPECT_EQ(graph.findFault(3), std::nullopt);
    graph.addChild(1, 2);
    EXPECT_EQ(graph.findFault(3), "A node has more than one parent");
}

TEST(ReferenceGraphTest, RefusesASecondAttachmentOfAType)
{
    ReferenceGraph graph;
    graph.addAttachment(0, 1, JsonAttachment::getClassType());
    graph.addAttachment(0, 2, NameAttachment::getClassType());
    graph.addAttachment(3, 4, NameAttachment::getClassType());
    EXPECT_EQ(graph.findFault(6), std::nullopt);
    graph.addAttachment(0, 5, NameAttachment::getClassType());
    EXPECT_EQ(graph.findFault(6), "A container has two attachments of one type");
}

} // namespace
