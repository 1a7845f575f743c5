// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxKernelServiceFactory.h"

#include "Kernel/kxKernelRegister.h"
#include "Kernel/kxKernelService.h"
#include "Kernel/kxSceneplateService.h"
#include "Support/CapturedOutput.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QPointer>

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

/// Counts its initialisations and what it is told. Not in an unnamed namespace: services are found by class name.
class kxTestSceneplateService final : public kxSceneplateService
{
    Q_OBJECT

public:
    kxTestSceneplateService()
    {
        auto *kernel = kxKernelServiceFactory::the().getService<kxKernelService>();
        connect(kernel, &kxKernelService::ready, this, &kxBaseService::init);
    }

    void nodesChanged() override { ++notifications; }
    QImage previewImage(const kxdNodePtr &) override { return {}; }

    int notifications = 0;
    int initialisations = 0;

private:
    void doInit() override { ++initialisations; }
};

class kxTestUnmadeService final : public kxBaseService
{
    Q_OBJECT
};

namespace {

using testing::ElementsAre;

kxKernelServiceFactory &factory()
{
    return kxKernelServiceFactory::the();
}

/// Registers a service as a library does: interface type into the table, class by name.
std::unique_ptr<kxKernelRegister> registerSceneplateService(QPointer<kxTestSceneplateService> *service)
{
    return std::make_unique<kxKernelRegister>([service] {
        *service = new kxTestSceneplateService;
        factory().setService<kxSceneplateService>(*service);
        factory().registerType(*service);
    });
}

// The kernel of a process starts once, so that everything about its start is one test, and the others come up themselves.
TEST(kxKernelServiceFactoryTest, RunsRegistrationsWhenTheKernelComesUp)
{
    QPointer<kxTestSceneplateService> service;
    const auto registration = registerSceneplateService(&service);
    if (!factory().isKernelUp()) {
        QCoreApplication::processEvents();
        EXPECT_EQ(service, nullptr);
        EXPECT_EQ(factory().findService<kxSceneplateService>(), nullptr);
    }

    factory().startKernel();

    EXPECT_TRUE(factory().isKernelUp());
    const auto *found = factory().findService<kxSceneplateService>();
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found, service.data());
    EXPECT_EQ(service->initialisations, 1);
    factory().startKernel();
    EXPECT_EQ(service->initialisations, 1);
}

TEST(kxKernelServiceFactoryTest, RunsALaterRegistrationOnTheNextPass)
{
    factory().startKernel();
    QPointer<kxTestSceneplateService> service;

    const auto registration = registerSceneplateService(&service);
    EXPECT_EQ(service, nullptr);
    QCoreApplication::processEvents();

    ASSERT_NE(service, nullptr);
    EXPECT_EQ(service->initialisations, 1);
}

TEST(kxKernelServiceFactoryTest, RunsALaterRegistrationForALookUp)
{
    factory().startKernel();
    QPointer<kxTestSceneplateService> service;
    const auto registration = registerSceneplateService(&service);

    auto *found = factory().getService<kxSceneplateService>();

    ASSERT_NE(found, nullptr);
    found->nodesChanged();
    EXPECT_EQ(service->notifications, 1);
    QCoreApplication::processEvents();
    EXPECT_EQ(service->initialisations, 1);
}

TEST(kxKernelServiceFactoryTest, InitialisesAServiceOnceThoughTheKernelIsReadyAgain)
{
    factory().startKernel();
    QPointer<kxTestSceneplateService> service;
    const auto registration = registerSceneplateService(&service);
    QCoreApplication::processEvents();
    int announcements = 0;
    QObject::connect(factory().getService<kxKernelService>(), &kxKernelService::ready, service,
                     [&announcements] { ++announcements; });

    const kxKernelRegister later([] {});
    QCoreApplication::processEvents();

    EXPECT_EQ(announcements, 1);
    EXPECT_EQ(service->initialisations, 1);
}

TEST(kxKernelServiceFactoryTest, FindsAServiceByTheNamesOfItsClasses)
{
    factory().startKernel();
    QPointer<kxTestSceneplateService> service;
    const auto registration = registerSceneplateService(&service);

    EXPECT_NE(factory().getService("kxTestSceneplateService"), nullptr);
    EXPECT_EQ(factory().getService("kxTestSceneplateService"), service.data());
    EXPECT_EQ(factory().getService("kxSceneplateService"), service.data());
}

TEST(kxKernelServiceFactoryTest, ReportsAClassThatNobodyRegistered)
{
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);

    EXPECT_EQ(factory().getService("kxNobody"), nullptr);
    EXPECT_EQ(factory().getService<kxSceneplateService>(), nullptr);

    EXPECT_EQ(output.text(), "kxKernelServiceFactory: couldn't find class 'kxNobody'!\n"
                             "kxKernelServiceFactory: couldn't find class 'kxSceneplateService'!\n");
}

