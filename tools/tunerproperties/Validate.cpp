// SPDX-License-Identifier: MIT
#include "Validate.h"

#include "Console.h"
#include "XmlProblems.h"

using JobXml::Problem;
using JobXml::TunerProperties;

namespace {

QString lineFor(const QString &fileName, const XmlProblem &problem)
{
    return fileName + QStringLiteral(":%1:%2: ").arg(problem.line).arg(problem.column) + problem.message;
}

QString lineFor(const QString &fileName, const Problem &problem)
{
    const QString path =
        problem.path.isEmpty() ? QString() : problem.path.join(QStringLiteral(" / ")) + QStringLiteral(": ");
    return fileName + QStringLiteral(": ") + path + problem.message;
}

/// What is refused although nothing else was found: something in a value that another one has replaced, for instance.
QStringList findTheRest(Input &input, Form form)
{
    if (form == Form::Xml) {
        const auto refusal = firstXmlRefusal(input.bytes());
        return refusal ? QStringList{lineFor(input.name(), *refusal)} : QStringList();
    }
    TunerProperties validating;
    try {
        Forms::load(validating, input, form);
    } catch (const FileFailure &failure) {
        return {failure.text()};
    }
    return {};
}

} // namespace

QStringList findProblems(const TunerProperties &document, Input &input, Form form)
{
    QStringList lines;
    if (form == Form::Xml) {
        const QVector<XmlProblem> problems = findXmlProblems(input.bytes());
        for (const XmlProblem &problem : problems)
            lines.append(lineFor(input.name(), problem));
    }
    const QVector<Problem> problems = document.GetProblems();
    for (const Problem &problem : problems)
        lines.append(lineFor(input.name(), problem));
    if (lines.isEmpty() && !document.HasData())
        lines.append(input.name() + QStringLiteral(": the document has no data, so nothing would be written"));
    return lines.isEmpty() ? findTheRest(input, form) : lines;
}
