// SPDX-License-Identifier: MIT
#include <reportbase/Environment.h>

#include "reportbase/ObjectState.h"

namespace REPORTGENERATOR {

// Constants, initialized before any code runs: objects with static storage may be constructed at any time.
const Environment Environment::validating(Lifetime::Static, true);
const Environment Environment::lenient(Lifetime::Static, false);

Environment::Environment(Lifetime lifetime, bool theFlag, std::shared_ptr<Logger> theLogger)
    : validate(theFlag), logger(std::move(theLogger)), m_isOfOneObject(lifetime == Lifetime::OneObject)
{
}

EnvironmentPointer EnvironmentPointer::make(bool validate, std::shared_ptr<Logger> logger)
{
    if (!logger)
        return plain(validate);
    return EnvironmentPointer(new Environment(Environment::Lifetime::Shared, validate, std::move(logger)));
}

void EnvironmentPointer::destroy() noexcept
{
    if (isOfOneObject())
        delete static_cast<const ObjectState *>(m_environment);
    else
        delete m_environment;
}

// --- What belongs to one object --------------------------------------------------------------------------------------

ObjectState::ObjectState(bool theFlag, std::shared_ptr<Logger> theLogger, Members &&theMembers)
    : Environment(Lifetime::OneObject, theFlag, std::move(theLogger)), members(std::move(theMembers))
{
}

EnvironmentPointer ObjectState::make(bool theFlag, std::shared_ptr<Logger> theLogger, Members theMembers)
{
    if (theMembers.isDefault())
        return EnvironmentPointer::make(theFlag, std::move(theLogger));
    return EnvironmentPointer(new ObjectState(theFlag, std::move(theLogger), std::move(theMembers)));
}

} // namespace REPORTGENERATOR
