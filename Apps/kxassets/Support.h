// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kxassets/Command.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}
class kxAssetItem;
class kxAssetLibrary;
class kxMaterialAssetItem;

/// Adds --library and --json, which most sub-commands have.
void declareLibrary(CLI::App &app, Options &options);
void declareJson(CLI::App &app, Options &options);

/// One line on standard error.
void complain(const std::string &text);

/// Opens the library that the options name; complains when there is none and \a mustExist, or when none is named.
std::optional<kxAssetLibrary> openLibrary(const Options &options, bool mustExist);

/// The asset that the text means; complains when it is none.
kxAssetItem *findAsset(const kxAssetLibrary &library, const std::string &text);
/// The same for a material.
kxMaterialAssetItem *findMaterialAsset(const kxAssetLibrary &library, const std::string &text);

/// Everything there is to say of an asset.
QJsonObject describe(const kxAssetLibrary &library, kxAssetItem &item);

void printJson(Context &context, const QJsonValue &value);

/// A table with a header, its columns as wide as their contents, as people count characters.
void printTable(Context &context, const std::vector<std::vector<std::string>> &rows);

/// Has a changed asset's directory read again, and the registry with it.
void reread(kxAssetItem &item);

/// Complaints in one list at the end of a batch, and the exit code that follows.
ExitCode finishBatch(const std::vector<std::string> &failures);
