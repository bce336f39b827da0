// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QString>

#include <reportbase/Environment.h>
#include <reportbase/ObjectTypes.h>
#include <reportbase/ReportException.h>

namespace REPORTGENERATOR {

/// The environment of an object that has more than a flag and a logger. Few objects do, so the others have no room for
/// it: one pointer refers to either. Never shared with other objects.
struct ObjectState final : Environment
{
    struct Members
    {
        ObjectTypes type = ObjectTypes::Undefined; ///< returned by IRGObject::GetObjectType()
        /// Replaces the name of the object's class. Shared, so that references to it stay valid until the name is
        /// changed.
        std::shared_ptr<const QString> name;
        QString error; ///< of the last load or save operation
        ErrorLocation errorLocation;

        bool isDefault() const { return type == ObjectTypes::Undefined && !name && error.isNull(); }
    };

    /// Null if the object has a flag and a logger alone.
    static const Members *find(const EnvironmentPointer &environment)
    {
        return environment.isOfOneObject() ? &static_cast<const ObjectState &>(*environment).members : nullptr;
    }

    /// An environment without members if these are the defaults.
    static EnvironmentPointer make(bool theFlag, std::shared_ptr<Logger> theLogger, Members theMembers);

    const Members members;

private:
    ObjectState(bool theFlag, std::shared_ptr<Logger> theLogger, Members &&theMembers);
};

} // namespace REPORTGENERATOR
