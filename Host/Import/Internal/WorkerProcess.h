// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Import/Internal/WorkerReport.h"
#include "Import/Internal/WorkerRequest.h"
#include "Import/kxImportLimits.h"
#include "SceneGraph/Result.h"

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace kximport {

/// One run of the program that parses: started, watched, and gone when the object is.
class WorkerProcess
{
public:
    /// \a limits without zeros. \a goOn is asked often while the program runs, from the thread that waits for it; false
    /// stops it.
    WorkerProcess(std::string program, const kxImportLimits &limits, std::function<bool()> goOn = {});
    /// Kills what still runs.
    ~WorkerProcess();
    WorkerProcess(const WorkerProcess &) = delete;
    WorkerProcess &operator=(const WorkerProcess &) = delete;

    /// Blocks until the program is through or was stopped. Its notes, or why it failed: its own words, or that it
    /// crashed, was stopped, took too long or too much memory.
    osg::Result<std::vector<std::string>> run(const WorkerRequest &request);

private:
    using Clock = std::chrono::steady_clock;
    enum class Ending { ByItself, Stopped, TooLong, TooMuchMemory };

    osg::Result<void> start(const WorkerRequest &request);
    Ending listen();
    Ending awaitExit();
    bool readReport();
    bool isUnwanted();
    bool isTooBig() const;
    bool isOverdue() const { return Clock::now() >= _deadline; }
    void kill();
    osg::Result<std::vector<std::string>> judge(Ending ending) const;

    std::string _program;
    kxImportLimits _limits;
    Clock::time_point _deadline;
    std::function<bool()> _goOn;
    Clock::time_point _nextQuestion;
    pid_t _process = -1;
    int _pipe = -1;
    int _status = 0;
    std::string _text;
};

} // namespace kximport
