// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxSceneCheck.h"

#include "AssetSession/kxAssetSession.h"
#include "AssetSession/kxNodeSaving.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/NodeUtils.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterialTags.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"
#include "Support/TemporaryFolder.h"

#include "SmallMaterials.h"

#include <gmock/gmock.h>

using kxtest::makeSurface;
using kxtest::Owned;
using testing::ElementsAre;
using testing::IsEmpty;
using State = kxSceneCheck::State;

namespace {

class kxSceneCheckTest : public testing::Test
{
protected:
    std::string store(const Owned &material) const
    {
        return kxtest::store(material, QUrl::fromLocalFile(QString::fromStdString(_folder.file("lib"))));
    }

    static Owned load(const std::string &uuid) { return Owned(kxMaterialAssetItem::getMaterialFromUUID(uuid)); }

    /// The states of the assets in a scene file with these materials.
    std::vector<State> states(const std::vector<Owned> &materials)
    {
        std::vector<osg::FieldContainerPtr> roots;
        roots.reserve(materials.size());
        for (const Owned &material : materials)
            roots.emplace_back(material.get());
        EXPECT_TRUE(osg::writeSceneFile(_folder.file("scene.osb"), roots));
        const auto entries = kxSceneCheck::check(QString::fromStdString(_folder.file("scene.osb")));
        EXPECT_TRUE(entries);
        _entries = entries.value();
        std::vector<State> result;
        for (const kxSceneCheck::Entry &entry : _entries)
            result.push_back(entry.state);
        return result;
    }

    kxtest::TemporaryFolder _folder;
    kxAssetSession _session;
    std::vector<kxSceneCheck::Entry> _entries;
};

} // namespace

TEST_F(kxSceneCheckTest, NamesTheFileThatIsNoScene)
{
    const std::string file = _folder.write("no scene.osb", "");

    const auto entries = kxSceneCheck::check(QString::fromStdString(file));

    ASSERT_FALSE(entries);
    EXPECT_THAT(entries.reason(), testing::HasSubstr(file));
}

TEST_F(kxSceneCheckTest, PassesOverMaterialsThatAreNoAssets)
{
    EXPECT_THAT(states({makeSurface("Steel")}), IsEmpty());
}

TEST_F(kxSceneCheckTest, FindsLoadedAssetsTheSame)
{
    const std::string steel = store(makeSurface("Steel"));

    EXPECT_THAT(states({load(steel)}), ElementsAre(State::Same));
    EXPECT_EQ(_entries[0].uuid, steel);
    EXPECT_EQ(_entries[0].name, "Steel");
    EXPECT_EQ(_entries[0].detail, "");
}

TEST_F(kxSceneCheckTest, TellsWhatWasSavedAgainSince)
{
    const std::string steel = store(makeSurface("Steel"));
    const Owned copy = load(steel);
    auto *item = dynamic_cast<kxMaterialAssetItem *>(kxAssetItemFactory::the().findItem(steel));
    ASSERT_TRUE(item->loadMaterial());
    kxMaterialTags::addTag(item->getMaterial(), "metal");
    ASSERT_TRUE(item->save(item->parentDirectoryUrl()));

    EXPECT_THAT(states({copy}), ElementsAre(State::StoredChanged));
}

TEST_F(kxSceneCheckTest, TellsWhatWasEditedAndMarked)
{
    const Owned copy = load(store(makeSurface("Steel")));
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(copy.get());
    {
        const osg::CPEditor edit(attachment, osg::AssetAttachment::UserEditedFieldMask);
        attachment->setUserEdited(true);
    }

    EXPECT_THAT(states({copy}), ElementsAre(State::EditedInScene));
}

TEST_F(kxSceneCheckTest, TellsWhatWasEditedWithoutAMark)
{
    const Owned copy = load(store(makeSurface("Steel")));
    const auto steel = osg::UBRDFMaterialPtr::dcast(copy.get());
    {
        const osg::CPEditor edit(steel, osg::UBRDFMaterial::MetalnessFieldMask);
        steel->setMetalness(1.0F);
    }

    EXPECT_THAT(states({copy}), ElementsAre(State::EditedInScene));
    EXPECT_EQ(_entries[0].detail, "UBRDFMaterial.Metalness");
}

TEST_F(kxSceneCheckTest, TellsWhatIsNotInTheLibrary)
{
    const std::string steel = store(makeSurface("Steel"));
    const Owned copy = load(steel);
    kxAssetItemFactory::the().deleteItem(steel);

    EXPECT_THAT(states({copy}), ElementsAre(State::MissingInLibrary));
    EXPECT_EQ(_entries[0].detail, "last seen in " + _folder.file("lib/MAT_Steel"));
}

TEST_F(kxSceneCheckTest, ChecksCompositesAndTheirPartsEachOnce)
{
    const Owned steel = makeSurface("Steel");
    const Owned brass = makeSurface("Brass");
    store(steel);
    store(brass);
    const Owned metal = load(store(kxtest::makeSwitch("Metal", {steel, brass}, 1)));

    EXPECT_THAT(states({metal, metal}), ElementsAre(State::Same, State::Same, State::Same));
    EXPECT_EQ(_entries[0].name, "Metal");
}

