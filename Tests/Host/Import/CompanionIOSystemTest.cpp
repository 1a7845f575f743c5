// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/CompanionIOSystem.h"

#include "Support/TemporaryFolder.h"

#include <assimp/IOStream.hpp>

#include <gmock/gmock.h>

#include <memory>

using kximport::CompanionIOSystem;
using namespace std::string_literals;

namespace {

class CompanionIOSystemTest : public testing::Test
{
protected:
    std::string read(const std::string &file, const char *mode = "rb")
    {
        const std::unique_ptr<Assimp::IOStream> stream(system.Open(file.c_str(), mode));
        if (!stream)
            return "refused";
        std::string content(stream->FileSize(), '\0');
        content.resize(stream->Read(content.data(), 1, content.size()));
        return content;
    }

    kxtest::TemporaryFolder folder;
    kximport::ImportNotes notes{"Stuhl.obj"};
    CompanionIOSystem system{folder.file("Stuhl.obj"), notes};
};

TEST_F(CompanionIOSystemTest, OpensTheModelAndWhatItRefersTo)
{
    folder.write("Stuhl.obj", "model");
    folder.write("STUHL.MTL", "library");

    EXPECT_EQ(read(folder.file("Stuhl.obj")), "model");
    EXPECT_EQ(read(folder.file("stuhl.mtl")), "library");
    EXPECT_TRUE(system.Exists(folder.file("stuhl.mtl").c_str()));
    EXPECT_FALSE(system.Exists(folder.file("tisch.mtl").c_str()));
}

TEST_F(CompanionIOSystemTest, NotesAMissingMaterialLibraryOnly)
{
    EXPECT_EQ(read(folder.file("Stuhl.mtl")), "refused");
    EXPECT_EQ(read(folder.file("Stuhl.bin")), "refused");

    EXPECT_THAT(notes.lines(), testing::ElementsAre("'Stuhl.obj': the material library 'Stuhl.mtl' is missing"));
}

TEST_F(CompanionIOSystemTest, HandsUtf16TextOverAsUtf8)
{
    folder.write("a.mtl", "\xFF\xFE"
                          "K\0d\0"s);
    folder.write("a.bin", "\xFF\xFE"
                          "K\0d\0"s);

    EXPECT_EQ(read(folder.file("a.mtl")), "Kd");
    EXPECT_EQ(read(folder.file("a.bin")), "\xFF\xFE"
                                          "K\0d\0"s);
}

TEST_F(CompanionIOSystemTest, DropsBlanksBeforeTheNumbersOfColladaElements)
{
    folder.write("a.dae", "<color>  0.5 1</color>\n<b>\n-1 </b> <name> x </name>");

    EXPECT_EQ(read(folder.file("a.dae")), "<color>0.5 1</color>\n<b>-1 </b> <name> x </name>");
}

TEST_F(CompanionIOSystemTest, WritesNothing)
{
    EXPECT_EQ(read(folder.file("new.obj"), "wb"), "refused");
    EXPECT_EQ(read(folder.file("new.obj"), "ab"), "refused");
    EXPECT_EQ(read(folder.file("new.obj"), "r+b"), "refused");
    EXPECT_FALSE(folder.contains("new.obj"));
}

} // namespace
