// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ImportTrouble.h"

#include "AssetManager/DiskTrouble.h"

#include <QFileInfo>

#include <array>
#include <utility>

namespace {

/// What the reason holds, and what that means.
constexpr std::array<std::pair<const char *, const char *>, 4> Known{{
    {"No such file or directory", QT_TRANSLATE_NOOP("ImportTrouble", "It is not there any more.")},
    {"the file is empty", QT_TRANSLATE_NOOP("ImportTrouble", "The file is empty.")},
    {"holds no materials", QT_TRANSLATE_NOOP("ImportTrouble", "It holds no materials.")},
    {"out of memory", QT_TRANSLATE_NOOP("ImportTrouble", "It is too large for this computer.")},
}};

/// The reason without the file's path, which begins the sentence already.
QString detailOf(const QString &file, const QString &reason)
{
    for (const QString &beginning : {QString("Cannot import '%1': ").arg(file), QString("%1: ").arg(file)})
        if (reason.startsWith(beginning))
            return reason.mid(beginning.size());
    return reason;
}

} // namespace

QString ImportTrouble::sentences(const QString &file, const QString &reason)
{
    const QString begin = tr("\"%1\" could not be imported.").arg(QFileInfo(file).fileName()) + ' ';
    for (const auto &[part, sentence] : Known)
        if (reason.contains(QLatin1String(part)))
            return begin + tr(sentence);
    if (const QString sentence = DiskTrouble::sentenceFor(reason.toStdString()); !sentence.isEmpty())
        return begin + sentence;
    return begin + tr("It is damaged, or not what its name says. (%1)").arg(detailOf(file, reason));
}
