// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/// One change of the scene that can be taken back. A command is a list of them.
///
/// Others change the scene as well, so that a step finds out each time whether it still can do what it is about.
class SceneStep
{
public:
    SceneStep() = default;
    virtual ~SceneStep();
    SceneStep(const SceneStep &) = delete;
    SceneStep &operator=(const SceneStep &) = delete;

    /// Both answer "" or, where nothing could be changed, a sentence that says why.
    virtual QString apply() = 0;
    virtual QString revert() = 0;
    /// Takes over what \a later leads to, where that changes the same thing; false otherwise.
    virtual bool absorb(const SceneStep &later);
};