TEST(kxKernelServiceFactoryTest, StaysSilentWhereTheCallerOnlyAsks)
{
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);

    EXPECT_EQ(factory().findService<kxSceneplateService>(), nullptr);

    EXPECT_EQ(output.text(), "");
}

TEST(kxKernelServiceFactoryTest, ReportsAClassWithoutAnInstance)
{
    factory().startKernel();
    const auto registration = std::make_unique<kxKernelRegister>([] {
        factory().registerType(kxTestUnmadeService::staticMetaObject);
        factory().setService<kxTestUnmadeService>(nullptr);
    });
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);

    EXPECT_EQ(factory().getService("kxTestUnmadeService"), nullptr);
    EXPECT_EQ(factory().getService<kxTestUnmadeService>(), nullptr);

    EXPECT_EQ(output.text(), "kxKernelServiceFactory: service 'kxTestUnmadeService' is NULL!\n"
                             "kxKernelServiceFactory: service 'kxTestUnmadeService' is NULL!\n");
}

TEST(kxKernelServiceFactoryTest, ReportsAServiceThatWasDeletedElsewhere)
{
    factory().startKernel();
    QPointer<kxTestSceneplateService> service;
    const auto registration = registerSceneplateService(&service);
    QCoreApplication::processEvents();
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);

    delete service.data();

    EXPECT_EQ(factory().getService("kxSceneplateService"), nullptr);
    EXPECT_EQ(output.text(), "kxKernelServiceFactory: service 'kxSceneplateService' is NULL!\n");
}

TEST(kxKernelServiceFactoryTest, ForgetsWhatARegistrationMadeWhenItGoes)
{
    factory().startKernel();
    QPointer<kxTestSceneplateService> service;
    auto registration = registerSceneplateService(&service);
    QCoreApplication::processEvents();
    ASSERT_NE(service, nullptr);

    registration.reset();

    EXPECT_EQ(service, nullptr);
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);
    EXPECT_EQ(factory().getService("kxTestSceneplateService"), nullptr);
    EXPECT_EQ(output.text(), "kxKernelServiceFactory: couldn't find class 'kxTestSceneplateService'!\n");
    EXPECT_EQ(factory().findService<kxSceneplateService>(), nullptr);
}

TEST(kxKernelServiceFactoryTest, KeepsWhatAnotherRegistrationTookOver)
{
    factory().startKernel();
    QPointer<kxTestSceneplateService> older;
    auto olderRegistration = registerSceneplateService(&older);
    QCoreApplication::processEvents();
    QPointer<kxTestSceneplateService> newer;
    const auto newerRegistration = registerSceneplateService(&newer);
    QCoreApplication::processEvents();

    olderRegistration.reset();

    EXPECT_EQ(older, nullptr);
    ASSERT_NE(newer, nullptr);
    EXPECT_EQ(factory().findService<kxSceneplateService>(), newer.data());
    EXPECT_EQ(factory().getService("kxSceneplateService"), newer.data());
}

TEST(kxKernelServiceFactoryTest, NeverRunsARegistrationThatWentBeforeItsTurn)
{
    factory().startKernel();
    QPointer<kxTestSceneplateService> service;

    registerSceneplateService(&service).reset();
    QCoreApplication::processEvents();

    EXPECT_EQ(service, nullptr);
}

TEST(kxKernelServiceFactoryTest, RunsRegistrationsInTheirOrder)
{
    factory().startKernel();
    std::vector<int> order;
    const kxKernelRegister first([&order] { order.push_back(1); });
    const kxKernelRegister second([&order] { order.push_back(2); });

    QCoreApplication::processEvents();

    EXPECT_THAT(order, ElementsAre(1, 2));
}

TEST(kxKernelServiceFactoryTest, FollowsALibraryFromLoadingToUnloading)
{
    factory().startKernel();
    QLibrary library(KX_SERVICE_TEST_LIBRARY);
    ASSERT_TRUE(library.load()) << library.errorString().toStdString();

    auto *service = factory().getService<kxSceneplateService>();
    ASSERT_NE(service, nullptr);
    service->nodesChanged();
    const QPointer<kxBaseService> observed = service;
    EXPECT_EQ(service->objectName(), "told");

    ASSERT_TRUE(library.unload()) << library.errorString().toStdString();
    EXPECT_EQ(observed, nullptr);
    EXPECT_EQ(factory().findService<kxSceneplateService>(), nullptr);
}

} // namespace

#include "kxKernelServiceFactoryTest.moc"
