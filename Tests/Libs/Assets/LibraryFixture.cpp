// SPDX-License-Identifier: Apache-2.0
#include "LibraryFixture.h"

#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxLocalUrlManager.h"

#include <QCoreApplication>

LibraryFixture::LibraryFixture()
{
    kxUrlManager::registerManager(kxLocalUrlManager::the());
    kxAssetItemFactory::the().deleteAllItems();
    QCoreApplication::processEvents();
}

LibraryFixture::~LibraryFixture()
{
    kxAssetItemFactory::the().deleteAllItems();
    QCoreApplication::processEvents();
}

QUrl LibraryFixture::url(const std::string &name) const
{
    return QUrl::fromLocalFile(QString::fromStdString(name.empty() ? _folder.string() : _folder.file(name)));
}

QUrl LibraryFixture::writeAsset(const std::string &directory, const std::string &content) const
{
    _folder.write(directory + "/asset.xml",
                  "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE SARNAsset>\n<item>" + content + "</item>\n");
    return url(directory);
}
