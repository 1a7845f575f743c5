// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxAssetSession.h"
#include "AssetSession/kxLibraryVerifier.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxUrlManager.h"
#include "FileFaults.h"
#include "Kernel/kxMaterials.h"
#include "Rendering/kxPreviewSettings.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "SmallMaterials.h"
#include "Support/CapturedOutput.h"
#include "Support/TemporaryFolder.h"

#include <QDomDocument>
#include <QImage>

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>

namespace fs = std::filesystem;

namespace {

using kxtest::FileFaults;

constexpr float Old = 0.25F;
constexpr float New = 0.75F;

std::string nameOf(FileFaults::Kind kind)
{
    switch (kind) {
    case FileFaults::Kind::NoSpace:
        return "NoSpace";
    case FileFaults::Kind::NoPermission:
        return "NoPermission";
    case FileFaults::Kind::IoError:
        return "IoError";
    case FileFaults::Kind::ShortWrite:
        break;
    }
    return "ShortWrite";
}

/// A library of two surfaces, a switch of both, and two more surfaces in another folder; and something done with it.
class FaultLoopTest : public testing::TestWithParam<FileFaults::Kind>
{
protected:
    FaultLoopTest()
    {
        kxPreviewSettings::setSize(16);
        kxPreviewSettings::setSamples(1);
        const kxAssetLibrary library = makeLibrary("pristine");
        const kxtest::Owned red = kxtest::makeSurface("Red", Old);
        const kxtest::Owned blue = kxtest::makeSurface("Blue", Old);
        _red = kxtest::store(red, library.folder("Paint").value());
        _blue = kxtest::store(blue, library.folder("Paint").value());
        _choice = kxtest::store(kxtest::makeSwitch("Choice", {red, blue}), library.folder("Paint").value());
        _oak = kxtest::store(kxtest::makeSurface("Oak", Old), library.folder("More/Paint").value());
        _otherRed = kxtest::store(kxtest::makeSurface("Red", New), library.folder("More/Paint").value());
        kxAssetItemFactory::the().deleteAllItems();
    }

    kxAssetLibrary makeLibrary(const std::string &name)
    {
        fs::create_directories(_folder.file(name));
        return kxAssetLibrary(QString::fromStdString(_folder.file(name)));
    }

    QUrl url(const std::string &place) const
    {
        return QUrl::fromLocalFile(QString::fromStdString(_folder.file(place)));
    }
    kxUrlManager &manager() const { return *kxUrlManager::getUrlManager(url("lib")); }

    static kxMaterialAssetItem *item(const std::string &uuid)
    {
        return dynamic_cast<kxMaterialAssetItem *>(kxAssetItemFactory::the().findItem(uuid));
    }

    /// Does \a work on a fresh copy of the library, again and again, while the 1st, the 2nd, the 3rd ... file operation
    /// fails, until none does; looks at everything after each time.
    void loop(const std::function<void()> &work, const std::function<void()> &check)
    {
        _mayFind = [](const kxLibraryVerifier::Finding &) { return false; };
        _registryFollows = true;
        loopAsItIs(work, check);
    }

    void loopAsItIs(const std::function<void()> &work, const std::function<void()> &check)
    {
        int failing = 1;
        for (bool hasFailed = true; hasFailed; ++failing) {
            ASSERT_LT(failing, 2000);
            fs::remove_all(_folder.file("lib"));
            fs::copy(_folder.file("pristine"), _folder.file("lib"), fs::copy_options::recursive);
            kxAssetItemFactory::the().deleteAllItems();
            kxAssetLibrary library(QString::fromStdString(_folder.file("lib")));
            library.open(nullptr);
            std::string failed;
            {
                const kxtest::CapturedOutput output; // what the library says of a failure is no finding
                const FileFaults faults(_folder.file("lib"), GetParam(), failing);
                work();
                hasFailed = faults.hasFailed();
                failed = faults.failed();
            }
            SCOPED_TRACE("operation " + std::to_string(failing) + ": " + failed);
            if (_registryFollows)
                checkRegistry();
            checkFiles();
            check();
            if (HasFailure())
                return;
        }
        const int operations = failing - 2;
        std::printf("%d operations\n", operations);
        if (GetParam() == FileFaults::Kind::IoError) {
            EXPECT_GT(operations, 0) << "nothing was made to fail";
        }
    }

    /// What the registry says of places is so.
    void checkRegistry()
    {
        for (const std::string &uuid : {_red, _blue, _choice, _oak, _otherRed}) {
            kxAssetItem *registered = kxAssetItemFactory::the().findItem(uuid);
            if (!registered)
                continue;
            const QUrl place = registered->directoryUrl();
            EXPECT_TRUE(manager().containsItem(place, Material, uuid))
                << registered->name() << " is registered at " << place.toLocalFile().toStdString();
        }
    }

