// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <jobxml/DataObject.h>

#include "framework/Label.h"
#include "framework/VisitedMember.h"

namespace JobXml {

/// The way to an object whose problems are collected. The path is composed when the first problem is found at the
/// object or below it: usually there is none, and labels take longer than the checks.
class Trail
{
public:
    explicit Trail(const ObjectPath &path) : m_path(path) { }
    Trail(const Trail &outer, const VisitedMember &member, const DataObject &object, int index)
        : m_outer(&outer), m_member(&member), m_object(&object), m_index(index)
    {
    }
    Trail(const Trail &) = delete;
    Trail &operator=(const Trail &) = delete;
    ~Trail() = default;

    const ObjectPath &path() const
    {
        if (!m_path)
            m_path = m_outer->path().below(label(*m_object, m_index), {m_member->name(), m_index});
        return *m_path;
    }

private:
    const Trail *m_outer = nullptr;
    const VisitedMember *m_member = nullptr;
    const DataObject *m_object = nullptr;
    int m_index = -1;
    mutable std::optional<ObjectPath> m_path;
};

/// The problem that an exception reports, with its place.
inline Problem problemOf(const ReportException &exception, const ObjectPath &path, const QString &member = QString())
{
    const REPORTGENERATOR::ErrorLocation place = exception.GetLocation();
    Problem problem(path, exception.GetMessageText(), member);
    problem.line = place.line;
    problem.column = place.column;
    problem.offset = place.offset;
    return problem;
}

/// Visits the problem for which `check` throws, if it throws. The check of a derived class may throw exceptions of
/// other types than the model's. `member`, to which the problem belongs, may be null.
template <class Check>
void collectProblem(const Trail &trail, const VisitedMember *member, const ProblemVisitor &visitor, Check &&check)
{
    try {
        check();
    } catch (const ReportException &exception) {
        visitor(problemOf(exception, trail.path(), member ? QString(member->name()) : QString()));
    }
}

} // namespace JobXml
