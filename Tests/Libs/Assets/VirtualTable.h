// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstring>

/// The number of a virtual operation's entry in its table, in which a destructor takes two entries.
template <class Member> std::ptrdiff_t tableEntryOf(Member member)
{
    std::ptrdiff_t offset = 0;
    std::memcpy(&offset, &member, sizeof offset);
    return (offset - 1) / static_cast<std::ptrdiff_t>(sizeof(void *));
}
