// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneStep.h"

SceneStep::~SceneStep() = default;

bool SceneStep::absorb(const SceneStep & /*later*/)
{
    return false;
}
