// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Import/Internal/CompanionFiles.h"
#include "Import/Internal/ImportNotes.h"
#include "SceneGraph/Image.h"

#include <assimp/scene.h>

#include <map>
#include <string>

namespace kximport {

/// The pictures of one model, embedded or beside it: each is read once, however often it is used.
class ImageStore
{
public:
    /// What refers to the scene and to the notes lives longer than the store. Embedded files pass through
    /// \a workFolder, where they are removed again.
    ImageStore(const aiScene &scene, const std::string &modelPath, std::string workFolder, ImportNotes &notes);

    /// The picture that a material names; null, with a note, where there is none that can be read.
    osg::ImagePtr find(const std::string &reference);

    /// A picture derived from one of find(), kept under \a key so that it is made once; null stays null.
    template <class Make> osg::ImagePtr derived(const std::string &key, const Make &make)
    {
        const auto known = _derived.find(key);
        return known != _derived.end() ? known->second.get() : keepDerived(key, make());
    }

private:
    osg::ImagePtr keepDerived(const std::string &key, const osg::ImagePtr &image);
    osg::FCRef<osg::Image> fromFile(const std::string &reference);
    osg::FCRef<osg::Image> fromEmbedded(const aiTexture &texture, const std::string &reference);
    osg::FCRef<osg::Image> decode(const aiTexture &texture) const;

    const aiScene &_scene;
    CompanionFiles _companions;
    std::string _workFolder;
    ImportNotes &_notes;
    std::map<std::string, osg::FCRef<osg::Image>> _images;  // by reference; null: was not found
    std::map<std::string, osg::FCRef<osg::Image>> _files;   // by path
    std::map<std::string, osg::FCRef<osg::Image>> _derived; // by key
};

} // namespace kximport
