// SPDX-License-Identifier: MIT
#include <reportbase/Logger.h>

#include <QDebug>
#include <QLoggingCategory>

namespace {

Q_LOGGING_CATEGORY(reportbase, "reportbase")

} // namespace

namespace REPORTGENERATOR {

Logger::Logger() = default;
Logger::~Logger() = default;

void Logger::Log(Severity severity, const QString &message)
{
    const QByteArray utf8 = message.toUtf8();
    switch (severity) {
    case Severity::Error:
        qCCritical(reportbase, "%s", utf8.constData());
        break;
    case Severity::Warning:
        qCWarning(reportbase, "%s", utf8.constData());
        break;
    case Severity::Information:
        qCInfo(reportbase, "%s", utf8.constData());
        break;
    }
}

QDebug operator<<(QDebug debug, Logger::Severity severity)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "Logger::Severity";
    switch (severity) {
    case Logger::Severity::Error:
        return debug << "::Error";
    case Logger::Severity::Warning:
        return debug << "::Warning";
    case Logger::Severity::Information:
        return debug << "::Information";
    }
    return debug << '(' << int(severity) << ')';
}

} // namespace REPORTGENERATOR
