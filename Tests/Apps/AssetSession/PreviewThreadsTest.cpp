// SPDX-License-Identifier: Apache-2.0
// Everything that has threads at once, for ThreadSanitizer: previews load, libraries are scanned, materials are rendered
// and models imported on the main thread, while another thread makes and drops images. KX_SECONDS says for how long.
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxAssetSession.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxPreviewImageLoader.h"
#include "Import/kxSceneImporter.h"
#include "Rendering/kxMaterialPreviewRenderer.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Image.h"
#include "SmallMaterials.h"
#include "Support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QImage>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

namespace {

constexpr int Assets = 12;

std::chrono::seconds duration()
{
    const char *seconds = std::getenv("KX_SECONDS");
    return std::chrono::seconds(seconds != nullptr ? std::atoi(seconds) : 1);
}

std::string triangleFile(const kxtest::TemporaryFolder &folder)
{
    folder.write("triangle.mtl", "newmtl Red\nKd 1 0 0\n");
    return folder.write("triangle.obj", "mtllib triangle.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl Red\nf 1 2 3\n");
}

/// Makes images, fills and drops them, until told to stop; how many there were.
int churn(const std::atomic<bool> &isOver)
{
    int count = 0;
    for (; !isOver; ++count) {
        const osg::FCRef<osg::Image> image(osg::Image::create());
        const osg::CPEditor edit(image.get(), osg::AllFieldMask);
        if (!image->set(8, 8, 4, osg::PixelType::UInt8) ||
            !osg::FieldContainerFactory::the().getContainer(image.get().getFieldContainerId()))
            return -1;
    }
    return count;
}

} // namespace

TEST(PreviewThreadsTest, WorkBesideEachOther)
{
    const kxtest::TemporaryFolder folder;
    const kxAssetSession session;
    const QUrl library = QUrl::fromLocalFile(QString::fromStdString(folder.file("lib")));
    for (int i = 0; i < Assets; ++i)
        ASSERT_NE(kxtest::store(kxtest::makeSurface("Surface " + std::to_string(i)), library), "");
    const std::string model = triangleFile(folder);
    const kxtest::Owned surface = kxtest::makeSurface("Shown");

    std::atomic<bool> isOver = false;
    int churned = 0;
    std::thread other([&] { churned = churn(isOver); });
    int delivered = 0;
    kxPreviewImageLoader loader;
    QObject::connect(&loader, &kxPreviewImageLoader::previewLoaded, &loader, [&delivered](const QUrl &, QImage *image) {
        delete image;
        ++delivered;
    });
    const auto end = std::chrono::steady_clock::now() + duration();
    int rounds = 0;
    for (; rounds == 0 || std::chrono::steady_clock::now() < end; ++rounds) {
        kxAssetItemFactory::the().deleteAllItems();
        kxAssetLibrary(library.toLocalFile()).open(nullptr);
        EXPECT_EQ(kxAssetItemFactory::the().itemCount(), Assets);
        for (kxAssetItem *item : kxAssetItemFactory::the().findItems(Material, library))
            loader.loadImageFromDir(item->directoryUrl());
        EXPECT_TRUE(osg::FCRef<osg::Image>::adopt(kxMaterialPreviewRenderer::renderPreview(surface.get(), 32, 32, 2)));
        const auto scene = kxSceneImporter().importScene(model);
        EXPECT_TRUE(scene) << (scene ? "" : scene.reason());
        QCoreApplication::processEvents();
    }
    isOver = true;
    other.join();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();

    EXPECT_GT(churned, 0);
    EXPECT_GT(delivered, 0);
    RecordProperty("rounds", rounds);
}
