// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class QImage;

namespace kxAssetsInternal {

/// Whether Qt reads files with this extension, in whatever case. Safe on any thread.
bool isReadByQt(const QString &path);

/// Reads with the host's own image class; null when that fails too.
QImage readWithHost(const QString &path);

} // namespace kxAssetsInternal
