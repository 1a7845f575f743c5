// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetCategory.h"
#include "Assets/kxAssetsExport.h"
#include "SceneGraph/AssetAttachment.h"

#include <QDateTime>
#include <QImage>
#include <QString>
#include <QUrl>
#include <QVariant>

#include <boost/uuid/uuid.hpp>

#include <cstdint>
#include <memory>
#include <string>

class QPixmap;
class kxAssetItemDocument;
class kxPreviewImageLoader;

/// One asset of a library: identity, place, preview and modification time, and what all categories have in common.
///
/// An item lives in the registry, or belongs to a caller who is about to save it. Its UUID identifies it and must not
/// change while it is registered. Main thread only.
class KX_ASSETS_EXPORT kxAssetItem
{
    Q_DECLARE_TR_FUNCTIONS(kxAssetItem)

public:
    /// The one loader that all items share; made on first use and never deleted.
    static kxPreviewImageLoader *getPreviewImageLoader();

    kxAssetItem();
    kxAssetItem(const kxAssetItem &) = default;
    kxAssetItem &operator=(const kxAssetItem &) = default;
    virtual ~kxAssetItem();

    /// Writes the asset below the directory \a url.
    virtual bool save(const QUrl &url) = 0;
    /// Takes category, UUID and name from \a document, whose validity the caller has checked. Resets the item first.
    virtual bool readMetaData(const kxAssetItemDocument &document);
    /// Appends category, UUID, name and the host's version.
    virtual bool writeMetaData(kxAssetItemDocument &document) const;

    virtual std::string uuid();
    virtual std::string name();
    virtual kxAssetCategoryType category();
    virtual bool hasCategory(kxAssetCategoryType category) const;

    virtual QImage previewImage();
    virtual void setPreviewImage(const QImage &image);
    /// Paints what marks the item's kind onto a preview. The base paints nothing.
    virtual void addOverlayIcon(QPixmap &pixmap) const;

    /// The asset's own directory; empty until it was saved or collected.
    virtual QUrl directoryUrl();
    virtual void setDirectoryUrl(const QUrl &url);
    /// Changes the name in the metadata file and here; the directory keeps its name. On failure nothing changes.
    virtual bool changeName(const QString &newName);

    /// Of the first payload file; 0 when there is none.
    virtual std::uint32_t checksum() const;
    /// Whether \a container is as it was when it was loaded from, or saved to, what is stored now.
    virtual bool hasSameChecksum(const osg::AttachmentContainerPtr &container) const;
    virtual QDateTime lastModified();

    /// Makes this the item of a scene object. The UUID is made anew unless \a useAttachment is true and there is one: the
    /// given one first, then that of the object's attachment.
    virtual void initFrom(osg::AttachmentContainerPtr container, const std::string &uuid, bool useAttachment) = 0;

    /// What a browser shows, for the roles display, edit and tool tip.
    virtual QVariant data(int column, int role);
    /// What a browser sorts by.
    virtual QVariant sortData(int column);
    virtual QString mimeType() = 0;
    /// True when the preview is there or, asynchronously, on its way: the loader announces it, and whoever receives it
    /// hands it to setPreviewImage().
    virtual bool loadPreviewImage(bool asynchronous);

    /// Empty when no back-end accepts the item's directory.
    QUrl parentDirectoryUrl();
    /// Whether the item's directory holds this asset.
    bool hasValidSaveLocation() const;
    /// The tag that a loaded asset puts on its materials; a material's is its bare name.
    std::string getTag();
    void setLastModified(const QDateTime &time);

    /// Expires with the item; for callers of what may run an event loop, in which others may delete it.
    std::weak_ptr<const void> life() const { return _life.watch(); }

protected:
    /// Back to the state of a new item, but for the modification time.
    virtual void reset();
    /// Stamps identity, place and checksum of this item onto \a container, making the attachment if necessary, and marks
    /// it as unedited. Null for null.
    virtual osg::FCPtr<osg::AttachmentPtr, osg::AssetAttachment>
    updateAssetAttachment(const osg::AttachmentContainerPtr &container);

    /// A version-4 UUID from the operating system's random source, 36 characters, lower case.
    static std::string generateUUID();
    /// The value of a textual UUID in either case; all zero for anything else.
    static boost::uuids::uuid getUUIDFromString(const std::string &text);

    /// Without \a useAttachment a given \a uuid is ignored: the item becomes a new asset.
    void initUUID(osg::AttachmentContainerPtr container, const std::string &uuid, bool useAttachment);

    void setCategory(kxAssetCategoryType category) { _category = category; }
    void setName(const std::string &name) { _name = name; }

    /// For const operations that need one of the virtual getters, which are not const. Those change nothing.
    kxAssetItem &self() const { return const_cast<kxAssetItem &>(*this); }

    /// What checksum() answers for an item of this category in this directory.
    static std::uint32_t checksumOf(const QUrl &directory, kxAssetCategoryType category);
    /// What updateAssetAttachment() writes, for a caller whose item may be gone by then.
    static osg::AssetAttachmentPtr writeAssetAttachment(const osg::AttachmentContainerPtr &container,
                                                        const std::string &uuid, kxAssetCategoryType category,
                                                        const QUrl &directory, std::uint32_t checksum);

private:
    /// Every item has its own, made when somebody asks for it; copies are items of their own.
    class Life
    {
    public:
        Life() = default;
        Life(const Life & /*other*/) {}
        Life(Life && /*other*/) noexcept {}
        // NOLINTNEXTLINE(bugprone-unhandled-self-assignment,cert-oop54-cpp): nothing is assigned
        Life &operator=(const Life & /*other*/) { return *this; }
        Life &operator=(Life && /*other*/) noexcept { return *this; }
        ~Life() = default;

        std::weak_ptr<const void> watch() const
        {
            if (!_token)
                _token = std::make_shared<const char>();
            return _token;
        }

    private:
        mutable std::shared_ptr<const char> _token;
    };

    static kxPreviewImageLoader *s_previewLoader;

    QUrl _directoryUrl;
    std::string _uuid;
    kxAssetCategoryType _category = Undefined;
    std::string _name = "unnamed";
    QImage _previewImage;
    QDateTime _lastModified;
    Life _life;
};
