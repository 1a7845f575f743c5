// SPDX-License-Identifier: Apache-2.0
#include "SmallModels.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/NameAttachment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace kxtest {

std::string base64(std::string_view bytes)
{
    static constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t group = 0;
        for (std::size_t j = 0; j < 3; ++j)
            group = group << 8 | (i + j < bytes.size() ? static_cast<std::uint8_t>(bytes[i + j]) : 0U);
        for (std::size_t j = 0; j < 4; ++j)
            text.push_back(i + j <= bytes.size() ? digits[group >> (18 - 6 * j) & 63] : '=');
    }
    return text;
}

std::string gltfTriangle(std::string_view materials, std::string_view more)
{
    static constexpr std::array<float, 15> numbers{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 1};
    std::string buffer(sizeof numbers, '\0');
    std::memcpy(buffer.data(), numbers.data(), sizeof numbers);
    const std::string materialUse = materials.empty() ? "" : R"(, "material": 0)";
    return R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
  "nodes": [{"name": "Dreieck", "mesh": 0}],
  "meshes": [{"name": "Fläche", "primitives": [{"attributes": {"POSITION": 0, "TEXCOORD_0": 1})" +
           materialUse + R"(}]}],
  "accessors": [
    {"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3", "min": [0, 0, 0], "max": [1, 1, 0]},
    {"bufferView": 1, "componentType": 5126, "count": 3, "type": "VEC2"}],
  "bufferViews": [{"buffer": 0, "byteOffset": 0, "byteLength": 36}, {"buffer": 0, "byteOffset": 36, "byteLength": 24}],
  "buffers": [{"byteLength": 60, "uri": "data:application/octet-stream;base64,)" +
           base64(buffer) + R"("}],
  "materials": [)" +
           std::string(materials) + "]" + std::string(more) + "}";
}

std::string gltfTextures(const std::vector<std::string> &uris)
{
    std::string images;
    std::string textures;
    for (std::size_t i = 0; i < uris.size(); ++i) {
        const std::string comma = i > 0 ? ", " : "";
        images += comma + R"({"uri": ")" + uris[i] + R"("})";
        textures += comma + R"({"sampler": 0, "source": )" + std::to_string(i) + "}";
    }
    return R"(, "images": [)" + images + R"(], "samplers": [{"wrapS": 33071, "wrapT": 33648}], "textures": [)" +
           textures + "]";
}

std::string objSquare(std::string_view head)
{
    return std::string(head) + "v 0 0 0\nv 2 0 0\nv 2 3 0\nv 0 3 0\nvt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
                               "f 1/1 2/2 3/3 4/4\n";
}

std::string writeColumn(const TemporaryFolder &folder, std::string_view name, std::size_t channels,
                        const std::vector<unsigned char> &pixels)
{
    const std::size_t height = pixels.size() / channels;
    const osg::FCRef<osg::Image> image(osg::Image::create());
    EXPECT_TRUE(
        image->set(1, static_cast<std::uint32_t>(height), static_cast<std::uint32_t>(channels), osg::PixelType::UInt8));
    {
        const osg::CPEditor edit(image.get(), osg::Image::PixelsFieldMask);
        for (std::size_t row = 0; row < height; ++row)
            for (std::size_t i = 0; i < channels; ++i)
                image->editPixels()[(height - 1 - row) * channels + i] = pixels[row * channels + i];
    }
    std::string path = folder.file(name);
    EXPECT_TRUE(image->write(path)) << path;
    return path;
}

std::vector<osg::NodePtr> geometryNodes(const osg::NodePtr &root)
{
    std::vector<osg::NodePtr> found;
    std::vector<osg::NodePtr> pending{root};
    while (!pending.empty()) {
        const osg::NodePtr node = pending.back();
        pending.pop_back();
        if (geometryOf(node))
            found.push_back(node);
        for (std::size_t i = node->getNChildren(); i-- > 0;)
            pending.push_back(node->getChild(i));
    }
    return found;
}

osg::GeometryPtr geometryOf(const osg::NodePtr &node)
{
    return osg::dcast<osg::GeometryPtr>(node->getCore());
}

osg::NodePtr findNode(const osg::NodePtr &root, std::string_view name)
{
    if (osg::getName(root) == name)
        return root;
    for (std::size_t i = 0; i < root->getNChildren(); ++i)
        if (const osg::NodePtr found = findNode(root->getChild(i), name))
            return found;
    return nullptr;
}

std::size_t livingContainers()
{
    return osg::FieldContainerFactory::the().livingContainerCount();
}

} // namespace kxtest
