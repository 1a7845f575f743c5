// SPDX-License-Identifier: Apache-2.0
#include "Support/SampleLibrary.h"

#include <QDir>
#include <QFile>
#include <QUuid>

namespace {

constexpr int Batches = 200; // tags occur on several assets
constexpr int AssetsOfAFolder = 100;
constexpr int FoldersOfAFolder = 20;

QByteArray metadata(int number, int tagCount)
{
    QString tags;
    for (int i = 0; i < tagCount; ++i)
        tags += (i ? ", " : "") + QStringLiteral("tag%1 of the batch %2").arg(i).arg(number % Batches);
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE SARNAsset>\n<item>\n"
                          "  <category>Materials</category>\n  <uuid>%1</uuid>\n  <name>Material %2</name>\n"
                          "  <sarnVersion>0.1.0</sarnVersion>\n  <material>\n    <type>UBRDFMaterial</type>\n"
                          "    <tags>%3</tags>\n    <photometric>0</photometric>\n  </material>\n</item>\n")
        .arg(QUuid::createUuid().toString(QUuid::WithoutBraces))
        .arg(number)
        .arg(tags)
        .toUtf8();
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s cannot be written", qPrintable(path));
}

} // namespace

void kxbench::makeLibrary(const QString &root, int count, const QByteArray &preview, int tags)
{
    for (int i = 0; i < count; ++i) {
        const int folder = i / AssetsOfAFolder;
        const QString directory = QStringLiteral("%1/%2/%3/MAT_%4")
                                      .arg(root)
                                      .arg(folder / FoldersOfAFolder)
                                      .arg(folder % FoldersOfAFolder)
                                      .arg(i);
        if (!QDir().mkpath(directory))
            qFatal("%s cannot be made", qPrintable(directory));
        const QString name = QStringLiteral("%1/Material %2").arg(directory).arg(i);
        write(name + ".xml", metadata(i, tags));
        write(name + ".osb", "payload");
        write(name + ".png", preview);
    }
}
