// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <typeinfo>

class kxBaseService;
class kxKernelRegister;
struct QMetaObject;

/// Hands out the services of the host and its libraries, by interface type or by class name. Main thread only.
class KX_KERNEL_EXPORT kxKernelServiceFactory
{
public:
    static kxKernelServiceFactory &the();

    kxKernelServiceFactory(const kxKernelServiceFactory &) = delete;
    kxKernelServiceFactory &operator=(const kxKernelServiceFactory &) = delete;

    /// Brings the kernel up: runs what was registered so far, in that order, then has the kernel service say that it is
    /// ready. A second call does nothing.
    void startKernel();
    bool isKernelUp() const;

    /// Enters \a service under the run-time type of \a Interface, in place of an earlier one. Does not take ownership;
    /// registerType() does.
    template <class Interface> void setService(Interface *service) { enter(typeid(Interface).hash_code(), service); }

    /// The service of that type; null, silently, when there is none.
    template <class Interface> Interface *findService()
    {
        return static_cast<Interface *>(find(typeid(Interface).hash_code()));
    }

    /// The same for a caller that expects the service: a look-up that fails writes a line to standard error.
    template <class Interface> Interface *getService()
    {
        return static_cast<Interface *>(get(typeid(Interface).hash_code(), typeid(Interface)));
    }

    /// The service of that class, or one derived from it; null, with a line on standard error, when the class was not
    /// registered or has no instance (any more).
    kxBaseService *getService(const char *className);

    /// Makes the class of \a service, and its base classes, known by name with \a service as their instance. The factory
    /// owns the service from now on; one that is deleted elsewhere is forgotten.
    void registerType(kxBaseService *service);

    /// Makes a class known that has no instance yet.
    void registerType(const QMetaObject &type);

private:
    friend class kxKernelRegister;

    kxKernelServiceFactory();
    ~kxKernelServiceFactory();

    void addRegistration(const kxKernelRegister *owner, std::function<void()> function);
    void removeRegistration(const kxKernelRegister *owner);
    /// Runs what waits, once the kernel is up, and says so.
    void runPending();
    bool runRegistered();

    void enter(std::size_t typeHash, kxBaseService *service);
    kxBaseService *find(std::size_t typeHash);
    kxBaseService *get(std::size_t typeHash, const std::type_info &type);

    class Private;
    std::unique_ptr<Private> _d;
};
