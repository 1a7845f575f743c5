// SPDX-License-Identifier: Apache-2.0
#include "UrlManagerFixture.h"

#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"

namespace {

/// One back-end for the process, as it can never be taken out of the registry; emptied for each test.
TestUrlManager &backEnd()
{
    static TestUrlManager manager;
    return manager;
}

} // namespace

UrlManagerFixture::UrlManagerFixture() : manager(backEnd())
{
    kxAssetItemFactory::the().deleteAllItems();
    manager = TestUrlManager();
    kxUrlManager::registerManager(&manager);
}

UrlManagerFixture::~UrlManagerFixture()
{
    kxAssetItemFactory::the().deleteAllItems();
}

QByteArray UrlManagerFixture::metadata(const std::string &uuid, const char *category, const char *name)
{
    const QByteArray material = QByteArray(category) == "Materials"
                                    ? QByteArray("<material><type>UBRDFMaterial</type></material>")
                                    : QByteArray();
    return QByteArray("<!DOCTYPE SARNAsset><item><category>") + category + "</category><uuid>" +
           QByteArray::fromStdString(uuid) + "</uuid><name>" + name + "</name>" + material + "</item>";
}

UrlManagerFixture::Uuids UrlManagerFixture::registered()
{
    Uuids uuids;
    uuids.reserve(static_cast<std::size_t>(kxAssetItemFactory::the().itemCount()));
    for (int i = 0; i < kxAssetItemFactory::the().itemCount(); ++i)
        uuids.push_back(kxAssetItemFactory::the().itemFromIndex(i)->uuid());
    return uuids;
}
