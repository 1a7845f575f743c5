// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/DriveInquiry.h"

#include <QObject>

#include <mutex>
#include <thread>
#include <utility>

struct DriveInquiry::Receiver
{
    std::mutex mutex; ///< guards what follows
    std::unique_ptr<QObject> object = std::make_unique<QObject>();
};

DriveInquiry::DriveInquiry() : _receiver(std::make_shared<Receiver>()) {}

DriveInquiry::~DriveInquiry()
{
    const std::lock_guard lock(_receiver->mutex);
    _receiver->object.reset(); // with the answers that are on their way to it
}

void DriveInquiry::ask(Question question)
{
    std::thread([receiver = _receiver, question = std::move(question)] {
        const Answer answer = question();
        const std::lock_guard lock(receiver->mutex);
        if (receiver->object)
            QMetaObject::invokeMethod(receiver->object.get(), answer, Qt::QueuedConnection);
    }).detach();
}
