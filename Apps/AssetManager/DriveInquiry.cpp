// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/DriveInquiry.h"

#include <QObject>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

struct DriveInquiry::Receiver
{
    std::mutex mutex; ///< guards what follows
    std::condition_variable changed;
    std::unique_ptr<QObject> object = std::make_unique<QObject>();
    int asking = 0; ///< threads
};

DriveInquiry::DriveInquiry() : _receiver(std::make_shared<Receiver>()) {}

DriveInquiry::~DriveInquiry()
{
    std::unique_lock lock(_receiver->mutex);
    _receiver->object.reset(); // with the answers that are on their way to it
    _receiver->changed.wait_for(lock, Farewell, [this] { return _receiver->asking == 0; });
}

void DriveInquiry::ask(Question question)
{
    {
        const std::lock_guard lock(_receiver->mutex);
        ++_receiver->asking;
    }
    std::thread([receiver = _receiver, question = std::move(question)] {
        const Answer answer = question();
        const std::lock_guard lock(receiver->mutex);
        if (receiver->object)
            QMetaObject::invokeMethod(receiver->object.get(), answer, Qt::QueuedConnection);
        --receiver->asking;
        receiver->changed.notify_all();
    }).detach();
}
