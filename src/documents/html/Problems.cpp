// SPDX-License-Identifier: MIT
#include "documents/html/Problems.h"

#include <algorithm>

namespace TunerDocuments {

namespace {

QString idOf(int index)
{
    return QStringLiteral("problem-%1").arg(index + 1);
}

bool isWarning(const Finding &finding)
{
    return finding.kind == Finding::Kind::Warning;
}

// Isolates a text of the document, whatever its direction is.
void showIsolated(Markup &out, const QString &text)
{
    const Tag isolated(out, "bdi");
    out.text(text);
}

/// What concerns the document as a whole is only in the list of all findings, at the top.
bool isInObject(const Finding &finding)
{
    return !finding.steps.isEmpty() || !finding.member.isNull();
}

const char *labelOf(const Finding &finding)
{
    if (!isWarning(finding))
        return "Problem: ";
    return finding.isError ? "Error: " : "Warning: ";
}

void showRule(Markup &out, const Finding &finding)
{
    if (!isWarning(finding))
        return;
    out.words(" ");
    out.element("code", {{"class", "rule"}}, finding.rule);
}

/// "1 problem", "2 problems"; null for none.
QString counted(qint64 count, const char *word)
{
    if (count == 0)
        return QString();
    const QString text = QString::number(count) + QLatin1Char(' ') + QLatin1String(word);
    return count == 1 ? text : text + QLatin1Char('s');
}

QString counted(qint64 problems, qint64 warnings)
{
    QStringList parts = {counted(problems, "problem"), counted(warnings, "warning")};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

} // namespace

QString Problems::Count::text() const
{
    return counted(problems, warnings);
}

Problems::Problems(const Findings &findings)
    : m_listed(findings.listed() + findings.warnings()), m_problems(findings.count()),
      m_warnings(findings.warningCount())
{
    for (int i = 0; i < m_listed.size(); ++i) {
        const Finding &finding = m_listed.at(i);
        const auto count = [&](const ObjectPath &path) {
            Count &from = m_from[path.key()];
            ++(isWarning(finding) ? from.warnings : from.problems);
        };
        ObjectPath path;
        count(path);
        for (const JobXml::Step &step : finding.steps) {
            path = path.below(step.member, step.index);
            count(path);
        }
        if (isInObject(finding))
            m_at[path.key()].append(i);
    }
}

bool Problems::hasAt(const ObjectPath &path, const QString &member) const
{
    const QVector<int> here = m_at.value(path.key());
    return std::any_of(here.begin(), here.end(), [&](int index) { return m_listed.at(index).member == member; });
}

void Problems::show(Markup &out, int index)
{
    const Finding &finding = m_listed.at(index);
    const Tag problem(out, "p",
                      {{"class", isWarning(finding) ? "problem warning whole" : "problem whole"}, {"id", idOf(index)}});
    out.element("b", {}, labelOf(finding));
    showIsolated(out, finding.explained());
    showRule(out, finding);
    m_shown.insert(index);
}

void Problems::show(Markup &out, const ObjectPath &path, const Members &facts)
{
    const QVector<int> here = m_at.value(path.key());
    for (const int i : here) {
        const QString name = m_listed.at(i).member;
        const JobXml::MemberView *const fact = name.isNull() ? nullptr : facts.find(name);
        if (!fact || !isValue(*fact) || isIrrelevant(*fact))
            show(out, i);
    }
}

void Problems::showMember(Markup &out, const ObjectPath &path, const QString &member)
{
    const QVector<int> here = m_at.value(path.key());
    for (const int i : here) {
        if (m_listed.at(i).member == member)
            show(out, i);
    }
}

void Problems::showHeading(Markup &out) const
{
    const Tag summary(out, "summary");
    const QString count = counted(m_problems, m_warnings);
    out.element("h2", {}, m_problems == 0 ? QStringLiteral("No problems, ") + count : count);
}

void Problems::showEntry(Markup &out, int index) const
{
    const Finding &finding = m_listed.at(index);
    const Tag item(out, "li", {{"class", isWarning(finding) ? "warning" : nullptr}});
    {
        const Tag message(out, "span");
        {
            const bool isElsewhere = m_shown.contains(index);
            const Tag link(
                out, isElsewhere ? "a" : "span",
                {{isElsewhere ? "href" : "id", (isElsewhere ? QStringLiteral("#") : QString()) + idOf(index)}});
            showIsolated(out, finding.explained());
        }
        showRule(out, finding);
    }
    const bool hasPath = !finding.path.isEmpty();
    if (!hasPath && !finding.hasLocation())
        return;
    const Tag where(out, "span", {{"class", "where"}});
    if (hasPath)
        showIsolated(out, finding.path);
    if (hasPath && finding.hasLocation())
        out.words(", ");
    if (finding.hasLocation())
        out.words(QStringLiteral("line %1, column %2").arg(finding.line).arg(finding.column));
}

void Problems::showAll(Markup &out) const
{
    const int listed = int(m_listed.size());
    if (listed == 0) {
        out.element("p", {{"class", "fine"}}, "Validation found no problems.");
        return;
    }
    constexpr int mostOpen = 20; // with more, the document itself would be out of sight
    const Tag panel(out, "section",
                    {{"class", m_problems == 0 ? "panel problems warnings" : "panel problems"}, {"id", "problems"}});
    const Tag details(out, "details", {{"open", listed <= mostOpen ? "open" : nullptr}});
    showHeading(out);
    if (m_problems + m_warnings > listed)
        out.element("p", {{"class", "note"}},
                    listed == 1 ? QStringLiteral("Only the first is listed here and at its object.")
                                : QStringLiteral("The first %1 are listed here and at their objects.").arg(listed));
    const Tag list(out, "ol");
    for (int i = 0; i < listed; ++i)
        showEntry(out, i);
}

} // namespace TunerDocuments
