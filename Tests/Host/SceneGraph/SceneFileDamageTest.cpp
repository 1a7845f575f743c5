// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/SceneFile.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/Texture.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace osg;

/// A sound file that suffered on its way.
class SceneFileDamageTest : public testing::TestWithParam<bool>
{
protected:
    void SetUp() override
    {
        const FCRef<Texture> texture(Texture::create());
        setName(texture.get(), "Holz");
        const ImagePtr image = Image::create();
        {
            const CPEditor edit(texture.get(), Texture::ImageFieldMask);
            texture->setImage(image);
        }
        image->set(16, 16, 4, PixelType::UInt8);
        ASSERT_TRUE(
            writeSceneFile(folder.file("sound.osb"), {texture.get()}, {.isCompressed = GetParam(), .leavesOut = {}}));
        sound = folder.read("sound.osb");
        before = FieldContainerFactory::the().livingContainerCount() - 3;
    }

    bool loads(const std::string &bytes) const
    {
        // A new file each time: replacing the content of one would make the system flush it to the disk.
        std::filesystem::remove(folder.file("damaged.osb"));
        return static_cast<bool>(readSceneFile(folder.write("damaged.osb", bytes)));
    }
    std::size_t leftOver() const { return FieldContainerFactory::the().livingContainerCount() - before; }

    kxtest::TemporaryFolder folder;
    std::string sound;
    std::size_t before = 0;
};

TEST_P(SceneFileDamageTest, RefusesTheFileCutOffAnywhere)
{
    ASSERT_TRUE(loads(sound));
    for (std::size_t length = 0; length < sound.size(); ++length)
        EXPECT_FALSE(loads(sound.substr(0, length))) << length;

    EXPECT_EQ(leftOver(), 0U);
}

TEST_P(SceneFileDamageTest, RefusesTheFileWithMoreAtItsEnd)
{
    EXPECT_FALSE(loads(sound + "x"));
    EXPECT_FALSE(loads(sound + sound));

    EXPECT_EQ(leftOver(), 0U);
}

TEST_P(SceneFileDamageTest, RefusesTheFileWithAnyBitWrong)
{
    // The bytes that fill up to the first array mean nothing: those alone may be anything.
    std::size_t accepted = 0;
    for (std::size_t bit = 0; bit < sound.size() * 8; ++bit) {
        std::string damaged = sound;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << (bit % 8)));
        if (loads(damaged)) {
            ++accepted;
            EXPECT_EQ(sound[bit / 8], '\0') << bit / 8;
        }
    }

    EXPECT_LT(accepted, 64U * 8U);
    EXPECT_EQ(leftOver(), 0U);
}

TEST_P(SceneFileDamageTest, RefusesTheFileWithAPageOfZeros)
{
    for (std::size_t from = 0; from < 512; from += 64) {
        std::string damaged = sound;
        damaged.replace(from, 64, std::string(64, '\0'));
        EXPECT_FALSE(loads(damaged)) << from;
    }
}

INSTANTIATE_TEST_SUITE_P(Files, SceneFileDamageTest, testing::Values(false, true),
                         [](const auto &test) { return test.param ? "Compressed" : "Plain"; });

} // namespace
