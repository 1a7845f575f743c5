// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/Cores.h"

#include <tbb/info.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include <sys/resource.h>

namespace kxRender {

namespace {

constexpr int BackgroundNiceness = 10;

int coresOf(Cores::Share share)
{
    const int all = tbb::info::default_concurrency();
    return share == Cores::Share::All || all < 3 ? all : all - 1;
}

} // namespace

struct Cores::Arena
{
    tbb::task_arena threads;
};

Cores::Cores(Share share) : _arena(new Arena{tbb::task_arena(coresOf(share))}) {}

Cores::~Cores() = default;

void Cores::run(const std::function<void()> &work)
{
    _arena->threads.execute(work);
}

void Cores::lowerPriority()
{
    // Of the calling thread alone on Linux, whatever POSIX says of processes. Where it fails, nothing but speed is lost.
    static_cast<void>(setpriority(PRIO_PROCESS, 0, BackgroundNiceness));
}

void Cores::forEach(int count, const std::function<void(int)> &use)
{
    tbb::parallel_for(0, count, use);
}

} // namespace kxRender
