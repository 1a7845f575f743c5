// SPDX-License-Identifier: Apache-2.0
#include "RandomSceneFixture.h"

#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxModalQuestion.h"

#include <algorithm>

namespace {

constexpr const char *MarkerKey = "EnvironmentAssetMaterial";
constexpr const char *MarkerValue = "IsDefaultEnvironmentSwitchChild";

} // namespace

RandomSceneFixture::RandomSceneFixture()
{
    kxModalQuestion::setAnswerer([](const kxModalQuestion::Question &) { return QMessageBox::Yes; });
}

RandomSceneFixture::~RandomSceneFixture()
{
    kxModalQuestion::setAnswerer({});
}

void RandomSceneFixture::inRandomScenes(std::uint32_t first, std::uint32_t count,
                                        const std::function<void(RandomScene &)> &check)
{
    for (std::uint32_t seed = first; seed < first + count && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomScene scene(seed);
        check(scene);
    }
}

void RandomSceneFixture::removeMarks(const RandomScene &scene)
{
    const osg::MaterialPtr chooser = kxDefaultEnvironment::getSwitch();
    const std::vector<osg::MaterialPtr> choices = kxMaterials::getSubMaterials(chooser);
    for (const osg::MaterialPtr &material : scene.materials().all()) {
        if (!kxMaterials::hasValuePair(material, MarkerKey, MarkerValue))
            continue;
        EXPECT_TRUE(!chooser || std::find(choices.begin(), choices.end(), material) != choices.end());
        kxMaterials::removeKey(material, MarkerKey, false);
    }
}
