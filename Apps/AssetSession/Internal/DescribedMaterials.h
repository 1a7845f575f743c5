// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/kxMaterialDescription.h"
#include "SceneGraph/MultiMaterial.h"
#include "SceneGraph/Texture.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <QDir>
#include <QJsonObject>

#include <map>

namespace kxAssetSessionInternal {

/// Makes the materials of one description, in order, and knows them by their names.
class DescribedMaterials
{
public:
    /// Pictures are looked for in \a folder.
    explicit DescribedMaterials(const QDir &folder) : _folder(folder) {}

    /// The failure's reason names the material and what is wrong.
    osg::Result<kxMaterialDescription::Described> make(const QJsonObject &description);

private:
    using Made = osg::Result<osg::FCRef<osg::Material>>;

    Made makeMaterial(const QJsonObject &description);
    Made makeSurface(const QJsonObject &description);
    Made makeComposite(const QJsonObject &description, const osg::FCRef<osg::MultiMaterial> &composite,
                       const char *key);
    osg::Result<void> setField(const osg::UBRDFMaterialPtr &material, const QString &name, const QJsonValue &value);
    osg::Result<osg::FCRef<osg::Texture>> makeTexture(const QString &field, const QJsonObject &description);
    osg::Result<osg::FCRef<osg::Image>> makeImage(const QString &field, const QJsonObject &description);

    QDir _folder;
    std::map<std::string, osg::FCRef<osg::Material>> _made; ///< by name
};

} // namespace kxAssetSessionInternal
