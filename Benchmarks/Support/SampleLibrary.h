// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

namespace kxbench {

/// Fills a folder with material assets, a hundred in each folder. Each has metadata of about 1 KB, a payload that is none,
/// and these bytes as its preview.
void makeLibrary(const QString &root, int count, const QByteArray &preview);

} // namespace kxbench
