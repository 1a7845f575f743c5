// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Material.h"
#include "SceneGraph/Node.h"

#include <QDomNode>

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// What the functions do that a program has in place of those of the libraries, because nothing else shows how they are
/// called, or what happens where they fail. They do what the originals do unless it is said here.
///
/// A function of the program comes before those of the same name in libraries, for the libraries' own calls too. One at a
/// time; as long as it lives.
class ReplacedFunctions
{
public:
    ReplacedFunctions();
    ~ReplacedFunctions();
    ReplacedFunctions(const ReplacedFunctions &) = delete;
    ReplacedFunctions &operator=(const ReplacedFunctions &) = delete;

    /// Of kxAssetItem, which every category's own begin with.
    bool readingMetadataFails = false;
    bool writingMetadataFails = false;

    /// Of kxAssetItem: answers none, and makes none.
    bool previewLoaderIsMissing = false;

    /// Of kxAssetItemFactory: refuses every item.
    bool addingItemsFails = false;

    /// What kxDefaultEnvironment answers.
    std::optional<osg::MaterialPtr> defaultEnvironment;

    /// Is called when kxSceneplateUtils is asked for the root.
    std::function<void()> whenSceneplateRootIsAskedFor;

    /// Is called when QImageReader is asked for the formats that it supports, on any thread.
    std::function<void()> whenFormatsAreAskedFor;

    /// What kxMessage was given: the name, and "replaces" or "keeps".
    std::vector<std::string> messageAttributes;

    /// How kxNodeUtils assigned materials: "quietly" or "with a word", and "replacing" or "keeping".
    std::vector<std::string> assignments;

    /// The nodes from which kxNodeUtils was to remove an attachment.
    std::vector<osg::NodePtr> relieved;

    /// The indexes of the views that kxOSGWidget was asked for.
    std::vector<int> viewsAskedFor;

    /// How elements of documents were written: the codec, the indentation, and the policy.
    struct Writing
    {
        std::string codec;
        int indentation;
        QDomNode::EncodingPolicy policy;

        bool operator==(const Writing &) const = default;
    };
    std::vector<Writing> writings;
};
