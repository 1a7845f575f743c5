// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/XmlText.h"

namespace kxKernelInternal {

namespace {

bool isCarriable(uint character)
{
    return character == '\t' || character == '\n' || character == '\r' || (character >= 0x20 && character < 0xd800) ||
           (character >= 0xe000 && character < 0xfffe) || (character >= 0x10000 && character <= 0x10ffff);
}

bool isNameStart(QChar character)
{
    return character.isLetter() || character == QLatin1Char('_') || character == QLatin1Char(':');
}

bool isNameCharacter(QChar character)
{
    return isNameStart(character) || character.isDigit() || character.isMark() || character == QLatin1Char('-') ||
           character == QLatin1Char('.') || character == QChar(0xb7);
}

QString escapedMarkup(const QString &text)
{
    QString result = carriable(text);
    result.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    result.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    result.replace(QLatin1Char('>'), QLatin1String("&gt;"));
    // A reader turns a bare carriage return into a line feed.
    result.replace(QLatin1Char('\r'), QLatin1String("&#xd;"));
    return result;
}

} // namespace

QString carriable(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const uint character = isPair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode();
        if (isCarriable(character))
            result.append(text.midRef(i, isPair ? 2 : 1));
        if (isPair)
            ++i;
    }
    return result;
}

QString escapedText(const QString &text)
{
    return escapedMarkup(text);
}

QString escapedAttribute(const QString &value)
{
    QString result = escapedMarkup(value);
    result.replace(QLatin1Char('"'), QLatin1String("&quot;"));
    // A reader turns bare white space in an attribute into blanks.
    result.replace(QLatin1Char('\n'), QLatin1String("&#xa;"));
    result.replace(QLatin1Char('\t'), QLatin1String("&#x9;"));
    return result;
}

bool isXmlName(const QString &name)
{
    if (name.isEmpty() || !isNameStart(name[0]))
        return false;
    for (const QChar character : name) {
        if (!isNameCharacter(character))
            return false;
    }
    return true;
}

} // namespace kxKernelInternal
