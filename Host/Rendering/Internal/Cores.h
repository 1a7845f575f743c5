// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <memory>

namespace kxRender {

/// Some of the machine's cores, to work on. A class of its own because the headers of the library behind it do not bear a
/// macro of Qt's.
class Cores
{
public:
    enum class Share { All, Most }; ///< most: all but one, where there are more than two

    explicit Cores(Share share);
    ~Cores();
    Cores(const Cores &) = delete;
    Cores &operator=(const Cores &) = delete;

    /// Calls \a work, and has what it does in parallel done on these cores.
    void run(const std::function<void()> &work);

    /// Has the calling thread, for the rest of its life, give way to others.
    static void lowerPriority();
    /// Calls \a use with each number below \a count, in no order, on the cores that the caller runs on.
    static void forEach(int count, const std::function<void(int)> &use);

private:
    struct Arena;
    std::unique_ptr<Arena> _arena;
};

} // namespace kxRender
