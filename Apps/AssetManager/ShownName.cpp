// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ShownName.h"

#include "Assets/kxAssetCategory.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <QXmlStreamReader>

namespace {

/// What the description says; "" where it is none of an asset.
QString nameIn(const QString &metadata)
{
    QFile file(metadata);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QXmlStreamReader reader(&file);
    QString name;
    bool isAsset = false;
    reader.readNextStartElement();
    while (reader.readNextStartElement())
        if (reader.name() == QLatin1String("name") && name.isEmpty())
            name = reader.readElementText(QXmlStreamReader::SkipChildElements);
        else {
            isAsset = isAsset || reader.name() == QLatin1String("uuid");
            reader.skipCurrentElement();
        }
    return isAsset ? name : QString();
}

/// "" for a directory that holds no asset.
QString nameOfAsset(const QString &directory)
{
    const QDir files(directory);
    for (const QString &metadata : files.entryList({QStringLiteral("*.xml")}, QDir::Files))
        if (QString name = nameIn(files.filePath(metadata)); !name.isEmpty())
            return name;
    if (files.exists())
        return {};
    for (kxAssetItem *item : kxAssetItemFactory::the().findItems(QUrl::fromLocalFile(directory)))
        return QString::fromStdString(item->name()); // it went, and nobody has looked yet
    return {};
}

} // namespace

QString ShownName::of(const QString &path)
{
    const QFileInfo info(path);
    QString name = nameOfAsset(path);
    if (name.isEmpty() && !info.isDir())
        name = nameOfAsset(info.path());
    return name.isEmpty() ? info.fileName() : name;
}
