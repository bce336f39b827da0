// SPDX-License-Identifier: MIT
#pragma once

#include "html/Html.h"
#include "tools/html/PageTree.h"

/// The problems of a document that was in no file.
inline QVector<Finding> findingsOf(const JobXml::TunerProperties &document)
{
    QVector<Finding> findings;
    for (const JobXml::Problem &problem : document.GetProblems())
        findings.append({problem.path, 0, 0, problem.message, problem.steps});
    return findings;
}

inline PageTree pageOf(const JobXml::TunerProperties &document)
{
    return PageTree(html(document, findingsOf(document), QStringLiteral("file.xml")));
}

/// The one element that there is; one without anything if there is none, or more.
inline const PageNode *only(const std::vector<const PageNode *> &nodes)
{
    static const PageNode none;
    return nodes.size() == 1 ? nodes.front() : &none;
}
