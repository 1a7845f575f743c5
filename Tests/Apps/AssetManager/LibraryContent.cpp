// SPDX-License-Identifier: Apache-2.0
#include "LibraryContent.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <gtest/gtest.h>

LibraryContent contentOf(const QString &library)
{
    LibraryContent content;
    QDirIterator found(library, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (found.hasNext()) {
        const QString path = found.next();
        const QString name = QDir(library).relativeFilePath(path);
        if (name.startsWith(QLatin1String(".kx-trash")))
            continue;
        QFile file(path);
        const bool isFile = found.fileInfo().isFile();
        EXPECT_TRUE(!isFile || file.open(QIODevice::ReadOnly)) << path.toStdString();
        content[name] = isFile ? file.readAll() : QByteArray("a folder");
    }
    return content;
}

std::string differenceOf(const LibraryContent &one, const LibraryContent &other)
{
    std::string text;
    for (const auto &[name, bytes] : one)
        if (const auto found = other.find(name); found == other.end())
            text += name.toStdString() + " is missing\n";
        else if (found->second != bytes)
            text +=
                name.toStdString() + ":\n" + bytes.toStdString() + "\nis now\n" + found->second.toStdString() + '\n';
    for (const auto &[name, bytes] : other)
        if (one.count(name) == 0)
            text += name.toStdString() + " is new\n";
    return text;
}
