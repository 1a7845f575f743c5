// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/SceneReader.h"

#include "Import/Internal/CompanionIOSystem.h"
#include "Import/Internal/ForeignText.h"
#include "Import/Internal/LogCapture.h"
#include "Import/Internal/SceneBuilder.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/NameAttachment.h"

#include <assimp/Importer.hpp>
#include <assimp/config.h>
#include <assimp/importerdesc.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <cstring>
#include <memory>
#include <utility>

namespace kximport {

namespace {

void configure(Assimp::Importer &importer)
{
    // One node for each of the file's, instead of a chain for every kind of pivot.
    importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_PRESERVE_PIVOTS, false);
    importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_READ_ANIMATIONS, false);
    importer.SetPropertyBool(AI_CONFIG_IMPORT_COLLADA_USE_COLLADA_NAMES, true);
}

/// The name of the parser that read the file.
std::string parserName(const Assimp::Importer &importer)
{
    const int index = importer.GetPropertyInteger("importerIndex", -1);
    const aiImporterDesc *description =
        index >= 0 ? importer.GetImporterInfo(static_cast<std::size_t>(index)) : nullptr;
    return description ? description->mName : "";
}

/// The parsers' reasons name the file once more where nothing fits its content.
std::string parserReason(const Assimp::Importer &importer)
{
    const std::string text = oneLine(std::string_view(importer.GetErrorString()));
    if (text.find("No suitable reader") == 0)
        return "no parser knows this kind of file";
    return text.empty() ? "the parser gives no reason" : text;
}

} // namespace

osg::Result<kxImportedScene> readForeignScene(const std::string &path, ImportKind kind, const std::string &workFolder,
                                              ImportNotes &notes)
{
    Assimp::Importer importer;
    importer.SetIOHandler(new CompanionIOSystem(path, notes)); // the importer owns it
    configure(importer);
    const aiScene *scene = importer.ReadFile(path, 0);
    if (!scene || !scene->mRootNode)
        return osg::Failure{scene ? "it holds no scene" : parserReason(importer)};

    const bool isGltf = parserName(importer).find("glTF") == 0;
    // Most formats state corners one by one; glTF shares them already.
    if (kind == ImportKind::Scene && !isGltf)
        scene = importer.ApplyPostProcessing(aiProcess_GenUVCoords | aiProcess_JoinIdenticalVertices);
    if (!scene)
        return osg::Failure{parserReason(importer)};

    ImageStore images(*scene, path, workFolder, notes);
    TextureBuilder textures(images, isGltf);
    MaterialBuilder materials(textures, images, notes, isGltf);
    SceneBuilder builder({*scene, path, isGltf}, materials, notes);
    kxImportedScene result;
    result.materials = builder.buildMaterials();
    if (kind == ImportKind::Scene)
        result.root = builder.buildTree();
    return result;
}

osg::Result<osg::FCRef<osg::USphereEnvironmentMaterial>> readForeignEnvironment(const std::string &path)
{
    LogCapture log;
    const osg::FCRef<osg::Image> image(osg::Image::create());
    if (!image->read(path))
        return osg::Failure{log.takeReason(path)};
    osg::setName(image.get(), toUtf8(fileName(path)));

    osg::FCRef<osg::USphereEnvironmentMaterial> environment(osg::USphereEnvironmentMaterial::create());
    {
        const osg::CPEditor edit(environment.get(), osg::USphereEnvironmentMaterial::ImageFieldMask);
        environment->setImage(image);
    }
    osg::setName(environment.get(), toUtf8(baseName(path)));
    return environment;
}

} // namespace kximport
