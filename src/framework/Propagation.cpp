// SPDX-License-Identifier: MIT
#include "framework/Propagation.h"

#include "framework/Behavior.h"
#include "framework/Member.h"

namespace JobXml {

using REPORTGENERATOR::EnvironmentPointer;

EnvironmentPointer Propagation::forReading(const DataObject &object)
{
    EnvironmentPointer environment = forChildren(object);
    const bool validate = object.GetValidate();
    if (environment->validate != validate)
        environment = EnvironmentPointer::make(validate, environment->logger);
    return environment;
}

void Propagation::propagate(const DataObject &object)
{
    if (ObjectAccess::isOfDerivedClass(object)) {
        object.SetValidate(object.GetValidate());
        object.SetLogger(object.GetLogger());
    } else {
        const EnvironmentPointer environment = forChildren(object);
        ObjectAccess::behavior(object).propagateToChildren(object, Propagation(environment));
    }
}

void Propagation::copy(const DataObject &original, const DataObject &copy)
{
    ObjectAccess::behavior(original).copyEnvironments(original, copy);
}

void Propagation::propagateTo(const DataObject &object) const
{
    if (m_what == Both)
        propagateTo(object, m_environment);
    else if (m_what == Validate)
        ObjectAccess::changeEnvironment(object, m_environment->validate, ObjectAccess::environment(object)->logger,
                                        m_environment);
    else
        ObjectAccess::changeEnvironment(object, ObjectAccess::environment(object)->validate, m_environment->logger,
                                        m_environment);
    const ClassInfo &info = ObjectAccess::info(object);
    if (ObjectAccess::existingBlock(object) && (info.children | info.createdWithTheBlock) != 0)
        info.behavior.propagateToChildren(object, *this);
}

void Propagation::propagateTo(EnvironmentPointer &kept) const
{
    if (kept == m_environment)
        return;
    const bool validate = m_what == Logger ? kept->validate : m_environment->validate;
    const auto &logger = m_what == Validate ? kept->logger : m_environment->logger;
    if (validate == m_environment->validate && logger == m_environment->logger)
        kept = m_environment;
    else
        kept = EnvironmentPointer::make(validate, logger);
}

void Behavior::propagateToChildren(const DataObject &object, const Propagation &propagation) const
{
    const ClassInfo &info = ObjectAccess::info(object);
    if (!ObjectAccess::existingBlock(object) || info.children == 0)
        return;
    Block &own = ObjectAccess::block(object);
    auto propagate = [&](const DataObject &child, int) { propagation.propagateTo(child); };
    info.forEach(info.children, [&](const Member &member) { member.forEachChild(own, ChildAction(propagate)); });
}

void Behavior::propagateToCopies(const DataObject &copy) const
{
    const EnvironmentPointer environment = Propagation::forChildren(copy);
    const Propagation propagation(environment, Propagation::Validate);
    Block &own = ObjectAccess::block(copy);
    auto propagate = [&](const DataObject &child, int) { propagation.propagateToCopy(child); };
    const ClassInfo &info = ObjectAccess::info(copy);
    info.forEach(info.children, [&](const Member &member) { member.forEachChild(own, ChildAction(propagate)); });
}

void Behavior::copyEnvironments(const DataObject &original, const DataObject &copy) const
{
    Propagation::propagateTo(copy, ObjectAccess::environment(original));
    const Block *const from = ObjectAccess::existingBlock(original);
    if (!from)
        return;
    const Block &to = *ObjectAccess::existingBlock(copy);
    const ClassInfo &info = ObjectAccess::info(original);
    info.forEach(info.children | info.createdWithTheBlock, [&](const Member &member) {
        for (int i = 0; i < member.childCount(*from); ++i) {
            const DataObject &child = member.child(*from, i);
            Propagation::copy(child, member.child(to, i));
        }
    });
}

// --- DataObject's operations -----------------------------------------------------------------------------------------

void DataObject::SetValidate(bool validate) const
{
    IRGObject::SetValidate(validate);
    const EnvironmentPointer environment = Propagation::forChildren(*this);
    ObjectAccess::behavior(*this).propagateToChildren(*this, Propagation(environment, Propagation::Validate));
}

void DataObject::SetLogger(std::shared_ptr<REPORTGENERATOR::Logger> logger) const
{
    IRGObject::SetLogger(std::move(logger));
    const EnvironmentPointer environment = Propagation::forChildren(*this);
    ObjectAccess::behavior(*this).propagateToChildren(*this, Propagation(environment, Propagation::Logger));
}

} // namespace JobXml
