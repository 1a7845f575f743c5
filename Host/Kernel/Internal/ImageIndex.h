// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Image.h"
#include "SceneGraph/SceneListener.h"

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <unordered_map>

namespace kxKernelInternal {

/// The images that textures and sphere environments show, by size and format; their contents are hashed when somebody
/// first asks and kept until they change. Kept up to date with every edit.
class ImageIndex final : public osg::SceneListener
{
public:
    /// The first image in use with the same source, or the same content, that is not in \a excluded; null without one.
    osg::ImagePtr findEqual(const osg::ImagePtr &image, const std::set<std::uint32_t> &excluded);

    void containerChanged(osg::FieldContainer &container, osg::FieldMask fields) override;
    void containerDestroyed(osg::FieldContainer &container) override;

private:
    using Id = std::uint32_t;

    /// Width, height, channels, pixel type.
    using Form = std::array<std::uint32_t, 4>;

    static Form formOf(const osg::Image &image);
    std::uint64_t hashOf(const osg::Image &image);
    bool areEqual(const osg::Image &a, const osg::Image &b);
    void setImage(Id user, const osg::ImagePtr &image);
    void enter(const osg::Image &image);
    void leave(Id image);

    std::unordered_map<Id, Id> _imageOf;           ///< by texture or environment
    std::unordered_map<Id, std::set<Id>> _usersOf; ///< by image
    std::unordered_map<Id, Form> _forms;
    std::map<Form, std::set<Id>> _byForm;
    std::unordered_map<Id, std::uint64_t> _hashes;
};

} // namespace kxKernelInternal