TEST_F(kxSceneCheckTest, BlamesAChangedPartAndNotItsComposite)
{
    const Owned steel = makeSurface("Steel");
    store(steel);
    const Owned metal = load(store(kxtest::makeSwitch("Metal", {steel})));
    const auto part = osg::UBRDFMaterialPtr::dcast(osg::SwitchMaterialPtr::dcast(metal.get())->getMaterial(0));
    {
        const osg::CPEditor edit(part, osg::UBRDFMaterial::MetalnessFieldMask);
        part->setMetalness(1.0F);
    }

    EXPECT_THAT(states({metal}), ElementsAre(State::Same, State::EditedInScene));
}

TEST_F(kxSceneCheckTest, TellsAnotherChoiceAndOtherParts)
{
    const Owned steel = makeSurface("Steel");
    const Owned brass = makeSurface("Brass");
    store(steel);
    store(brass);
    const Owned metal = load(store(kxtest::makeSwitch("Metal", {steel, brass})));
    const auto chooser = osg::SwitchMaterialPtr::dcast(metal.get());
    {
        const osg::CPEditor edit(chooser, osg::SwitchMaterial::ChoiceFieldMask);
        chooser->setChoice(1);
    }

    EXPECT_EQ(states({metal}).at(0), State::EditedInScene);
    EXPECT_EQ(_entries[0].detail, "its choice is 1 and was 0");

    {
        const osg::CPEditor edit(chooser, osg::SwitchMaterial::MaterialsFieldMask);
        chooser->addMaterial(makeSurface("New").get());
    }
    EXPECT_EQ(states({metal}).at(0), State::EditedInScene);
    EXPECT_EQ(_entries[0].detail, "it is made of other materials");
}

TEST_F(kxSceneCheckTest, HasATextForEveryState)
{
    EXPECT_STREQ(kxSceneCheck::textOf(State::Same), "same");
    EXPECT_STREQ(kxSceneCheck::textOf(State::StoredChanged), "stored asset changed");
    EXPECT_STREQ(kxSceneCheck::textOf(State::EditedInScene), "edited in the scene");
    EXPECT_STREQ(kxSceneCheck::textOf(State::StoredUnreadable), "stored asset cannot be loaded");
    EXPECT_STREQ(kxSceneCheck::textOf(State::MissingInLibrary), "not in the library");
}

TEST_F(kxSceneCheckTest, ComparesNodesButForTheirPlacement)
{
    const osg::FCRef<osg::Node> chair(osg::makeNodeFor(osg::Transform3D::create()));
    osg::setName(chair.get(), "Chair");
    NodeUtils::createNodeWithCore(osg::Geometry::create(), chair, "Seat");
    kxGeometryAssetItem created;
    created.initFrom(chair.get(), {}, true);
    ASSERT_TRUE(created.save(QUrl::fromLocalFile(QString::fromStdString(_folder.file("lib")))));
    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(created.uuid()));
    const auto check = [&] {
        EXPECT_TRUE(osg::writeSceneFile(_folder.file("scene.osb"), {loaded.get()}));
        const auto entries = kxSceneCheck::check(QString::fromStdString(_folder.file("scene.osb")));
        EXPECT_TRUE(entries);
        EXPECT_EQ(entries.value().size(), 1U);
        return entries.value().front();
    };
    {
        const auto core = osg::Transform3DPtr::dcast(loaded->getCore());
        const osg::CPEditor edit(core, osg::Transform3D::TranslationFieldMask);
        core->setTranslation({1.0, 2.0, 3.0});
    }
    EXPECT_EQ(check().state, State::Same) << "placed elsewhere";

    osg::setName(loaded->getChild(0), "Bench");
    EXPECT_EQ(check().state, State::EditedInScene);
    NodeUtils::createNodeWithCore(osg::Geometry::create(), loaded, "Back");
    EXPECT_EQ(check().detail, "it has another number of children");
    kxAssetItemFactory::the().deleteAllItems();
    EXPECT_EQ(check().state, State::MissingInLibrary);
}
TEST_F(kxSceneCheckTest, ComparesEnvironmentsWithTheirMaterials)
{
    const auto sky = osg::USphereEnvironmentMaterial::create();
    const auto core = osg::Environment::create();
    {
        const osg::CPEditor edit(core, osg::Environment::MaterialFieldMask);
        core->setMaterial(sky);
    }
    const osg::NodePtr node = NodeUtils::createNodeWithCore(core, kxScenegraph::getRoot(), "Dawn");
    ASSERT_TRUE(kxNodeSaving({}).save(node, "", QUrl::fromLocalFile(QString::fromStdString(_folder.file("lib")))));
    const auto state = [&] {
        EXPECT_TRUE(osg::writeSceneFile(_folder.file("scene.osb"), {node}));
        const auto entries = kxSceneCheck::check(QString::fromStdString(_folder.file("scene.osb")));
        return entries && entries.value().size() == 1 ? entries.value()[0].state : State::MissingInLibrary;
    };
    const std::size_t environments = kxDefaultEnvironment::getSwitch()->getMaterials().size();

    EXPECT_EQ(state(), State::Same);
    {
        const osg::CPEditor edit(sky, osg::USphereEnvironmentMaterial::IsVisibleFieldMask);
        sky->setIsVisible(false);
    }
    EXPECT_EQ(state(), State::EditedInScene);
    EXPECT_EQ(kxDefaultEnvironment::getSwitch()->getMaterials().size(), environments) << "looking adds none";
}
