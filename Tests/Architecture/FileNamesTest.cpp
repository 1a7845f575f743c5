// SPDX-License-Identifier: Apache-2.0
#include "FileNames.h"
#include "FileNameExceptions.h"
#include "SourceTree.h"

#include <gmock/gmock.h>

using architecture::findNameProblems;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

TEST(FileNamesTest, FindsNothingInTheTree)
{
    for (const std::string &problem :
         findNameProblems(architecture::projectFiles(), architecture::headersWithoutSource(),
                          architecture::sourcesWithoutHeader(), architecture::testsOfCapabilities()))
        ADD_FAILURE() << problem;
}

TEST(FileNamesTest, AcceptsAClassWithItsHeaderSourceAndTests)
{
    EXPECT_THAT(
        findNameProblems({"Host/Kernel/Internal/Crc.cpp", "Host/Kernel/Internal/Crc.h", "Host/Kernel/KernelExport.h",
                          "Host/Kernel/kxFile.cpp", "Host/Kernel/kxFile.h", "Tests/Host/Kernel/CrcTest.cpp",
                          "Tests/Host/Kernel/kxFileChecksumTest.cpp", "Tests/Host/Kernel/kxFileTest.cpp"},
                         {}, {}, {}),
        IsEmpty());
}

TEST(FileNamesTest, FindsAHeaderWithoutSource)
{
    EXPECT_THAT(findNameProblems({"Host/Kernel/kxFile.h"}, {}, {}, {}),
                ElementsAre(StartsWith("Host/Kernel/kxFile.h: has no source of its name")));
    EXPECT_THAT(findNameProblems({"Host/Kernel/kxFile.h"}, {{"Host/Kernel/kxFile.h", "a template"}}, {}, {}),
                IsEmpty());
}

TEST(FileNamesTest, FindsASourceWithoutHeader)
{
    EXPECT_THAT(findNameProblems({"Apps/kxassets/List.cpp", "Apps/kxassets/main.cpp"}, {}, {}, {}),
                ElementsAre(StartsWith("Apps/kxassets/List.cpp: has no header of its name")));
}

TEST(FileNamesTest, FindsATestOfNoClass)
{
    EXPECT_THAT(findNameProblems({"Host/Kernel/kxFile.cpp", "Host/Kernel/kxFile.h",
                                  "Tests/Host/Kernel/kxFilesystemTest.cpp", "Tests/Libs/Assets/kxFileTest.cpp"},
                                 {}, {}, {}),
                ElementsAre(StartsWith("Tests/Host/Kernel/kxFilesystemTest.cpp: is named after no class of its folder"),
                            StartsWith("Tests/Libs/Assets/kxFileTest.cpp: is named after no class of its folder")));
}

TEST(FileNamesTest, FindsExceptionsThatAreNone)
{
    EXPECT_THAT(findNameProblems({"Host/Kernel/kxFile.cpp", "Host/Kernel/kxFile.h"},
                                 {{"Host/Kernel/kxFile.h", "a template"}}, {{"Host/Kernel/Gone.cpp", "a table"}}, {}),
                ElementsAre("Host/Kernel/kxFile.h: is no exception any more; take it out of FileNameExceptions.cpp",
                            "Host/Kernel/Gone.cpp: is not there; take it out of FileNameExceptions.cpp"));
}

} // namespace