    /// Every asset in the library is whole, and none is there twice.
    void checkFiles()
    {
        kxLibraryVerifier verifier(QString::fromStdString(_folder.file("lib")));
        for (const kxLibraryVerifier::Finding &finding : verifier.verify())
            if (!_mayFind(finding))
                ADD_FAILURE() << finding.kind << ' ' << finding.path << ": " << finding.text;
        kxAssetItemFactory::the().deleteAllItems();
        kxAssetLibrary(QString::fromStdString(_folder.file("lib"))).open(nullptr);
    }

    /// Where the asset was found, seen from the temporary folder; "" when it was not.
    std::string placeOf(const std::string &uuid) const
    {
        kxAssetItem *found = kxAssetItemFactory::the().findItem(uuid);
        if (!found)
            return "";
        return fs::relative(found->directoryUrl().toLocalFile().toStdString(), _folder.file(".")).string();
    }

    void expectAssets(int count) { EXPECT_EQ(kxAssetItemFactory::the().itemCount(), count); }

    /// As it is stored; -1 when it cannot be loaded.
    float storedRoughness(const std::string &uuid)
    {
        kxMaterialAssetItem *stored = item(uuid);
        if (!stored || !stored->loadMaterial())
            return -1.0F;
        const auto surface = osg::UBRDFMaterialPtr::dcast(stored->getMaterial());
        const float roughness = surface ? surface->getRoughness() : -1.0F;
        stored->invalidateMaterial();
        return roughness;
    }

    kxAssetSession _session;
    kxtest::TemporaryFolder _folder;
    /// What may be found all the same.
    std::function<bool(const kxLibraryVerifier::Finding &)> _mayFind;
    /// A move says where things went, and leaves it to the caller to scan that place.
    bool _registryFollows = true;
    std::string _red;
    std::string _blue;
    std::string _choice;
    std::string _oak;
    std::string _otherRed; ///< the same name, in the same folder as the oak
};

} // namespace

TEST_P(FaultLoopTest, SavesANewAssetWholeOrSaysThatItFailed)
{
    bool isSaved = false;
    // Metadata comes first, and stays when there is no room for the payload: the save has said that it failed.
    _mayFind = [&isSaved](const kxLibraryVerifier::Finding &finding) {
        return finding.path == "Paint/MAT_Green" &&
               (finding.kind == "preview-missing" || (finding.kind == "payload-missing" && !isSaved));
    };
    loopAsItIs(
        [&] {
            const kxtest::Owned green = kxtest::makeSurface("Green", New);
            kxMaterialAssetItem created;
            created.initFrom(green.get(), {}, true);
            isSaved = created.save(url("lib/Paint"));
        },
        [&] {
            const int count = kxAssetItemFactory::the().itemCount();
            EXPECT_TRUE(count == 6 || (count == 5 && !isSaved)) << count;
        });
}

TEST_P(FaultLoopTest, SavesAnAssetAgainOrKeepsTheOldOne)
{
    bool isSaved = false;
    loop(
        [&] {
            kxMaterialAssetItem *stored = item(_red);
            isSaved = false;
            if (!stored->loadMaterial())
                return;
            const auto surface = osg::UBRDFMaterialPtr::dcast(stored->getMaterial());
            {
                const osg::CPEditor edit(surface, osg::UBRDFMaterial::RoughnessFieldMask);
                surface->setRoughness(New);
            }
            isSaved = stored->save(stored->parentDirectoryUrl());
        },
        [&] {
            expectAssets(5);
            const float roughness = storedRoughness(_red);
            EXPECT_TRUE(roughness == Old || roughness == New) << roughness;
            if (isSaved) {
                EXPECT_EQ(roughness, New);
            }
        });
}

TEST_P(FaultLoopTest, SavesACompositeAgainOrKeepsTheOldOne)
{
    loop(
        [this] {
            kxMaterialAssetItem *stored = item(_choice);
            // A part that cannot be read is left out of what is loaded; nobody should save that.
            if (stored->loadMaterial() && kxMaterials::getSubMaterials(stored->getMaterial()).size() == 2)
                (void)stored->save(stored->parentDirectoryUrl());
        },
        [this] {
            expectAssets(5);
            EXPECT_EQ(item(_choice)->subMaterialUUIDs(), (std::vector{_red, _blue}));
        });
}

TEST_P(FaultLoopTest, RenamesOrKeepsTheName)
{
    bool isRenamed = false;
    loop([&] { isRenamed = item(_red)->changeName(QStringLiteral("Crimson")); },
         [&] {
             expectAssets(5);
             EXPECT_EQ(item(_red)->name(), isRenamed ? "Crimson" : "Red");
         });
}

