// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxKernelRegister.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxSceneplateService.h"

namespace {

/// What a library that offers a service looks like; tests load and unload it.
class LibrarySceneplateService final : public kxSceneplateService
{
public:
    void nodesChanged() override { setObjectName(QStringLiteral("told")); }
    QImage previewImage(const kxdNodePtr &) override { return {}; }
};

const kxKernelRegister registration([] {
    auto *service = new LibrarySceneplateService; // registerType takes it over
    kxKernelServiceFactory::the().setService<kxSceneplateService>(service);
    kxKernelServiceFactory::the().registerType(service);
});

} // namespace
