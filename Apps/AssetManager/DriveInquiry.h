// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <functional>
#include <memory>

/// Asks drives on threads of their own, and brings the answers to the main thread.
///
/// A drive may never answer. Nobody waits for it then, not even the end of the program: such a thread is left alone after a
/// moment, which suffices for all that are busy, so that none uses what the program's end takes away.
class DriveInquiry
{
public:
    /// What is done with an answer, on the main thread.
    using Answer = std::function<void()>;
    /// Is called on a thread of its own. What it touches is its own, or is never destroyed.
    using Question = std::function<Answer()>;

    /// Main thread only, as is all else.
    DriveInquiry();
    /// No answer is brought any more. Threads that take longer than Farewell are left alone.
    ~DriveInquiry();
    DriveInquiry(const DriveInquiry &) = delete;
    DriveInquiry &operator=(const DriveInquiry &) = delete;

    void ask(Question question);

    static constexpr std::chrono::seconds Farewell{1};

private:
    struct Receiver;
    std::shared_ptr<Receiver> _receiver;
};
