// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItemDocument.h"

#include "Assets/Internal/StandardOutput.h"
#include "Assets/kxMaterialAssetItem.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/FieldContainerFactory.h"

#include <algorithm>

using kxAssetsInternal::printLine;

namespace {

bool isSceneTag(const QString &tag)
{
    if (tag == QLatin1String("Scene"))
        return true;
    const auto hasPrefixOf = [&tag](kxAssetCategoryType category) {
        return tag.startsWith(QString::fromStdString(kxAssetCategory::getTagPrefix(category)), Qt::CaseSensitive);
    };
    return hasPrefixOf(Geometry) || hasPrefixOf(Environment) || hasPrefixOf(Sceneplate);
}

} // namespace

QStringList kxAssetItemDocument::tagListFrom(const QString &text)
{
    QString unquoted = text;
    unquoted.remove(QLatin1Char('"'), Qt::CaseSensitive);
    QStringList tags = unquoted.split(QStringLiteral(", "), Qt::SkipEmptyParts, Qt::CaseSensitive);
    tags.erase(std::remove_if(tags.begin(), tags.end(), isSceneTag), tags.end());
    tags.sort(Qt::CaseSensitive);
    return tags;
}

kxAssetItemDocument::kxAssetItemDocument() : _document(QStringLiteral("SARNAsset"))
{
    _document.appendChild(_document.createProcessingInstruction(QStringLiteral("xml"),
                                                                QStringLiteral("version=\"1.0\" encoding=\"utf-8\"")));
    _document.appendChild(_document.createElement(QStringLiteral("item")));
}

kxAssetItemDocument::kxAssetItemDocument(const QDomDocument &document) : _document(document) {}

bool kxAssetItemDocument::hasValidAssetMetaData() const
{
    if (_document.documentElement().isNull())
        return false;
    if (getAssetUUID().empty()) {
        printLine("[hasValidAssetMetaData] invalid uuid ");
        return false;
    }
    const kxAssetCategoryType category = getAssetType();
    if (category == Undefined) {
        printLine("[hasValidAssetMetaData] invalid category ");
        return false;
    }
    return category != Material || kxMaterialAssetItem::isSupportedMaterialType(getMaterialType());
}

std::string kxAssetItemDocument::getAssetUUID() const
{
    return getItemValue(QStringLiteral("uuid")).toStdString();
}

void kxAssetItemDocument::setAssetUUID(const std::string &uuid)
{
    setItemValue(QStringLiteral("uuid"), QString::fromStdString(uuid));
}

bool kxAssetItemDocument::hasAssetUUID(const std::string &uuid) const
{
    return getAssetUUID() == uuid;
}

std::string kxAssetItemDocument::getAssetName() const
{
    return getItemValue(QStringLiteral("name")).toStdString();
}

void kxAssetItemDocument::setAssetName(const std::string &name)
{
    setItemValue(QStringLiteral("name"), QString::fromStdString(name));
}

kxAssetCategoryType kxAssetItemDocument::getAssetType() const
{
    return kxAssetCategory::getCategoryType(getItemValue(QStringLiteral("category")).toStdString());
}

void kxAssetItemDocument::setAssetType(const kxAssetCategoryType &category)
{
    setItemValue(QStringLiteral("category"),
                 QString::fromStdString(kxAssetCategory::getInternalCategoryName(category)));
}

bool kxAssetItemDocument::hasAssetType(const kxAssetCategoryType &category) const
{
    return getAssetType() == category;
}

osg::FieldContainerType *kxAssetItemDocument::getMaterialType() const
{
    const QString name = getMaterialValue(QStringLiteral("type"));
    return name.isEmpty() ? nullptr : osg::FieldContainerFactory::the().findType(name.toStdString());
}

void kxAssetItemDocument::setMaterialType(osg::FieldContainerType &type)
{
    setMaterialValue(QStringLiteral("type"), QString::fromUtf8(type.getCName()));
}

QStringList kxAssetItemDocument::getMaterialTags() const
{
    return tagListFrom(getMaterialValue(QStringLiteral("tags")));
}

void kxAssetItemDocument::setMaterialTags(const std::string &tags)
{
    setMaterialValue(QStringLiteral("tags"), tagListFrom(QString::fromStdString(tags)).join(QStringLiteral(", ")));
}

int kxAssetItemDocument::getSwitchMaterialChoice() const
{
    bool isNumber = false;
    const int choice = getMaterialValue(QStringLiteral("choice")).toInt(&isNumber, 10);
    return isNumber ? choice : -1;
}

