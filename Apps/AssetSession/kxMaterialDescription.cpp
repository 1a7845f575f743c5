// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxMaterialDescription.h"

#include "AssetSession/Internal/DescribedMaterials.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

constexpr qint64 MaxBytes = 16 * 1024 * 1024;

osg::Result<QJsonArray> readList(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile())
        return osg::Failure{"is no file"};
    if (!file.open(QIODevice::ReadOnly))
        return osg::Failure{file.errorString().toStdString()};
    if (file.size() > MaxBytes)
        return osg::Failure{"is longer than a description may be"};
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (document.isNull())
        return osg::Failure{error.errorString().toStdString() + " at byte " + std::to_string(error.offset)};
    const QJsonValue list = document.object().value(QStringLiteral("materials"));
    if (!list.isArray())
        return osg::Failure{"holds no list 'materials'"};
    return list.toArray();
}

} // namespace

bool kxMaterialDescription::isDescription(const QString &path)
{
    return path.endsWith(QLatin1String(".materials.json"), Qt::CaseInsensitive);
}

osg::Result<std::vector<kxMaterialDescription::Described>> kxMaterialDescription::read(const QString &path)
{
    const auto failure = [&path](const std::string &reason) {
        return osg::Failure{path.toStdString() + ": " + reason};
    };
    const osg::Result<QJsonArray> list = readList(path);
    if (!list)
        return failure(list.reason());
    kxAssetSessionInternal::DescribedMaterials materials(QFileInfo(path).absoluteDir());
    std::vector<Described> result;
    for (const QJsonValue entry : list.value()) {
        const osg::Result<Described> made = materials.make(entry.toObject());
        if (!made)
            return failure(made.reason());
        result.push_back(made.value());
    }
    return result;
}
