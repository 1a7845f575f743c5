// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Node.h"
#include "SceneGraph/SceneListener.h"

#include <QCursor>
#include <QMetaObject>

#include <cstdint>
#include <vector>

class QUndoStack;

/// Lasts as long as a script runs, and puts back afterwards what scripts leave behind. Main thread only.
///
/// Whatever way a script ended, views and rendering follow the scene again as they did before, and the pointer looks as it
/// did; after a failure the selection is the former one as well. A script that changed the scene empties the undo stack of what
/// was done in it: these steps would act on what they do not know. Those on the disk stay, since they look themselves.
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
    int _sceneSteps; ///< that could be undone at the beginning
    std::vector<std::uint32_t> _selected;
    std::vector<QCursor> _cursors; ///< the uppermost first
    bool _updatesScene;
    bool _updatesPicture;
    std::uint32_t _firstNew; ///< the id from which containers are not what the scene consisted of
    bool _isSceneChanged = false;
    bool _hasForgotten = false;
    bool _isOver = false;
};
