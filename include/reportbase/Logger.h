// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include <QString>

#include <reportbase/Export.h>

QT_FORWARD_DECLARE_CLASS(QDebug)

namespace REPORTGENERATOR {

/// Where the load and save operations of IRGObject report what went wrong.
///
/// A logger is held by `std::shared_ptr` only and handed from an object to its children. Derive from it and override
/// Log() to receive the messages; a logger that several threads' objects share must be safe to call from them.
class REPORTBASE_EXPORT Logger
{
public:
    /// How bad it is. The load and save operations report errors only.
    enum class Severity {
        Error, ///< an operation has failed
        Warning, ///< it has not, but something is odd
        Information, ///< nothing is wrong
    };

    Logger();
    Logger(const Logger &) = delete;
    Logger &operator=(const Logger &) = delete;
    virtual ~Logger();

    /// Takes one message. The stock logger forwards it to the Qt logging category "reportbase".
    virtual void Log(Severity severity, const QString &message);
    void Log(Severity, std::nullptr_t) = delete;
};

/// Writes a severity as C++ spells it: `Logger::Severity::Error`.
REPORTBASE_EXPORT QDebug operator<<(QDebug debug, Logger::Severity severity);

} // namespace REPORTGENERATOR
