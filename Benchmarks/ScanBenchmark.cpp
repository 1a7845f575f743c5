// SPDX-License-Identifier: Apache-2.0
// Collecting the assets of a library against a bare loop over the same directories.
#include "AssetSession/kxAssetSession.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxUrlManager.h"
#include "Support/Comparison.h"
#include "Support/SampleLibrary.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QDomDocument>
#include <QTemporaryDir>

#include <cstdio>
#include <map>
#include <vector>

namespace {

struct Values
{
    QString directory;
    QDateTime modified;
    std::vector<QString> texts;
};

using Table = std::map<std::string, Values>;

/// What every program would have to do that reads such a library with Qt.
void scanBare(const QString &directory, Table &table)
{
    bool isAsset = false;
    for (const QString &name : QDir(directory).entryList({QStringLiteral("*.xml")}, QDir::Files, QDir::NoSort)) {
        QFile file(directory + '/' + name);
        QDomDocument document;
        if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file))
            continue;
        Values values;
        values.directory = directory;
        values.modified = QFileInfo(file).lastModified();
        const QDomElement item = document.documentElement();
        const QDomElement material = item.firstChildElement("material");
        for (const char *element : {"category", "name", "sarnVersion"})
            values.texts.push_back(item.firstChildElement(element).text());
        for (const char *element : {"type", "tags", "photometric"})
            values.texts.push_back(material.firstChildElement(element).text());
        table.emplace(item.firstChildElement("uuid").text().toStdString(), std::move(values));
        isAsset = true;
    }
    if (isAsset)
        return;
    for (const QString &name : QDir(directory).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::NoSort))
        scanBare(directory + '/' + name, table);
}

/// Seconds per asset.
double measure(int count, int rounds)
{
    const QTemporaryDir folder;
    kxbench::makeLibrary(folder.path(), count, "preview");
    const QUrl url = QUrl::fromLocalFile(folder.path());
    const kxUrlManager *manager = kxUrlManager::getUrlManager(url);
    Table table;
    kxbench::Comparison comparison([&] { manager->collectItems(url, Undefined, nullptr); },
                                   [&] { scanBare(folder.path(), table); });
    comparison.preparedBy([] { kxAssetItemFactory::the().deleteAllItems(); }, [&] { table.clear(); }).run(rounds);
    if (kxAssetItemFactory::the().itemCount() != count || table.size() != static_cast<std::size_t>(count))
        qFatal("not all assets were found");
    const std::string what = "collecting " + std::to_string(count) + " material directories";
    kxbench::note(what, comparison);
    kxbench::report(what, "QDir, QFile, QDomDocument, insertion by UUID", 1.0, 0.7, comparison.ratio());
    return comparison.ours() / count;
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const kxAssetSession session;
    const double few = measure(10000, 7);
    const double many = measure(100000, 3);
    kxbench::report("cost of an asset at 100,000", "at 10,000", 1.3, 1.1, many / few);
}
