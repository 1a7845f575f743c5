// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/WorkerProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <system_error>
#include <thread>
#include <utility>

namespace kximport {

namespace {

// How often the size of the process is looked at; short against the time that memory needs to fill.
constexpr std::chrono::milliseconds WatchInterval{20};
constexpr std::chrono::milliseconds ExitInterval{1};
// Windows that are handled meanwhile follow the hand.
constexpr std::chrono::milliseconds QuestionInterval{30};

std::string systemReason(int error)
{
    return std::generic_category().message(error);
}

/// File actions and attributes of posix_spawn, freed at the end.
class SpawnSettings
{
public:
    explicit SpawnSettings(int reportDescriptor)
    {
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, reportDescriptor, WorkerReport::Descriptor);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&actions, WorkerReport::Descriptor + 1);

        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setsigdefault(&attributes, &all);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnSettings()
    {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnSettings(const SpawnSettings &) = delete;
    SpawnSettings &operator=(const SpawnSettings &) = delete;

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

std::string inMiB(std::uint64_t bytes)
{
    return std::to_string(bytes >> 20) + " MiB";
}

std::string inSeconds(std::chrono::milliseconds time)
{
    const auto tenths = (time.count() + 50) / 100;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " s";
}

std::string crashReason(int status)
{
    if (WIFSIGNALED(status)) {
        const char *description = sigdescr_np(WTERMSIG(status));
        return "the parser crashed (" + std::string(description ? description : "unknown signal") + ")";
    }
    return "the parser crashed (exit code " + std::to_string(WEXITSTATUS(status)) + ")";
}

} // namespace

WorkerProcess::WorkerProcess(std::string program, const kxImportLimits &limits, std::function<bool()> goOn)
    : _program(std::move(program)), _limits(limits), _deadline(Clock::now() + limits.time), _goOn(std::move(goOn))
{}

WorkerProcess::~WorkerProcess()
{
    kill();
    if (_pipe >= 0)
        close(_pipe);
}

osg::Result<std::vector<std::string>> WorkerProcess::run(const WorkerRequest &request)
{
    if (const osg::Result<void> started = start(request); !started)
        return osg::Failure{started.reason()};
    Ending ending = listen();
    if (ending == Ending::ByItself)
        ending = awaitExit();
    kill();
    return judge(ending);
}

osg::Result<void> WorkerProcess::start(const WorkerRequest &request)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return osg::Failure{"no pipe to the program '" + _program + "': " + systemReason(errno)};
    _pipe = ends[0];

    std::vector<std::string> arguments = request.toArguments();
    arguments.insert(arguments.begin(), _program);
    std::vector<char *> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string &argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);

    const SpawnSettings settings(ends[1]);
    pid_t process = -1;
    const int error =
        posix_spawn(&process, _program.c_str(), &settings.actions, &settings.attributes, pointers.data(), environ);
    close(ends[1]);
    if (error != 0)
        return osg::Failure{"the program '" + _program + "' cannot be started: " + systemReason(error)};
    _process = process;
    return {};
}

WorkerProcess::Ending WorkerProcess::listen()
{
    for (;;) {
        pollfd pipe{_pipe, POLLIN, 0};
        const int ready = poll(&pipe, 1, static_cast<int>(WatchInterval.count()));
        if (ready > 0 && !readReport())
            return Ending::ByItself;
        if (ready < 0 && errno != EINTR)
            return Ending::ByItself;
        if (isUnwanted())
            return Ending::Stopped;
        if (isOverdue())
            return Ending::TooLong;
        if (isTooBig())
            return Ending::TooMuchMemory;
    }
}

/// False at the end of the report.
bool WorkerProcess::readReport()
{
    std::array<char, 4096> block{};
    const ssize_t count = read(_pipe, block.data(), block.size());
    if (count < 0)
        return errno == EINTR || errno == EAGAIN;
    const std::size_t room = WorkerReport::MaxBytes - _text.size();
    _text.append(block.data(), std::min(static_cast<std::size_t>(count), room));
    return count > 0;
}

WorkerProcess::Ending WorkerProcess::awaitExit()
{
    for (;;) {
        const pid_t ended = waitpid(_process, &_status, WNOHANG);
        if (ended == _process || (ended < 0 && errno != EINTR)) {
            _process = -1;
            return Ending::ByItself;
        }
        if (isUnwanted())
            return Ending::Stopped;
        if (isOverdue())
            return Ending::TooLong;
        std::this_thread::sleep_for(ExitInterval);
    }
}

bool WorkerProcess::isUnwanted()
{
    if (!_goOn || Clock::now() < _nextQuestion)
        return false;
    const bool goesOn = _goOn();
    _nextQuestion = Clock::now() + QuestionInterval;
    return !goesOn;
}

bool WorkerProcess::isTooBig() const
{
    std::ifstream statm("/proc/" + std::to_string(_process) + "/statm");
    std::uint64_t total = 0;
    std::uint64_t resident = 0;
    if (!(statm >> total >> resident))
        return false;
    return resident * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)) > _limits.memory;
}

void WorkerProcess::kill()
{
    if (_process < 0)
        return;
    ::kill(_process, SIGKILL);
    while (waitpid(_process, &_status, 0) < 0 && errno == EINTR) {
    }
    _process = -1;
}

osg::Result<std::vector<std::string>> WorkerProcess::judge(Ending ending) const
{
    if (ending == Ending::Stopped)
        return osg::Failure{"it was stopped"};
    const WorkerReport report = WorkerReport::parse(_text);
    if (ending == Ending::TooMuchMemory || report.isOutOfMemory)
        return osg::Failure{"the parser needs more than " + inMiB(_limits.memory) + " of memory"};
    if (ending == Ending::TooLong)
        return osg::Failure{"the parser took longer than " + inSeconds(_limits.time)};
    if (report.failure)
        return osg::Failure{*report.failure};
    if (!report.isDone || !WIFEXITED(_status) || WEXITSTATUS(_status) != 0)
        return osg::Failure{crashReason(_status)};
    return report.notes;
}

} // namespace kximport
