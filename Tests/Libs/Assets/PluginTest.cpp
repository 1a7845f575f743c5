// SPDX-License-Identifier: Apache-2.0
// The library loaded into a running kernel that knows nothing of it, taken away again, and loaded once more.
#include "Kernel/kxAssetsInterface.h"
#include "Kernel/kxAssetsService.h"
#include "Kernel/kxInterfaceFactory.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxModuleBase.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateService.h"
#include "Kernel/kxTypeConverter.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"

#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QPointer>

#include <gtest/gtest.h>

#include <cstdlib>
#include <dlfcn.h>
#include <string>

// The sanitizer compares the types of functions with those by which they are called.
#ifdef __clang__
#define KX_OF_ANOTHER_TYPE __attribute__((no_sanitize("function")))
#else
#define KX_OF_ANOTHER_TYPE
#endif

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
    /// Calls a function of the library by the name that the compiler made of it, and by what is known here of its type.
    template <class Result, class... Arguments>
    KX_OF_ANOTHER_TYPE Result call(const char *name, Arguments... arguments) const
    {
        void *const address = dlsym(_handle, name);
        EXPECT_TRUE(address) << dlerror();
        return reinterpret_cast<Result (*)(Arguments...)>(address)(arguments...);
    }
    /// The loader of previews that all items share; it begins with the object that it derives from.
    QObject *previewLoader() const { return call<QObject *>("_ZN11kxAssetItem21getPreviewImageLoaderEv"); }
    int columnsOfTheWidestCategory() const { return call<int>("_ZN15kxAssetCategory17getMaxColumnCountEv"); }
    void *registry() const { return call<void *>("_ZN18kxAssetItemFactory3theEv"); }
    void deleteAllItems() const { call<void>("_ZN18kxAssetItemFactory14deleteAllItemsEv", registry()); }
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

/// Counts what the host is told of sceneplates.
class CountingSceneplateService final : public kxSceneplateService
{
public:
    void nodesChanged() override { ++count; }
    QImage previewImage(const kxdNodePtr &) override { return {}; }

    int count = 0;
};

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

TEST_F(PluginTest, KeepsTheLoaderOfPreviewsUntilItGoes)
{
    // What stayed would be an object whose code is gone.
    kxKernelServiceFactory::the().startKernel();
    for (int round = 1; round <= 2; ++round) {
        Plugin plugin;
        const QPointer<QObject> loader = plugin.previewLoader();
        ASSERT_TRUE(loader);
        EXPECT_STREQ(loader->metaObject()->className(), "kxPreviewImageLoader");
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(loader);
        EXPECT_EQ(plugin.previewLoader(), loader.data());

        plugin.unload();

        EXPECT_FALSE(loader) << round;
    }
}

TEST_F(PluginTest, KeepsTheNamesOfCategoriesUntilItGoes)
{
    for (int round = 1; round <= 2; ++round) {
        const Plugin plugin;
        EXPECT_EQ(plugin.columnsOfTheWidestCategory(), 0) << "nobody asked for a category yet";
        plugin.call<std::string>("_ZN15kxAssetCategory23getInternalCategoryNameB5cxx11E19kxAssetCategoryType", 1);
        EXPECT_EQ(plugin.columnsOfTheWidestCategory(), 5);
    }
}

TEST_F(PluginTest, TellsTheHostNothingOfSceneplatesOnceItHasGone)
{
    CountingSceneplateService service;
    kxKernelServiceFactory::the().setService<kxSceneplateService>(&service);
    {
        const Plugin plugin;
        EXPECT_EQ(plugin.registry(), plugin.registry());
        plugin.deleteAllItems();
        QCoreApplication::processEvents();
        EXPECT_EQ(service.count, 1);
        plugin.deleteAllItems();
    }

    // A timer that stayed would call what is gone.
    QCoreApplication::processEvents();
    EXPECT_EQ(service.count, 1);
    kxKernelServiceFactory::the().setService<kxSceneplateService>(nullptr);
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
