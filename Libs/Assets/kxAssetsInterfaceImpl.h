// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxAssetsInterface.h"

/// The library's object behind the host's interface: there is one from the library's loading to its unloading.
class kxAssetsInterfaceImpl final : public kxAssetsInterface
{
public:
    /// Enters itself into the host's factory, which it leaves when it goes.
    kxAssetsInterfaceImpl();

    void test() override;
    void loadSceneplateAssets(const std::vector<std::string> &uuids, osg::NodePtr parent) override;
};
