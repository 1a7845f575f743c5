// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/UpdateGate.h"

#include <utility>

namespace kxKernelInternal {

UpdateGate::UpdateGate(std::function<void()> update, QObject *parent) : QObject(parent), _update(std::move(update)) {}

UpdateGate::~UpdateGate() = default;

void UpdateGate::enable(bool enabled)
{
    _enabled = enabled;
    if (enabled && _request == Request::HeldBack)
        requestLater();
}

void UpdateGate::requestNow()
{
    if (!_enabled) {
        requestLater();
        return;
    }
    // A scheduled update would only repeat this one; its queued call finds nothing to do.
    _request = Request::None;
    _update();
}

void UpdateGate::requestLater()
{
    if (_request == Request::Scheduled)
        return;
    if (!_enabled) {
        _request = Request::HeldBack;
        return;
    }
    _request = Request::Scheduled;
    QMetaObject::invokeMethod(
        this, [this] { deliver(); }, Qt::QueuedConnection);
}

void UpdateGate::deliver()
{
    if (_request != Request::Scheduled)
        return;
    if (!_enabled) {
        _request = Request::HeldBack;
        return;
    }
    _request = Request::None;
    _update();
}

} // namespace kxKernelInternal
