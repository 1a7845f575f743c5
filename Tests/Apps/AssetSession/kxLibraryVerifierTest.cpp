// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxLibraryVerifier.h"

#include "AssetSession/kxAssetSession.h"
#include "Assets/kxAssetItemFactory.h"
#include "Support/CapturedOutput.h"
#include "Support/TemporaryFolder.h"

#include "SmallMaterials.h"

#include <gmock/gmock.h>

#include <filesystem>

using kxtest::makeSurface;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

/// A library of two materials and a switch between them.
class kxLibraryVerifierTest : public testing::Test
{
protected:
    kxLibraryVerifierTest()
    {
        const kxtest::Owned steel = makeSurface("Steel");
        const kxtest::Owned brass = makeSurface("Brass");
        _steel = kxtest::store(steel, url());
        kxtest::store(brass, url());
        _metal = kxtest::store(kxtest::makeSwitch("Metal", {steel, brass}), url());
    }

    QUrl url() const { return QUrl::fromLocalFile(QString::fromStdString(_folder.string())); }

    /// "kind path" of each finding. What the host logs meanwhile is left out.
    std::vector<std::string> findings() const
    {
        kxtest::CapturedOutput log(kxtest::CapturedOutput::StandardError);
        kxLibraryVerifier verifier(QString::fromStdString(_folder.string()));
        std::vector<std::string> texts;
        for (const kxLibraryVerifier::Finding &finding : verifier.verify()) {
            EXPECT_NE(finding.text, "");
            texts.push_back(finding.kind + ' ' + finding.path);
        }
        return texts;
    }

    void replaceIn(const std::string &file, const std::string &from, const std::string &to) const
    {
        std::string text = _folder.read(file);
        const std::size_t position = text.find(from);
        ASSERT_NE(position, std::string::npos);
        _folder.write(file, text.replace(position, from.size(), to));
    }

    kxtest::TemporaryFolder _folder;
    kxAssetSession _session;
    std::string _steel;
    std::string _metal;
};

} // namespace

TEST_F(kxLibraryVerifierTest, FindsNothingInASoundLibrary)
{
    kxLibraryVerifier verifier(QString::fromStdString(_folder.string()));

    EXPECT_THAT(verifier.verify(), IsEmpty());
    EXPECT_EQ(verifier.assetCount(), 3);
}

TEST_F(kxLibraryVerifierTest, NeedsNoRegistry)
{
    kxAssetItemFactory::the().deleteAllItems();

    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 0);
}

TEST_F(kxLibraryVerifierTest, FindsTheSameTheSecondTime)
{
    fs::remove(_folder.file("MAT_Steel/Steel.osb"));
    kxLibraryVerifier verifier(QString::fromStdString(_folder.string()));

    EXPECT_EQ(verifier.verify().size(), 1U);
    EXPECT_EQ(verifier.verify().size(), 1U);
}

TEST_F(kxLibraryVerifierTest, FindsDamageOfEveryKind)
{
    fs::remove(_folder.file("MAT_Steel/Steel.osb"));
    fs::copy(_folder.file("MAT_Brass"), _folder.file("MAT_Brass copy"));
    _folder.write("MAT_Brass copy/Brass.osb", "no scene");
    _folder.write("MAT_Brass/Brass.png", "no picture");
    fs::remove(_folder.file("MAT_Metal/Metal.png"));
    _folder.write("Stray/stray.osb", "");
    _folder.write("Torn/torn.xml", "<?xml version=\"1.0\"?><item><cat");
    _folder.write("Other/other.xml", "<note/>");
    _folder.write("MAT_Steel/.kx-00000001.part", "");

    EXPECT_THAT(findings(),
                ElementsAre("payload-damaged MAT_Brass copy/Brass.osb", "duplicate-uuid MAT_Brass copy/Brass.xml",
                            "preview-damaged MAT_Brass/Brass.png", "preview-missing MAT_Metal",
                            "payload-missing MAT_Steel", "leftover MAT_Steel/.kx-00000001.part",
                            "metadata-invalid Other/other.xml", "metadata-missing Stray",
                            "metadata-damaged Torn/torn.xml"));
}

TEST_F(kxLibraryVerifierTest, FindsMissingPartsOfComposites)
{
    fs::remove_all(_folder.file("MAT_Steel"));

    EXPECT_THAT(findings(), ElementsAre("submaterial-missing MAT_Metal"));
}

TEST_F(kxLibraryVerifierTest, FindsACompositeThatContainsItself)
{
    replaceIn("MAT_Metal/Metal.xml", _steel, _metal);

    EXPECT_THAT(findings(), ElementsAre("submaterial-cycle MAT_Metal"));
}

TEST_F(kxLibraryVerifierTest, FindsAPayloadWithoutAMaterial)
{
    fs::copy_file(_folder.file("MAT_Brass/Brass.png"), _folder.file("MAT_Steel/Steel.osb"),
                  fs::copy_options::overwrite_existing);

    EXPECT_THAT(findings(), ElementsAre("payload-damaged MAT_Steel/Steel.osb"));
}

TEST_F(kxLibraryVerifierTest, LooksIntoFoldersOfTheLibraryButNotIntoAssets)
{
    fs::create_directories(_folder.file("Metals/Old"));
    fs::rename(_folder.file("MAT_Brass"), _folder.file("Metals/Old/MAT_Brass"));
    fs::remove(_folder.file("Metals/Old/MAT_Brass/Brass.png"));
    _folder.write("MAT_Steel/notes/torn.xml", "<");

    EXPECT_THAT(findings(), ElementsAre("preview-missing Metals/Old/MAT_Brass"));
}

TEST_F(kxLibraryVerifierTest, FollowsNoLinks)
{
    fs::create_directory_symlink(_folder.path(), _folder.file("loop"));

    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(kxLibraryVerifierTest, SaysThatAFolderIsNotThere)
{
    kxLibraryVerifier verifier(QString::fromStdString(_folder.file("nowhere")));

    const auto found = verifier.verify();

    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].kind, "unreadable");
}

TEST_F(kxLibraryVerifierTest, EndsWhenAsked)
{
    fs::remove(_folder.file("MAT_Steel/Steel.osb"));
    kxLibraryVerifier verifier(QString::fromStdString(_folder.string()));
    verifier.setProgress([](int done) { return done < 2; });

    EXPECT_THAT(verifier.verify(), IsEmpty());
    EXPECT_EQ(verifier.assetCount(), 1);
}
