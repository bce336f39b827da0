// SPDX-License-Identifier: MIT
#include <cmath>

#include <tunerdocuments/Html.h>
#include <tunerdocuments/Path.h>

#include "documents/html/Members.h"
#include "documents/html/Range.h"

using JobXml::DataObject;
using JobXml::MemberKind;
using JobXml::MemberView;

namespace TunerDocuments {

namespace {

class Finder
{
public:
    Finder(int most, PageFindings &findings) : m_most(most), m_findings(findings) { }

    void visit(const DataObject &object)
    {
        const Members members(object);
        checkRange(members);
        checkOptions(members);
        checkTexts(members);
        for (const MemberView &member : members) {
            const bool isAlternative = member.GetKind() == MemberKind::Alternative;
            if (isValue(member) || (isAlternative && !member.IsChosen()))
                continue;
            for (int i = 0; i < member.GetSize(); ++i) {
                m_levels.append({member, isList(member) ? i : -1, {}});
                visit(member.GetChild(i));
                m_levels.removeLast();
            }
        }
    }

private:
    /// A step on the way to the present object.
    struct Level
    {
        MemberView member;
        int index;
        QString text; // when it was needed
    };

    void checkRange(const Members &members)
    {
        if (const std::optional<Range> range = Range::of(members)) {
            const Range::Problem problem = range->problem();
            add(problem.member, problem.rule, problem.text);
        }
    }

    // The document stores the choice separately from the options, so the two may differ.
    void checkOptions(const Members &members)
    {
        const MemberView *const options = members.find(isList);
        const MemberView *const value = members.find("value", isNumber);
        const MemberView *const position = members.find("index", isNumber);
        if (!options || !value || !position || !position->IsSet())
            return;
        const int index = position->GetValue().toInt();
        if (index < 0 || index >= options->GetSize()) {
            add("index", "option-index", QStringLiteral("no option has the index %1").arg(index));
            return;
        }
        const Members option(options->GetChild(index));
        const MemberView *const text = members.find("text", isText);
        const MemberView *const name = option.find(isText);
        const MemberView *const number = option.find(isNumber);
        const QString differs = QStringLiteral("the option at this index has a different %1");
        if (text && name && text->GetValue() != name->GetValue())
            add("text", "option-differs", differs.arg(name->GetName()));
        if (number && value->GetValue() != number->GetValue())
            add("value", "option-differs", differs.arg(number->GetName()));
    }

    void checkTexts(const Members &members)
    {
        const MemberView *const texts = members.find(isList);
        const MemberView *const value = members.find("value", isText);
        if (!texts || !value || !value->IsSet())
            return;
        for (int i = 0; i < texts->GetSize(); ++i) {
            const Members entry(texts->GetChild(i));
            const MemberView *const text = entry.find(isText);
            if (text && text->GetValue() == value->GetValue())
                return;
        }
        add("value", "value-not-listed", QStringLiteral("the value is not in the list"));
    }

    void add(const char *member, const char *rule, const QString &message)
    {
        if (message.isNull())
            return;
        ++m_findings.warnings;
        if (m_listed == m_most)
            return;
        ++m_listed;
        Finding finding;
        finding.kind = Finding::Kind::Warning;
        finding.message = message;
        finding.member = QString::fromUtf8(member);
        finding.rule = QString::fromUtf8(rule);
        QStringList path;
        for (Level &level : m_levels) {
            finding.steps.append({level.member.GetName(), level.index});
            if (level.text.isNull())
                level.text =
                    level.index < 0 ? QString(level.member.GetName()) : Paths::stepsTo(level.member)[level.index];
            path.append(level.text);
        }
        finding.path = path.join(QLatin1Char('/'));
        m_findings.listed.append(finding);
    }

    const int m_most;
    int m_listed = 0;
    PageFindings &m_findings;
    QVector<Level> m_levels;
};

} // namespace

void addValueWarnings(const JobXml::TunerProperties &document, int most, PageFindings &findings)
{
    Finder(most, findings).visit(document);
}

} // namespace TunerDocuments
