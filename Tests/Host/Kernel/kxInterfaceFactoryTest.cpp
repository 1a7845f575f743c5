// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxInterfaceFactory.h"

#include "Kernel/kxLogRecorder.h"

#include <gmock/gmock.h>

#include <memory>

namespace {

using testing::ElementsAre;

class GreeterInterface : public kxInterfaceObject
{
public:
    static const void *staticInterfaceType()
    {
        static const char type = 0;
        return &type;
    }
    const void *interfaceType() const override { return staticInterfaceType(); }
    const char *interfaceTypeName() const override { return "GreeterInterface"; }
    virtual int greet() = 0;
};

class OtherInterface : public kxInterfaceObject
{
public:
    static const void *staticInterfaceType()
    {
        static const char type = 0;
        return &type;
    }
    const void *interfaceType() const override { return staticInterfaceType(); }
    const char *interfaceTypeName() const override { return "OtherInterface"; }
};

class Greeter final : public GreeterInterface
{
public:
    explicit Greeter(int number) : _number(number) { isRegistered = kxInterfaceFactory::the().registerObject(this); }

    int greet() override { return _number; }

    bool isRegistered = false;

private:
    int _number;
};

TEST(kxInterfaceFactoryTest, HandsOutAnObjectByItsInterfaceType)
{
    Greeter greeter(7);

    auto *found = kxInterfaceFactory::the().get<GreeterInterface>();

    ASSERT_EQ(found, &greeter);
    EXPECT_EQ(found->greet(), 7);
    EXPECT_EQ(kxInterfaceFactory::the().get(GreeterInterface::staticInterfaceType()), &greeter);
    EXPECT_EQ(kxInterfaceFactory::the().get<OtherInterface>(), nullptr);
}

TEST(kxInterfaceFactoryTest, ForgetsAnObjectThatIsDestroyed)
{
    auto greeter = std::make_unique<Greeter>(7);

    greeter.reset();

    EXPECT_EQ(kxInterfaceFactory::the().get<GreeterInterface>(), nullptr);
}

TEST(kxInterfaceFactoryTest, KeepsTheFirstObjectOfAType)
{
    const kxLogRecorder log;
    Greeter first(1);

    {
        const Greeter second(2);
        EXPECT_TRUE(first.isRegistered);
        EXPECT_FALSE(second.isRegistered);
    }

    EXPECT_EQ(kxInterfaceFactory::the().get<GreeterInterface>(), &first);
    EXPECT_THAT(log.lines(kxLogLevel::Error),
                ElementsAre("An interface object of the type 'GreeterInterface' is registered already."));
}

TEST(kxInterfaceFactoryTest, AcceptsTheSameObjectTwice)
{
    Greeter greeter(1);

    EXPECT_TRUE(kxInterfaceFactory::the().registerObject(&greeter));

    kxInterfaceFactory::the().unregisterObject(&greeter);
    EXPECT_EQ(kxInterfaceFactory::the().get<GreeterInterface>(), nullptr);
}

} // namespace
