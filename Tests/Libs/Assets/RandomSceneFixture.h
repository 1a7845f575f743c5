// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NodeFixture.h"
#include "RandomScene.h"
#include "Support/CapturedOutput.h"

#include <cstdint>
#include <functional>

/// A library and random scenes, of which a failure names the seed. Questions are answered with yes.
class RandomSceneFixture : public NodeFixture
{
protected:
    RandomSceneFixture();
    ~RandomSceneFixture() override;

    /// Stops at the first scene in which something is wrong.
    static void inRandomScenes(std::uint32_t first, std::uint32_t count,
                               const std::function<void(RandomScene &)> &check);

    /// Saves a node as an asset of the class \a Item.
    template <class Item> static bool save(const osg::NodePtr &node, const QUrl &library)
    {
        const kxtest::CapturedOutput output;
        Item item;
        item.initFrom(node, {}, true);
        return item.save(library);
    }
    /// Takes off the mark of the environment that a save chose. It stays on a choice of the default switch, and on nothing
    /// else.
    static void removeMarks(const RandomScene &scene);
};
