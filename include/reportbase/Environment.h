// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <memory>
#include <utility>

#include <reportbase/Export.h>
#include <reportbase/Logger.h>

namespace REPORTGENERATOR {

/// The validate flag and the logger of an object.
///
/// An environment never changes, so a whole tree of objects, in any number of threads, can share one: changing the flag
/// or the logger of an object gives that object another environment. Most objects have one of the two that always
/// exist, `plain(true)` and `plain(false)`, and use no memory for it.
///
/// You need this class only to derive classes from IRGObject. Otherwise call IRGObject::SetValidate() and
/// IRGObject::SetLogger().
class REPORTBASE_EXPORT Environment
{
public:
    Environment(const Environment &) = delete;
    Environment &operator=(const Environment &) = delete;

    const bool validate; ///< the validate flag
    const std::shared_ptr<Logger> logger; ///< null if there is none

private:
    friend class EnvironmentPointer;
    friend struct ObjectState;

    enum class Lifetime { Static, Shared, OneObject };
    constexpr Environment(Lifetime, bool theFlag) noexcept : validate(theFlag), m_users(staticLifetime) { }
    Q_DECL_HIDDEN Environment(Lifetime lifetime, bool theFlag, std::shared_ptr<Logger> theLogger);
    ~Environment() = default;

    static constexpr int staticLifetime = -1;
    static const Environment validating;
    static const Environment lenient;

    mutable std::atomic<int> m_users{1};
    const bool m_isOfOneObject = false; // then it is an ObjectState
};

/// A reference-counted pointer to an environment; never null.
class REPORTBASE_EXPORT EnvironmentPointer
{
public:
    /// The environment with a flag alone.
    static EnvironmentPointer plain(bool validate) noexcept
    {
        return EnvironmentPointer(validate ? &Environment::validating : &Environment::lenient);
    }

    /// An environment with a flag and a logger, which may be null.
    static EnvironmentPointer make(bool validate, std::shared_ptr<Logger> logger);

    /// Whether it belongs to one object, because it also holds the object's type, its own name or its last error.
    bool isOfOneObject() const noexcept { return m_environment->m_isOfOneObject; }
    /// An environment with the same flag and logger that other objects can share.
    EnvironmentPointer forOtherObjects() const
    {
        return isOfOneObject() ? make(m_environment->validate, m_environment->logger) : *this;
    }

    /// \name Construction, copies and comparison
    /// Copies share the environment. A moved-from pointer refers to `plain(true)`. Two are equal if they share one.
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
    friend struct ObjectState;

    explicit EnvironmentPointer(const Environment *environment) noexcept : m_environment(environment) { }

    bool isStatic() const noexcept
    {
        return m_environment->m_users.load(std::memory_order_relaxed) == Environment::staticLifetime;
    }
    void addUser() const noexcept
    {
        if (!isStatic())
            m_environment->m_users.fetch_add(1, std::memory_order_relaxed);
    }
    void dropUser() noexcept
    {
        if (!isStatic() && m_environment->m_users.fetch_sub(1, std::memory_order_acq_rel) == 1)
            destroy();
    }
    void destroy() noexcept;

    const Environment *m_environment;
};

} // namespace REPORTGENERATOR
