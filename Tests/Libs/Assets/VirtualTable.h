// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstring>
#include <dlfcn.h>
#include <link.h>

/// The number of a virtual operation's entry in its table, in which a destructor takes two entries.
template <class Member> std::ptrdiff_t tableEntryOf(Member member)
{
    std::ptrdiff_t offset = 0;
    std::memcpy(&offset, &member, sizeof offset);
    return (offset - 1) / static_cast<std::ptrdiff_t>(sizeof(void *));
}

/// Without what AddressSanitizer puts behind each object, which is empty and may not be read under its eyes.
__attribute__((no_sanitize("address"))) inline std::size_t withoutEmptyEnd(const void *const *table, std::size_t count)
{
    while (count > 0 && !table[count - 1])
        --count;
    return count;
}

/// How many entries for operations a table of virtual operations has, of which this is the symbol in a library that the
/// program uses, like "_ZTV11kxAssetItem"; 0 when there is no such table.
inline std::size_t tableEntriesOf(const char *symbol)
{
    constexpr std::size_t EntriesBefore = 2; // the offset of the object, and its type
    Dl_info information{};
    void *found = nullptr;
    const void *table = dlsym(RTLD_DEFAULT, symbol);
    if (!table || dladdr1(table, &information, &found, RTLD_DL_SYMENT) == 0 || !found)
        return 0;
    const std::size_t size = static_cast<const ElfW(Sym) *>(found)->st_size / sizeof(void *);
    return withoutEmptyEnd(static_cast<const void *const *>(table), size) - EntriesBefore;
}
