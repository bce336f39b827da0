// SPDX-License-Identifier: MIT
#include "documents/html/Changes.h"

#include <utility>

#include <tunerdocuments/Path.h>

#include "documents/html/Members.h"

using JobXml::DataObject;
using JobXml::MemberView;
using JobXml::Step;

namespace TunerDocuments {

namespace {

/// The document, a card, and a node in it.
constexpr int mostLevels = 2;

/// The first steps of a path. A slash in quotes separates none.
QString beginning(const QString &path, int steps)
{
    bool isQuoted = false;
    for (int i = 0; i < path.size(); ++i) {
        const QChar character = path.at(i);
        if (character == QLatin1Char('"'))
            isQuoted = !isQuoted;
        else if (isQuoted && character == QLatin1Char('\\'))
            ++i;
        else if (!isQuoted && character == QLatin1Char('/') && --steps == 0)
            return path.left(i);
    }
    return path;
}

bool isWhole(const Difference &difference)
{
    return difference.kind == Difference::Added || difference.kind == Difference::Removed;
}

class Grouping
{
public:
    Grouping(const DataObject &first, const DataObject &second) : m_first(first), m_second(second) { }

    void add(const Difference &difference, ChangeGroup &group, int level = 0)
    {
        group.counts.add(difference.kind);
        ChangeGroup *const inner = level < mostLevels ? groupWithin(group, difference, level) : nullptr;
        if (!inner) {
            group.rows.append(&difference);
        } else if (placeOf(difference).steps.size() == level + 1 && isWhole(difference)) {
            inner->whole = &difference;
            inner->counts.add(difference.kind);
        } else {
            add(difference, *inner, level + 1);
        }
    }

private:
    /// The group of the object with lists of its own that the difference is in, or is about; null if there is none.
    ChangeGroup *groupWithin(ChangeGroup &outer, const Difference &difference, int level) const
    {
        const DifferencePlace &place = placeOf(difference);
        if (place.steps.size() <= level || place.steps.at(level).index < 0)
            return nullptr;
        const bool isAboutWhole = place.steps.size() == level + 1 && isWhole(difference);
        const QString path = beginning(difference.path, level + 1);
        ChangeGroup *const last = outer.groups.empty() ? nullptr : &outer.groups.back();
        // The differences of an object follow each other.
        if (last && !last->whole && !isAboutWhole && last->path == path)
            return last;
        ChangeGroup inner;
        inner.path = path;
        inner.steps = place.steps.mid(0, level + 1);
        inner.isInSecond = !difference.first.isThere();
        const auto list = Paths::at(inner.isInSecond ? m_second : m_first, inner.steps);
        if (!list || inner.steps.last().index >= list->GetSize())
            return nullptr;
        inner.object = &list->GetChild(inner.steps.last().index);
        const Members members(*inner.object);
        if (!members.find(isList))
            return nullptr;
        outer.groups.push_back(std::move(inner));
        return &outer.groups.back();
    }

    const DataObject &m_first;
    const DataObject &m_second;
};

} // namespace

const char *nameOf(Difference::Kind kind)
{
    switch (kind) {
    case Difference::Removed:
        return "removed";
    case Difference::Added:
        return "added";
    case Difference::Changed:
        return "changed";
    case Difference::Moved:
        return "moved";
    case Difference::Renamed:
        break;
    }
    return "renamed";
}

const DifferencePlace &placeOf(const Difference &difference)
{
    return difference.first.isThere() ? difference.first : difference.second;
}

ChangeGroup groupedChanges(const DataObject &first, const DataObject &second, const QVector<Difference> &differences)
{
    ChangeGroup document;
    Grouping grouping(first, second);
    for (const Difference &difference : differences)
        grouping.add(difference, document);
    return document;
}

} // namespace TunerDocuments
