// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/DiskTrouble.h"

#include "Support/FileSizeLimit.h"
#include "Support/TemporaryFolder.h"

#include <QDir>

#include <gtest/gtest.h>

namespace {

using Kind = DiskTrouble::Kind;

class DiskTroubleTest : public testing::Test
{
protected:
    QString path() const { return QString::fromStdString(_folder.path().string()); }
    QStringList files() const { return QDir(path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot); }

    kxtest::TemporaryFolder _folder;
};

} // namespace

TEST_F(DiskTroubleTest, TellsFullDisksAndWhatIsForbiddenFromTheRest)
{
    EXPECT_EQ(DiskTrouble::of({}), Kind::None);
    for (const auto error : {std::errc::no_space_on_device, std::errc::file_too_large})
        EXPECT_EQ(DiskTrouble::of(std::make_error_code(error)), Kind::Full);
    for (const auto error :
         {std::errc::permission_denied, std::errc::operation_not_permitted, std::errc::read_only_file_system})
        EXPECT_EQ(DiskTrouble::of(std::make_error_code(error)), Kind::Forbidden);
    EXPECT_EQ(DiskTrouble::of(std::make_error_code(std::errc::io_error)), Kind::Other);
}

TEST_F(DiskTroubleTest, FindsOutByWritingAndLeavesNothingBehind)
{
    EXPECT_EQ(DiskTrouble::whenWritingInto(path()), Kind::None);
    EXPECT_EQ(DiskTrouble::whenWritingInto(path() + "/missing"), Kind::Other);
    {
        const kxtest::FileSizeLimit full(100, kxtest::FileSizeLimit::Fails);
        EXPECT_EQ(DiskTrouble::whenWritingInto(path()), Kind::Full);
        EXPECT_EQ(DiskTrouble::advice(path(), "Why?"), "The disk is full.");
    }

    EXPECT_EQ(DiskTrouble::advice(path(), "Why?"), "Why?");
    EXPECT_EQ(files(), QStringList());
}
