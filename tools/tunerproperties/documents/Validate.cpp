// SPDX-License-Identifier: MIT
#include "documents/Validate.h"

using JobXml::Problem;

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

} // namespace

Finding findingOf(const Problem &problem)
{
    Finding result{{}, problem.line, problem.column, shortMessage(problem.message)};
    if (result.hasLocation())
        return result;
    result.steps = problem.steps;
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

void Findings::add(const Problem &problem)
{
    if (problem.xmlOnly)
        return;
    if (m_listed.size() < m_most)
        m_listed.append(findingOf(problem));
    ++m_count;
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
