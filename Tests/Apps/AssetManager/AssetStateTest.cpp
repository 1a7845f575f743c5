// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetState.h"

#include "AssetManager/AssetStates.h"
#include "Assets/kxAssetItemFactory.h"
#include "SceneFixture.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Material.h"

namespace {

class AssetStateTest : public SceneFixture
{
protected:
    AssetStateTest() : uuid(storeMaterial("Red"))
    {
        const osg::NodePtr chair = addChair("Chair");
        actions.assignMaterial(uuid, {chair});
        material = materialOf(chair->getChild(0));
    }

    void markEdited() const
    {
        const osg::AssetAttachmentPtr asset = osg::AssetAttachment::getAssetAttachment(material);
        const osg::CPEditor edit(asset, osg::AssetAttachment::UserEditedFieldMask);
        asset->setUserEdited(true);
    }

    /// As if the asset had been stored again since the material was loaded.
    void makeOutdated() const
    {
        const osg::AssetAttachmentPtr asset = osg::AssetAttachment::getAssetAttachment(material);
        const osg::CPEditor edit(asset, osg::AssetAttachment::ChecksumFieldMask);
        asset->setChecksum(asset->getChecksum() + 1);
    }

    unsigned stateInLibrary() const
    {
        AssetStates states;
        states.update();
        return states.stateOf(uuid);
    }

    std::string uuid;
    osg::MaterialPtr material;
};

TEST_F(AssetStateTest, IsAsStoredAfterLoading)
{
    const AssetState state(material);

    EXPECT_EQ(state.kind(), AssetState::Kind::AsStored);
    EXPECT_EQ(state.uuid(), uuid);
    EXPECT_FALSE(state.isEdited());
    EXPECT_FALSE(state.isStoredNewer());
    EXPECT_EQ(stateInLibrary(), AssetStates::InScene);
}

TEST_F(AssetStateTest, TellsThatTheCopyWasEdited)
{
    markEdited();

    EXPECT_EQ(AssetState(material).kind(), AssetState::Kind::EditedHere);
    EXPECT_FALSE(AssetState(material).isStoredNewer());
    EXPECT_EQ(stateInLibrary(), AssetStates::InScene | AssetStates::EditedInScene);
}

TEST_F(AssetStateTest, TellsThatTheAssetWasStoredAgain)
{
    makeOutdated();

    EXPECT_EQ(AssetState(material).kind(), AssetState::Kind::Outdated);
    EXPECT_EQ(stateInLibrary(), AssetStates::InScene | AssetStates::StoredNewer);
}

TEST_F(AssetStateTest, TellsBothWhereBothWereChanged)
{
    markEdited();
    makeOutdated();

    EXPECT_EQ(AssetState(material).kind(), AssetState::Kind::EditedHere) << "what a person did comes first";
    EXPECT_EQ(stateInLibrary(), AssetStates::InScene | AssetStates::EditedInScene | AssetStates::StoredNewer);
}

TEST_F(AssetStateTest, KnowsNothingStoredOfAnAssetOutsideTheLibraries)
{
    markEdited();
    makeOutdated();

    kxAssetItemFactory::the().deleteAllItems();

    EXPECT_EQ(AssetState(material).kind(), AssetState::Kind::NotFound);
    EXPECT_EQ(stateInLibrary(), AssetStates::InScene | AssetStates::EditedInScene);
}

TEST_F(AssetStateTest, LeavesWhatCameFromNoAssetAlone)
{
    const AssetState state(addChair("Plain"));

    EXPECT_EQ(state.kind(), AssetState::Kind::NoAsset);
    EXPECT_TRUE(state.text().isEmpty());
    EXPECT_TRUE(state.icon().isNull());
}

} // namespace
