// SPDX-License-Identifier: MIT
#include <tunerdocuments/Finding.h>

#include <jobxml/Visit.h>

#include <tunerdocuments/Path.h>

using JobXml::Problem;

namespace TunerDocuments {

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

/// Whether the member of the object at the end of the steps is a list of objects.
bool isListOfObjects(JobXml::DataObject &sample, const QVector<JobXml::Step> &steps, const QString &name, int depth = 0)
{
    bool result = false;
    JobXml::visit(sample, [&](JobXml::MemberEditor &member) {
        if (member.GetName() != (depth < steps.size() ? steps[depth].member : name))
            return;
        const bool isList = member.GetKind() == JobXml::MemberKind::ObjectList;
        if (depth == steps.size())
            result = isList;
        else
            result = isListOfObjects(isList ? member.AppendChild() : member.EditChild(), steps, name, depth + 1);
    });
    return result;
}

} // namespace

Finding findingOf(const Problem &problem)
{
    Finding result;
    result.message = shortMessage(problem.message);
    result.member = problem.member;
    result.line = problem.line;
    result.column = problem.column;
    if (!result.hasLocation())
        result.steps = problem.steps;
    return result;
}

QString Finding::text(const QString &fileName) const
{
    const QString where = path.isEmpty() ? QString() : path + QStringLiteral(": ");
    if (hasLocation())
        return fileName + QStringLiteral(":%1:%2: ").arg(line).arg(column) + where + message;
    return fileName + QStringLiteral(": ") + where + message;
}

bool KeptItems::contain(const Problem &problem)
{
    const QString className = problem.steps.isEmpty() ? QString() : problem.steps.last().member;
    const QString key = className + QLatin1Char('/') + problem.member;
    const auto known = m_known.constFind(key);
    if (known != m_known.constEnd())
        return *known;
    JobXml::TunerProperties sample;
    sample.SetValidate(false);
    return *m_known.insert(key, isListOfObjects(sample, problem.steps, problem.member));
}

void Findings::add(const Problem &problem)
{
    if (problem.xmlOnly)
        return;
    const bool isInXml = problem.line > 0;
    const bool isInRecords = !isInXml && problem.offset >= 0;
    List &list = isInRecords || (isInXml && m_keptItems.contain(problem)) ? m_heldBack : m_problems;
    if (list.listed.size() < m_most)
        list.listed.append(findingOf(problem));
    ++list.count;
}

void Findings::add(const Finding &finding)
{
    if (m_problems.listed.size() < m_most)
        m_problems.listed.append(finding);
    ++m_problems.count;
}

void Findings::addUnlisted(qint64 number)
{
    m_problems.count += number;
}

void Findings::describePaths(const JobXml::TunerProperties &document)
{
    Paths::Texts paths(document);
    for (List *list : {&m_problems, &m_heldBack}) {
        for (Finding &finding : list->listed) {
            if (!finding.hasLocation())
                finding.path = paths.of(finding.steps);
        }
    }
}

QString countText(qint64 count, int listed)
{
    if (listed == 1)
        return QStringLiteral("%1 problems; only the first is listed").arg(count);
    return QStringLiteral("%1 problems; only the first %2 are listed").arg(count).arg(listed);
}

QStringList Findings::lines(const QString &fileName, const QString &hint) const
{
    QStringList result;
    for (const Finding &finding : listed())
        result.append(finding.text(fileName));
    if (count() > listed().size())
        result.append(fileName + QStringLiteral(": ") + countText(count(), listed().size()) + hint);
    return result;
}

} // namespace TunerDocuments
