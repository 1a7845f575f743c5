// SPDX-License-Identifier: Apache-2.0
#include "Import/kxForeignFormats.h"

#include <algorithm>
#include <string_view>

namespace {

std::string extensionOf(const std::string &path)
{
    const std::size_t start = path.find_last_of("./");
    if (start == std::string::npos || path[start] == '/')
        return {};
    std::string extension = path.substr(start + 1);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return extension;
}

bool contains(const std::vector<std::string> &sorted, const std::string &extension)
{
    return std::binary_search(sorted.begin(), sorted.end(), extension);
}

} // namespace

const std::vector<std::string> &kxForeignFormats::sceneExtensions()
{
    static const std::vector<std::string> extensions{"3ds",  "3mf", "ac",  "ase", "blend", "dae", "dxf", "fbx", "glb",
                                                     "gltf", "lwo", "obj", "off", "ply",   "stl", "x",   "x3d", "zae"};
    return extensions;
}

const std::vector<std::string> &kxForeignFormats::imageExtensions()
{
    static const std::vector<std::string> extensions{"bmp", "exr", "hdr",  "jpeg", "jpg", "png",
                                                     "tga", "tif", "tiff", "vif",  "webp"};
    return extensions;
}

bool kxForeignFormats::isSceneFile(const std::string &path)
{
    return contains(sceneExtensions(), extensionOf(path));
}

bool kxForeignFormats::isImageFile(const std::string &path)
{
    return contains(imageExtensions(), extensionOf(path));
}
