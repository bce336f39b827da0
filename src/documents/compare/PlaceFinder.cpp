// SPDX-License-Identifier: MIT
#include "documents/compare/PlaceFinder.h"

#include <QStringList>

#include <tunerdocuments/Patch.h>
#include <tunerdocuments/Path.h>

#include "documents/values/FindMember.h"

using namespace JobXml;

namespace TunerDocuments {

QString joinedPath(const QString &path, const QString &step)
{
    return path.isEmpty() ? step : path + QLatin1Char('/') + step;
}

namespace {

/// The steps of a path as they are written.
QStringList stepsOf(const QString &path)
{
    QStringList steps{QString()};
    bool isQuoted = false;
    for (int i = 0; i < path.size(); ++i) {
        const QChar character = path[i];
        if (character == QLatin1Char('"'))
            isQuoted = !isQuoted;
        if (character == QLatin1Char('/') && !isQuoted) {
            steps.append(QString());
            continue;
        }
        steps.last() += character;
        if (isQuoted && character == QLatin1Char('\\') && i + 1 < path.size())
            steps.last() += path[++i];
    }
    return steps;
}

/// Steps that are not written as the library writes them.
ChangePlace otherwise(const DataObject &object, QVector<Step> steps, const QString &text, const QString &path)
{
    try {
        const Paths::Target target = Paths::find(object, text);
        for (int i = 0; i + 1 < target.steps.size(); ++i)
            steps.append(target.steps[i]);
        return {steps, target.member, target.steps.last().index};
    } catch (const PathFailure &failure) {
        const QString prefix = path.left(path.size() - text.size());
        throw PatchFailure(prefix.isEmpty() ? prefix : prefix.left(prefix.size() - 1), failure.text());
    }
}

const DataObject &childAt(const ChangePlace &place, const QString &path)
{
    if (!holdsObjects(place.member))
        throw PatchFailure(path, QStringLiteral("is a value and has no members"));
    const bool isList = place.member.GetKind() == MemberKind::ObjectList;
    if (isList && place.index < 0 && place.member.GetSize() != 1)
        throw PatchFailure(path, QStringLiteral("is a list; select an item"));
    if (place.member.GetSize() == 0)
        throw PatchFailure(path, QStringLiteral("has no data"));
    return place.member.GetChild(qMax(place.index, 0));
}

} // namespace

ChangePlace PlaceFinder::find(const QString &path, bool isNew)
{
    const QStringList texts = stepsOf(path);
    const DataObject *object = &m_root;
    QVector<Step> steps;
    QString passed;
    for (int i = 0; i < texts.size(); ++i) {
        const bool isLast = i + 1 == texts.size();
        ChangePlace place = memberIn(*object, steps, texts[i], isLast && isNew, joinedPath(passed, texts[i]));
        if (isLast)
            return place;
        passed = joinedPath(passed, texts[i]);
        steps = place.stepsToChild();
        object = &childAt(place, passed);
    }
    throw PatchFailure(path, QStringLiteral("the path is empty"));
}

ChangePlace PlaceFinder::memberIn(const DataObject &object, const QVector<Step> &steps, const QString &text, bool isNew,
                                  const QString &path)
{
    const auto member = memberNamed(object, text.left(text.indexOf(QLatin1Char('['))));
    const bool hasSelection = text.contains(QLatin1Char('['));
    if (!member || (hasSelection && member->GetKind() != MemberKind::ObjectList))
        return otherwise(object, steps, text, path);
    if (!hasSelection || isNew)
        return {steps, *member, -1};
    const QHash<QString, int> &known = indexesIn(object, *member);
    const auto found = known.find(text);
    return found == known.end() ? otherwise(object, steps, text, path) : ChangePlace{steps, *member, *found};
}

const QHash<QString, int> &PlaceFinder::indexesIn(const DataObject &object, const MemberView &list)
{
    QHash<QString, int> &known = m_indexes[{&object, list.GetName()}];
    if (known.isEmpty()) {
        const QStringList steps = Paths::stepsTo(list);
        for (int i = 0; i < steps.size(); ++i)
            known.insert(steps[i], i);
    }
    return known;
}

} // namespace TunerDocuments
