// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxMessage.h"

#include "Support/CapturedOutput.h"

#include <QString>

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace {

TEST(kxMessageTest, CarriesACodeOf64Bits)
{
    EXPECT_EQ(kxMessage(0x100000000ULL).code(), 0x100000000ULL);
    EXPECT_EQ(kxMessage().code(), 0U);
}

TEST(kxMessageTest, GivesBackAttributesOfAnyType)
{
    kxMessage message;
    message.set("flag", false);
    message.set("ids", std::vector<std::uint32_t>{3, 1});
    message.set("names", std::map<std::string, QString>{{"UberMaterial", "Über"}});

    EXPECT_EQ(message.get<bool>("flag"), false);
    EXPECT_EQ(message.get<std::vector<std::uint32_t>>("ids"), (std::vector<std::uint32_t>{3, 1}));
    std::map<std::string, QString> names;
    EXPECT_TRUE(message.get("names", names));
    EXPECT_EQ(names, (std::map<std::string, QString>{{"UberMaterial", "Über"}}));
}

TEST(kxMessageTest, YieldsNothingSilentlyForAnAbsentAttribute)
{
    const kxMessage message;
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);

    int value = 7;
    EXPECT_FALSE(message.get("missing", value));
    EXPECT_EQ(message.get<int>("missing"), std::nullopt);

    EXPECT_EQ(value, 7);
    EXPECT_FALSE(message.has("missing"));
    EXPECT_EQ(output.text(), "");
}

TEST(kxMessageTest, ReportsAnAttributeOfAnotherTypeAndYieldsNothing)
{
    kxMessage message;
    message.set("count", 3);
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);

    bool value = true;
    EXPECT_FALSE(message.get("count", value));

    EXPECT_TRUE(value);
    EXPECT_EQ(output.text(), "kxMessage::get : Attribute 'count' has wrong type (is:'int' != req:'bool')!\n");
}

TEST(kxMessageTest, ConvertsNothingOnReading)
{
    kxMessage message;
    message.set("count", std::uint32_t{3});
    message.set("text", "a literal");
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);

    EXPECT_EQ(message.get<std::int32_t>("count"), std::nullopt);
    EXPECT_EQ(message.get<std::string>("text").has_value(), false);
    EXPECT_STREQ(message.get<const char *>("text").value_or(""), "a literal");

    EXPECT_EQ(output.text(), "kxMessage::get : Attribute 'count' has wrong type (is:'unsigned int' != req:'int')!\n"
                             "kxMessage::get : Attribute 'text' has wrong type (is:'char const*' != req:"
                             "'std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >')!\n");
}

TEST(kxMessageTest, ReplacesAnAttributeAlsoByOneOfAnotherType)
{
    kxMessage message;
    message.set("value", 1);

    message.set("value", std::string("two"));

    EXPECT_EQ(message.get<std::string>("value"), "two");
}

TEST(kxMessageTest, KeepsAnAttributeThatMustNotBeReplaced)
{
    kxMessage message;
    message.set("value", 1);

    message.set("value", 2, false);
    message.set("other", 3, false);

    EXPECT_EQ(message.get<int>("value"), 1);
    EXPECT_EQ(message.get<int>("other"), 3);
}

TEST(kxMessageTest, MakesIndependentCopies)
{
    kxMessage message(5);
    message.set("value", 1);
    kxMessage copy = message;

    copy.set("value", 2);

    EXPECT_EQ(message.get<int>("value"), 1);
    EXPECT_EQ(copy.code(), 5U);
}

} // namespace
