// SPDX-License-Identifier: Apache-2.0
// The library loaded into a running kernel that knows nothing of it, taken away again, and loaded once more.
#include "Kernel/kxAssetsInterface.h"
#include "Kernel/kxAssetsService.h"
#include "Kernel/kxInterfaceFactory.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxModuleBase.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxTypeConverter.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cstdlib>
#include <dlfcn.h>

namespace {

/// Loads the library while it lives.
class Plugin
{
public:
    Plugin() : _handle(dlopen(KX_ASSETS_LIBRARY, RTLD_NOW | RTLD_LOCAL)) { EXPECT_TRUE(_handle) << dlerror(); }
    ~Plugin() { unload(); }
    Plugin(const Plugin &) = delete;
    Plugin &operator=(const Plugin &) = delete;

    void unload()
    {
        if (!_handle)
            return;
        EXPECT_EQ(dlclose(_handle), 0);
        _handle = nullptr;
    }
    static bool isLoaded()
    {
        void *handle = dlopen(KX_ASSETS_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
        if (handle)
            dlclose(handle);
        return handle != nullptr;
    }

private:
    void *_handle;
};

class Listener final : public kxModuleBase
{
public:
    Listener()
    {
        registerHandler("loadSceneplateAsset", [this](kxMessage &) { ++plates; });
    }
    int plates = 0;
};

kxAssetsService *findService()
{
    return kxKernelServiceFactory::the().findService<kxAssetsService>();
}

kxAssetsInterface *findInterface()
{
    return kxInterfaceFactory::the().get<kxAssetsInterface>();
}

class PluginTest : public testing::Test
{
protected:
    PluginTest() { kxScenegraph::newDocument(); }
    ~PluginTest() override { kxScenegraph::closeDocument(); }
};

} // namespace

TEST_F(PluginTest, IsNotThereAtFirst)
{
    kxKernelServiceFactory::the().startKernel();

    EXPECT_FALSE(Plugin::isLoaded());
    EXPECT_FALSE(findService());
    EXPECT_FALSE(findInterface());
}

TEST_F(PluginTest, OffersItsServicesWhenItIsLoadedIntoARunningKernel)
{
    kxKernelServiceFactory::the().startKernel();
    const Listener listener;
    for (int round = 1; round <= 3; ++round) {
        Plugin plugin;
        ASSERT_TRUE(findService());
        EXPECT_TRUE(findInterface()) << "from its loading on";
        QCoreApplication::processEvents();
        EXPECT_TRUE(findService()->isInitialized());

        findService()->loadSceneplateAssets({"a"}, nullptr);
        EXPECT_EQ(listener.plates, round) << "through its own interface object, in every round";
        plugin.unload();

        EXPECT_FALSE(findService());
        EXPECT_FALSE(findInterface());
        EXPECT_FALSE(kxKernelServiceFactory::the().getService("kxAssetsServiceImpl"));
        EXPECT_FALSE(Plugin::isLoaded()) << "nothing keeps it";
        QCoreApplication::processEvents();
    }
}

TEST_F(PluginTest, WaitsForTheKernelWhereThatIsNotUpYet)
{
    // In a process of its own: there is one kernel for each, and it may be up here.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            const Plugin plugin;
            const bool isEarly = findInterface() && !findService() && !kxKernelServiceFactory::the().isKernelUp();
            kxKernelServiceFactory::the().startKernel();
            const bool isThere = findService() && findService()->isInitialized();
            std::_Exit(isEarly && isThere ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(PluginTest, LeavesTheSceneAsItIsWhenItGoes)
{
    kxKernelServiceFactory::the().startKernel();
    const osg::FCRef<osg::Node> node(osg::makeNodeFor(osg::Group::create()));
    const auto attachment = osg::AssetAttachment::createAssetAttachment(node.get());
    {
        Plugin plugin;
        findService()->markAssetsEdited({kxTypeConverter::convertNode(node.get())});
    }
    EXPECT_TRUE(attachment->getUserEdited());
    EXPECT_TRUE(kxScenegraph::getRoot());
}
