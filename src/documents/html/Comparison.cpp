// SPDX-License-Identifier: MIT
#include "documents/html/Comparison.h"

#include <algorithm>

#include <tunerdocuments/Path.h>

#include "documents/html/Anchor.h"
#include "documents/html/Values.h"

using JobXml::DataObject;
using JobXml::MemberKind;
using JobXml::MemberView;
using JobXml::Step;

namespace TunerDocuments {

namespace {

/// In the order of a summary.
constexpr Difference::Kind kinds[] = {Difference::Added, Difference::Removed, Difference::Changed, Difference::Moved,
                                      Difference::Renamed};

/// With more differences, all cards but the first are closed.
constexpr int mostDifferencesOpen = 100;

bool isAdded(const ChangeGroup &group)
{
    return group.whole && group.whole->kind == Difference::Added;
}

/// The path of the object in a document that has it, as the identifier of its element. An added object is marked: its
/// path may be that of another one in the first document. Links and the script repeat the path, so a long one has
/// positions.
QString identifierOf(const ChangeGroup &group)
{
    constexpr int longest = 800;
    const QString path = isAdded(group) ? group.whole->secondPath : group.path;
    if (anchorOf(path).size() <= longest)
        return isAdded(group) ? QLatin1Char('+') + path : path;
    QStringList positions;
    for (const Step &step : group.steps)
        positions.append(step.member + QStringLiteral("[%1]").arg(step.index + 1));
    return (group.isInSecond ? QStringLiteral("+") : QString()) + positions.join(QLatin1Char('/'));
}

/// "added at 4"
Mark markOf(const Difference &difference)
{
    const QString name = QString::fromLatin1(nameOf(difference.kind));
    const bool isItem = difference.kind == Difference::Added && difference.second.position() >= 0;
    switch (difference.kind) {
    case Difference::Added:
        return {"tally added", isItem ? name + QStringLiteral(" at %1").arg(difference.second.position() + 1) : name};
    case Difference::Removed:
        return {"tally removed", name};
    case Difference::Moved:
        return {"tally", difference.before == difference.after ? name + QStringLiteral(" among its neighbors") : name};
    case Difference::Renamed:
        return {"tally", name};
    case Difference::Changed:
        break;
    }
    return {}; // which most are
}

/// The path without that of the object around it.
QString pathWithin(const QString &path, const QString &outer)
{
    return outer.isEmpty() ? path : path.mid(outer.size() + 1); // null for the object itself
}

/// What a row is about, as the text of a difference has it.
QString labelOf(const Difference &difference, const QString &outer)
{
    const bool isChoice = difference.first.isThere() && difference.first.member->GetKind() == MemberKind::Choice;
    if (isChoice) // the kind of value that an item holds
        return pathWithin(difference.path.left(difference.path.lastIndexOf(QLatin1Char('/'))), outer);
    return pathWithin(difference.path, outer);
}

/// Whether both sides are a value of the model, not a description.
bool isOfValues(const Difference &difference)
{
    return difference.kind == Difference::Changed && isValue(*difference.first.member);
}

} // namespace

Comparison::Comparison(const ComparedDocument &first, const ComparedDocument &second,
                       const QVector<Difference> &differences, Markup &out)
    : m_out(out), m_problems(Findings()), m_objects(out, m_problems), m_cards(out, m_problems), m_first(first),
      m_second(second), m_changes(groupedChanges(first.document, second.document, differences)),
      m_isShort(differences.size() <= mostDifferencesOpen),
      m_isLarge(differences.size() > mostNodesLaidOut), m_unitBefore{first.document}, m_unitAfter{second.document}
{
}

QString Comparison::title() const
{
    return QStringLiteral("Differences of %1 and %2").arg(m_first.source, m_second.source);
}

void Comparison::showHeader()
{
    const Tag header(m_out, "header", {{"class", "hero"}});
    {
        const Tag line(m_out, "p");
        m_out.element("span", {{"class", "badge"}}, "Comparison");
    }
    const Tag heading(m_out, "h1");
    m_out.words("Differences of ");
    showText(m_out, m_first.source);
    m_out.words(" and ");
    showText(m_out, m_second.source);
}

void Comparison::showSummary()
{
    const Tag panel(m_out, "section", {{"class", "panel"}, {"aria-label", "Summary"}});
    {
        const Tag list(m_out, "dl", {{"class", "facts"}});
        const auto fact = [&](const char *name, const char *htmlClass, const auto &show) {
            const Tag element(m_out, "div", {{"class", htmlClass}});
            m_out.element("dt", {{"class", "name"}}, name);
            const Tag description(m_out, "dd");
            show();
        };
        fact("before", "wide", [&] { showText(m_out, m_first.source); });
        fact("after", "wide", [&] { showText(m_out, m_second.source); });
        for (const Difference::Kind kind : kinds)
            fact(nameOf(kind), nullptr, [&] { showNumber(m_out, m_changes.counts.of(kind)); });
    }
    if (m_changes.rows.isEmpty() && m_changes.groups.empty())
        m_out.element("p", {{"class", "fine"}}, "The documents are equal.");
}

void Comparison::showDocument()
{
    if (m_changes.rows.isEmpty())
        return;
    const Tag panel(m_out, "section", {{"class", "panel"}, {"id", "document"}});
    m_out.element("h2", {}, "Document");
    showRows(m_changes);
}

void Comparison::showCards()
{
    const std::vector<ChangeGroup> &groups = m_changes.groups;
    // The cards of one list follow each other.
    for (std::size_t first = 0, end = 0; first < groups.size(); first = end) {
        const QString list = groups[first].steps.last().member;
        while (end < groups.size() && groups[end].steps.last().member == list)
            ++end;
        const Tag section(m_out, "section", {{"class", m_isLarge ? "cards large" : "cards"}});
        {
            const Tag heading(m_out, "h2");
            m_out.words(list + QLatin1Char(' '));
            m_out.element("span", {{"class", "tally"}}, QString::number(end - first));
        }
        inGroups(m_out, int(end - first), mostNodesLaidOut, "shelf", [&](int i) {
            const std::size_t index = first + std::size_t(i);
            showCard(groups[index], m_isShort || index == 0);
        });
    }
}

void Comparison::showCard(const ChangeGroup &card, bool isOpen)
{
    const Step &step = card.steps.last();
    const QString fallbackTitle = step.member + QStringLiteral(" %1").arg(step.index + 1);
    const QString identifier = identifierOf(card);
    if (card.whole) {
        m_cards.showCard(*card.object, fallbackTitle, {ObjectPath(), identifier}, isOpen, markOf(*card.whole));
        return;
    }
    const Tag element(m_out, "details",
                      {{"class", "card"}, {"id", anchorOf(identifier)}, {"open", isOpen ? "open" : nullptr}});
    {
        const Tag summary(m_out, "summary");
        m_cards.showTitle(Members(*card.object), fallbackTitle);
        showTallies(card.counts);
    }
    const Tag inside(m_out, "div", {{"class", "inside"}});
    {
        const Tag path(m_out, "p", {{"class", "where"}});
        showText(m_out, card.path);
    }
    showRows(card);
    const int nodes = int(card.groups.size());
    if (nodes == 0)
        return;
    const Tag list(m_out, "div", {{"class", "nodes grouped compared"}});
    inGroups(m_out, nodes, groupSize, "group", [&](int i) { showNode(card.groups[std::size_t(i)], card.path); });
}

void Comparison::showNode(const ChangeGroup &node, const QString &outer)
{
    const QString identifier = identifierOf(node);
    if (node.whole) {
        m_cards.showNode(*node.object, {ObjectPath(), identifier}, markOf(*node.whole));
        return;
    }
    const Tag element(m_out, "div", {{"class", "node"}, {"id", anchorOf(identifier)}});
    {
        const Tag heading(m_out, "h4");
        const Tag path(m_out, "span", {{"class", "path"}});
        showText(m_out, pathWithin(node.path, outer));
    }
    showRows(node);
}

void Comparison::showTallies(const ChangeCounts &counts)
{
    const Tag tallies(m_out, "span", {{"class", "tallies"}});
    for (const Difference::Kind kind : kinds) {
        const QString text = QString::number(counts.of(kind)) + QLatin1Char(' ') + QLatin1String(nameOf(kind));
        const char *const htmlClass = kind == Difference::Added ? "tally added"
            : kind == Difference::Removed                       ? "tally removed"
                                                                : "tally";
        if (counts.of(kind) != 0)
            m_out.element("span", {{"class", htmlClass}}, text);
    }
}

void Comparison::showRows(const ChangeGroup &group)
{
    if (group.rows.isEmpty())
        return;
    const Tag table(m_out, "table", {{"class", "changes"}});
    {
        const Tag head(m_out, "thead");
        const Tag row(m_out, "tr");
        for (const char *const title : {"member", "before", "after"})
            m_out.element("th", {{"scope", "col"}, {"class", "name"}}, title);
    }
    const Tag body(m_out, "tbody");
    for (const Difference *difference : group.rows)
        showRow(*difference, group.path);
}

void Comparison::showRow(const Difference &difference, const QString &outer)
{
    const Tag row(m_out, "tr", {{"class", nameOf(difference.kind)}});
    {
        const Tag name(m_out, "th", {{"scope", "row"}, {"class", "name"}});
        const QString label = labelOf(difference, outer);
        if (!label.isEmpty()) {
            showText(m_out, label);
            m_out.words(" ");
        }
        m_cards.showMark(markOf(difference));
    }
    showSide("before", difference, difference.first, difference.before, m_unitBefore);
    showSide("after", difference, difference.second, difference.after, m_unitAfter);
}

void Comparison::showSide(const char *htmlClass, const Difference &difference, const DifferencePlace &place,
                          const QString &text, KnownUnit &unit)
{
    const Tag cell(m_out, "td", {{"class", htmlClass}});
    const bool isFirst = &place == &difference.first;
    const bool isAbsent = difference.kind == (isFirst ? Difference::Added : Difference::Removed);
    if (isAbsent)
        m_out.element("span", {{"class", "nothing"}}, "\u2014");
    else if (isOfValues(difference))
        m_objects.value(*place.member, unitAt(place, unit));
    else if (difference.kind == Difference::Added || difference.kind == Difference::Removed)
        showContent(place.object(), unitAt(place, unit));
    else
        showText(m_out, difference.kind == Difference::Moved ? QStringLiteral("position ") + text : text);
}

void Comparison::showContent(const DataObject *object, const Unit &unit)
{
    if (!object) {
        m_out.element("span", {{"class", "nothing"}}, "empty");
        return;
    }
    const Members members(*object);
    if (members.find(isAlternative))
        Values(m_out, m_problems, unit).item(*object, ObjectPath());
    else
        m_objects.facts(members, ObjectPath());
}

const Unit &Comparison::unitAt(const DifferencePlace &place, KnownUnit &known)
{
    static const Unit none;
    constexpr int depth = 3; // a card, a node, and the list of its values
    const bool hasUnit = place.steps.size() >= depth && place.steps.last().member != QLatin1String("index");
    if (!hasUnit)
        return none;
    QVector<Step> steps = place.steps.mid(0, depth);
    steps.last().index = -1;
    const auto isSame = [](const Step &one, const Step &other) {
        return one.index == other.index && one.member == other.member;
    };
    if (!std::equal(steps.begin(), steps.end(), known.steps.begin(), known.steps.end(), isSame)) {
        const auto list = Paths::at(known.document, steps);
        known.steps = steps;
        known.unit = list && isList(*list) ? Unit::of(*list) : Unit();
    }
    return known.unit;
}

} // namespace TunerDocuments
