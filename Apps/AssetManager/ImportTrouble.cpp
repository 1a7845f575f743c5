// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ImportTrouble.h"

#include "AssetManager/DiskTrouble.h"

#include <QFileInfo>

#include <array>
#include <utility>

namespace {

constexpr const char *MissingProgram =
    QT_TRANSLATE_NOOP("ImportTrouble", "A part of this program is missing: it has to be installed anew.");

/// What the reason holds, and what that means.
constexpr std::array<std::pair<const char *, const char *>, 7> Known{{
    {"the program kx-import-worker is not installed", MissingProgram},
    {"cannot be started: ", MissingProgram},
    {"No such file or directory", QT_TRANSLATE_NOOP("ImportTrouble", "It is not there any more.")},
    {"the file is empty", QT_TRANSLATE_NOOP("ImportTrouble", "The file is empty.")},
    {"holds no materials", QT_TRANSLATE_NOOP("ImportTrouble", "It holds no materials.")},
    {"the parser needs more than ", QT_TRANSLATE_NOOP("ImportTrouble", "It is too large for this computer.")},
    {"the parser took longer than ", QT_TRANSLATE_NOOP("ImportTrouble", "It takes too long to read.")},
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

QString ImportTrouble::beginning(const QString &file)
{
    return tr("\"%1\" could not be imported.").arg(QFileInfo(file).fileName()) + ' ';
}

QString ImportTrouble::sentences(const QString &file, const QString &reason)
{
    const QString detail = detailOf(file, reason);
    for (const auto &[part, sentence] : Known)
        if (detail.contains(QLatin1String(part)))
            return beginning(file) + tr(sentence);
    if (const QString sentence = DiskTrouble::sentenceFor(detail.toStdString()); !sentence.isEmpty())
        return beginning(file) + sentence;
    return beginning(file) + tr("It is damaged, or not what its name says. (%1)").arg(detail);
}

QString ImportTrouble::ofPart(const QString &file, const kxUnsavedPart &part)
{
    const QString begin =
        tr("Of \"%1\", \"%2\" could not be saved.").arg(QFileInfo(file).fileName(), QString::fromStdString(part.name));
    const QString reason = reasonFor(part);
    return reason.isEmpty() ? begin : begin + ' ' + reason;
}

QString ImportTrouble::ofAll(const QString &file, const std::vector<kxUnsavedPart> &parts)
{
    for (const kxUnsavedPart &part : parts)
        if (const QString reason = reasonFor(part); !reason.isEmpty())
            return beginning(file) + reason;
    return beginning(file) + tr("Nothing of it could be saved.");
}

/// "" where nothing is known.
QString ImportTrouble::reasonFor(const kxUnsavedPart &part)
{
    return part.folder.isEmpty() ? tr("It would lie outside of the library.") : DiskTrouble::advice(part.folder, {});
}
