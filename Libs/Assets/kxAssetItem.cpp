// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItem.h"

#include "Assets/Internal/MainThread.h"
#include "Assets/Internal/Unloading.h"
#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxPreviewImageLoader.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxVersion.h"
#include "SceneGraph/EditCP.h"

#include <QDir>
#include <QDomDocument>
#include <QLocale>

#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>

#include <stdexcept>

using kxAssetsInternal::isOnMainThread;

kxPreviewImageLoader *kxAssetItem::s_previewLoader = nullptr;

namespace {

/// Has the loader deleted when the library is unloaded.
class PreviewsAtUnload
{
public:
    explicit PreviewsAtUnload(void (*remove)()) : _remove(remove) {}
    ~PreviewsAtUnload()
    {
        if (kxAssetsInternal::doesProgramGoOn())
            _remove();
    }
    PreviewsAtUnload(const PreviewsAtUnload &) = delete;
    PreviewsAtUnload &operator=(const PreviewsAtUnload &) = delete;

private:
    void (*_remove)();
};

/// Puts \a name into the elements called "name": the first that begins with text has it replaced, and ends the walk;
/// one that does not gets the text appended, and the walk goes on.
void renameIn(QDomDocument &document, const QString &name)
{
    const QString tag = QStringLiteral("name");
    QDomElement element = document.documentElement().firstChildElement(tag);
    for (; !element.isNull(); element = element.nextSiblingElement(tag)) {
        const QDomText text = document.createTextNode(name);
        const QDomNode first = element.firstChild();
        if (first.isText()) {
            element.replaceChild(text, first);
            return;
        }
        element.appendChild(text);
    }
}

} // namespace

kxPreviewImageLoader *kxAssetItem::getPreviewImageLoader()
{
    Q_ASSERT(isOnMainThread());
    // Before the loader, whose first instance makes what drains the pool: what is made later goes earlier.
    static const PreviewsAtUnload unloading([] {
        if (s_previewLoader)
            s_previewLoader->deliverAll();
        delete s_previewLoader;
        s_previewLoader = nullptr;
    });
    if (!s_previewLoader)
        s_previewLoader = new kxPreviewImageLoader(nullptr);
    return s_previewLoader;
}

kxAssetItem::kxAssetItem()
{
    getPreviewImageLoader();
}

kxAssetItem::~kxAssetItem()
{
    Q_ASSERT(isOnMainThread());
}

bool kxAssetItem::readMetaData(const kxAssetItemDocument &document)
{
    reset();
    _category = document.getAssetType();
    _uuid = document.getAssetUUID();
    _name = document.getAssetName();
    return true;
}

bool kxAssetItem::writeMetaData(kxAssetItemDocument &document) const
{
    document.setAssetType(self().category());
    document.setAssetUUID(self().uuid());
    document.setAssetName(self().name());
    document.setItemValue(QStringLiteral("sarnVersion"), QString::fromUtf8(kxGetVersionString()));
    return true;
}

std::string kxAssetItem::uuid()
{
    Q_ASSERT(isOnMainThread());
    return _uuid;
}

std::string kxAssetItem::name()
{
    Q_ASSERT(isOnMainThread());
    return _name;
}

kxAssetCategoryType kxAssetItem::category()
{
    Q_ASSERT(isOnMainThread());
    return _category;
}

bool kxAssetItem::hasCategory(kxAssetCategoryType category) const
{
    Q_ASSERT(isOnMainThread());
    return _category == category;
}

QImage kxAssetItem::previewImage()
{
    Q_ASSERT(isOnMainThread());
    return _previewImage;
}

void kxAssetItem::setPreviewImage(const QImage &image)
{
    Q_ASSERT(isOnMainThread());
    _previewImage = image;
}

void kxAssetItem::addOverlayIcon(QPixmap &) const {}

QUrl kxAssetItem::directoryUrl()
{
    Q_ASSERT(isOnMainThread());
    return _directoryUrl;
}

void kxAssetItem::setDirectoryUrl(const QUrl &url)
{
    Q_ASSERT(isOnMainThread());
    _directoryUrl = url;
}

bool kxAssetItem::changeName(const QString &newName)
{
    Q_ASSERT(isOnMainThread());
    const std::string name = newName.toStdString();
    if (name == _name)
        return true;
    kxUrlManager *manager = kxUrlManager::getUrlManager(_directoryUrl);
    if (!manager)
        return false;

    QDomDocument document;
    QUrl file;
    if (!manager->loadDocumentFromDir(_directoryUrl, document, file) || document.documentElement().isNull())
        return false;
    renameIn(document, newName);
    if (!manager->saveDocumentToFile(file, document))
        return false;
    _name = name;
    return true;
}

std::uint32_t kxAssetItem::checksum() const
{
    Q_ASSERT(isOnMainThread());
    return checksumOf(_directoryUrl, _category);
}

std::uint32_t kxAssetItem::checksumOf(const QUrl &directory, kxAssetCategoryType category)
{
    kxUrlManager *manager = kxUrlManager::getUrlManager(directory);
    if (!manager)
        return 0;
    const std::vector<QUrl> payloads =
        manager->files(directory, kxAssetCategory::getAcceptedFileTypes(category), QDir::NoSort);
    return payloads.empty() ? 0 : manager->checksum(payloads.front());
}

