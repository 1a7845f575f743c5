// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/BatchQueue.h"

#include "Kernel/kxController.h"

#include <utility>

BatchQueue::BatchQueue(QObject *parent) : QObject(parent) {}

BatchQueue::~BatchQueue() = default;

bool BatchQueue::waits(std::function<void()> action)
{
    if (!_progress)
        return false;
    _waiting.push_back(std::move(action));
    return true;
}

void BatchQueue::begin(const QString &text, int total)
{
    begin(text, total, _look);
}

void BatchQueue::begin(const QString &text, int total, const BatchProgress::Look &look)
{
    _progress = std::make_unique<BatchProgress>(text, total, kxController::getMainWindow(), look);
}

bool BatchQueue::end()
{
    const bool isWhole = !_progress->isCanceled();
    _progress.reset();
    if (!_waiting.empty())
        QMetaObject::invokeMethod(this, &BatchQueue::doWaiting, Qt::QueuedConnection);
    return isWhole;
}

void BatchQueue::doWaiting()
{
    while (!_progress && !_waiting.empty()) {
        const std::function<void()> next = std::move(_waiting.front());
        _waiting.erase(_waiting.begin());
        next();
    }
}
