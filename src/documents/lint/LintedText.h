// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include "documents/lint/Report.h"
#include "documents/lint/Shape.h"

namespace TunerDocuments {

/// A part of the text that rules examine; see TextSubject.
class LintedText
{
public:
    /// The steps and the report must outlive this object.
    LintedText(const std::vector<LintStep> &steps, const TextPlace &place, Report &report)
        : m_steps(steps), m_place(place), m_report(report)
    {
    }
    LintedText(std::vector<LintStep> &&steps, const TextPlace &place, Report &report) = delete;

    QString name{}; ///< of the member, attribute or element
    QString text{}; ///< of the value; null if a version is missing
    QString following{}; ///< the text of the value that replaces it
    JobXml::MemberKind kind = JobXml::MemberKind::Text; ///< of the member
    QString className{}; ///< of the object
    QStringList known{}; ///< the names that an attribute or element may have there
    bool isElement = false; ///< whether an element may have the name of an unknown attribute
    bool isSkipped = true; ///< whether the content of an unknown element is skipped as well
    QString presentVersion{}; ///< of the library
    Form form = Form::Xml;

    /// Reports a warning.
    template <class Describe>
    void warn(const Describe &describe) const
    {
        m_report.add(m_rule, m_place, m_steps, nullptr, m_member, describe);
    }

    /// The member of the object that the findings name. None without.
    void setMember(QLatin1String member) { m_member = member; }

    /// Applies the rules about that subject.
    void check(TextSubject subject);

private:
    const std::vector<LintStep> &m_steps;
    const TextPlace m_place;
    Report &m_report;
    QLatin1String m_member{};
    int m_rule = 0;
};

} // namespace TunerDocuments
