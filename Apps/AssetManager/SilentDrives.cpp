// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SilentDrives.h"

SilentDrives &SilentDrives::the()
{
    static SilentDrives one;
    return one;
}

bool SilentDrives::hold(const QString &path) const
{
    return _judge && _judge(path);
}

void SilentDrives::setJudge(const void *owner, const Judge &judge)
{
    _owner = owner;
    _judge = judge;
}

void SilentDrives::setLastJudge(const void *owner, const Judge &judge)
{
    if (_owner == owner)
        setJudge(nullptr, judge);
}
