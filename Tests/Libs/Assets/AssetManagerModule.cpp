// SPDX-License-Identifier: Apache-2.0
#include "AssetManagerModule.h"

AssetManagerModule::AssetManagerModule()
{
    registerHandler("selectAssetByUUID", [this](kxMessage &message) { select(message); });
    registerHandler("overwriteAssets", [this](const kxMessage &message) {
        calls.emplace_back("overwriteAssets");
        overwritten.push_back(message.get<std::vector<std::uint32_t>>("containerIds").value());
    });
    registerHandler("queryAssetChanges", [this](const kxMessage &message) {
        calls.emplace_back("queryAssetChanges");
        queried.push_back(message.get<std::set<osg::AssetAttachmentPtr>>("assets").value());
    });
    registerHandler("loadSceneplateAsset", [this](const kxMessage &message) {
        calls.emplace_back("loadSceneplateAsset");
        plates.emplace_back(message.get<QString>("uuid").value(), message.get<std::uint32_t>("parentid").value());
    });
}

void AssetManagerModule::select(kxMessage &message)
{
    calls.emplace_back("selectAssetByUUID");
    selections.push_back({message.get<std::string>("uuid").value(), message.get<bool>("clearSelection").value()});
    if (answerSelection)
        answerSelection(message);
    else
        message.set("found", known.count(selections.back().uuid) > 0);
}

void AssetManagerModule::doReceive(const kxMessage &message)
{
    calls.push_back("broadcast " + std::to_string(message.code()));
}
