// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include <QString>

#include <reportbase/Export.h>

QT_FORWARD_DECLARE_CLASS(QDebug)

namespace REPORTGENERATOR {

/// Receives the errors of the load and save operations of IRGObject.
///
/// A logger is always held by `std::shared_ptr`, and propagated from an object to its children. Derive from it and
/// override Log() to receive the messages; a logger of objects in several threads must be thread-safe.
class REPORTBASE_EXPORT Logger
{
public:
    /// The severity of a message. The load and save operations only report errors.
    enum class Severity {
        Error, ///< an operation has failed
        Warning, ///< an operation has succeeded, but something is suspicious
        Information, ///< there is no problem
    };

    Logger();
    Logger(const Logger &) = delete;
    Logger &operator=(const Logger &) = delete;
    virtual ~Logger();

    /// Takes one message. The stock logger forwards it to the Qt logging category "reportbase".
    virtual void Log(Severity severity, const QString &message);
    void Log(Severity, std::nullptr_t) = delete;
};

/// Writes a severity as spelled in C++: `Logger::Severity::Error`.
REPORTBASE_EXPORT QDebug operator<<(QDebug debug, Logger::Severity severity);

} // namespace REPORTGENERATOR
