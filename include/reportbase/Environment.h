// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <memory>
#include <utility>

#include <QString>

#include <reportbase/Export.h>
#include <reportbase/Logger.h>
#include <reportbase/ObjectTypes.h>

namespace REPORTGENERATOR {

/// What an object of IRGObject has been told from outside.
///
/// An environment never changes, so that a whole tree of objects, in any number of threads, can share one: an object
/// that is told something else gets another. Most objects have one of the two that are always there, `plain(true)` and
/// `plain(false)`, and cost nothing for it.
///
/// Programs need it only to derive classes from IRGObject; all others call IRGObject::SetValidate() and
/// IRGObject::SetLogger().
class REPORTBASE_EXPORT Environment
{
public:
    /// What belongs to one object and is not handed down. Hardly any object has it.
    struct Own
    {
        ObjectTypes type = ObjectTypes::Undefined; ///< what IRGObject::GetObjectType() returns
        /// In place of the name of the object's class. Shared, so that references to it hold as long as the object is
        /// called so, whatever else it is told.
        std::shared_ptr<const QString> name;
        QString error; ///< of the last load or save operation
    };

    /// See EnvironmentPointer::make().
    Environment(bool theFlag, std::shared_ptr<Logger> theLogger, std::unique_ptr<const Own> theOwn);
    Environment(const Environment &) = delete;
    Environment &operator=(const Environment &) = delete;

    const bool validate; ///< the validate flag
    const std::shared_ptr<Logger> logger; ///< null if there is none
    const std::unique_ptr<const Own> own; ///< null for what all of it is default

private:
    friend class EnvironmentPointer;
    enum Always { AlwaysThere };
    constexpr Environment(Always, bool theFlag) noexcept : validate(theFlag), m_users(alwaysThere) { }

    static constexpr int alwaysThere = -1;
    static const Environment validating;
    static const Environment lenient;

    mutable std::atomic<int> m_users{1};
};

/// A share in an environment.
class REPORTBASE_EXPORT EnvironmentPointer
{
public:
    /// The environment with a flag alone.
    static EnvironmentPointer plain(bool validate) noexcept
    {
        return EnvironmentPointer(validate ? &Environment::validating : &Environment::lenient);
    }

    /// The environment that is told all of this.
    static EnvironmentPointer make(bool validate, std::shared_ptr<Logger> logger,
                                   std::unique_ptr<const Environment::Own> own = nullptr);

    /// \name Values
    /// Copies share the environment. What was moved from holds the one that validates and nothing else. Two are equal
    /// if they share one.
    /// @{
    EnvironmentPointer(const EnvironmentPointer &other) noexcept : m_environment(other.m_environment) { addUser(); }
    EnvironmentPointer(EnvironmentPointer &&other) noexcept
        : m_environment(std::exchange(other.m_environment, &Environment::validating))
    {
    }
    EnvironmentPointer &operator=(const EnvironmentPointer &other) noexcept
    {
        EnvironmentPointer copy(other);
        std::swap(m_environment, copy.m_environment);
        return *this;
    }
    EnvironmentPointer &operator=(EnvironmentPointer &&other) noexcept
    {
        std::swap(m_environment, other.m_environment);
        return *this;
    }
    ~EnvironmentPointer() { dropUser(); }

    const Environment &operator*() const noexcept { return *m_environment; }
    const Environment *operator->() const noexcept { return m_environment; }
    bool operator==(const EnvironmentPointer &other) const noexcept { return m_environment == other.m_environment; }
    bool operator!=(const EnvironmentPointer &other) const noexcept { return m_environment != other.m_environment; }
    /// @}

private:
    explicit EnvironmentPointer(const Environment *environment) noexcept : m_environment(environment) { }

    bool isAlwaysThere() const noexcept
    {
        return m_environment->m_users.load(std::memory_order_relaxed) == Environment::alwaysThere;
    }
    void addUser() const noexcept
    {
        if (!isAlwaysThere())
            m_environment->m_users.fetch_add(1, std::memory_order_relaxed);
    }
    void dropUser() noexcept
    {
        if (!isAlwaysThere() && m_environment->m_users.fetch_sub(1, std::memory_order_acq_rel) == 1)
            destroy();
    }
    void destroy() noexcept;

    const Environment *m_environment;
};

} // namespace REPORTGENERATOR
