// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

#include <map>

/// Every file of a library with its bytes, and every folder, by relative paths; without what is in the trash.
using LibraryContent = std::map<QString, QByteArray>;

LibraryContent contentOf(const QString &library);

/// What is different, for a failure's text.
std::string differenceOf(const LibraryContent &one, const LibraryContent &other);
