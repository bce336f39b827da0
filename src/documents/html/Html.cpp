// SPDX-License-Identifier: MIT
#include <tunerdocuments/Html.h>

#include <tunerdocuments/Lint.h>

#include "documents/html/Comparison.h"
#include "documents/html/Content.h"
#include "documents/html/Page.h"

namespace TunerDocuments {

namespace {

/// The list of all problems precedes the objects, and links to the problems that are shown there. So the content is
/// composed once without being kept, as far as there are problems.
void findShownProblems(const JobXml::TunerProperties &document, Problems &problems, const QString &source)
{
    if (!problems.areInObjects())
        return;
    Markup nowhere;
    Content content(document, problems, source, nowhere);
    content.showHeaderFindings();
    content.showOverview();
    content.showCards();
}

} // namespace

void html(const JobXml::TunerProperties &document, const Findings &findings, const QString &source,
          const std::function<void(const QByteArray &)> &write)
{
    Problems problems(findings);
    findShownProblems(document, problems, source);
    Markup out(write);
    Content content(document, problems, source, out);
    const Page page{content.title(), content.hasCards()};
    page.show(
        out, [&] { content.showHeader(); },
        [&] {
            problems.showAll(out);
            content.showHeaderFindings();
            content.showOverview();
            content.showCards();
        });
}

void html(const JobXml::TunerProperties &document, const QString &source,
          const std::function<void(const QByteArray &)> &write)
{
    constexpr int most = 100;
    Findings findings(most);
    document.VisitProblems([&](const JobXml::Problem &problem) { findings.add(problem); });
    findings.describePaths(document);
    lint(Document(document), QByteArray(), findings);
    html(document, findings, source, write);
}

qint64 htmlOfDifferences(const JobXml::TunerProperties &first, const QString &firstSource,
                         const JobXml::TunerProperties &second, const QString &secondSource,
                         const std::function<void(const QByteArray &)> &write)
{
    const QVector<Difference> differences = findDifferences(first, second);
    Markup out(write);
    Comparison comparison({first, firstSource}, {second, secondSource}, differences, out);
    const Page page{comparison.title(), comparison.hasCards()};
    page.show(
        out, [&] { comparison.showHeader(); },
        [&] {
            comparison.showSummary();
            comparison.showDocument();
            comparison.showCards();
        });
    return differences.size();
}

} // namespace TunerDocuments
