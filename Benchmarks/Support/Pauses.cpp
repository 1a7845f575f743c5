// SPDX-License-Identifier: Apache-2.0
#include "Support/Pauses.h"

#include <QCoreApplication>

#include <algorithm>
#include <ctime>

namespace kxbench {

namespace {

constexpr int Patience = 120000; // milliseconds

/// Of this thread, milliseconds.
double processorTime()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double largestOf(std::vector<double> &values, double share)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

} // namespace

Pauses::Pauses() : _computedBefore(processorTime())
{
    _timer.setTimerType(Qt::PreciseTimer);
    _clock.start();
    QObject::connect(&_timer, &QTimer::timeout, [this] {
        _pauses.push_back(static_cast<double>(_clock.nsecsElapsed()) / 1e6);
        _clock.restart();
        const double computed = processorTime();
        _computed.push_back(computed - _computedBefore);
        _computedBefore = computed;
    });
    _timer.start(1); // not 0: idle rounds without number would hide the others
}

double Pauses::worstOf(double share)
{
    return largestOf(_pauses, share);
}

double Pauses::computedOf(double share)
{
    return largestOf(_computed, share);
}

void spin(const std::function<bool()> &isDone)
{
    QElapsedTimer time;
    time.start();
    while (!isDone()) {
        if (time.elapsed() > Patience)
            qFatal("waited in vain");
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    }
}

void spinFor(int milliseconds)
{
    QElapsedTimer time;
    time.start();
    QTimer wake; // nothing else may
    wake.start(1);
    spin([&] { return time.elapsed() >= milliseconds; });
}

} // namespace kxbench
