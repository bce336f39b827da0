// SPDX-License-Identifier: MIT
#include <tunerdocuments/Lint.h>

#include <algorithm>

#include <reportbase/XmlMarkup.h>

#include "documents/lint/LintedObject.h"
#include "documents/lint/TextWalk.h"
#include "documents/xml/EncodedText.h"

using REPORTGENERATOR::XmlMarkup;

namespace TunerDocuments {

const QVector<LintRule> &lintRules()
{
    static const QVector<LintRule> rules = [] {
        QVector<LintRule> result;
        for (const Rule &rule : allRules())
            result.append(
                {QString::fromLatin1(rule.name), QString::fromLatin1(rule.finds), QString::fromLatin1(rule.why)});
        return result;
    }();
    return rules;
}

namespace {

constexpr quint64 everyRule = ~quint64(0);

qint64 lintModel(const Document &document, Report &report, const FindingVisitor &visitor)
{
    report.beginWalk();
    lintObjects(document.tuner, everyRule, nullptr, report);
    report.visit(visitor, nullptr);
    return report.count();
}

/// Sets line and column of the problems that have a path only.
void locate(Findings &problems, const Places &places, const QByteArray &utf8)
{
    QVector<QPair<int, Finding *>> found;
    Places::Cursors cursors;
    problems.changeProblems([&](Finding &problem) {
        const int offset = problem.hasLocation() ? -1 : places.find(problem.steps, problem.member, cursors).offset;
        if (offset >= 0)
            found.append({offset, &problem});
    });
    std::sort(found.begin(), found.end());
    LineCounter counter(utf8);
    for (const auto &place : qAsConst(found)) {
        counter.advanceTo(place.first);
        place.second->line = counter.line();
        place.second->column = counter.column();
    }
}

/// `problems` receive their places; may be null.
qint64 lintWithText(const Document &document, const QByteArray &text, const FindingVisitor &visitor,
                    const LintOptions &options, Findings *problems)
{
    Report report(document, options);
    if (document.form != Form::Xml || text.isNull())
        return lintModel(document, report, visitor);
    const EncodedText encoded(text);
    const XmlMarkup markup(encoded.utf8());
    if (!canLintText(markup))
        return lintModel(document, report, visitor);

    report.beginWalk();
    const bool hasComments = applyComments(markup, report);
    Places places(markup);
    Places *const needed = hasComments || options.most > 0 ? &places : nullptr;
    quint64 rules = everyRule & ~rulesAboutText();
    if (!lintText(markup, report, needed))
        rules &= ~rulesAboutAlternatives();
    report.beginWalk();
    lintObjects(document.tuner, rules, needed, report);
    report.visit(visitor, &encoded.utf8());
    if (problems && needed)
        locate(*problems, places, encoded.utf8());
    return report.count();
}

} // namespace

qint64 lint(const Document &document, const FindingVisitor &visitor, const LintOptions &options)
{
    Report report(document, options);
    return lintModel(document, report, visitor);
}

qint64 lint(const Document &document, const QByteArray &text, const FindingVisitor &visitor, const LintOptions &options)
{
    return lintWithText(document, text, visitor, options, nullptr);
}

void lint(const Document &document, const QByteArray &text, Findings &findings, const LintOptions &options)
{
    LintOptions kept = options;
    kept.most = std::min(options.most, qint64(findings.most()));
    QVector<Finding> warnings;
    const auto visitor = [&](const Finding &finding) { warnings.append(finding); };
    const qint64 count = lintWithText(document, text, visitor, kept, &findings);
    findings.addWarnings(warnings, count);
}

} // namespace TunerDocuments
