// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/MetadataReader.h"

#include <QDomDocument>
#include <QFile>
#include <QXmlStreamReader>

namespace kxAssetsInternal {

namespace {

/// A metadata file has about one kilobyte; one with a thousand sub-materials has fifty.
constexpr qint64 MaxBytes = 16 * 1024 * 1024;
/// The format needs four levels. The DOM's parser overflows a stack of 8 MiB at some 25,000.
constexpr int MaxDepth = 256;

/// Looks a file with many tags through before the DOM does. Where this stricter reader meets an error the DOM might read
/// on and nest deeper, so an error counts as well.
bool isSafeToParse(const QByteArray &content, QString &message, int &line, int &column)
{
    // Each level takes one tag, so that hardly any file has to be looked at twice.
    if (content.count('<') <= MaxDepth)
        return true;
    QXmlStreamReader reader(content);
    reader.setNamespaceProcessing(false);
    int depth = 0;
    while (!reader.atEnd() && depth <= MaxDepth) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::StartElement)
            ++depth;
        else if (token == QXmlStreamReader::EndElement)
            --depth;
    }
    if (depth <= MaxDepth && !reader.hasError())
        return true;
    message = reader.hasError() ? reader.errorString() : QStringLiteral("the elements are nested too deep");
    line = static_cast<int>(reader.lineNumber());
    column = static_cast<int>(reader.columnNumber());
    return false;
}

} // namespace

bool readMetadata(QFile &file, QDomDocument &document, QString &message, int &line, int &column)
{
    const QByteArray content = file.read(MaxBytes + 1);
    if (content.size() > MaxBytes) {
        message = QStringLiteral("the file is too big");
        line = column = 1;
        return false;
    }
    if (!isSafeToParse(content, message, line, column))
        return false;
    return document.setContent(content, false, &message, &line, &column);
}

} // namespace kxAssetsInternal