bool kxAssetItem::hasSameChecksum(const osg::AttachmentContainerPtr &container) const
{
    Q_ASSERT(isOnMainThread());
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(container);
    return attachment && attachment->getChecksum() == checksum();
}

QDateTime kxAssetItem::lastModified()
{
    Q_ASSERT(isOnMainThread());
    return _lastModified;
}

void kxAssetItem::setLastModified(const QDateTime &time)
{
    Q_ASSERT(isOnMainThread());
    _lastModified = time;
}

QVariant kxAssetItem::data(int column, int role)
{
    Q_ASSERT(isOnMainThread());
    if (role != Qt::DisplayRole && role != Qt::EditRole && role != Qt::ToolTipRole)
        return {};
    if (column == kxAssetCategory::getNameColumn())
        return QString::fromStdString(_name);
    if (column == kxAssetCategory::getLastModifiedColumn())
        return QLocale().toString(lastModified(), QLocale::ShortFormat);
    if (column != kxAssetCategory::getStorageLocationColumn())
        return {};

    kxUrlManager *manager = kxUrlManager::getUrlManager(_directoryUrl);
    return manager ? QVariant(manager->uiString(manager->getParentDirectoryUrl(_directoryUrl))) : QVariant();
}

QVariant kxAssetItem::sortData(int column)
{
    Q_ASSERT(isOnMainThread());
    return column == kxAssetCategory::getLastModifiedColumn() ? QVariant(_lastModified) : data(column, Qt::DisplayRole);
}

bool kxAssetItem::loadPreviewImage(bool asynchronous)
{
    Q_ASSERT(isOnMainThread());
    if (!_previewImage.isNull())
        return true;
    if (!_directoryUrl.isValid())
        return false;
    kxUrlManager *manager = kxUrlManager::getUrlManager(_directoryUrl);
    if (!manager)
        return false;

    if (s_previewLoader && asynchronous) {
        s_previewLoader->loadImageFromDir(_directoryUrl);
        return true;
    }
    return manager->loadImageFromDir(_directoryUrl, &_previewImage);
}

QUrl kxAssetItem::parentDirectoryUrl()
{
    const QUrl directory = directoryUrl();
    kxUrlManager *manager = kxUrlManager::getUrlManager(directory);
    return manager ? manager->getParentDirectoryUrl(directory) : QUrl();
}

bool kxAssetItem::hasValidSaveLocation() const
{
    const QUrl directory = self().directoryUrl();
    kxUrlManager *manager = kxUrlManager::getUrlManager(directory);
    return manager && manager->containsItem(directory, self().category(), self().uuid());
}

std::string kxAssetItem::getTag()
{
    return kxAssetCategory::getTagPrefix(_category) + name();
}

void kxAssetItem::reset()
{
    Q_ASSERT(isOnMainThread());
    _category = Undefined;
    _uuid.clear();
    _name = "unnamed";
    _previewImage = QImage();
    _directoryUrl.clear();
}

osg::FCPtr<osg::AttachmentPtr, osg::AssetAttachment>
kxAssetItem::updateAssetAttachment(const osg::AttachmentContainerPtr &container)
{
    Q_ASSERT(isOnMainThread());
    return container ? writeAssetAttachment(container, _uuid, _category, directoryUrl(), checksum())
                     : osg::AssetAttachmentPtr();
}

osg::AssetAttachmentPtr kxAssetItem::writeAssetAttachment(const osg::AttachmentContainerPtr &container,
                                                          const std::string &uuid, kxAssetCategoryType category,
                                                          const QUrl &directory, std::uint32_t checksum)
{
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::createAssetAttachment(container);
    if (!attachment)
        return nullptr;
    {
        osg::CPEditor edit(attachment, osg::AssetAttachment::UuidFieldMask);
        attachment->setUuid(uuid);
    }
    {
        osg::CPEditor edit(attachment, osg::AssetAttachment::CategoryFieldMask);
        attachment->setCategory(kxAssetCategory::getInternalCategoryName(category));
    }
    {
        osg::CPEditor edit(attachment, osg::AssetAttachment::UrlFieldMask);
        attachment->setUrl(directory.toString().toStdString());
    }
    {
        osg::CPEditor edit(attachment, osg::AssetAttachment::ChecksumFieldMask);
        attachment->setChecksum(checksum);
    }
    {
        osg::CPEditor edit(attachment, osg::AssetAttachment::UserEditedFieldMask);
        attachment->setUserEdited(false);
    }
    return attachment;
}

std::string kxAssetItem::generateUUID()
{
    try {
        static boost::uuids::random_generator generator;
        return boost::uuids::to_string(generator());
    } catch (const boost::uuids::entropy_error &) {
        return {}; // the operating system has no random numbers, and nothing throws out of the library
    }
}

boost::uuids::uuid kxAssetItem::getUUIDFromString(const std::string &text)
{
    try {
        return boost::uuids::string_generator()(text);
    } catch (const std::runtime_error &) {
        return boost::uuids::uuid{};
    }
}

void kxAssetItem::initUUID(osg::AttachmentContainerPtr container, const std::string &uuid, bool useAttachment)
{
    Q_ASSERT(isOnMainThread());
    _uuid.clear();
    if (container && useAttachment) {
        const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(container);
        _uuid = attachment && uuid.empty() ? attachment->getUuid() : uuid;
    }
    if (_uuid.empty())
        _uuid = generateUUID();
}
