// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxPlatform.h"

#include <QCoreApplication>

std::string kxPlatform::getBinDir()
{
    return QCoreApplication::applicationDirPath().toStdString();
}
