// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/EditAudit.h"

#include "SceneGraph/FieldContainer.h"
#include "SceneGraph/FieldContainerFactory.h"

#include <atomic>
#include <cassert>
#include <mutex>
#include <utility>

namespace osg {

namespace {

struct Record
{
    std::mutex mutex;
    std::vector<std::string> violations;
    std::atomic<bool> isEnabled = false;
    std::atomic<bool> hasObserver = false;
    EditAudit::Observer observer;
};

Record &theRecord()
{
    static Record record;
    return record;
}

std::string namesOf(const FieldContainerType &type, FieldMask fields)
{
    std::string names;
    for (const FieldInfo &field : type.fields())
        if ((fields & field.mask) != 0)
            names.append(names.empty() ? "" : ", ").append(field.name);
    return names;
}

} // namespace

void EditAudit::enable()
{
    theRecord().isEnabled = true;
}

std::vector<std::string> EditAudit::takeViolations()
{
    const std::lock_guard lock(theRecord().mutex);
    return std::exchange(theRecord().violations, {});
}

void EditAudit::record(const FieldContainer &container, FieldMask fields, const char *what)
{
    if (!theRecord().isEnabled) {
        assert(false && "a field container is changed outside its edit bracket");
        return;
    }
    const FieldContainerType &type = container.getType();
    const std::lock_guard lock(theRecord().mutex);
    theRecord().violations.push_back(std::string(type.getCName()) + " " +
                                     std::to_string(container.getFieldContainerId()) + " (" + namesOf(type, fields) +
                                     "): " + what);
}

void EditAudit::setObserver(Observer observer)
{
    theRecord().hasObserver = static_cast<bool>(observer);
    theRecord().observer = std::move(observer);
}

void EditAudit::noteBegin(const FieldContainer &container, FieldMask fields)
{
    if (theRecord().hasObserver && FieldContainerFactory::the().isMainThread())
        theRecord().observer(container, fields);
}

} // namespace osg
