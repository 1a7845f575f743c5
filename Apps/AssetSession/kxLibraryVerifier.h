// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"

#include <QString>
#include <QUrl>

#include <functional>
#include <map>
#include <string>
#include <vector>

class kxAssetItemDocument;

/// Looks into every asset directory below a folder and tells what is wrong, without changing anything. Main thread only.
///
/// Works from the files alone; the registry need not hold the assets.
class KX_ASSETSESSION_EXPORT kxLibraryVerifier
{
public:
    struct Finding
    {
        std::string kind; ///< one word for programs, such as "duplicate-uuid"
        std::string path; ///< relative to the folder
        std::string text; ///< for people
    };

    explicit kxLibraryVerifier(const QString &folder);

    /// Asked before each directory with the number of those done; false ends the search.
    void setProgress(std::function<bool(int done)> progress) { _progress = std::move(progress); }

    /// All findings, in the order of the paths.
    std::vector<Finding> verify();
    int assetCount() const { return static_cast<int>(_directoryOfUuid.size()); }

private:
    bool verifyBelow(const QString &directory);
    bool verifyMetadata(const QString &file);
    void verifyIdentity(const QString &file, const kxAssetItemDocument &document);
    void verifyMaterial(const QString &directory, const kxAssetItemDocument &document);
    void verifyNode(const QString &directory);
    void verifyPreview(const QString &directory, const QString &baseName);
    void verifySubMaterials();
    void verifyLeftovers(const QString &directory, bool isAsset);
    void report(const char *kind, const QString &path, const std::string &text);

    struct Composite
    {
        QString path;
        std::vector<std::string> parts;
    };
    bool isMadeOfItself(const std::string &uuid) const;

    QString _folder;
    std::function<bool(int)> _progress;
    int _done = 0;
    std::map<std::string, QString> _directoryOfUuid;
    std::map<std::string, Composite> _composites; ///< by UUID
    std::vector<Finding> _findings;
};
