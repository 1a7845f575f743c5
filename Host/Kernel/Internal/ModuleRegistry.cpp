// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/ModuleRegistry.h"

#include "Kernel/kxLog.h"

#include <algorithm>
#include <utility>

namespace kxKernelInternal {

ModuleRegistry &ModuleRegistry::the()
{
    static ModuleRegistry instance;
    return instance;
}

void ModuleRegistry::add(kxModuleBase *module)
{
    _modules.push_back(module);
}

void ModuleRegistry::remove(kxModuleBase *module)
{
    _modules.erase(std::remove(_modules.begin(), _modules.end(), module), _modules.end());
    for (auto named = _handlers.begin(); named != _handlers.end();) {
        std::vector<Entry> &entries = named->second;
        const auto ofModule = [module](const Entry &entry) { return entry.module == module; };
        entries.erase(std::remove_if(entries.begin(), entries.end(), ofModule), entries.end());
        named = entries.empty() ? _handlers.erase(named) : std::next(named);
    }
}

void ModuleRegistry::addHandler(kxModuleBase *module, const std::string &name, kxModuleBase::Handler handler)
{
    _handlers[name].push_back({module, std::move(handler)});
}

bool ModuleRegistry::call(const std::string &name, kxMessage &message)
{
    const auto named = _handlers.find(name);
    if (named == _handlers.end()) {
        if (_reportedNames.insert(name).second)
            kxLog::warning("No module handles the message '%s'.", name.c_str());
        return false;
    }
    // A copy: the handler may delete its own module.
    const kxModuleBase::Handler handler = named->second.back().handler;
    handler(message);
    return true;
}

void ModuleRegistry::send(const kxMessage &message)
{
    // Modules may come and go meanwhile: new ones are not reached, deleted ones must not be.
    const std::vector<kxModuleBase *> receivers = _modules;
    for (kxModuleBase *receiver : receivers) {
        if (std::find(_modules.begin(), _modules.end(), receiver) != _modules.end())
            receiver->receive(message);
    }
}

void ModuleRegistry::sendLater(const kxMessage &message)
{
    QMetaObject::invokeMethod(
        this, [this, message] { send(message); }, Qt::QueuedConnection);
}

} // namespace kxKernelInternal
