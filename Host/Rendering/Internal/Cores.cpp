// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/Cores.h"

#include <tbb/info.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include <algorithm>

namespace kxRender {

struct Cores::Arena
{
    tbb::task_arena threads;
};

Cores::Cores(Share share)
    : _arena(new Arena{tbb::task_arena(std::max(1, tbb::info::default_concurrency() - (share == Share::All ? 0 : 1)))})
{}

Cores::~Cores() = default;

void Cores::run(const std::function<void()> &work)
{
    _arena->threads.execute(work);
}

void Cores::forEach(int count, const std::function<void(int)> &use)
{
    tbb::parallel_for(0, count, use);
}

} // namespace kxRender
