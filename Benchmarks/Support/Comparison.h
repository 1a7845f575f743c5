// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>

namespace kxbench {

/// Times two pieces of work alternately in one process, so that whatever else the machine does meets both.
class Comparison
{
public:
    using Work = std::function<void()>;

    /// \a prepareOurs and \a prepareFloor run before each round and are not timed; both may be empty.
    Comparison(Work ours, Work floor) : _ours(std::move(ours)), _floor(std::move(floor)) {}
    Comparison &preparedBy(Work prepareOurs, Work prepareFloor);
    /// One untimed round of each comes first: everything is in the caches.
    void run(int rounds);

    /// Medians, seconds.
    double ours() const { return _oursSeconds; }
    double floor() const { return _floorSeconds; }
    double ratio() const { return _oursSeconds / _floorSeconds; }

private:
    Work _ours;
    Work _floor;
    Work _prepareOurs;
    Work _prepareFloor;
    double _oursSeconds = 0.0;
    double _floorSeconds = 0.0;
};

/// What is better: a figure below its bound, or above it.
enum class Better { Less, More };

/// Prints one row of the table: what, against what, the bounds, the figure, and whether it keeps them.
void report(const std::string &what, const std::string &floor, double must, double aim, double figure,
            Better better = Better::Less, const std::string &unit = {});

/// Diagnostics on standard error: seconds of both sides.
void note(const std::string &what, const Comparison &comparison);

} // namespace kxbench
