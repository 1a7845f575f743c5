// SPDX-License-Identifier: Apache-2.0
// SaveLoop LIBRARY SEED: saves new assets and stored ones again, for ever. Says on standard output what it begins and what
// it has done, a line each, so that the one who kills it knows what has to be there:
//   begin UUID ROUGHNESS
//   done UUID ROUGHNESS
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxAssetSession.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/kxMaterials.h"
#include "Rendering/kxPreviewSettings.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <random>
#include <unistd.h>

namespace {

constexpr int MaxAssets = 30;

/// Where the lines go; the library's own lines go nowhere.
int report = -1;

void say(const char *what, const std::string &uuid, float roughness)
{
    char line[96];
    const int length =
        std::snprintf(line, sizeof line, "%s %s %.9g\n", what, uuid.c_str(), static_cast<double>(roughness));
    if (::write(report, line, static_cast<std::size_t>(length)) != length)
        std::exit(1);
}

void setRoughness(const osg::MaterialPtr &material, float roughness)
{
    const auto surface = osg::UBRDFMaterialPtr::dcast(material);
    const osg::CPEditor edit(surface, osg::UBRDFMaterial::RoughnessFieldMask);
    surface->setRoughness(roughness);
}

void saveNew(const QUrl &folder, int number, float roughness)
{
    const osg::FCRef<osg::Material> material(osg::UBRDFMaterial::create());
    kxMaterials::setName(material.get(), "Asset " + std::to_string(number), false);
    setRoughness(material.get(), roughness);
    kxMaterialAssetItem item;
    item.initFrom(material.get(), {}, true);
    const std::string uuid = item.uuid();
    say("begin", uuid, roughness);
    if (item.save(folder))
        say("done", uuid, roughness);
}

void saveAgain(const std::string &uuid, float roughness)
{
    auto *item = dynamic_cast<kxMaterialAssetItem *>(kxAssetItemFactory::the().findItem(uuid));
    if (!item || !item->loadMaterial())
        std::exit(2);
    setRoughness(item->getMaterial(), roughness);
    say("begin", uuid, roughness);
    if (item->save(item->parentDirectoryUrl()))
        say("done", uuid, roughness);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 3;
    report = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    if (std::freopen("/dev/null", "w", stdout) == nullptr || std::freopen("/dev/null", "w", stderr) == nullptr)
        return 3;
    const QApplication application(argc, argv);
    const kxAssetSession session;
    kxPreviewSettings::setSize(16);
    kxPreviewSettings::setSamples(1);
    kxAssetLibrary library(QString::fromUtf8(argv[1]));
    library.open(nullptr);
    std::mt19937 random(static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10)));
    std::uniform_real_distribution<float> unit(0.0F, 1.0F);
    for (;;) {
        const std::vector<kxAssetItem *> items = library.items();
        const float roughness = unit(random);
        if (items.size() < MaxAssets && random() % 4 == 0)
            saveNew(library.url(), static_cast<int>(random() % 1000), roughness);
        else if (!items.empty())
            saveAgain(items[random() % items.size()]->uuid(), roughness);
    }
}
