// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxMessage.h"
#include "Kernel/kxModuleBase.h"
#include "SceneGraph/AssetAttachment.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

/// Answers, in place of an asset manager, what the library asks one, and notes it in the order in which it came.
class AssetManagerModule final : public kxModuleBase
{
public:
    AssetManagerModule();

    struct Selection
    {
        std::string uuid;
        bool clearsSelection = false;
    };

    std::vector<std::string> calls; ///< the names, and "broadcast" with the code
    std::vector<Selection> selections;
    std::vector<std::vector<std::uint32_t>> overwritten;
    std::vector<std::set<osg::AssetAttachmentPtr>> queried;
    std::vector<std::pair<QString, std::uint32_t>> plates;

    std::set<std::string> known;                             ///< what is found
    std::function<void(kxMessage &message)> answerSelection; ///< instead of that

private:
    void select(kxMessage &message);
    void doReceive(const kxMessage &message) override;
};
