// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxController.h"

#include "Kernel/Internal/ModuleRegistry.h"
#include "Kernel/Internal/UpdateGate.h"
#include "Kernel/kxControllerNotifier.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Switch.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"

#include <QPointer>
#include <QWidget>

#include <algorithm>

namespace {

struct ControllerState
{
    QPointer<QWidget> mainWindow;
    bool modified = false;
    kxControllerNotifier notifier;
    kxKernelInternal::UpdateGate rendering{[this] { emit notifier.renderUpdateRequested(); }};
};

ControllerState &state()
{
    static ControllerState instance;
    return instance;
}

} // namespace

bool kxController::call(const std::string &name, kxMessage &message)
{
    return kxKernelInternal::ModuleRegistry::the().call(name, message);
}

bool kxController::addToDefaultEnvironment(const osg::MaterialPtr &material, const osg::NodePtr &node, bool makeCurrent)
{
    const osg::UEnvironmentSwitchMaterialPtr choices = kxDefaultEnvironment::getSwitch();
    const osg::NodePtr places = kxScenegraph::environmentGeometrySwitch();
    const osg::SwitchPtr place = places ? osg::SwitchPtr::dcast(places->getCore()) : osg::SwitchPtr();
    if (!choices || !place || !material)
        return false;
    const auto &materials = choices->getMaterials();
    if (std::find(materials.begin(), materials.end(), material) != materials.end())
        return false;

    const std::size_t index = materials.size();
    {
        const osg::CPEditor edit(places, osg::Node::ChildrenFieldMask);
        while (places->getNChildren() < index) // choices that came without a node
            places->addChild(osg::makeNodeFor(osg::Group::create()));
        places->insertChild(static_cast<std::int32_t>(index), node ? node : osg::makeNodeFor(osg::Group::create()));
    }
    {
        const osg::CPEditor edit(choices,
                                 osg::MultiMaterial::MaterialsFieldMask | osg::SwitchMaterial::ChoiceFieldMask);
        choices->addMaterial(material);
        if (makeCurrent)
            choices->setChoice(static_cast<std::int32_t>(index));
    }
    if (makeCurrent) {
        const osg::CPEditor edit(place, osg::Switch::ChoiceFieldMask);
        place->setChoice(static_cast<std::int32_t>(index));
    }
    kxScenegraph::update(false);
    return true;
}

QWidget *kxController::getMainWindow()
{
    return state().mainWindow;
}

void kxController::setMainWindow(QWidget *window)
{
    state().mainWindow = window;
}

bool kxController::isRenderUpdateEnabled()
{
    return state().rendering.isEnabled();
}

void kxController::enableRenderUpdate(bool enabled)
{
    state().rendering.enable(enabled);
}

void kxController::updateRender(bool immediately)
{
    if (immediately)
        state().rendering.requestNow();
    else
        state().rendering.requestLater();
}

bool kxController::isModified()
{
    return state().modified;
}

void kxController::setModified(bool modified)
{
    if (state().modified == modified)
        return;
    state().modified = modified;
    emit state().notifier.modifiedChanged(modified);
}

kxControllerNotifier &kxController::notifier()
{
    return state().notifier;
}
