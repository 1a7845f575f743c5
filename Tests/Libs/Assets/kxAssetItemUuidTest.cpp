// SPDX-License-Identifier: Apache-2.0
// Where the bytes of UUIDs come from: this program takes the place of the operating system's source of them.
#include "PlainItem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <numeric>
#include <string>
#include <sys/random.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

/// While one lives, the operating system's random source yields what it holds, and then zeros.
class RandomSource
{
public:
    explicit RandomSource(std::vector<unsigned char> bytes) : _bytes(std::move(bytes)) { s_current = this; }
    ~RandomSource() { s_current = nullptr; }
    RandomSource(const RandomSource &) = delete;
    RandomSource &operator=(const RandomSource &) = delete;

    static RandomSource *current() { return s_current; }

    ssize_t draw(unsigned char *buffer, std::size_t size)
    {
        draws.push_back(size);
        const std::size_t count = std::min(size, _bytes.size());
        std::copy_n(_bytes.begin(), count, buffer);
        std::fill(buffer + count, buffer + size, static_cast<unsigned char>(0));
        _bytes.erase(_bytes.begin(), _bytes.begin() + static_cast<std::ptrdiff_t>(count));
        return static_cast<ssize_t>(size);
    }

    /// How many bytes were asked for each time.
    std::vector<std::size_t> draws;

private:
    static thread_local RandomSource *s_current;

    std::vector<unsigned char> _bytes;
};

thread_local RandomSource *RandomSource::s_current = nullptr;

/// While one lives, the operating system has no random numbers.
class NoRandomSource
{
public:
    NoRandomSource() { s_lives = true; }
    ~NoRandomSource() { s_lives = false; }
    NoRandomSource(const NoRandomSource &) = delete;
    NoRandomSource &operator=(const NoRandomSource &) = delete;

    static bool lives() { return s_lives; }

private:
    static thread_local bool s_lives;
};

thread_local bool NoRandomSource::s_lives = false;

std::vector<unsigned char> ascending(std::size_t count)
{
    std::vector<unsigned char> bytes(count);
    std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(0));
    return bytes;
}

} // namespace

/// The library finds this in place of the C library's.
extern "C" __attribute__((visibility("default"))) ssize_t getrandom(void *buffer, size_t size, unsigned flags)
{
    if (RandomSource *source = RandomSource::current())
        return source->draw(static_cast<unsigned char *>(buffer), size);
    if (NoRandomSource::lives()) {
        errno = EIO;
        return -1;
    }
    return ::syscall(SYS_getrandom, buffer, size, flags);
}

TEST(kxAssetItemUuidTest, IsMadeOfSixteenBytesOfTheOperatingSystem)
{
    RandomSource source(ascending(32));

    EXPECT_EQ(PlainItem::generateUUID(), "00010203-0405-4607-8809-0a0b0c0d0e0f");
    EXPECT_EQ(PlainItem::generateUUID(), "10111213-1415-4617-9819-1a1b1c1d1e1f");

    EXPECT_EQ(source.draws, (std::vector<std::size_t>{16, 16})) << "neither more nor beforehand";
}

TEST(kxAssetItemUuidTest, SetsVersionAndVariantWhateverTheBytesAre)
{
    std::vector<unsigned char> bytes(16, 0x00);
    bytes.insert(bytes.end(), 16, 0xff);
    const RandomSource source(std::move(bytes));

    EXPECT_EQ(PlainItem::generateUUID(), "00000000-0000-4000-8000-000000000000");
    EXPECT_EQ(PlainItem::generateUUID(), "ffffffff-ffff-4fff-bfff-ffffffffffff");
}

TEST(kxAssetItemUuidTest, ComesFromTheOperatingSystemForNewItemsToo)
{
    const RandomSource source(ascending(16));
    PlainItem item;

    item.initUUID(nullptr, "", true);

    EXPECT_EQ(item.uuid(), "00010203-0405-4607-8809-0a0b0c0d0e0f");
}

TEST(kxAssetItemUuidTest, IsEmptyWhereTheOperatingSystemHasNoRandomNumbers)
{
    const NoRandomSource nothing;

    EXPECT_EQ(PlainItem::generateUUID(), "") << "and nothing is thrown";
}
