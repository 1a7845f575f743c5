// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/ExternalThread.h"

#include "SceneGraph/FieldContainerFactory.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using namespace osg;

template <class Work> void onThread(Work work)
{
    FieldContainerFactory::the();
    std::thread(work).join();
}

TEST(ExternalThreadTest, KnowsTheMainThread)
{
    FieldContainerFactory::the();

    EXPECT_TRUE(ExternalThread::isCurrentKnown());
}

TEST(ExternalThreadTest, DoesNotKnowAThreadThatSaidNothing)
{
    onThread([] { EXPECT_FALSE(ExternalThread::isCurrentKnown()); });
}

TEST(ExternalThreadTest, KnowsAThreadFromInitialisingToTheRelease)
{
    const unsigned before = ExternalThread::knownCount();
    onThread([before] {
        ExternalThread *self = ExternalThread::get("loader");
        EXPECT_FALSE(ExternalThread::isCurrentKnown());
        ExternalThread::initialize(self, 0);
        EXPECT_TRUE(ExternalThread::isCurrentKnown());
        EXPECT_EQ(ExternalThread::knownCount(), before + 1);

        self->subRef();

        EXPECT_FALSE(ExternalThread::isCurrentKnown());
    });
    EXPECT_EQ(ExternalThread::knownCount(), before);
}

TEST(ExternalThreadTest, CountsNestedUse)
{
    onThread([] {
        ExternalThread *outer = ExternalThread::get(nullptr);
        ExternalThread::initialize(outer, 0);
        ExternalThread *inner = ExternalThread::get("inner");
        ExternalThread::initialize(inner, 0);
        inner->subRef();
        EXPECT_TRUE(ExternalThread::isCurrentKnown());

        outer->subRef();

        EXPECT_FALSE(ExternalThread::isCurrentKnown());
    });
}

TEST(ExternalThreadTest, IsKnownAgainAfterARelease)
{
    onThread([] {
        for (int i = 0; i < 2; ++i) {
            ExternalThread *self = ExternalThread::get("again");
            ExternalThread::initialize(self, 0);
            EXPECT_TRUE(ExternalThread::isCurrentKnown());
            self->subRef();
        }
    });
}

} // namespace
