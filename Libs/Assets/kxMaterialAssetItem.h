// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetItem.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/Material.h"

#include <QStringList>

#include <map>
#include <vector>

namespace osg {
class FieldContainerType;
}

/// Whether the light that a material gives off is in photometric units.
enum kxAssetPhotometricState : int {
    Unknown = -1,       ///< it gives off none, or nobody can say
    NonPhotometric = 0, ///< photometric parameters were not in force when the item was made
    Photometric = 1     ///< they were in force
};

/// An asset that is a material.
///
/// Loaded or made from a scene material, the item keeps one reference on it and finds it by its container id, so that a
/// material that is gone reads as null.
class KX_ASSETS_EXPORT kxMaterialAssetItem : public kxAssetItem
{
    Q_DECLARE_TR_FUNCTIONS(kxMaterialAssetItem)

public:
    /// What the host calls materials of this type; the type name itself when the host does not say.
    static QString UIMaterialTypeName(const std::string &typeName);
    /// Every material type but none at all.
    static bool isSupportedMaterialType(osg::FieldContainerType *type);
    static bool isSupportedMaterial(const osg::MaterialPtr &material);
    /// The same, and an error line in the log where the answer is false.
    static bool isSaveAllowed(const osg::MaterialPtr &material);

    /// Takes off the tags that loaded geometry, environment and sceneplate assets put on materials.
    static void removeSpecialAssetTagsFrom(const osg::MaterialPtr &material);
    /// Finds the scene's material of the item's asset, and says whether it is as stored. \a material gets it either way.
    static bool findMaterialAndCompareChecksum(const kxAssetItem *item, osg::MaterialPtr &material);

    /// The unchanged copy of the asset in the scene, or the material loaded by its registered item; null when there is
    /// none, and for an asset that is being loaded already, so that a composite that contains itself comes to an end.
    static osg::MaterialPtr getMaterialFromUUID(const std::string &uuid);
    /// One for each UUID, in order, nulls included.
    static std::vector<osg::MaterialPtr> getMaterialsFromUUIDs(const std::vector<std::string> &uuids);
    /// Rebuilds a switch or multi-pass material from its metadata and the assets it names. The caller owns one reference
    /// on \a material, which stays as it was when the answer is false.
    static bool createMaterialFromDoc(const kxAssetItemDocument &document, osg::MaterialPtr &material);

    kxMaterialAssetItem();
    /// A copy keeps a reference of its own.
    kxMaterialAssetItem(const kxMaterialAssetItem &) = default;
    kxMaterialAssetItem &operator=(const kxMaterialAssetItem &) = default;
    ~kxMaterialAssetItem() override;

    /// Writes the asset, has the directory collected, and marks other copies in the scene as differing.
    ///
    /// When an item with this UUID is registered it is deleted on the way and another one takes its place: called on the
    /// registered item itself, the item is gone when this returns true.
    bool save(const QUrl &url) override;
    bool readMetaData(const kxAssetItemDocument &document) override;
    /// Describes the material as it is now; false without one, and when a sub-material is no asset.
    bool writeMetaData(kxAssetItemDocument &document) const override;
    std::string name() override;
    /// Switch and multi-pass materials get the host's icon in the lower left corner.
    void addOverlayIcon(QPixmap &pixmap) const override;
    /// Without a payload, that of the metadata's description of the material.
    std::uint32_t checksum() const override;
    /// Nothing but a reset when \a container is no material. Has the host render a new preview.
    void initFrom(osg::AttachmentContainerPtr container, const std::string &uuid, bool useAttachment) override;
    QVariant data(int column, int role) override;
    QString mimeType() override;
    /// Takes the preview that is kept on the material before it looks into the directory.
    bool loadPreviewImage(bool asynchronous) override;

    /// Loads the stored material and makes it the item's. When that fails the item keeps what it had.
    bool loadMaterial();
    /// Null when the item has none or it is gone.
    osg::MaterialPtr getMaterial() const;
    /// Releases the item's reference; a material that others hold is still found.
    void invalidateMaterial();
    /// The preview kept on the material.
    osg::ImagePtr getOsgImage() const;

    std::string materialTypeName() const;
    osg::FieldContainerType *materialType() const { return _materialType; }
    std::vector<std::string> subMaterialUUIDs() const { return _subMaterialUUIDs; }
    /// -1 for what is no switch.
    int switchChoice() const { return _switchChoice; }

    kxAssetPhotometricState getPhotometricState() const { return _photometricState; }
    kxAssetPhotometricState getExpectedPhotometricState() const { return _expectedPhotometricState; }
    /// The state that a load is to bring the material to.
    void setExpectedPhotometricState(kxAssetPhotometricState state) { _expectedPhotometricState = state; }

protected:
    void reset() override;

private:
    bool loadMaterial(bool clearCache);
    static osg::MaterialPtr getMaterialFromUUID(const std::string &uuid, bool clearCache);
    static std::vector<osg::MaterialPtr> getMaterialsFromUUIDs(const std::vector<std::string> &uuids, bool clearCache);

    void bindMaterial(osg::FCRef<osg::Material> material);
    void releaseMaterial();
    void takeOver(const osg::FCRef<osg::Material> &material);
    void setTagsFrom(const osg::MaterialPtr &material);
    void setSubMaterialsFrom(const osg::MaterialPtr &material);
    void setChoiceFrom(const osg::MaterialPtr &material);
    void setPhotometricStateFrom(const osg::MaterialPtr &material);
    void setBRDFEnvironment(const osg::MaterialPtr &material);
    void adjustPhotometricParameters(const osg::MaterialPtr &material);
    bool isInLoadingCache(const std::string &uuid) const;
    static void markOtherAssetOccurrencesAsOutdated(const osg::MaterialPtr &saved, const std::string &uuid);

    /// What the current top-level load brought in, by UUID; handles that keep nothing alive.
    static std::map<std::string, osg::MaterialPtr> s_tempLoadingCache;

    std::uint32_t _materialId = 0;
    osg::FieldContainerType *_materialType = nullptr;
    std::vector<std::string> _subMaterialUUIDs;
    std::int32_t _switchChoice = -1;
    QStringList _tags;
    std::string _environmentName;
    kxAssetPhotometricState _photometricState = Unknown;
    kxAssetPhotometricState _expectedPhotometricState = Unknown;
    osg::FCRef<osg::Material> _reference; ///< the one reference, until it is released
};
