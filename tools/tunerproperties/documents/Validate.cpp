// SPDX-License-Identifier: MIT
#include "documents/Validate.h"

#include "console/Console.h"
#include "documents/XmlProblems.h"

using JobXml::Problem;
using JobXml::TunerProperties;

namespace {

constexpr QChar ellipsis(0x2026);

/// The first characters, without the first half of a pair at the end.
QString beginning(const QString &text, int size)
{
    return text.left(text.at(size - 1).isHighSurrogate() ? size - 1 : size);
}

QString shortMessage(const QString &message)
{
    constexpr int most = 400;
    constexpr int head = 250;
    constexpr int tail = 100; // names the object
    if (message.size() <= most)
        return message;
    const QString end = message.right(tail);
    return beginning(message, head) + ellipsis + (end.at(0).isLowSurrogate() ? end.mid(1) : end);
}

/// `Component 3 "Preselect..."`: with the position, since the shortened names of siblings may be the same.
QString shortLabel(const QString &label, int index)
{
    constexpr int most = 80;
    constexpr int head = 60;
    const int nameSize = label.indexOf(QLatin1Char(' '));
    if (label.size() <= most || nameSize < 0)
        return label;
    const QString position = index < 0 ? QString() : QLatin1Char(' ') + QString::number(index + 1);
    return label.left(nameSize) + position + beginning(label, head).mid(nameSize) + ellipsis + QLatin1Char('"');
}

Finding findingOf(const XmlProblem &problem)
{
    return {{}, problem.line, problem.column, shortMessage(problem.message)};
}

/// What counts of a problem that is not listed.
Finding unlisted(const XmlProblem &problem)
{
    return {{}, problem.line, problem.column, {}};
}

Finding unlisted(const Problem &)
{
    return {};
}

/// Adds what a validating reader rejects although nothing else was found, for example in a value that a later one has
/// replaced.
void addTheRest(Findings &findings, Input &input, Form form)
{
    if (form == Form::Xml) {
        if (const auto refusal = firstXmlRefusal(input.bytes()))
            findings.add(findingOf(*refusal));
        return;
    }
    TunerProperties validating;
    try {
        Forms::load(validating, input, form);
    } catch (const FileFailure &failure) {
        const QString name = input.shownName() + QStringLiteral(": ");
        const QString text = failure.text();
        findings.add({{}, 0, 0, shortMessage(text.startsWith(name) ? text.mid(name.size()) : text)});
    }
}

} // namespace

Finding findingOf(const Problem &problem)
{
    Finding result{{}, 0, 0, shortMessage(problem.message), problem.steps};
    for (int i = 0; i < problem.path.size(); ++i)
        result.path.append(shortLabel(problem.path.at(i), problem.steps.at(i).index));
    return result;
}

QString Finding::text(const QString &fileName) const
{
    if (hasLocation())
        return fileName + QStringLiteral(":%1:%2: ").arg(line).arg(column) + message;
    const QString where = path.isEmpty() ? QString() : path.join(QStringLiteral(" / ")) + QStringLiteral(": ");
    return fileName + QStringLiteral(": ") + where + message;
}

QString countText(qint64 count, int listed)
{
    if (listed == 1)
        return QStringLiteral("%1 problems; only the first is listed").arg(count);
    return QStringLiteral("%1 problems; only the first %2 are listed").arg(count).arg(listed);
}

QStringList Findings::lines(const QString &fileName) const
{
    QStringList result;
    for (const Finding &finding : m_listed)
        result.append(finding.text(fileName));
    if (m_count > m_listed.size())
        result.append(fileName + QStringLiteral(": ") + countText(m_count, m_listed.size())
                      + QStringLiteral("; use --max-problems to list more"));
    return result;
}

Findings findProblems(const TunerProperties &document, Input &input, Form form, int most)
{
    Findings findings(most);
    const auto add = [&](const auto &problem) {
        findings.add(findings.hasRoom() ? findingOf(problem) : unlisted(problem));
    };
    if (form == Form::Xml)
        findXmlProblems(input.bytes(), add);
    document.VisitProblems([&](const Problem &problem) {
        if (!problem.xmlOnly) // other forms carry it, and XML never holds it
            add(problem);
    });
    if (findings.isEmpty())
        addTheRest(findings, input, form);
    return findings;
}
