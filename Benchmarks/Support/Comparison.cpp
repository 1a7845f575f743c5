// SPDX-License-Identifier: Apache-2.0
#include "Support/Comparison.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace kxbench {

namespace {

double seconds(const Comparison::Work &prepare, const Comparison::Work &work)
{
    if (prepare)
        prepare();
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : 0.5 * (values[middle - 1] + values[middle]);
}

} // namespace

Comparison &Comparison::preparedBy(Work prepareOurs, Work prepareFloor)
{
    _prepareOurs = std::move(prepareOurs);
    _prepareFloor = std::move(prepareFloor);
    return *this;
}

void Comparison::run(int rounds)
{
    std::vector<double> ours;
    std::vector<double> floor;
    seconds(_prepareFloor, _floor);
    seconds(_prepareOurs, _ours);
    for (int round = 0; round < rounds; ++round) {
        floor.push_back(seconds(_prepareFloor, _floor));
        ours.push_back(seconds(_prepareOurs, _ours));
    }
    _oursSeconds = median(ours);
    _floorSeconds = median(floor);
}

void report(const std::string &what, const std::string &floor, double must, double aim, double figure, Better better,
            const std::string &unit)
{
    const auto keeps = [=](double bound) { return better == Better::Less ? figure <= bound : figure >= bound; };
    const char *verdict = keeps(aim) ? "aim" : keeps(must) ? "must" : "MISSED";
    std::printf("| %s | %s | %g%s | %g%s | %.3g%s | %s |\n", what.c_str(), floor.c_str(), must, unit.c_str(), aim,
                unit.c_str(), figure, unit.c_str(), verdict);
    std::fflush(stdout);
}

void note(const std::string &what, const Comparison &comparison)
{
    std::fprintf(stderr, "%s: %.4f s against %.4f s\n", what.c_str(), comparison.ours(), comparison.floor());
}

} // namespace kxbench
