// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxMaterialAssetItem.h"

class QUrl;
class kxUrlManager;

namespace kxAssetsInternal {

/// The material stored in \a directory, with the host's render updates off while its payload loads; null when that fails.
osg::FCRef<osg::Material> loadStoredMaterial(kxUrlManager &manager, const QUrl &directory, bool isProgressShown);

/// Lights a surface by the first environment material of the scene that has this name; without one nothing changes.
void assignEnvironment(const osg::MaterialPtr &material, const std::string &name);

/// Unknown for what gives off no light.
kxAssetPhotometricState photometricStateOf(const osg::MaterialPtr &material);

/// Scales the intensity of a surface that was saved in the state \a stored to what \a expected asks for, if that is the
/// state of the render settings.
void adjustIntensity(const osg::MaterialPtr &material, kxAssetPhotometricState stored,
                     kxAssetPhotometricState expected);

} // namespace kxAssetsInternal
