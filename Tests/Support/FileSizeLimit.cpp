// SPDX-License-Identifier: Apache-2.0
#include "Support/FileSizeLimit.h"

#include <gtest/gtest.h>

#include <csignal>

namespace kxtest {

FileSizeLimit::FileSizeLimit(rlim_t bytes, Overrun overrun)
    : _formerHandler(std::signal(SIGXFSZ, overrun == Kills ? SIG_DFL : SIG_IGN))
{
    EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &_former), 0);
    const rlimit limit{bytes, _former.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
}

FileSizeLimit::~FileSizeLimit()
{
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &_former), 0);
    std::signal(SIGXFSZ, _formerHandler);
}

} // namespace kxtest
