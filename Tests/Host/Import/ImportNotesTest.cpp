// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/ImportNotes.h"

#include <gmock/gmock.h>

namespace {

TEST(ImportNotesTest, NamesTheModelAndSaysTheSameOnce)
{
    kximport::ImportNotes notes("/a/Stuhl.obj");

    notes.add("the texture 'a\n.png' is missing");
    notes.add("something else");
    notes.add("the texture 'a\n.png' is missing");

    EXPECT_THAT(notes.lines(), testing::ElementsAre("'/a/Stuhl.obj': the texture 'a .png' is missing",
                                                    "'/a/Stuhl.obj': something else"));
}

TEST(ImportNotesTest, EndsWhereNobodyReadsOn)
{
    kximport::ImportNotes notes("a.obj");

    for (int i = 0; i < 1000; ++i)
        notes.add(std::to_string(i));

    EXPECT_EQ(notes.lines().size(), 200U);
}

} // namespace
