// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/CompanionFiles.h"

#include "Import/Internal/ForeignText.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

namespace kximport {

namespace {

namespace fs = std::filesystem;

// A folder with more entries than this is not searched in any case but the exact one.
constexpr std::size_t MaxSearchedEntries = 100'000;

bool isRegularFile(const std::string &path)
{
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

/// The value of a hexadecimal digit; -1 for any other character.
int digitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

std::string percentDecoded(const std::string &text)
{
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isEscape =
            text[i] == '%' && i + 2 < text.size() && digitValue(text[i + 1]) >= 0 && digitValue(text[i + 2]) >= 0;
        const char c = isEscape ? static_cast<char>(digitValue(text[i + 1]) * 16 + digitValue(text[i + 2])) : text[i];
        if (c != '\0')
            decoded.push_back(c);
        if (isEscape)
            i += 2;
    }
    return decoded;
}

std::string withoutScheme(const std::string &reference)
{
    constexpr std::string_view scheme = "file://";
    if (reference.compare(0, scheme.size(), scheme) != 0)
        return reference;
    return reference.substr(scheme.size());
}

/// ASCII letters only: what other scripts call the same letter differs from system to system.
std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

/// The entry of \a folder called \a name in any case; with several the first in byte order, whatever the disk's order.
std::optional<fs::path> entryInAnyCase(const fs::path &folder, const std::string &name)
{
    const std::string wanted = lowered(name);
    std::optional<fs::path> found;
    std::error_code error;
    std::size_t count = 0;
    for (auto entry = fs::directory_iterator(folder, error);
         !error && entry != fs::directory_iterator() && count < MaxSearchedEntries; entry.increment(error), ++count)
        if (lowered(entry->path().filename().string()) == wanted && (!found || entry->path() < *found))
            found = entry->path();
    return found;
}

std::optional<std::string> inAnyCase(const std::string &path)
{
    fs::path found;
    for (const fs::path &part : fs::path(path)) {
        std::error_code ignored;
        if (found.empty() || part.empty() || fs::exists(found / part, ignored)) {
            found /= part;
            continue;
        }
        const auto entry = entryInAnyCase(found, part.string());
        if (!entry)
            return std::nullopt;
        found = *entry;
    }
    return isRegularFile(found.string()) ? std::optional(found.string()) : std::nullopt;
}

} // namespace

CompanionFiles::CompanionFiles(std::string folder) : _folder(std::move(folder)) {}

std::optional<std::string> CompanionFiles::find(const std::string &reference) const
{
    if (reference.empty() || reference.find('\0') != std::string::npos)
        return std::nullopt;
    std::string plain = withoutScheme(reference);
    std::replace(plain.begin(), plain.end(), '\\', '/');

    std::vector<std::string> candidates;
    for (const std::string &path : {plain, percentDecoded(plain)})
        candidates.push_back(!path.empty() && path.front() == '/' ? path : _folder + path);
    for (const std::string &path : {plain, percentDecoded(plain)})
        candidates.push_back(_folder + fileName(path));

    for (const std::string &candidate : candidates) {
        if (isRegularFile(candidate))
            return candidate;
        if (auto found = inAnyCase(candidate))
            return found;
    }
    return std::nullopt;
}

} // namespace kximport
