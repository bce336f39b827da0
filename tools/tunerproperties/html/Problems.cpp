// SPDX-License-Identifier: MIT
#include "html/Problems.h"

namespace {

QString idOf(int index)
{
    return QStringLiteral("problem-%1").arg(index + 1);
}

// Texts of the document are part of it, whatever direction they have.
void showIsolated(Markup &out, const QString &text)
{
    const Tag isolated(out, "bdi");
    out.text(text);
}

} // namespace

Problems::Problems(const Findings &findings) : m_all(findings), m_findings(findings.listed())
{
    for (int i = 0; i < m_findings.size(); ++i) {
        Spot spot;
        ++m_from[spot.key()];
        for (const JobXml::Step &step : m_findings.at(i).steps) {
            spot = spot.below(step.member, step.index);
            ++m_from[spot.key()];
        }
        // What concerns the document as such is shown in the list of all alone, which stands at its top.
        if (!m_findings.at(i).steps.isEmpty())
            m_at[spot.key()].append(i);
    }
}

void Problems::show(Markup &out, const Spot &spot)
{
    const QVector<int> here = m_at.value(spot.key());
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
    constexpr int mostOpen = 20; // with more, one wants to see the document as well
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
        if (finding.hasPlace()) {
            out.element("span", {{"class", "where"}},
                        QStringLiteral("line %1, column %2").arg(finding.line).arg(finding.column));
        } else if (!finding.path.isEmpty()) {
            const Tag where(out, "span", {{"class", "where"}});
            showIsolated(out, finding.path.join(QStringLiteral(" / ")));
        }
    }
}
