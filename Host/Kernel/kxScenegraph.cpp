// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxScenegraph.h"

#include "Kernel/Internal/SceneDocument.h"
#include "Kernel/Internal/SceneIndexes.h"
#include "Kernel/Internal/UpdateGate.h"
#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxIconManager.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>

namespace {

struct ScenegraphState
{
    std::unique_ptr<kxKernelInternal::SceneDocument> document;
    kxScenegraphNotifier notifier;
    kxKernelInternal::UpdateGate updates{[this] { emit notifier.updateRequested(); }};
};

ScenegraphState &state()
{
    static ScenegraphState instance;
    return instance;
}

constexpr std::array TypesWithIcon{"MultiMaterial",
                                   "MultiPassMaterial",
                                   "SwitchMaterial",
                                   "UBRDFMaterial",
                                   "UEnvironmentSwitchMaterial",
                                   "USkyEnvironmentMaterial",
                                   "USphereEnvironmentMaterial",
                                   "UberMaterial"};

bool hasIcon(const std::string &typeName)
{
    return std::find(TypesWithIcon.begin(), TypesWithIcon.end(), typeName) != TypesWithIcon.end();
}

void replaceDocument(std::unique_ptr<kxKernelInternal::SceneDocument> document)
{
    kxSelectionManager::clear();
    state().document = std::move(document);
    kxController::setModified(false);
    emit state().notifier.documentChanged();
}

bool isInPool(const osg::MaterialPtr &material, const osg::MaterialPoolPtr &pool)
{
    return pool && material && kxKernelInternal::SceneIndexes::the().materialUsage.isUsedBy(material, pool);
}

} // namespace

void kxScenegraph::newDocument()
{
    osg::UBRDFMaterial::setDefaultEnvironmentSource([] { return kxDefaultEnvironment::getDefault(); });
    replaceDocument(std::make_unique<kxKernelInternal::SceneDocument>());
}

void kxScenegraph::closeDocument()
{
    if (state().document)
        replaceDocument(nullptr);
}

osg::NodePtr kxScenegraph::getRoot()
{
    return state().document ? state().document->root() : osg::NodePtr();
}

osg::NodePtr kxScenegraph::getMaterialPoolNode()
{
    return state().document ? state().document->materialPoolNode() : osg::NodePtr();
}

osg::NodePtr kxScenegraph::getDefaultEnvironmentNode()
{
    return state().document ? state().document->defaultEnvironmentNode() : osg::NodePtr();
}

osg::NodePtr kxScenegraph::getCameraNode()
{
    return state().document ? state().document->cameraNode() : osg::NodePtr();
}

osg::MaterialPoolPtr kxScenegraph::getMaterialPool()
{
    return state().document ? state().document->materialPool() : osg::MaterialPoolPtr();
}

bool kxScenegraph::addToMaterialPool(const osg::MaterialPtr &material)
{
    const osg::MaterialPoolPtr pool = getMaterialPool();
    if (!pool || !material || isInPool(material, pool))
        return false;
    const osg::CPEditor edit(pool, osg::MaterialPool::MaterialsFieldMask);
    pool->editMaterials().push_back(material);
    return true;
}

bool kxScenegraph::removeFromMaterialPool(const osg::MaterialPtr &material)
{
    const osg::MaterialPoolPtr pool = getMaterialPool();
    if (!isInPool(material, pool))
        return false;
    const auto &materials = pool->getMaterials();
    const auto index = std::find(materials.begin(), materials.end(), material) - materials.begin();
    const osg::CPEditor edit(pool, osg::MaterialPool::MaterialsFieldMask);
    pool->editMaterials().erase(static_cast<std::size_t>(index));
    return true;
}

bool kxScenegraph::isUpdateEnabled()
{
    return state().updates.isEnabled();
}

void kxScenegraph::enableUpdate(bool enabled)
{
    state().updates.enable(enabled);
}

void kxScenegraph::update(bool immediately)
{
    if (immediately)
        state().updates.requestNow();
    else
        state().updates.requestLater();
}

QPixmap kxScenegraph::getMaterialTypeIcon(const osg::FieldContainerType *type, int size)
{
    for (const osg::TypeBase *candidate = type; candidate; candidate = candidate->getParent()) {
        const std::string name = candidate->getCName();
        if (hasIcon(name))
            return kxIconManager::get(QString::fromStdString("scenegraph/" + name + ".svg"), size);
    }
    return {};
}

kxScenegraphNotifier &kxScenegraph::notifier()
{
    return state().notifier;
}
