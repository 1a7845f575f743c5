// SPDX-License-Identifier: Apache-2.0
#include "Support/LeakCheck.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KX_CHECKS_LEAKS
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define KX_CHECKS_LEAKS
#endif

#if defined(KX_CHECKS_LEAKS)

#include <sanitizer/lsan_interface.h>

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

namespace {

/// Whether every other thread of the process waits for something.
bool areOthersAsleep()
{
    std::error_code error;
    for (const auto &task : std::filesystem::directory_iterator("/proc/self/task", error)) {
        if (task.path().filename() == std::to_string(::getpid()))
            continue;
        std::string line;
        std::getline(std::ifstream(task.path() / "stat"), line);
        const std::size_t name = line.rfind(')'); // may hold blanks itself
        if (name != std::string::npos && line.compare(name, 4, ") S ") != 0)
            return false;
    }
    return true;
}

} // namespace

void kxtest::checkForLeaks()
{
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 2s;
    while (!areOthersAsleep() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(1ms);
    __lsan_do_leak_check();
}

#else

void kxtest::checkForLeaks() {}

#endif
