// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <functional>
#include <vector>

namespace kxbench {

/// How long the event loop did not get round, in milliseconds, while this is there.
class Pauses
{
public:
    Pauses();
    Pauses(const Pauses &) = delete;
    Pauses &operator=(const Pauses &) = delete;

    /// That which the share of all pauses does not exceed.
    double worstOf(double share);
    /// The same of what the thread computed meanwhile: where it is far less, others had the processor, or a disk was waited for.
    double computedOf(double share);

private:
    QElapsedTimer _clock;
    QTimer _timer;
    std::vector<double> _pauses;
    std::vector<double> _computed;
    double _computedBefore;
};

/// Runs the event loop until \a isDone, at most two minutes.
void spin(const std::function<bool()> &isDone);
/// Runs it so long.
void spinFor(int milliseconds);

} // namespace kxbench
