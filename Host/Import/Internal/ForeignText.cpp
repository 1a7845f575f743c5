// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/ForeignText.h"

#include <cstddef>
#include <cstdint>

namespace kximport {

namespace {

constexpr std::uint32_t Replacement = 0xFFFD;

std::uint8_t byteAt(std::string_view text, std::size_t i)
{
    return static_cast<std::uint8_t>(text[i]);
}

/// The length of the well-formed character at \a start; 0 where there is none.
std::size_t characterLength(std::string_view text, std::size_t start)
{
    const std::uint8_t first = byteAt(text, start);
    if (first < 0x80)
        return 1;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || start + length > text.size())
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byteAt(text, start + i) & 0xC0) != 0x80)
            return 0;
    const std::uint8_t second = byteAt(text, start + 1);
    const bool isOverlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool isOutside = (first == 0xED && second > 0x9F) || (first == 0xF4 && second > 0x8F);
    return isOverlong || isOutside ? 0 : length;
}

void append(std::string &text, std::uint32_t character)
{
    const auto put = [&text](std::uint32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | (character >> 6));
        put(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        put(0xE0 | (character >> 12));
        put(0x80 | ((character >> 6) & 0x3F));
        put(0x80 | (character & 0x3F));
    } else {
        put(0xF0 | (character >> 18));
        put(0x80 | ((character >> 12) & 0x3F));
        put(0x80 | ((character >> 6) & 0x3F));
        put(0x80 | (character & 0x3F));
    }
}

bool isHighSurrogate(std::uint32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLowSurrogate(std::uint32_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

} // namespace

bool isUtf8(std::string_view text)
{
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = characterLength(text, i);
        if (length == 0)
            return false;
        i += length;
    }
    return true;
}

std::string toUtf8(std::string_view text)
{
    if (isUtf8(text))
        return std::string(text);
    std::string converted;
    for (std::size_t i = 0; i < text.size(); ++i)
        append(converted, byteAt(text, i));
    return converted;
}

std::string fromUtf16(std::string bytes)
{
    if (bytes.size() < 2)
        return bytes;
    const bool isLittle = byteAt(bytes, 0) == 0xFF && byteAt(bytes, 1) == 0xFE;
    const bool isBig = byteAt(bytes, 0) == 0xFE && byteAt(bytes, 1) == 0xFF;
    if (!isLittle && !isBig)
        return bytes;

    const auto unitAt = [&](std::size_t i) -> std::uint32_t {
        const std::uint32_t first = byteAt(bytes, i);
        const std::uint32_t second = byteAt(bytes, i + 1);
        return isLittle ? first | (second << 8) : second | (first << 8);
    };
    std::string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
        const std::uint32_t unit = unitAt(i);
        if (isHighSurrogate(unit) && i + 3 < bytes.size() && isLowSurrogate(unitAt(i + 2))) {
            append(text, 0x10000 + ((unit - 0xD800) << 10) + (unitAt(i + 2) - 0xDC00));
            i += 2;
        } else {
            append(text, isHighSurrogate(unit) || isLowSurrogate(unit) ? Replacement : unit);
        }
    }
    return text;
}

std::string oneLine(std::string_view text)
{
    std::string line = toUtf8(text);
    for (char &c : line)
        if (static_cast<std::uint8_t>(c) < 0x20 || c == 0x7F)
            c = ' ';
    const std::size_t first = line.find_first_not_of(' ');
    if (first == std::string::npos)
        return {};
    return line.substr(first, line.find_last_not_of(' ') - first + 1);
}

std::string fileName(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string baseName(const std::string &path)
{
    const std::string name = fileName(path);
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

std::string folderOf(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

} // namespace kximport
