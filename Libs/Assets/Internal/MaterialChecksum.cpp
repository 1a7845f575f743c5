// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/MaterialChecksum.h"

#include "Assets/kxUrlManager.h"

#include <QDir>
#include <QDomDocument>
#include <QTextStream>

#include <boost/crc.hpp>

namespace kxAssetsInternal {

namespace {

std::uint32_t checksumOf(const QDomElement &element)
{
    QByteArray bytes;
    QTextStream stream(&bytes, QIODevice::WriteOnly);
    stream.setCodec("UTF-8");
    element.save(stream, 2, QDomNode::EncodingFromDocument);
    stream.flush();

    boost::crc_32_type crc;
    crc.process_bytes(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    return crc.checksum();
}

} // namespace

std::uint32_t materialChecksum(const QUrl &directory, kxAssetCategoryType category)
{
    kxUrlManager *manager = kxUrlManager::getUrlManager(directory);
    if (!manager)
        return 0;
    const std::vector<QUrl> payloads =
        manager->files(directory, kxAssetCategory::getAcceptedFileTypes(category), QDir::NoSort);
    if (!payloads.empty())
        return manager->checksum(payloads.front());

    QDomDocument document(QStringLiteral("document"));
    if (!manager->loadDocumentFromDir(directory, document))
        return 0;
    const QDomElement element = document.documentElement().firstChildElement(QStringLiteral("material"));
    return element.isNull() ? 0 : checksumOf(element);
}

} // namespace kxAssetsInternal
