// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/kxAssetLibrary.h"
#include "SceneGraph/Result.h"

#include <QUrl>

#include <optional>
#include <string>

class QJsonObject;
class kxAssetItem;
class kxMaterialAssetItem;
struct Options;

/// Opens the library that the options name; complains when there is none and \a mustExist, or when none is named.
std::optional<kxAssetLibrary> openLibrary(const Options &options, bool mustExist);

/// The asset that the text means; the reason says why it is none.
osg::Result<kxAssetItem *> lookUp(const kxAssetLibrary &library, const std::string &text);
/// The same for a material.
osg::Result<kxMaterialAssetItem *> lookUpMaterial(const kxAssetLibrary &library, const std::string &text);

/// The same, with a complaint and null for a failure.
kxAssetItem *findAsset(const kxAssetLibrary &library, const std::string &text);
kxMaterialAssetItem *findMaterialAsset(const kxAssetLibrary &library, const std::string &text);

/// The folder of the library that the text means; complains when it is none.
std::optional<QUrl> findFolder(const kxAssetLibrary &library, const std::string &text);

/// Everything there is to say of an asset.
QJsonObject describe(const kxAssetLibrary &library, kxAssetItem &item);
