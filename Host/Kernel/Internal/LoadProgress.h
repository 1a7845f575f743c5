// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxController.h"
#include "Kernel/kxControllerNotifier.h"

#include <QString>

namespace kxKernelInternal {

/// Tells views of the beginning of a load and, however it ends, of its end.
class LoadProgress
{
public:
    LoadProgress(const char *path, int progress) : _path(progress >= 0 ? QString::fromUtf8(path) : QString())
    {
        if (!_path.isNull())
            emit kxController::notifier().fileLoadingStarted(_path);
    }
    ~LoadProgress()
    {
        if (!_path.isNull())
            emit kxController::notifier().fileLoadingFinished(_path);
    }
    LoadProgress(const LoadProgress &) = delete;
    LoadProgress &operator=(const LoadProgress &) = delete;

private:
    QString _path;
};

} // namespace kxKernelInternal
