// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// Flag and logger, or one of the two, on their way down a tree. Refers to the environment of the object on top.
class DataObject::HandDown
{
public:
    enum What { Validate, Logger, Both };

    HandDown(const REPORTGENERATOR::EnvironmentPointer &environment, What what)
        : m_environment(environment), m_what(what)
    {
    }

    bool validate() const { return m_environment->validate; }

    /// To an object and what is below it.
    void give(const DataObject &object) const { object.takeDown(*this); }

    void change(const DataObject &object) const
    {
        if (m_what == Both)
            object.takeEnvironment(m_environment);
        else if (m_what == Validate)
            object.takeValidate(m_environment);
        else
            object.takeLogger(m_environment);
    }

    /// The same for what is kept for objects to come.
    void change(REPORTGENERATOR::EnvironmentPointer &kept) const
    {
        using REPORTGENERATOR::EnvironmentPointer;
        if (kept == m_environment)
            return;
        const bool validate = m_what == Logger ? kept->validate : m_environment->validate;
        const auto &logger = m_what == Validate ? kept->logger : m_environment->logger;
        if (validate == m_environment->validate && logger == m_environment->logger)
            kept = m_environment;
        else
            kept = EnvironmentPointer::make(validate, logger);
    }

private:
    const REPORTGENERATOR::EnvironmentPointer &m_environment;
    What m_what;
};

} // namespace JobXml
