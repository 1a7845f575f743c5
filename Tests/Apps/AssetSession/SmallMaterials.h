// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Material.h"

#include <QUrl>

#include <string>
#include <vector>

namespace kxtest {

using Owned = osg::FCRef<osg::Material>;

Owned makeSurface(const std::string &name, float roughness = 0.5F);
Owned makeSwitch(const std::string &name, const std::vector<Owned> &parts, int choice = 0);

/// Saves the material as a new asset in \a folder and returns the UUID. Its preview is tiny.
std::string store(const Owned &material, const QUrl &folder);

} // namespace kxtest
