// SPDX-License-Identifier: MIT
#include "documents/html/Problems.h"

namespace TunerDocuments {

namespace {

QString idOf(int index)
{
    return QStringLiteral("problem-%1").arg(index + 1);
}

// Isolates a text of the document, whatever its direction is.
void showIsolated(Markup &out, const QString &text)
{
    const Tag isolated(out, "bdi");
    out.text(text);
}

} // namespace

Problems::Problems(const Findings &findings) : m_all(findings), m_findings(findings.listed())
{
    for (int i = 0; i < m_findings.size(); ++i) {
        ObjectPath path;
        ++m_from[path.key()];
        for (const JobXml::Step &step : m_findings.at(i).steps) {
            path = path.below(step.member, step.index);
            ++m_from[path.key()];
        }
        // Problems of the document itself are only in the list of all problems, at the top.
        if (!m_findings.at(i).steps.isEmpty())
            m_at[path.key()].append(i);
    }
}

void Problems::show(Markup &out, const ObjectPath &path)
{
    const QVector<int> here = m_at.value(path.key());
    for (const int i : here) {
        const Tag problem(out, "p", {{"class", "problem whole"}, {"id", idOf(i)}});
        out.element("span", {{"class", "unseen"}}, "Problem: ");
        showIsolated(out, m_findings.at(i).message);
        m_shown.insert(i);
    }
}

void Problems::showAll(Markup &out) const
{
    if (m_findings.isEmpty()) {
        out.element("p", {{"class", "fine"}}, "Validation found no problems.");
        return;
    }
    constexpr int mostOpen = 20; // with more, the document itself would be out of sight
    const Tag panel(out, "section", {{"class", "panel problems"}});
    const Tag details(out, "details", {{"open", m_findings.size() <= mostOpen ? "open" : nullptr}});
    {
        const Tag summary(out, "summary");
        out.element("h2", {},
                    m_all.count() == 1 ? QStringLiteral("1 problem")
                                       : QStringLiteral("%1 problems").arg(m_all.count()));
    }
    if (m_all.count() > m_findings.size())
        out.element("p", {{"class", "note"}},
                    m_findings.size() == 1
                        ? QStringLiteral("Only the first is listed here and at its object.")
                        : QStringLiteral("The first %1 are listed here and at their objects.").arg(m_findings.size()));
    const Tag list(out, "ol");
    for (int i = 0; i < m_findings.size(); ++i) {
        const Finding &finding = m_findings.at(i);
        const Tag item(out, "li");
        {
            const bool isElsewhere = m_shown.contains(i);
            const Tag message(
                out, isElsewhere ? "a" : "span",
                {{isElsewhere ? "href" : "id", (isElsewhere ? QStringLiteral("#") : QString()) + idOf(i)}});
            showIsolated(out, finding.message);
        }
        if (finding.hasLocation()) {
            out.element("span", {{"class", "where"}},
                        QStringLiteral("line %1, column %2").arg(finding.line).arg(finding.column));
        } else if (!finding.path.isEmpty()) {
            const Tag where(out, "span", {{"class", "where"}});
            showIsolated(out, finding.path);
        }
    }
}

} // namespace TunerDocuments
