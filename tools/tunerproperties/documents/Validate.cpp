// SPDX-License-Identifier: MIT
#include "documents/Validate.h"

#include "Console.h"
#include "documents/XmlProblems.h"

using JobXml::Problem;
using JobXml::TunerProperties;

namespace {

Finding finding(const XmlProblem &problem)
{
    return {{}, problem.line, problem.column, problem.message};
}

/// What is refused although nothing else was found: something in a value that another one has replaced, for instance.
QVector<Finding> findTheRest(Input &input, Form form)
{
    if (form == Form::Xml) {
        const auto refusal = firstXmlRefusal(input.bytes());
        return refusal ? QVector<Finding>{finding(*refusal)} : QVector<Finding>();
    }
    TunerProperties validating;
    try {
        Forms::load(validating, input, form);
    } catch (const FileFailure &failure) {
        const QString name = input.shownName() + QStringLiteral(": ");
        const QString text = failure.text();
        return {{{}, 0, 0, text.startsWith(name) ? text.mid(name.size()) : text}};
    }
    return {};
}

} // namespace

QString Finding::text(const QString &fileName) const
{
    if (hasPlace())
        return fileName + QStringLiteral(":%1:%2: ").arg(line).arg(column) + message;
    const QString where = path.isEmpty() ? QString() : path.join(QStringLiteral(" / ")) + QStringLiteral(": ");
    return fileName + QStringLiteral(": ") + where + message;
}

QVector<Finding> findProblems(const TunerProperties &document, Input &input, Form form)
{
    QVector<Finding> findings;
    if (form == Form::Xml) {
        const QVector<XmlProblem> problems = findXmlProblems(input.bytes());
        for (const XmlProblem &problem : problems)
            findings.append(finding(problem));
    }
    const QVector<Problem> problems = document.GetProblems();
    for (const Problem &problem : problems) {
        if (!problem.xmlOnly) // other forms carry it, and XML never holds it
            findings.append({problem.path, 0, 0, problem.message, problem.steps});
    }
    return findings.isEmpty() ? findTheRest(input, form) : findings;
}
