// SPDX-License-Identifier: MIT
#include <reportbase/Environment.h>

namespace REPORTGENERATOR {

// Constants, initialized before any code runs: objects with static storage may be built at any time.
const Environment Environment::validating(AlwaysThere, true);
const Environment Environment::lenient(AlwaysThere, false);

Environment::Environment(bool theFlag, std::shared_ptr<Logger> theLogger, std::unique_ptr<const Own> theOwn)
    : validate(theFlag), logger(std::move(theLogger)), own(std::move(theOwn))
{
}

EnvironmentPointer EnvironmentPointer::make(bool validate, std::shared_ptr<Logger> logger,
                                            std::unique_ptr<const Environment::Own> own)
{
    if (own && own->type == ObjectTypes::Undefined && !own->name && own->error.isNull())
        own.reset();
    if (!logger && !own)
        return plain(validate);
    return EnvironmentPointer(new Environment(validate, std::move(logger), std::move(own)));
}

void EnvironmentPointer::destroy() noexcept
{
    delete m_environment;
}

} // namespace REPORTGENERATOR
