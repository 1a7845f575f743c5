// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

struct AssetEntry;
class AssetModel;
class LibraryActions;
class ReplaceCommand;

/// What a person has written into assets: objects of the scene, tags, and previews. All can be undone. Main thread only.
///
/// Like all batches they go on when one fails, and report all failures together at the end.
class AssetActions final : public QObject
{
    Q_OBJECT

public:
    /// Both have to live longer.
    AssetActions(LibraryActions &library, AssetModel &model, QObject *parent = nullptr);

    void saveNodes(const std::vector<std::uint32_t> &ids, const QString &folder);
    void saveMaterials(const std::vector<std::uint32_t> &ids, const QString &folder);
    /// Saves objects of the scene over the assets that they came from. What an asset was is kept for undo; one of which it
    /// cannot be kept is not saved.
    void overwrite(const std::vector<std::uint32_t> &ids);
    /// The same without a report: the answer is what failed, in sentences.
    QStringList replace(const std::vector<std::uint32_t> &ids);

    void editTags(const QStringList &uuids, const QStringList &added, const QStringList &removed);
    void renderPreviews(const QStringList &uuids);

private:
    /// Of one object: "" or what failed, and as what it was saved.
    using Saving = QString (*)(std::uint32_t id, const QString &folder, std::string &uuid);

    void save(const std::vector<std::uint32_t> &ids, const QString &folder,
              const std::function<QString(int count)> &text, const Saving &saving);
    static QString keepMetadata(const AssetEntry &entry, ReplaceCommand &edit);
    QString retag(const QString &uuid, const QStringList &tags);
    QString renderPreview(const std::string &uuid, ReplaceCommand &renewal);

    LibraryActions &_library;
    AssetModel &_model;
};
