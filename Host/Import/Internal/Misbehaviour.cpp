// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/Misbehaviour.h"

#include "Import/Internal/WorkerReport.h"

#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace kximport {

namespace {

[[noreturn]] void hang()
{
    for (;;)
        pause();
}

[[noreturn]] void eatMemory()
{
    constexpr std::size_t portion = std::size_t{16} << 20;
    std::vector<std::unique_ptr<char[]>> eaten;
    for (;;) {
        eaten.push_back(std::make_unique<char[]>(portion));
        std::memset(eaten.back().get(), static_cast<int>(eaten.size() & 0xFF), portion);
    }
}

bool say(const std::string &line)
{
    return write(WorkerReport::Descriptor, line.data(), line.size()) == static_cast<ssize_t>(line.size());
}

} // namespace

int misbehave(const WorkerRequest &request)
{
    if (request.selfTest == "crash")
        raise(SIGSEGV);
    if (request.selfTest == "memory")
        eatMemory();
    if (request.selfTest == "flood")
        while (say(WorkerReport::noteLine("and so on"))) {
        }
    if (request.selfTest == "quiet hang")
        close(WorkerReport::Descriptor);
    if (request.selfTest == "hang" || request.selfTest == "quiet hang")
        hang();
    if (request.selfTest == "garbage")
        std::ofstream(request.resultFile) << "KXOSB and then nothing that makes sense";
    if (request.selfTest == "garbage" || request.selfTest == "nothing")
        return say(WorkerReport::doneLine()) ? 0 : 1;
    return 7;
}

} // namespace kximport
