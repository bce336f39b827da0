// SPDX-License-Identifier: MIT
#pragma once

#include "framework/ObjectAccess.h"

namespace JobXml {

/// Propagates the validate flag and the logger of an object, or one of the two, to objects below it. Keeps a reference
/// to the object's environment.
class Propagation
{
public:
    using EnvironmentPointer = REPORTGENERATOR::EnvironmentPointer;
    enum What { Validate, Logger, Both };

    explicit Propagation(const EnvironmentPointer &environment, What what = Both)
        : m_environment(environment), m_what(what)
    {
    }

    /// The environment that the children of an object inherit.
    static EnvironmentPointer forChildren(const DataObject &object)
    {
        return ObjectAccess::environment(object).forOtherObjects();
    }
    /// The same for a child that is about to be read: a derived class may override GetValidate().
    static EnvironmentPointer forReading(const DataObject &object);

    /// Propagates the object's own flag and logger to everything below it.
    static void propagate(const DataObject &object);
    /// Propagates to one object, but not to its children.
    static void propagateTo(const DataObject &object, const EnvironmentPointer &environment)
    {
        ObjectAccess::setEnvironment(object, environment);
    }

    /// Copies the flags and loggers of an object and everything below it to a copy of that object.
    static void copy(const DataObject &original, const DataObject &copy);

    bool validate() const { return m_environment->validate; }

    /// Propagates to an object and everything below it.
    void propagateTo(const DataObject &object) const;
    /// Propagates to a copied object if its flag differs. Otherwise everything below it has the right flag already.
    void propagateToCopy(const DataObject &object) const
    {
        if (ObjectAccess::environment(object)->validate != validate())
            propagateTo(object);
    }
    /// Propagates to an environment that is stored for objects that are created later.
    void propagateTo(EnvironmentPointer &kept) const;

private:
    const EnvironmentPointer &m_environment;
    What m_what;
};

} // namespace JobXml
