// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxPictureImport.h"

#include "AssetSession/Internal/TemporaryNode.h"
#include "AssetSession/kxNodeSaving.h"
#include "Import/kxSceneImporter.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/Sceneplate.h"

#include <QFileInfo>

namespace {

osg::EnvironmentPtr makeEnvironment(const osg::MaterialPtr &material)
{
    const osg::EnvironmentPtr environment = osg::Environment::create();
    const osg::CPEditor edit(environment, osg::Environment::MaterialFieldMask);
    environment->setMaterial(material);
    return environment;
}

/// The image of a sphere is its texture's, which the importer has read within its limits.
osg::SceneplatePtr makePlate(const osg::USphereEnvironmentMaterialPtr &picture, bool isFront)
{
    const osg::SceneplatePtr plate = osg::Sceneplate::create();
    const osg::CPEditor edit(plate, osg::AllFieldMask);
    plate->setIsFront(isFront);
    plate->setImage(picture->getImage());
    return plate;
}

} // namespace

kxPictureImport::Outcome kxPictureImport::importFile(const QString &path, const QUrl &folder) const
{
    Outcome outcome;
    const auto picture = kxSceneImporter({}, _whileReading).importEnvironment(path.toStdString());
    if (!picture) {
        outcome.failures.push_back(picture.reason());
        return outcome;
    }
    const bool isEnvironment = _kind == Kind::Environment;
    const osg::NodeCorePtr core = isEnvironment
                                      ? osg::NodeCorePtr(makeEnvironment(picture.value().get()))
                                      : osg::NodeCorePtr(makePlate(picture.value().get(), _kind == Kind::Frontplate));
    const kxAssetSessionInternal::TemporaryNode temporary(
        core, isEnvironment ? kxScenegraph::getRoot() : kxSceneplateUtils::getSceneplateRoot(),
        QFileInfo(path).completeBaseName().toStdString());
    const auto saved = kxNodeSaving({}).save(temporary.node(), {}, folder);
    if (saved) {
        outcome.saved.push_back({saved.value().uuid, saved.value().name});
    } else {
        outcome.failures.push_back(path.toStdString() + ": " + saved.reason());
        outcome.unsaved.push_back({QFileInfo(path).completeBaseName().toStdString(), folder.toLocalFile()});
    }
    return outcome;
}
