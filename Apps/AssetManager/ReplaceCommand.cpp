// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ReplaceCommand.h"

#include "AssetManager/LibraryActions.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"

#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <map>
#include <utility>

namespace {

/// "" where it is not registered.
QString directoryOf(const std::string &uuid)
{
    kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
    return item ? item->directoryUrl().toLocalFile() : QString();
}

} // namespace

ReplaceCommand::ReplaceCommand(LibraryActions &actions, const QString &text) : QUndoCommand(text), _actions(actions) {}

ReplaceCommand::~ReplaceCommand() = default;

QString ReplaceCommand::keepAsset(const std::string &uuid)
{
    return keep(uuid, directoryOf(uuid), true);
}

QString ReplaceCommand::keepFile(const std::string &uuid, const QString &file)
{
    return keep(uuid, file, false);
}

QString ReplaceCommand::keep(const std::string &uuid, const QString &path, bool isDirectory)
{
    if (path.isEmpty() || isKept(path))
        return {}; // nothing can replace what is not there
    if (QString reason = _actions.obstacleOf(path); !reason.isEmpty())
        return reason;
    KeptVersion version{Trash(_actions.libraryOf(path))};
    QString reason = version.keep(path);
    if (reason.isEmpty())
        _replaced.push_back({uuid, std::move(version), isDirectory});
    return reason;
}

bool ReplaceCommand::isKept(const QString &path) const
{
    return std::any_of(_replaced.begin(), _replaced.end(),
                       [&](const Replaced &one) { return one.version.place() == path; });
}

void ReplaceCommand::settle()
{
    std::vector<Replaced> replaced;
    for (Replaced &one : _replaced) {
        const QString now = one.isDirectory ? directoryOf(one.uuid) : one.version.place();
        if (now.isEmpty() || !one.version.isReplacedAt(now))
            continue;
        one.version.setPlaceOfNewer(now);
        replaced.push_back(std::move(one));
    }
    _replaced = std::move(replaced);
}

void ReplaceCommand::exchange()
{
    QStringList failures;
    std::map<std::string, QString> exchanged; // an asset may have several files here
    for (Replaced &one : _replaced) {
        QString reason = _actions.obstacleOf(one.version.place());
        if (reason.isEmpty() && one.isDirectory && !QFileInfo::exists(one.version.place()))
            reason = LibraryActions::tr("\"%1\" was left as it is: it is not where it was saved any more.")
                         .arg(QFileInfo(one.version.place()).fileName());
        if (reason.isEmpty())
            reason = one.version.exchange();
        if (!reason.isEmpty())
            failures.append(reason);
        else
            exchanged[one.uuid] = one.isDirectory ? one.version.place() : directoryOf(one.uuid);
    }
    for (const auto &[uuid, directory] : exchanged)
        _actions.noteReplaced(uuid, directory);
    _actions.report(failures);
}

void ReplaceCommand::undo()
{
    exchange();
}

void ReplaceCommand::redo()
{
    if (!std::exchange(_isDone, false))
        exchange();
}
