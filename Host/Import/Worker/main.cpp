// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/WorkerRequest.h"
#include "Import/Internal/WorkerTask.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

int main(int argc, char **argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto request = kximport::WorkerRequest::fromArguments(arguments);
    if (!request) {
        std::fputs("kx-import-worker parses foreign files for kxAssets, which starts it when it is needed.\n", stderr);
        return 2;
    }
    const int code = kximport::WorkerTask(*request).run();
    // The result is handed over. What the libraries' thread pools do while they are torn down could only take time, or turn a
    // success into a crash.
    std::fflush(nullptr);
    std::_Exit(code);
}
