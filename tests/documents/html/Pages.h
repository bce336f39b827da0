// SPDX-License-Identifier: MIT
#pragma once

#include <limits>

#include <tunerdocuments/Html.h>
#include <tunerdocuments/Lint.h>

#include "Rows.h"
#include "documents/html/PageTree.h"

/// The problems of a document without a file.
inline TunerDocuments::Findings findingsOf(const JobXml::TunerProperties &document)
{
    TunerDocuments::Findings findings(std::numeric_limits<int>::max());
    document.VisitProblems(findings.collector());
    findings.describePaths(document);
    return findings;
}

/// The same with the warnings about it.
inline TunerDocuments::Findings allFindingsOf(const JobXml::TunerProperties &document)
{
    TunerDocuments::Findings findings = findingsOf(document);
    TunerDocuments::lint(TunerDocuments::Document(document), QByteArray(), findings);
    return findings;
}

/// The whole page.
inline QByteArray html(const JobXml::TunerProperties &document, const TunerDocuments::Findings &findings,
                       const QString &source)
{
    QByteArray page;
    TunerDocuments::html(document, findings, source, [&](const QByteArray &piece) { page += piece; });
    return page;
}

inline PageTree pageOf(const JobXml::TunerProperties &document)
{
    return PageTree(html(document, allFindingsOf(document), QStringLiteral("file.xml")));
}

/// The only element that matches; an empty one if there is none, or more.
inline const PageNode *only(const std::vector<const PageNode *> &nodes)
{
    static const PageNode none;
    return nodes.size() == 1 ? nodes.front() : &none;
}

/// All elements of a class.
inline std::vector<const PageNode *> ofClass(const PageTree &page, const char *name)
{
    return page.root().all([&](const PageNode &node) { return node.isOfClass(name); });
}

/// Columns of random documents, and their rows: `count` documents from that seed on, with that many changes each.
inline void addRandomDocuments()
{
    const Rows<int, int, int> row("seed", "changes", "count");
    row("as made", 0, 0, 60);
    row("changed", 1000, 6, 60);
    row("changed much", 2000, 60, 40);
}

/// The lines in alphabetical order.
inline QString sorted(QStringList lines)
{
    lines.sort();
    return lines.join(QLatin1Char('\n'));
}
