// SPDX-License-Identifier: MIT
#include "documents/lint/LostTexts.h"

#include <tunerdocuments/Lint.h>

#include "documents/lint/Report.h"
#include "documents/lint/TextWalk.h"

using REPORTGENERATOR::XmlMarkup;

namespace TunerDocuments {

namespace {

/// A version is lost as well: it is not a part of the description. What UnreadParts finds is left to it, since it knows
/// the text that is lost.
LintOptions rulesAboutLosses()
{
    QStringList disabled = LintOptions::lostByReading().disabled();
    disabled.removeAll(QStringLiteral("unknown-version"));
    disabled.removeAll(QStringLiteral("reset-by-version"));
    disabled += {QStringLiteral("repeated-member"), QStringLiteral("repeated-alternative"),
                 QStringLiteral("stray-text"), QStringLiteral("element-in-value")};
    return LintOptions().setDisabled(disabled);
}

} // namespace

void visitLostTexts(const Document &document, const XmlMarkup &markup,
                    const std::function<void(const Finding &finding, int offset)> &action)
{
    if (!canLintText(markup))
        return;
    static const LintOptions options = rulesAboutLosses();
    Report report(document, options);
    report.beginWalk();
    lintText(markup, report, nullptr);
    LineCounter counter(markup.document());
    int offset = 0;
    const Locate locate = [&](int at) {
        offset = at;
        return counter.at(at);
    };
    report.visit([&](const Finding &finding) { action(finding, offset); }, locate);
}

} // namespace TunerDocuments