void kxAssetItemDocument::setSwitchMaterialChoice(int choice)
{
    setMaterialValue(QStringLiteral("choice"), QString::number(choice, 10));
}

int kxAssetItemDocument::hasPhotometricProperties() const
{
    bool isNumber = false;
    const int value = getMaterialValue(QStringLiteral("photometric")).toInt(&isNumber, 10);
    return isNumber && (value == 0 || value == 1) ? value : -1;
}

void kxAssetItemDocument::setHasPhotometricProperties(bool photometric)
{
    setMaterialValue(QStringLiteral("photometric"), photometric ? QStringLiteral("1") : QStringLiteral("0"));
}

std::string kxAssetItemDocument::getMaterialBRDFEnvironmentName() const
{
    return getMaterialValue(QStringLiteral("environment")).toStdString();
}

void kxAssetItemDocument::setMaterialBRDFEnvironmentName(const std::string &name)
{
    setMaterialValue(QStringLiteral("environment"), QString::fromStdString(name));
}

std::vector<std::string> kxAssetItemDocument::getSubMaterialUUIDs() const
{
    // The list may stand anywhere below the root, not only in the material's group.
    const QDomElement root = _document.documentElement();
    if (root.isNull())
        return {};
    const QDomElement list = root.elementsByTagName(QStringLiteral("subMaterials")).item(0).toElement();

    std::vector<std::string> uuids;
    const QString tag = QStringLiteral("uuid");
    for (QDomElement uuid = list.firstChildElement(tag); !uuid.isNull(); uuid = uuid.nextSiblingElement(tag))
        uuids.push_back(uuid.text().toStdString());
    return uuids;
}

bool kxAssetItemDocument::setSubMaterialAssets(
    const osg::MField<osg::FCPtr<osg::AttachmentContainerPtr, osg::Material>> &materials)
{
    if (materials.empty())
        return true;
    QDomElement group = getOrCreateElement(QStringLiteral("material"));
    if (group.isNull())
        return false;

    QDomElement list = _document.createElement(QStringLiteral("subMaterials"));
    group.appendChild(list);
    for (const osg::MaterialPtr &material : materials) {
        if (!material)
            continue;
        const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(material);
        if (!attachment) {
            printLine("Meta data: Sub material is no asset.");
            return false;
        }
        appendTextElement(list, QStringLiteral("uuid"), QString::fromStdString(attachment->getUuid()));
    }
    return true;
}

kxSceneplateTypes::NodeType kxAssetItemDocument::getSceneplateType() const
{
    const QString text = getValue(QStringLiteral("sceneplate"), QStringLiteral("type"));
    return text.isEmpty() ? kxSceneplateTypes::Group
                          : static_cast<kxSceneplateTypes::NodeType>(text.toInt(nullptr, 10));
}

void kxAssetItemDocument::setSceneplateType(kxSceneplateTypes::NodeType type)
{
    setSceneplateValue(QStringLiteral("type"), QString::number(static_cast<int>(type), 10));
}

void kxAssetItemDocument::setItemValue(const QString &key, const QString &value)
{
    appendTextElement(_document.documentElement(), key, value);
}

QString kxAssetItemDocument::getItemValue(const QString &key) const
{
    return _document.documentElement().firstChildElement(key).text();
}

QString kxAssetItemDocument::getValue(const QString &group, const QString &key) const
{
    return _document.documentElement().firstChildElement(group).firstChildElement(key).text();
}

QString kxAssetItemDocument::getMaterialValue(const QString &key) const
{
    return getValue(QStringLiteral("material"), key);
}

QDomElement kxAssetItemDocument::getOrCreateElement(const QString &group)
{
    QDomElement root = _document.documentElement();
    QDomElement element = root.firstChildElement(group);
    if (element.isNull() && !root.isNull()) {
        element = _document.createElement(group);
        root.appendChild(element);
    }
    return element;
}

void kxAssetItemDocument::setValue(const QString &group, const QString &key, const QString &value)
{
    appendTextElement(getOrCreateElement(group), key, value);
}

void kxAssetItemDocument::setMaterialValue(const QString &key, const QString &value)
{
    setValue(QStringLiteral("material"), key, value);
}

void kxAssetItemDocument::setSceneplateValue(const QString &key, const QString &value)
{
    setValue(QStringLiteral("sceneplate"), key, value);
}

void kxAssetItemDocument::appendTextElement(QDomElement parent, const QString &key, const QString &value)
{
    if (parent.isNull())
        return;
    QDomElement element = _document.createElement(key);
    element.appendChild(_document.createTextNode(value));
    parent.appendChild(element);
}
