// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/ImageStore.h"

#include "SceneGraph/NameAttachment.h"
#include "SmallModels.h"

#include <gmock/gmock.h>

#include <cstring>
#include <memory>

using kximport::ImageStore;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class ImageStoreTest : public testing::Test
{
protected:
    ImageStore makeStore() { return {scene, folder.file("Stuhl.obj"), folder.makeFolder("work"), notes}; }

    void embed(unsigned width, unsigned height, const std::string &bytes, const std::string &hint)
    {
        scene.mNumTextures = 1;
        scene.mTextures = new aiTexture *[1] { new aiTexture };
        aiTexture &texture = *scene.mTextures[0];
        texture.mWidth = width;
        texture.mHeight = height;
        texture.pcData = new aiTexel[bytes.size() / sizeof(aiTexel) + 1];
        std::memcpy(static_cast<void *>(texture.pcData), bytes.data(), bytes.size());
        hint.copy(texture.achFormatHint, HINTMAXTEXTURELEN - 1);
    }

    kxtest::TemporaryFolder folder;
    aiScene scene;
    kximport::ImportNotes notes{"Stuhl.obj"};
};

TEST_F(ImageStoreTest, ReadsAFileOnceHoweverItIsCalled)
{
    kxtest::writeColumn(folder, "Holz.png", 3, {255, 0, 0, 0, 0, 255});
    ImageStore store = makeStore();

    const osg::ImagePtr image = store.find("Holz.png");

    ASSERT_TRUE(image);
    EXPECT_EQ(osg::getName(image), "Holz.png");
    EXPECT_EQ(image->pixel(0, 1), (osg::Vec4f{1, 0, 0, 1})); // the top row lies last
    EXPECT_EQ(store.find("Holz.png"), image);
    EXPECT_EQ(store.find(".\\HOLZ.png"), image);
    EXPECT_THAT(notes.lines(), IsEmpty());
}

TEST_F(ImageStoreTest, NotesAMissingFileOnce)
{
    ImageStore store = makeStore();

    EXPECT_FALSE(store.find("nicht da.png"));
    EXPECT_FALSE(store.find("nicht da.png"));

    EXPECT_THAT(notes.lines(), ElementsAre("'Stuhl.obj': the texture 'nicht da.png' is missing"));
}

TEST_F(ImageStoreTest, NotesAFileThatIsNoPicture)
{
    folder.write("Holz.png", "this is no picture");
    ImageStore store = makeStore();

    EXPECT_FALSE(store.find("Holz.png"));
    EXPECT_FALSE(store.find("./Holz.png"));

    ASSERT_EQ(notes.lines().size(), 1U);
    EXPECT_THAT(notes.lines()[0], StartsWith("'Stuhl.obj': the texture 'Holz.png' cannot be read: "));
}

TEST_F(ImageStoreTest, DecodesAnEmbeddedFile)
{
    kxtest::writeColumn(folder, "a.png", 4, {1, 2, 3, 4});
    const std::string bytes = folder.read("a.png");
    embed(static_cast<unsigned>(bytes.size()), 0, bytes, "jpg"); // the content counts, not the hint
    ImageStore store = makeStore();

    const osg::ImagePtr image = store.find("*0");

    ASSERT_TRUE(image);
    EXPECT_THAT(image->getPixels().values(), ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(osg::getName(image), "embedded 0");
    EXPECT_EQ(image->source(), "");
    EXPECT_TRUE(std::filesystem::is_empty(folder.file("work")));
}

TEST_F(ImageStoreTest, TakesEmbeddedTexelsBottomRowFirst)
{
    embed(1, 2, std::string("\x03\x02\x01\x04\x07\x06\x05\x08", 8), "argb8888"); // blue, green, red, alpha
    ImageStore store = makeStore();

    const osg::ImagePtr image = store.find("*0");

    ASSERT_TRUE(image);
    EXPECT_THAT(image->getPixels().values(), ElementsAre(5, 6, 7, 8, 1, 2, 3, 4));
}

TEST_F(ImageStoreTest, NotesAnEmbeddedFileThatIsNoPicture)
{
    embed(8, 0, "nonsense", "../x");
    ImageStore store = makeStore();

    EXPECT_FALSE(store.find("*0"));

    EXPECT_THAT(notes.lines(), ElementsAre("'Stuhl.obj': the embedded texture '*0' cannot be read"));
    EXPECT_TRUE(std::filesystem::is_empty(folder.file("work")));
}

TEST_F(ImageStoreTest, MakesADerivedPictureOnce)
{
    ImageStore store = makeStore();
    int calls = 0;
    const auto make = [&calls] {
        ++calls;
        return osg::Image::create();
    };

    const osg::ImagePtr first = store.derived("a", make);

    EXPECT_EQ(store.derived("a", make), first);
    EXPECT_NE(store.derived("b", make), first);
    EXPECT_EQ(calls, 2);
}

TEST_F(ImageStoreTest, LetsEverythingGo)
{
    kxtest::writeColumn(folder, "Holz.png", 3, {255, 0, 0});
    folder.write("kaputt.png", "x");
    const std::size_t before = kxtest::livingContainers();
    {
        ImageStore store = makeStore();
        EXPECT_TRUE(store.find("Holz.png"));
        EXPECT_FALSE(store.find("kaputt.png"));
        EXPECT_GT(kxtest::livingContainers(), before);
    }

    EXPECT_EQ(kxtest::livingContainers(), before);
}

} // namespace
