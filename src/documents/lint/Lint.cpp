// SPDX-License-Identifier: MIT
#include <tunerdocuments/Lint.h>

#include <algorithm>
#include <optional>

#include <reportbase/XmlMarkup.h>

#include "documents/lint/Comments.h"
#include "documents/lint/LintedObject.h"
#include "documents/lint/LintedText.h"
#include "documents/lint/TextWalk.h"
#include "documents/xml/EncodedText.h"
#include "json/JsonText.h"

using JobXml::TunerProperties;
using REPORTGENERATOR::XmlMarkup;

namespace TunerDocuments {

namespace {

LintRule describe(const Rule &rule)
{
    LintRule result;
    result.name = QString::fromLatin1(rule.name);
    result.finds = QString::fromLatin1(rule.finds);
    result.why = QString::fromLatin1(rule.why);
    return result;
}

} // namespace

const QVector<LintRule> &lintRules()
{
    static const QVector<LintRule> rules = [] {
        QVector<LintRule> result;
        for (const Rule &rule : allRules())
            result.append(describe(rule));
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
    report.visit(visitor);
    return report.count();
}

/// Sets line and column of the problems that have a path only. `find(problem)` returns their offset.
template <class Find>
void locateProblems(Findings &problems, const Find &find, const Locate &locate)
{
    QVector<QPair<int, Finding *>> found;
    problems.changeProblems([&](Finding &problem) {
        const int offset = problem.hasLocation() ? -1 : find(problem);
        if (offset >= 0)
            found.append({offset, &problem});
    });
    std::sort(found.begin(), found.end());
    for (const auto &place : qAsConst(found)) {
        const TextLocation location = locate(place.first);
        place.second->line = location.line;
        place.second->column = location.column;
    }
}

/// What is examined, and who receives the result.
struct Task
{
    const Document &document;
    const QByteArray &text;
    const FindingVisitor &visitor;
    const LintOptions &options;
    Findings *problems; ///< receive their places; may be null
};

qint64 lintXml(const Task &task, Report &report)
{
    const EncodedText encoded(task.text);
    const XmlMarkup markup(encoded.utf8());
    if (!canLintText(markup))
        return lintModel(task.document, report, task.visitor);

    report.beginWalk();
    const bool hasComments = applyComments(markup, report);
    Places places(markup);
    Places *const needed = hasComments || task.options.most() > 0 ? &places : nullptr;
    quint64 rules = everyRule & ~rulesAboutText();
    if (!lintText(markup, report, needed))
        rules &= ~rulesAboutAlternatives();
    report.beginWalk();
    lintObjects(task.document.tuner, rules, needed, report);

    const auto newLocate = [&]() -> Locate {
        return [counter = LineCounter(encoded.utf8())](int offset) mutable { return counter.at(offset); };
    };
    report.visit(task.visitor, newLocate());
    Places::Cursors cursors;
    const auto find = [&](const Finding &problem) {
        return places.find(problem.steps, problem.member, cursors).offset;
    };
    if (task.problems && needed)
        locateProblems(*task.problems, find, newLocate());
    return report.count();
}

void lintVersion(const QString &version, int offset, const TunerProperties &tuner, Report &report)
{
    const std::vector<LintStep> noSteps;
    LintedText linted(noSteps, {offset, -1}, report);
    linted.form = Form::Json;
    linted.text = version;
    linted.presentVersion = tuner.GetVersion();
    linted.check(TextSubject::Version);
}

/// Of the rules about the text, only those about the version apply to JSON: its reader neither converts nor skips.
qint64 lintJson(const Task &task, Report &report)
{
    const TunerProperties &tuner = task.document.tuner;
    report.beginWalk();
    if (task.options.most() <= 0) { // no finding needs a place
        lintVersion(tuner.GetInitialVersionLoaded(), JsonPlaces::none, tuner, report);
        return lintModel(task.document, report, task.visitor);
    }
    std::optional<JsonPlaces> places;
    try {
        places.emplace(task.text);
    } catch (const JsonFailure &) {
        return lintModel(task.document, report, task.visitor);
    }
    lintVersion(places->version(), places->placeOfVersion(), tuner, report);
    report.setPlaces(*places);
    report.beginWalk();
    lintObjects(tuner, everyRule, nullptr, report);
    TextLocator locator(task.text);
    const Locate locate = [&](int offset) { return locator.at(offset); };
    report.visit(task.visitor, locate);
    const auto find = [&](const Finding &problem) { return places->find(problem.steps, problem.member); };
    if (task.problems)
        locateProblems(*task.problems, find, locate);
    return report.count();
}

qint64 lintWithText(const Task &task)
{
    Report report(task.document, task.options);
    if (!task.text.isNull() && task.document.form == Form::Xml)
        return lintXml(task, report);
    if (!task.text.isNull() && task.document.form == Form::Json)
        return lintJson(task, report);
    return lintModel(task.document, report, task.visitor);
}

} // namespace

qint64 lint(const Document &document, const FindingVisitor &visitor, const LintOptions &options)
{
    Report report(document, options);
    return lintModel(document, report, visitor);
}

qint64 lint(const Document &document, const QByteArray &text, const FindingVisitor &visitor, const LintOptions &options)
{
    return lintWithText({document, text, visitor, options, nullptr});
}

void lint(const Document &document, const QByteArray &text, Findings &findings, const LintOptions &options)
{
    LintOptions kept = options;
    kept.setMost(std::min(options.most(), qint64(findings.most())));
    QVector<Finding> warnings;
    const FindingVisitor visitor = [&](const Finding &finding) { warnings.append(finding); };
    const qint64 count = lintWithText({document, text, visitor, kept, &findings});
    findings.addWarnings(warnings, count);
}

} // namespace TunerDocuments
