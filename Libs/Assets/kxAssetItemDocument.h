// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetCategory.h"
#include "Assets/kxAssetsExport.h"
#include "Kernel/kxSceneplateTypes.h"
#include "SceneGraph/Material.h"

#include <QDomDocument>
#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace osg {
class FieldContainerType;
}

/// An asset's metadata in memory: the one place that knows the elements of the document.
///
/// Copies share one tree, so a change through one is seen through all. Setters append and never replace, while getters
/// read the first element of a name: a value that is set twice keeps its first text. Write into a fresh document.
class KX_ASSETS_EXPORT kxAssetItemDocument
{
public:
    /// Removes double quotes, splits at comma and blank, drops "Scene" and the tags that loaded assets put on their
    /// materials, and sorts case-sensitively; duplicates stay.
    static QStringList tagListFrom(const QString &text);

    /// The bare frame: declaration, document type, and a root without children.
    kxAssetItemDocument();
    /// Wraps a parsed document; its document type and the name of its root do not matter.
    explicit kxAssetItemDocument(const QDomDocument &document);

    const QDomDocument &getQDomDocument() const { return _document; }

    /// Whether the document names an asset: it has a UUID, a known category and, for a material, a supported type. Writes
    /// a line to standard output for a missing UUID or category.
    bool hasValidAssetMetaData() const;

    std::string getAssetUUID() const;
    void setAssetUUID(const std::string &uuid);
    bool hasAssetUUID(const std::string &uuid) const;

    std::string getAssetName() const;
    void setAssetName(const std::string &name);

    kxAssetCategoryType getAssetType() const;
    void setAssetType(const kxAssetCategoryType &category);
    bool hasAssetType(const kxAssetCategoryType &category) const;

    /// Null when the document names no type, or one that the scene graph does not know.
    osg::FieldContainerType *getMaterialType() const;
    void setMaterialType(osg::FieldContainerType &type);

    QStringList getMaterialTags() const;
    void setMaterialTags(const std::string &tags);

    /// -1 without a number.
    int getSwitchMaterialChoice() const;
    void setSwitchMaterialChoice(int choice);

    /// 1 yes, 0 no, -1 unknown.
    int hasPhotometricProperties() const;
    void setHasPhotometricProperties(bool photometric);

    std::string getMaterialBRDFEnvironmentName() const;
    void setMaterialBRDFEnvironmentName(const std::string &name);

    /// In document order; empty texts and duplicates stay.
    std::vector<std::string> getSubMaterialUUIDs() const;
    /// Appends the UUIDs of the materials, nulls left out. False at the first that is no asset, which is also said on
    /// standard output; what was appended before it stays.
    bool setSubMaterialAssets(const osg::MField<osg::FCPtr<osg::AttachmentContainerPtr, osg::Material>> &materials);

    /// Group when the document does not say; 0 when what it says is no number.
    kxSceneplateTypes::NodeType getSceneplateType() const;
    void setSceneplateType(kxSceneplateTypes::NodeType type);

    /// Appends a further element to the root.
    void setItemValue(const QString &key, const QString &value);

private:
    QString getItemValue(const QString &key) const;
    QString getValue(const QString &group, const QString &key) const;
    QString getMaterialValue(const QString &key) const;
    QDomElement getOrCreateElement(const QString &group);
    void setValue(const QString &group, const QString &key, const QString &value);
    void setMaterialValue(const QString &key, const QString &value);
    void setSceneplateValue(const QString &key, const QString &value);
    void appendTextElement(QDomElement parent, const QString &key, const QString &value);

    QDomDocument _document;
};