TEST_P(FaultLoopTest, MovesAnAssetOrLeavesIt)
{
    _mayFind = [](const kxLibraryVerifier::Finding &) { return false; };
    _registryFollows = false;
    bool isMoved = false;
    loopAsItIs(
        [&] {
            QUrl place;
            isMoved = manager().move(url("lib/Paint/MAT_Red"), url("lib/More"), place, false);
        },
        [&] {
            expectAssets(5);
            EXPECT_EQ(placeOf(_red), isMoved ? "lib/More/MAT_Red" : "lib/Paint/MAT_Red");
        });
}

TEST_P(FaultLoopTest, MergesFoldersWithoutLosingAnAsset)
{
    _mayFind = [](const kxLibraryVerifier::Finding &) { return false; };
    _registryFollows = false;
    bool isMerged = false;
    loopAsItIs(
        [&] {
            QUrl place;
            isMerged = manager().move(url("lib/More/Paint"), url("lib"), place, true);
        },
        [&] {
            expectAssets(5);
            EXPECT_EQ(storedRoughness(_red), Old);
            EXPECT_EQ(storedRoughness(_otherRed), New);
            // What cannot be listed stays where it is, and no step has failed then.
            if (isMerged && !fs::exists(_folder.file("lib/More/Paint"))) {
                EXPECT_EQ(placeOf(_oak), "lib/Paint/MAT_Oak");
                EXPECT_EQ(placeOf(_otherRed), "lib/Paint/MAT_Red0");
            }
        });
}

TEST_P(FaultLoopTest, RemovesAFolderOrSaysThatSomeOfItStays)
{
    bool isRemoved = false;
    // A removal goes on after a failure, and does not bring back what went.
    _mayFind = [&isRemoved](const kxLibraryVerifier::Finding &finding) {
        return finding.path.starts_with("More/Paint/MAT_") && !isRemoved;
    };
    loopAsItIs([&] { isRemoved = manager().removeDirectory(url("lib/More")); },
               [&] {
                   EXPECT_EQ(fs::exists(_folder.file("lib/More")), !isRemoved);
                   for (const std::string &uuid : {_red, _blue, _choice})
                       EXPECT_NE(item(uuid), nullptr);
               });
}

TEST_P(FaultLoopTest, WritesAPreviewOrKeepsTheOldOne)
{
    const osg::FCRef<osg::Image> picture(osg::Image::create());
    {
        const osg::CPEditor edit(picture.get(), osg::AllFieldMask);
        ASSERT_TRUE(picture->set(4, 4, 3, osg::PixelType::UInt8));
    }
    bool isWritten = false;
    loop([&] { isWritten = picture->write(_folder.file("lib/Paint/MAT_Red/Red.png")); },
         [&] {
             expectAssets(5);
             const int width = QImage(url("lib/Paint/MAT_Red/Red.png").toLocalFile()).width();
             EXPECT_TRUE(width == 4 || (width == 16 && !isWritten)) << width;
         });
}

TEST_P(FaultLoopTest, WritesADocumentOrKeepsTheOldOne)
{
    QDomDocument document;
    ASSERT_TRUE(manager().loadDocumentFromFile(url("pristine/Paint/MAT_Red/Red.xml"), document));
    document.appendChild(document.createComment(QStringLiteral("again")));
    bool isWritten = false;
    loop([&] { isWritten = manager().saveDocumentToFile(url("lib/Paint/MAT_Red/Red.xml"), document); },
         [&] {
             expectAssets(5);
             QDomDocument stored;
             EXPECT_TRUE(manager().loadDocumentFromFile(url("lib/Paint/MAT_Red/Red.xml"), stored));
             const bool isNew = stored.lastChild().isComment();
             EXPECT_TRUE(isNew || !isWritten);
         });
}

TEST_P(FaultLoopTest, SavesANewCompositeWholeOrSaysThatItFailed)
{
    bool isSaved = false;
    _mayFind = [](const kxLibraryVerifier::Finding &finding) {
        return finding.path == "Paint/MAT_Both" && finding.kind == "preview-missing";
    };
    loopAsItIs(
        [&] {
            isSaved = false;
            if (!item(_red)->loadMaterial() || !item(_blue)->loadMaterial())
                return;
            const kxtest::Owned red(item(_red)->getMaterial());
            const kxtest::Owned blue(item(_blue)->getMaterial());
            const kxtest::Owned both = kxtest::makeSwitch("Both", {red, blue});
            kxMaterialAssetItem created;
            created.initFrom(both.get(), {}, true);
            isSaved = created.save(url("lib/Paint"));
        },
        [&] {
            const int count = kxAssetItemFactory::the().itemCount();
            EXPECT_TRUE(count == 6 || (count == 5 && !isSaved)) << count;
        });
}

INSTANTIATE_TEST_SUITE_P(Kinds, FaultLoopTest,
                         testing::Values(FileFaults::Kind::NoSpace, FileFaults::Kind::NoPermission,
                                         FileFaults::Kind::IoError, FileFaults::Kind::ShortWrite),
                         [](const auto &kind) { return nameOf(kind.param); });
