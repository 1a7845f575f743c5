// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxLibraryVerifier.h"

#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxLocalUrlManager.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/SwitchMaterial.h"

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QImage>

#include <algorithm>
#include <set>

namespace {

bool isComposite(const osg::FieldContainerType *type)
{
    return type && (type->isDerivedFrom(osg::SwitchMaterial::getClassType()) ||
                    type->isDerivedFrom(osg::MultiPassMaterial::getClassType()));
}

/// Why the payload holds no material, or "".
std::string faultOf(const QString &payload)
{
    const osg::Result<osg::SceneRoots> roots = osg::readSceneFile(payload.toStdString());
    if (!roots)
        return roots.reason();
    const bool hasMaterial = std::any_of(roots.value().begin(), roots.value().end(), [](const auto &root) {
        return static_cast<bool>(osg::MaterialPtr::dcast(root.get()));
    });
    return hasMaterial ? "" : "the file holds no material";
}

} // namespace

kxLibraryVerifier::kxLibraryVerifier(const QString &folder) : _folder(QDir(folder).absolutePath()) {}

std::vector<kxLibraryVerifier::Finding> kxLibraryVerifier::verify()
{
    _findings.clear();
    _directoryOfUuid.clear();
    _composites.clear();
    _done = 0;
    if (!QFileInfo(_folder).isDir())
        report("unreadable", _folder, "there is no such folder");
    else if (verifyBelow(_folder))
        verifySubMaterials();
    std::stable_sort(_findings.begin(), _findings.end(),
                     [](const Finding &a, const Finding &b) { return a.path < b.path; });
    return _findings;
}

/// False when the search was ended.
bool kxLibraryVerifier::verifyBelow(const QString &directory)
{
    if (_progress && !_progress(_done++))
        return false;
    const QDir dir(directory);
    if (!QFileInfo(directory).isReadable() || !QFileInfo(directory).isExecutable()) {
        report("unreadable", directory, "the folder cannot be read");
        return true;
    }
    bool isAsset = false;
    for (const QString &name : dir.entryList({QStringLiteral("*.xml")}, QDir::Files | QDir::NoSymLinks, QDir::Name))
        isAsset = verifyMetadata(dir.filePath(name)) || isAsset;
    verifyLeftovers(directory, isAsset);
    if (isAsset)
        return true;
    const QStringList below = dir.entryList(QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot, QDir::Name);
    return std::all_of(below.begin(), below.end(),
                       [&](const QString &name) { return verifyBelow(dir.filePath(name)); });
}

/// Whether the file makes its directory an asset's.
bool kxLibraryVerifier::verifyMetadata(const QString &file)
{
    QDomDocument content;
    if (!kxLocalUrlManager::the()->loadDocumentFromFile(QUrl::fromLocalFile(file), content)) {
        report("metadata-damaged", file, "the metadata cannot be read");
        return false;
    }
    const kxAssetItemDocument document(content);
    if (!document.hasValidAssetMetaData()) {
        report("metadata-invalid", file, "the metadata names no asset that can be used");
        return false;
    }
    verifyIdentity(file, document);
    const QFileInfo info(file);
    if (document.getMaterialType())
        verifyMaterial(info.absolutePath(), document);
    else
        verifyNode(info.absolutePath());
    verifyPreview(info.absolutePath(), info.completeBaseName());
    return true;
}

void kxLibraryVerifier::verifyIdentity(const QString &file, const kxAssetItemDocument &document)
{
    const auto [known, isNew] = _directoryOfUuid.emplace(document.getAssetUUID(), file);
    if (!isNew)
        report("duplicate-uuid", file,
               "the UUID " + known->first + " is also that of " +
                   QDir(_folder).relativeFilePath(known->second).toStdString());
}

