// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

namespace kxbench {

/// Fills a folder with material assets, a hundred in each folder. Each has a payload that is none, these bytes
/// as its preview, and metadata, of about 1 KB with 24 tags.
void makeLibrary(const QString &root, int count, const QByteArray &preview, int tags = 24);

} // namespace kxbench
