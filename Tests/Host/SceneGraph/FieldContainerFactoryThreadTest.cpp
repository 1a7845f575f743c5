// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/FieldContainerFactory.h"

#include "SceneGraph/ExternalThread.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/Texture.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>
#include <vector>

namespace {

using namespace osg;

constexpr int ThreadCount = 4;

/// Runs the same on several threads that are known to the scene graph, and on this one at the same time.
template <class Work> void runOnThreads(Work work)
{
    std::atomic<int> ready = 0;
    const auto start = [&ready] {
        ++ready;
        while (ready < ThreadCount)
            std::this_thread::yield();
    };
    std::vector<std::thread> threads;
    for (int i = 1; i < ThreadCount; ++i)
        threads.emplace_back([&work, &start, i] {
            ExternalThread *self = ExternalThread::get("test");
            ExternalThread::initialize(self, 0);
            start();
            work(i);
            self->subRef();
        });
    start();
    work(0);
    for (std::thread &thread : threads)
        thread.join();
}

TEST(FieldContainerFactoryThreadTest, GivesEveryContainerItsOwnId)
{
    const std::size_t before = FieldContainerFactory::the().livingContainerCount();
    std::vector<std::vector<std::uint32_t>> ids(ThreadCount);

    runOnThreads([&ids](int thread) {
        for (int i = 0; i < 5000; ++i) {
            const FCRef<Image> image(Image::create());
            const std::uint32_t id = image.get().getFieldContainerId();
            EXPECT_EQ(FieldContainerFactory::the().getContainer(id), image.get());
            ids[static_cast<std::size_t>(thread)].push_back(id);
        }
    });

    std::set<std::uint32_t> all;
    for (const auto &list : ids)
        all.insert(list.begin(), list.end());
    EXPECT_EQ(all.size(), 5000U * ThreadCount);
    EXPECT_EQ(all.count(0), 0U);
    EXPECT_EQ(FieldContainerFactory::the().livingContainerCount(), before);
}

TEST(FieldContainerFactoryThreadTest, AnswersWhileOthersComeAndGo)
{
    const FCRef<Node> stays(Node::create());
    const std::uint32_t id = stays.get().getFieldContainerId();

    runOnThreads([id](int) {
        for (std::uint32_t i = 0; i < 5000; ++i) {
            const FCRef<FieldContainer> passing(FieldContainerFactory::the().createFieldContainer("Image"));
            EXPECT_TRUE(FieldContainerFactory::the().isAlive(id));
            EXPECT_NE(FieldContainerFactory::the().findType("Texture"), nullptr);
        }
    });
}

TEST(FieldContainerFactoryThreadTest, ReadsPicturesOnEveryThread)
{
    const kxtest::TemporaryFolder folder;
    {
        const FCRef<Image> image(Image::create());
        image->set(32, 32, 4, PixelType::UInt8);
        ASSERT_TRUE(image->write(folder.file("a.png")));
        ASSERT_TRUE(image->write(folder.file("a.vif")));
    }

    runOnThreads([&folder](int) {
        for (int i = 0; i < 20; ++i)
            for (const char *name : {"a.png", "a.vif"}) {
                const FCRef<Image> image(Image::create());
                EXPECT_TRUE(image->read(folder.file(name)));
                EXPECT_EQ(image->getPixels().size(), 32U * 32U * 4U);
            }
    });
}

} // namespace