void kxLibraryVerifier::verifyMaterial(const QString &directory, const kxAssetItemDocument &document)
{
    if (isComposite(document.getMaterialType()))
        _composites[document.getAssetUUID()] = {directory, document.getSubMaterialUUIDs()};
    const QDir dir(directory);
    const QStringList payloads =
        dir.entryList(kxAssetCategory::getAcceptedFileTypes(Material), QDir::Files | QDir::NoSymLinks, QDir::Name);
    if (payloads.isEmpty() && !isComposite(document.getMaterialType()))
        report("payload-missing", directory, "the material's file is missing");
    for (const QString &payload : payloads)
        if (const std::string fault = faultOf(dir.filePath(payload)); !fault.empty())
            report("payload-damaged", dir.filePath(payload), "the material cannot be loaded: " + fault);
}

void kxLibraryVerifier::verifyNode(const QString &directory)
{
    const QDir dir(directory);
    const QStringList payloads = dir.entryList({QStringLiteral("*.osb")}, QDir::Files | QDir::NoSymLinks, QDir::Name);
    if (payloads.isEmpty())
        report("payload-missing", directory, "the file with its node is missing");
    for (const QString &payload : payloads) {
        const osg::Result<osg::SceneRoots> roots = osg::readSceneFile(dir.filePath(payload).toStdString());
        const auto isNode = [](const auto &root) { return isOfType(root.get(), osg::Node::getClassType()); };
        if (!roots)
            report("payload-damaged", dir.filePath(payload), "the node cannot be loaded: " + roots.reason());
        else if (std::none_of(roots.value().begin(), roots.value().end(), isNode))
            report("payload-damaged", dir.filePath(payload), "the file holds no node");
    }
}

void kxLibraryVerifier::verifyPreview(const QString &directory, const QString &baseName)
{
    bool hasPreview = false;
    for (const char *extension : {".png", ".vif"}) {
        const QString file = QDir(directory).filePath(baseName + QLatin1String(extension));
        if (!QFile::exists(file))
            continue;
        hasPreview = true;
        QImage image;
        if (!kxLocalUrlManager::the()->loadImageFromFile(QUrl::fromLocalFile(file), &image) || image.isNull())
            report("preview-damaged", file, "the preview cannot be decoded");
    }
    if (!hasPreview)
        report("preview-missing", directory, "there is no preview");
}

void kxLibraryVerifier::verifySubMaterials()
{
    for (const auto &[uuid, composite] : _composites) {
        for (const std::string &part : composite.parts)
            if (!_directoryOfUuid.contains(part))
                report("submaterial-missing", composite.path,
                       "the material that it is made of is missing: " + (part.empty() ? "one without a UUID" : part));
        if (isMadeOfItself(uuid))
            report("submaterial-cycle", composite.path, "it is made of itself");
    }
}

/// Follows the parts' parts, each once.
bool kxLibraryVerifier::isMadeOfItself(const std::string &uuid) const
{
    std::set<std::string> seen;
    std::vector<std::string> open = _composites.at(uuid).parts;
    while (!open.empty()) {
        const std::string part = open.back();
        open.pop_back();
        if (part == uuid)
            return true;
        const auto composite = _composites.find(part);
        if (seen.insert(part).second && composite != _composites.end())
            open.insert(open.end(), composite->second.parts.begin(), composite->second.parts.end());
    }
    return false;
}

/// What a save that was cut off, or a hand that deleted too much, left behind.
void kxLibraryVerifier::verifyLeftovers(const QString &directory, bool isAsset)
{
    const QDir dir(directory);
    for (const QString &name : dir.entryList({QStringLiteral(".kx-*.part")}, QDir::Files | QDir::Hidden, QDir::Name))
        report("leftover", dir.filePath(name), "a save that was cut off left this file; it may be deleted");
    const bool hasMetadata = !dir.entryList({QStringLiteral("*.xml")}, QDir::Files | QDir::NoSymLinks).isEmpty();
    const bool hasPayload = !dir.entryList({QStringLiteral("*.osb")}, QDir::Files | QDir::NoSymLinks).isEmpty();
    if (!isAsset && hasPayload && !hasMetadata)
        report("metadata-missing", directory, "there is a material file but no metadata");
}

void kxLibraryVerifier::report(const char *kind, const QString &path, const std::string &text)
{
    const QString relative = QDir(_folder).relativeFilePath(path);
    _findings.push_back({kind, (relative.isEmpty() ? QStringLiteral(".") : relative).toStdString(), text});
}
