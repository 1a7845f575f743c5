// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/CompanionIOSystem.h"

#include "Import/Internal/ForeignText.h"

#include <assimp/MemoryIOWrapper.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <utility>

namespace kximport {

namespace {

std::string extensionOf(const std::string &path)
{
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return extension;
}

bool isText(const std::string &extension)
{
    static const std::array<const char *, 7> extensions{".ase", ".dae", ".gltf", ".mtl", ".obj", ".off", ".x3d"};
    return std::any_of(extensions.begin(), extensions.end(), [&](const char *known) { return extension == known; });
}

bool startsLikeUtf16(const std::string &path)
{
    std::ifstream stream(path, std::ios::binary);
    std::array<char, 2> mark{};
    stream.read(mark.data(), mark.size());
    return stream.gcount() == 2 &&
           (std::memcmp(mark.data(), "\xFF\xFE", 2) == 0 || std::memcmp(mark.data(), "\xFE\xFF", 2) == 0);
}

/// White space after a tag and before a number means nothing in XML lists.
std::string withoutLeadingBlanks(const std::string &xml)
{
    std::string tidy;
    tidy.reserve(xml.size());
    for (std::size_t i = 0; i < xml.size(); ++i) {
        tidy.push_back(xml[i]);
        if (xml[i] != '>')
            continue;
        const std::size_t next = xml.find_first_not_of(" \t\r\n", i + 1);
        if (next != std::string::npos && (std::strchr("+-.", xml[next]) || (xml[next] >= '0' && xml[next] <= '9')))
            i = next - 1;
    }
    return tidy;
}

/// Owns the text that the parser reads.
class TextStream final : public Assimp::MemoryIOStream
{
public:
    static Assimp::IOStream *make(const std::string &text)
    {
        auto copy = std::make_unique<std::uint8_t[]>(text.size());
        std::memcpy(copy.get(), text.data(), text.size());
        auto stream = std::unique_ptr<TextStream>(new TextStream(copy.get(), text.size()));
        copy.release(); // the base class deletes it
        return stream.release();
    }

private:
    TextStream(const std::uint8_t *text, std::size_t size) : MemoryIOStream(text, size, true) {}
};

std::string contentOf(const std::string &path)
{
    std::ifstream stream(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

} // namespace

CompanionIOSystem::CompanionIOSystem(std::string modelPath, ImportNotes &notes)
    : _modelPath(std::move(modelPath)), _companions(folderOf(_modelPath)), _notes(notes)
{}

bool CompanionIOSystem::Exists(const char *file) const
{
    return !resolved(file).empty();
}

Assimp::IOStream *CompanionIOSystem::Open(const char *file, const char *mode)
{
    if (std::strchr(mode, 'w') || std::strchr(mode, 'a') || std::strchr(mode, '+'))
        return nullptr;
    const std::string path = resolved(file);
    const std::string extension = extensionOf(path.empty() ? file : path);
    if (path.empty()) {
        if (extension == ".mtl")
            _notes.add("the material library '" + fileName(file) + "' is missing");
        return nullptr;
    }
    if (extension == ".dae")
        return TextStream::make(withoutLeadingBlanks(fromUtf16(contentOf(path))));
    if (isText(extension) && startsLikeUtf16(path))
        return TextStream::make(fromUtf16(contentOf(path)));
    return DefaultIOSystem::Open(path.c_str(), mode);
}

std::string CompanionIOSystem::resolved(const std::string &file) const
{
    if (file == _modelPath)
        return file;
    // Parsers put the model's folder in front of what they read; the rest is what the file says.
    const std::string folder = folderOf(_modelPath);
    const bool isBelow = file.compare(0, folder.size(), folder) == 0;
    return _companions.find(isBelow ? file.substr(folder.size()) : file).value_or("");
}

} // namespace kximport
