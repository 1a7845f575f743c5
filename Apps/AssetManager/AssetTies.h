// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class QUndoCommand;

/// What ties objects of the scene to assets, as it is at one moment: saving ties them to what was saved, and tells other
/// copies that they differ from it. Main thread only.
class AssetTies
{
public:
    /// Looks at these objects, and at all materials that came from assets.
    explicit AssetTies(const std::vector<std::uint32_t> &containerIds);

    /// For what is tied otherwise now: a command that is done already, null without any. It comes after the one that puts the
    /// stored assets back, and passes over those that could not be, and what is gone from the scene.
    std::unique_ptr<QUndoCommand> changes() const;

    struct Tie
    {
        bool exists = false;
        std::string uuid;
        std::string category;
        std::string url;
        std::uint32_t checksum = 0;
        bool isEdited = false;

        bool operator==(const Tie &other) const = default;
    };

private:
    struct Tied
    {
        std::uint32_t containerId = 0;
        Tie tie;
    };
    std::vector<Tied> _tied;
};
