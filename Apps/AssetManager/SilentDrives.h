// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <functional>

/// Which places are not to be asked just now, since their drive does not answer and the window would stand still. Main thread only.
class SilentDrives
{
public:
    using Judge = std::function<bool(const QString &path)>;

    static SilentDrives &the();

    /// False of all while nobody judges.
    bool hold(const QString &path) const;
    /// Replaces the former one.
    void setJudge(const void *owner, const Judge &judge);
    /// Has the judgement of its last moment stay where the owner's is the present one.
    void setLastJudge(const void *owner, const Judge &judge);

private:
    SilentDrives() = default;

    const void *_owner = nullptr;
    Judge _judge;
};
