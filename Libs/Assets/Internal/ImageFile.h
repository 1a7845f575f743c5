// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

class QImage;

namespace kxAssetsInternal {

/// Whether one of the formats, in lower case as Qt names them, is the extension of the file, in whatever case.
bool isAmong(const QList<QByteArray> &formats, const QString &path);

/// Reads with the host's own image class; null when that fails too.
QImage readWithHost(const QString &path);

} // namespace kxAssetsInternal
