// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class QDomDocument;
class QFile;

namespace kxAssetsInternal {

/// Parses an open metadata file, which is read once. False with what is wrong and where.
///
/// A file that is too big, or nested so deep that the DOM would overflow the stack, is refused before it is parsed.
bool readMetadata(QFile &file, QDomDocument &document, QString &message, int &line, int &column);

} // namespace kxAssetsInternal
