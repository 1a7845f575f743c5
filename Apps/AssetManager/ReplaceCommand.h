// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/KeptVersion.h"

#include <QUndoCommand>

#include <string>
#include <vector>

class LibraryActions;

/// Assets that were saved over, or files of them. It keeps what there is before something replaces it, and exchanges both
/// whenever it is undone or done again.
class ReplaceCommand final : public QUndoCommand
{
public:
    /// The actions have to live longer.
    ReplaceCommand(LibraryActions &actions, const QString &text);
    ~ReplaceCommand() override;

    /// Keeps the directory of the asset as it is; "" or, in a sentence, why it cannot be kept.
    QString keepAsset(const std::string &uuid);
    /// The same of one of the asset's files, which may not be there yet.
    QString keepFile(const std::string &uuid, const QString &file);
    /// Looks what was replaced, and forgets the rest. To be called before the command is given to a stack.
    void settle();
    bool isEmpty() const { return _replaced.empty(); }

    void undo() override;
    void redo() override;

private:
    struct Replaced
    {
        std::string uuid;
        KeptVersion version;
        bool isDirectory = true;
    };
    QString keep(const std::string &uuid, const QString &path, bool isDirectory);
    bool isKept(const QString &path) const;
    void exchange();

    LibraryActions &_actions;
    std::vector<Replaced> _replaced;
    bool _isDone = true;
};
