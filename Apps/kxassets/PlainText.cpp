// SPDX-License-Identifier: Apache-2.0
#include "kxassets/PlainText.h"

#include <QString>
#include <QVector>

#include <algorithm>
#include <array>

namespace PlainText {

namespace {

struct Range
{
    uint first;
    uint last;
};

/// Where characters are two columns wide: CJK with its punctuation, Hangul, full-width forms, pictographs.
constexpr std::array WideRanges = {
    Range{0x1100, 0x115F},   Range{0x2E80, 0x303E},   Range{0x3041, 0xA4CF},   Range{0xAC00, 0xD7A3},
    Range{0xF900, 0xFAFF},   Range{0xFE30, 0xFE6F},   Range{0xFF00, 0xFF60},   Range{0xFFE0, 0xFFE6},
    Range{0x1F300, 0x1F64F}, Range{0x1F900, 0x1F9FF}, Range{0x20000, 0x3FFFD},
};

std::size_t columnsOf(uint character)
{
    const QChar::Category category = QChar::category(character);
    if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing || category == QChar::Other_Format)
        return 0;
    const bool isWide = std::any_of(WideRanges.begin(), WideRanges.end(), [character](const Range &range) {
        return character >= range.first && character <= range.last;
    });
    return isWide ? 2 : 1;
}

bool isControl(QChar character)
{
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

} // namespace

std::string printable(const std::string &text)
{
    QString plain = QString::fromStdString(text);
    for (QChar &character : plain)
        if (isControl(character))
            character = QLatin1Char('?');
    return plain.toStdString();
}

std::size_t columns(const std::string &text)
{
    std::size_t sum = 0;
    for (const uint character : QString::fromStdString(text).toUcs4())
        sum += columnsOf(character);
    return sum;
}

} // namespace PlainText
