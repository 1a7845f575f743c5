// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Node.h"
#include "SceneGraph/SceneListener.h"

#include <QCursor>
#include <QMetaObject>

#include <string>
#include <vector>

class QUndoStack;

/// Lasts as long as a script runs, and puts back afterwards what scripts leave behind. Main thread only.
///
/// Whatever way a script ended, views and rendering follow the scene again as they did before, and the pointer looks as it
/// did; after a failure the selection is the former one as well. A script that changed the scene or the libraries empties
/// the undo stack: its steps would act on what they do not know. What it saved over stays, since that looks itself.
class ScriptGuard final : private osg::SceneListener
{
public:
    explicit ScriptGuard(QUndoStack &undo);
    /// Ends as after a failure, where end() was not called.
    ~ScriptGuard() override;
    ScriptGuard(const ScriptGuard &) = delete;
    ScriptGuard &operator=(const ScriptGuard &) = delete;

    void end(bool isFailed);
    /// Whether there was something to undo that cannot be undone any more.
    bool hasForgotten() const { return _hasForgotten; }

private:
    void containerChanged(osg::FieldContainer &container, osg::FieldMask fields) override;
    void restoreSelection() const;
    void announceChanges();

    QUndoStack &_undo;
    QMetaObject::Connection _documents;
    std::vector<std::string> _assets; ///< what the registry held, where there is something to undo
    int _firstStep;                   ///< of the script on the stack
    std::vector<std::uint32_t> _selected;
    std::vector<QCursor> _cursors; ///< the uppermost first
    bool _updatesScene;
    bool _updatesPicture;
    bool _isSceneChanged = false;
    bool _isOtherDocument = false;
    bool _hasForgotten = false;
    bool _isOver = false;
};
