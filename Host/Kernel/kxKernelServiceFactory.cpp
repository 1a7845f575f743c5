// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxKernelServiceFactory.h"

#include "Kernel/Internal/StandardError.h"
#include "Kernel/kxKernelService.h"

#include <QPointer>

#include <boost/core/demangle.hpp>

#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

class kxKernelServiceFactory::Private
{
public:
    struct Registration
    {
        const kxKernelRegister *owner = nullptr;
        std::function<void()> function;
        bool hasRun = false;
        // What the function registered while it ran.
        std::vector<QPointer<kxBaseService>> services;
        std::vector<std::string> classNames;
        std::vector<std::size_t> typeHashes;
    };

    Registration *find(const kxKernelRegister *owner);
    Registration *nextPending();

    kxKernelService *kernelService = nullptr; ///< owned like the others
    bool kernelUp = false;
    const kxKernelRegister *running = nullptr;
    std::vector<Registration> registrations;
    std::vector<QPointer<kxBaseService>> owned;
    std::unordered_map<std::size_t, QPointer<kxBaseService>> byType;
    std::map<std::string, QPointer<kxBaseService>> byClassName; ///< a null instance: the class alone is known
};

kxKernelServiceFactory::Private::Registration *kxKernelServiceFactory::Private::find(const kxKernelRegister *owner)
{
    const auto found = std::find_if(registrations.begin(), registrations.end(),
                                    [owner](const Registration &entry) { return entry.owner == owner; });
    return found == registrations.end() ? nullptr : &*found;
}

kxKernelServiceFactory::Private::Registration *kxKernelServiceFactory::Private::nextPending()
{
    const auto found = std::find_if(registrations.begin(), registrations.end(),
                                    [](const Registration &entry) { return !entry.hasRun; });
    return found == registrations.end() ? nullptr : &*found;
}

namespace {

void reportUnknownClass(const std::string &name)
{
    kxKernelInternal::writeToStandardError("kxKernelServiceFactory: couldn't find class '" + name + "'!\n");
}

void reportNullService(const std::string &name)
{
    kxKernelInternal::writeToStandardError("kxKernelServiceFactory: service '" + name + "' is NULL!\n");
}

} // namespace

kxKernelServiceFactory &kxKernelServiceFactory::the()
{
    static kxKernelServiceFactory instance;
    return instance;
}

kxKernelServiceFactory::kxKernelServiceFactory() : _d(std::make_unique<Private>())
{
    _d->kernelService = new kxKernelService; // registerType takes it over
    setService(_d->kernelService);
    registerType(_d->kernelService);
}

kxKernelServiceFactory::~kxKernelServiceFactory()
{
    for (const QPointer<kxBaseService> &service : _d->owned)
        delete service.data();
}

void kxKernelServiceFactory::startKernel()
{
    if (_d->kernelUp)
        return;
    _d->kernelUp = true;
    _d->kernelService->init();
    runRegistered();
    emit _d->kernelService->ready();
}

bool kxKernelServiceFactory::isKernelUp() const
{
    return _d->kernelUp;
}

void kxKernelServiceFactory::registerType(kxBaseService *service)
{
    Private::Registration *registration = _d->find(_d->running);
    for (const QMetaObject *type = service->metaObject(); type != &kxBaseService::staticMetaObject;
         type = type->superClass()) {
        _d->byClassName[type->className()] = service;
        if (registration)
            registration->classNames.emplace_back(type->className());
    }

    _d->owned.emplace_back(service);
    if (registration)
        registration->services.emplace_back(service);
}

void kxKernelServiceFactory::registerType(const QMetaObject &type)
{
    const bool isNew = _d->byClassName.emplace(type.className(), nullptr).second;
    Private::Registration *registration = _d->find(_d->running);
    if (isNew && registration)
        registration->classNames.emplace_back(type.className());
}

kxBaseService *kxKernelServiceFactory::getService(const char *className)
{
    runPending();
    const auto found = _d->byClassName.find(className);
    if (found == _d->byClassName.end()) {
        reportUnknownClass(className);
        return nullptr;
    }
    if (!found->second)
        reportNullService(className);
    return found->second;
}

void kxKernelServiceFactory::addRegistration(const kxKernelRegister *owner, std::function<void()> function)
{
    Private::Registration &registration = _d->registrations.emplace_back();
    registration.owner = owner;
    registration.function = std::move(function);
    // Not at once: the library's other static objects may not exist yet.
    if (_d->kernelUp)
        QMetaObject::invokeMethod(
            _d->kernelService, [this] { runPending(); }, Qt::QueuedConnection);
}

void kxKernelServiceFactory::removeRegistration(const kxKernelRegister *owner)
{
    Private::Registration *registration = _d->find(owner);
    if (!registration)
        return;
    const Private::Registration removed = std::move(*registration);
    _d->registrations.erase(_d->registrations.begin() + (registration - _d->registrations.data()));

    for (const QPointer<kxBaseService> &service : removed.services) {
        std::erase(_d->owned, service);
        delete service.data();
    }
    // An entry that something else took over meanwhile is not this registration's any more: it is not null.
    const auto forget = [](auto &table, const auto &keys) {
        for (const auto &key : keys) {
            const auto found = table.find(key);
            if (found != table.end() && !found->second)
                table.erase(found);
        }
    };
    forget(_d->byClassName, removed.classNames);
    forget(_d->byType, removed.typeHashes);
}

void kxKernelServiceFactory::runPending()
{
    if (runRegistered())
        emit _d->kernelService->ready();
}

bool kxKernelServiceFactory::runRegistered()
{
    if (!_d->kernelUp || _d->running)
        return false;
    bool hasRun = false;
    while (Private::Registration *registration = _d->nextPending()) {
        registration->hasRun = true;
        _d->running = registration->owner;
        // A copy: the function may load a library that registers something as well.
        const std::function<void()> function = registration->function;
        function();
        _d->running = nullptr;
        hasRun = true;
    }
    return hasRun;
}

void kxKernelServiceFactory::enter(std::size_t typeHash, kxBaseService *service)
{
    _d->byType[typeHash] = service;
    if (Private::Registration *registration = _d->find(_d->running))
        registration->typeHashes.push_back(typeHash);
}

kxBaseService *kxKernelServiceFactory::find(std::size_t typeHash)
{
    runPending();
    const auto found = _d->byType.find(typeHash);
    return found == _d->byType.end() ? nullptr : found->second.data();
}

kxBaseService *kxKernelServiceFactory::get(std::size_t typeHash, const std::type_info &type)
{
    runPending();
    const auto found = _d->byType.find(typeHash);
    const std::string name = boost::core::demangle(type.name());
    if (found == _d->byType.end()) {
        reportUnknownClass(name);
        return nullptr;
    }
    if (!found->second)
        reportNullService(name);
    return found->second;
}
