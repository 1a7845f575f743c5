// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxController.h"

#include "Kernel/Internal/ModuleRegistry.h"
#include "Kernel/Internal/UpdateGate.h"
#include "Kernel/kxControllerNotifier.h"

#include <QPointer>
#include <QWidget>

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
