// SPDX-License-Identifier: MIT
#include <tunerdocuments/Finding.h>

#include <QCryptographicHash>
#include <QHash>
#include <QSet>

#include <jobxml/DataObject.h>

using JobXml::Problem;

namespace TunerDocuments {

namespace {

/// A problem for counting. It is a digest, since a document may have a problem for every few bytes.
QByteArray digestOf(const Problem &problem, const QStringList &place)
{
    const QString text = problem.message + QLatin1Char('/') + place.join(QLatin1Char('/'));
    return QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256);
}

/// Which problem it is, wherever the changes have moved its object.
QByteArray kindOf(const Problem &problem)
{
    QStringList members;
    for (const JobXml::Step &step : problem.steps)
        members.append(step.member);
    return digestOf(problem, members);
}

/// The problem at its place, unless its object has another name or position now.
QByteArray placeOf(const Problem &problem)
{
    return digestOf(problem, problem.path);
}

/// Calls the action with each problem of a document in any form, see Findings::add().
template <class Action>
void forEachProblem(const JobXml::TunerProperties &document, const Action &action)
{
    document.VisitProblems([&](const Problem &problem) {
        if (!problem.xmlOnly)
            action(problem);
    });
}

} // namespace

Findings newProblems(const JobXml::TunerProperties &original, const JobXml::TunerProperties &changed, int most)
{
    QHash<QByteArray, int> further; // of each kind
    QSet<QByteArray> known;
    forEachProblem(changed, [&](const Problem &problem) { ++further[kindOf(problem)]; });
    forEachProblem(original, [&](const Problem &problem) {
        --further[kindOf(problem)];
        known.insert(placeOf(problem));
    });
    Findings result(most);
    forEachProblem(changed, [&](const Problem &problem) {
        int &left = further[kindOf(problem)];
        if (left <= 0 || known.contains(placeOf(problem)))
            return;
        --left;
        result.add(problem);
    });
    result.describePaths(changed);
    return result;
}

} // namespace TunerDocuments
