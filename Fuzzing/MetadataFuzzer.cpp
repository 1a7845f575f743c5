// SPDX-License-Identifier: Apache-2.0
// Any bytes as the metadata of an asset, read as a scan reads it, into an item of the registry.
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxLocalUrlManager.h"
#include "ScratchFile.h"

#include <QApplication>
#include <QFileInfo>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const ScratchFile file("Red.xml");
    static const QUrl directory = QUrl::fromLocalFile(QFileInfo(QString::fromStdString(file.path())).absolutePath());
    file.write(data, size);
    kxLocalUrlManager::the()->collectItems(directory, Undefined, nullptr);
    for (kxAssetItem *item : kxAssetItemFactory::the().findItems(Undefined, QUrl()))
        for (int column = 0; column < 8; ++column) {
            static_cast<void>(item->data(column, Qt::DisplayRole));
            static_cast<void>(item->sortData(column));
        }
    kxAssetItemFactory::the().deleteAllItems();
    return 0;
}

extern "C" int LLVMFuzzerInitialize(int *count, char ***arguments)
{
    silenceStandardOutput();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    new QApplication(*count, *arguments); // lives as long as the process
    kxUrlManager::registerManager(kxLocalUrlManager::the());
    return 0;
}
