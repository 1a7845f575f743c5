// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/ValidFileName.h"

#include <QRegularExpression>
#include <QString>
#include <QTextBoundaryFinder>

namespace kxKernelInternal {

namespace {

/// Leaves room for a folder prefix, a counter and an extension within the 255 bytes of a file name.
constexpr int MaximumBytes = 200;

bool isRefused(uint character)
{
    static const QString refusedOrWildcard = QStringLiteral("<>:\"/\\|?*[]");
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Other_NotAssigned: // includes the noncharacters
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        break;
    }
    return character == QChar::ReplacementCharacter ||
           (character < 0x80 && refusedOrWildcard.contains(QChar(character)));
}

QString withoutRefusedCharacters(const QString &name)
{
    QString result;
    for (const uint character : name.toUcs4()) {
        if (isRefused(character))
            result += QLatin1Char('_');
        else
            result += QString::fromUcs4(&character, 1);
    }
    return result;
}

/// Cuts between what a reader takes for characters: an accent goes with its letter.
QString limited(const QString &name)
{
    if (name.toUtf8().size() <= MaximumBytes)
        return name;
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, name);
    int length = 0;
    for (int next = boundaries.toNextBoundary(); next >= 0 && name.leftRef(next).toUtf8().size() <= MaximumBytes;
         next = boundaries.toNextBoundary())
        length = next;
    return name.left(length);
}

QString withoutTrailingDotsAndBlanks(QString name)
{
    int length = name.size();
    while (length > 0 && (name[length - 1] == QLatin1Char('.') || name[length - 1].isSpace()))
        --length;
    name.truncate(length);
    return name;
}

/// Names of devices on Windows, also with an extension behind them.
QString withoutReservedStem(QString name)
{
    static const QRegularExpression reserved(
        QStringLiteral("^(CON|PRN|AUX|NUL|CONIN\\$|CONOUT\\$|COM[0-9¹²³]|LPT[0-9¹²³])\\s*(\\.|$)"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    const QRegularExpressionMatch match = reserved.match(name);
    if (match.hasMatch())
        name.insert(match.capturedEnd(1), QLatin1Char('_'));
    return name;
}

} // namespace

std::string makeValidFileName(const std::string &name)
{
    QString result = withoutRefusedCharacters(QString::fromStdString(name));
    result = withoutTrailingDotsAndBlanks(limited(result));
    // Listings pass hidden files over, so that a payload of such a name would not be found again.
    if (result.startsWith(QLatin1Char('.')))
        result[0] = QLatin1Char('_');
    if (result.isEmpty())
        result = QStringLiteral("unnamed");
    return withoutReservedStem(result).toStdString();
}

} // namespace kxKernelInternal
