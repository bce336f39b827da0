// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/DataObject.h>

namespace JobXml {

/// The problem that an exception reports, with its place.
inline Problem problemOf(const ReportException &exception, const ObjectPath &path, const QString &member = QString())
{
    const REPORTGENERATOR::ErrorLocation place = exception.GetLocation();
    Problem problem{path, exception.GetMessageText(), member};
    problem.line = place.line;
    problem.column = place.column;
    problem.offset = place.offset;
    return problem;
}

/// Visits the problem for which `check` throws, if it throws. The check of a derived class may throw exceptions of
/// other types than the model's.
template <class Check>
void collectProblem(const ObjectPath &path, QLatin1String member, const ProblemVisitor &visitor, Check &&check)
{
    try {
        check();
    } catch (const ReportException &exception) {
        visitor(problemOf(exception, path, QString(member)));
    }
}

} // namespace JobXml
