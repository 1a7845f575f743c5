// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxMessage.h"
#include "Kernel/kxModuleBase.h"

#include <QObject>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace kxKernelInternal {

/// Knows the living modules and what each of them handles. Main thread only.
class ModuleRegistry : public QObject
{
    Q_OBJECT

public:
    static ModuleRegistry &the();

    void add(kxModuleBase *module);
    void remove(kxModuleBase *module);
    void addHandler(kxModuleBase *module, const std::string &name, kxModuleBase::Handler handler);

    /// False when nobody handles \a name, which is logged the first time.
    bool call(const std::string &name, kxMessage &message);

    void send(const kxMessage &message);
    void sendLater(const kxMessage &message);

private:
    struct Entry
    {
        kxModuleBase *module;
        kxModuleBase::Handler handler;
    };

    std::vector<kxModuleBase *> _modules;                ///< in the order of their creation
    std::map<std::string, std::vector<Entry>> _handlers; ///< per name; the last one answers
    std::set<std::string> _reportedNames;
};

} // namespace kxKernelInternal
