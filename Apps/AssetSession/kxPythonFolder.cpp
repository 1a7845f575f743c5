// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxPythonFolder.h"

#include <QCoreApplication>
#include <QDir>

QString kxPythonFolder::find()
{
    const QDir programs(QCoreApplication::applicationDirPath());
    for (const char *place : {"../python", KX_PYTHON_FOLDER}) {
        QString folder = QDir::cleanPath(programs.absoluteFilePath(QLatin1String(place)));
        if (!QDir(folder).entryList({QStringLiteral("kx.*.so")}, QDir::Files).isEmpty())
            return folder;
    }
    return {};
}
