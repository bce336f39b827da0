// SPDX-License-Identifier: MIT
#include <tunerdocuments/Finding.h>

#include <QHash>

#include <jobxml/Visit.h>

#include <tunerdocuments/Path.h>

#include "documents/findings/Explanation.h"
#include "documents/findings/ModelMember.h"

using JobXml::MemberKind;
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

} // namespace

Finding findingOf(const Problem &problem)
{
    Finding result;
    result.message = shortMessage(problem.message);
    result.member = problem.member;
    result.line = problem.line;
    result.column = problem.column;
    result.steps = problem.steps;
    Explanation::explainText(result, problem.steps, problem.value);
    return result;
}

QString Finding::place() const
{
    if (path.isEmpty() || member.isNull())
        return path + member;
    return path + QLatin1Char('/') + member;
}

QString Finding::explained() const
{
    const bool isWarning = kind == Kind::Warning;
    const QString &more = isWarning ? suggestion : explanation;
    if (more.isNull())
        return message;
    if (!isWarning && message.endsWith(QLatin1Char('.')))
        return message + QLatin1Char(' ') + more.at(0).toUpper() + more.mid(1);
    return message + (isWarning ? QStringLiteral("; ") : QStringLiteral(": ")) + more;
}

QString Finding::text(const QString &fileName) const
{
    const bool isWarning = kind == Kind::Warning;
    const QString location = hasLocation() ? QStringLiteral(":%1:%2").arg(line).arg(column) : QString();
    const QString where = isWarning ? place() : path;
    const QString end = isWarning ? QLatin1String(isError ? " [error: " : " [") + rule + QLatin1Char(']') : QString();
    return fileName + location + (where.isEmpty() ? QString() : QStringLiteral(": ") + where) + QStringLiteral(": ")
        + explained() + end;
}

QString Finding::level() const
{
    return kind == Kind::Problem || isError ? QStringLiteral("error") : QStringLiteral("warning");
}

namespace {

/// The first findings of one kind, and the number of all.
struct List
{
    QVector<Finding> listed;
    qint64 count = 0;
};

/// The place of a member as a key.
QString keyOf(const QVector<JobXml::Step> &steps, const QString &member)
{
    QString key;
    for (const JobXml::Step &step : steps)
        key += step.member + QLatin1Char('/') + QString::number(step.index) + QLatin1Char('/');
    return key + member;
}

} // namespace

class Q_DECL_HIDDEN Findings::Private : public QSharedData
{
public:
    explicit Private(int mostKept) : most(mostKept) { }

    const List &shown() const { return problems.count > 0 ? problems : heldBack; }
    List &shown() { return problems.count > 0 ? problems : heldBack; }
    void noteRefused(const Problem &problem);
    void describeValue(Finding &finding, const JobXml::TunerProperties &document) const;

    int most;
    List problems;
    List heldBack; // what readers have refused
    List warnings;
    QHash<QString, QString> refused; // the names that readers have refused, by their members
};

/// Notes a name that a reader refuses, since the document does not have it: it then has a value without a name, which
/// is a problem of its own. The last name counts, and the first one of a list.
void Findings::Private::noteRefused(const Problem &problem)
{
    if (problem.value.isNull())
        return;
    const ModelMember *const member = memberOf(problem.steps, problem.member);
    if (!member || member->names.isEmpty())
        return;
    const QString key = keyOf(problem.steps, problem.member);
    if (member->kind != MemberKind::EnumerationList || !refused.contains(key))
        refused.insert(key, problem.value);
}

/// For a problem that the check of the model has found: it does not know the value.
void Findings::Private::describeValue(Finding &finding, const JobXml::TunerProperties &document) const
{
    if (!finding.value.isNull() || finding.choices.isEmpty() || finding.member.isNull())
        return;
    const auto member = Paths::at(document, finding.steps + QVector<JobXml::Step>{{finding.member, -1}});
    if (const auto number = member ? Explanation::numberIn(member->GetValue()) : std::nullopt)
        Explanation::explainNumber(finding, *number);
    else
        Explanation::explainText(finding, finding.steps, refused.value(keyOf(finding.steps, finding.member)));
}

Findings::Findings() : Findings(std::numeric_limits<int>::max()) { }
Findings::Findings(int most) : d(new Private(most)) { }
Findings::Findings(const Findings &) = default;
Findings::Findings(Findings &&) noexcept = default;
Findings &Findings::operator=(const Findings &) = default;
Findings &Findings::operator=(Findings &&) noexcept = default;
Findings::~Findings() = default;

int Findings::most() const
{
    return d->most;
}

void Findings::add(const Problem &problem)
{
    if (problem.xmlOnly)
        return;
    Private &own = *d;
    own.noteRefused(problem);
    const bool isInXml = problem.line > 0;
    const bool isInRecords = !isInXml && problem.offset >= 0;
    List &list = isInRecords || (isInXml && isAboutKeptItem(problem)) ? own.heldBack : own.problems;
    if (list.listed.size() < own.most)
        list.listed.append(findingOf(problem));
    ++list.count;
}

void Findings::add(const Finding &finding)
{
    Private &own = *d;
    List &problems = own.problems;
    if (problems.listed.size() < own.most)
        problems.listed.append(finding);
    ++problems.count;
}

void Findings::addUnlisted(qint64 number)
{
    d->problems.count += number;
}

JobXml::ProblemVisitor Findings::collector()
{
    return [this](const Problem &problem) { add(problem); };
}

void Findings::describePaths(const JobXml::TunerProperties &document)
{
    Paths::Texts paths(document);
    for (List *list : {&d->problems, &d->heldBack}) {
        for (Finding &finding : list->listed) {
            if (finding.hasLocation())
                continue;
            finding.path = paths.of(finding.steps);
            d->describeValue(finding, document);
        }
    }
}

void Findings::changeProblems(const std::function<void(Finding &problem)> &change)
{
    for (Finding &finding : d->shown().listed)
        change(finding);
}

void Findings::addWarnings(const QVector<Finding> &first, qint64 count)
{
    d->warnings.listed += first;
    d->warnings.count += count;
}

const QVector<Finding> &Findings::listed() const
{
    return d->shown().listed;
}

qint64 Findings::count() const
{
    return d->shown().count;
}

bool Findings::isEmpty() const
{
    return count() == 0;
}

const QVector<Finding> &Findings::warnings() const
{
    return d->warnings.listed;
}

qint64 Findings::warningCount() const
{
    return d->warnings.count;
}

QString countText(qint64 count, int listed, const QString &what)
{
    if (listed == 1)
        return QStringLiteral("%1 %2; only the first is listed").arg(count).arg(what);
    return QStringLiteral("%1 %2; only the first %3 are listed").arg(count).arg(what).arg(listed);
}

QStringList Findings::lines(const QString &fileName, const QString &hint) const
{
    QStringList result;
    const auto add = [&](const List &list, const QString &what) {
        for (const Finding &finding : list.listed)
            result.append(finding.text(fileName));
        if (list.count > list.listed.size())
            result.append(fileName + QStringLiteral(": ") + countText(list.count, int(list.listed.size()), what)
                          + hint);
    };
    add(d->shown(), QStringLiteral("problems"));
    add(d->warnings, QStringLiteral("warnings"));
    return result;
}

} // namespace TunerDocuments
