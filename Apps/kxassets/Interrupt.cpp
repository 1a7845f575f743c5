// SPDX-License-Identifier: Apache-2.0
#include "kxassets/Interrupt.h"

#include <unistd.h>

#include <csignal>

namespace Interrupt {

namespace {

volatile std::sig_atomic_t requested = 0;

extern "C" void handleInterrupt(int number)
{
    requested = 1;
    if (::isatty(STDERR_FILENO) == 1) {
        static constexpr char Text[] = "\r\033[Kstopping; once more ends at once\n";
        [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, Text, sizeof Text - 1);
    }
    std::signal(number, SIG_DFL);
}

} // namespace

void install()
{
    std::signal(SIGINT, handleInterrupt);
    std::signal(SIGTERM, handleInterrupt);
}

bool wasRequested()
{
    return requested != 0;
}

} // namespace Interrupt
