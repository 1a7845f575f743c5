// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace kxAssetsInternal {

/// The names in a directory, hidden ones and links left out, from one pass over it that asks for no entry's details
/// where the file system tells the kind of its entries by itself. Safe on any thread.

/// The files whose names match one of the filters (none: all), in either case, in the file system's own order.
std::vector<QString> filesIn(const QString &directory, const QStringList &nameFilters);

/// By name, in either case.
std::vector<QString> directoriesIn(const QString &directory);
int countDirectoriesIn(const QString &directory);

} // namespace kxAssetsInternal
