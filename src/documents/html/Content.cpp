// SPDX-License-Identifier: MIT
#include "documents/html/Content.h"

#include <algorithm>

#include "documents/html/Anchor.h"
#include "documents/html/Axis.h"
#include "documents/html/Values.h"
#include "documents/paths/ItemSteps.h"

using JobXml::DataObject;
using JobXml::MemberKind;
using JobXml::MemberView;

namespace TunerDocuments {

namespace {

/// In a document with more nodes, all components but the first are closed.
constexpr int mostNodesOpen = 24;

/// With more nodes or components, laying out only the visible ones saves time.
constexpr int mostNodesLaidOut = 500;

/// Long lists are in groups, of which the browser lays out those on the screen: a few hundred groups are less to
/// arrange than thousands of nodes. A multiple of all numbers of columns, so that only the last group has a gap.
constexpr int groupSize = 48;

bool isObjectOrEmptyList(const MemberView &member)
{
    return member.GetKind() == MemberKind::Object || (isList(member) && member.GetSize() == 0);
}

bool isEnumeration(const MemberView &member)
{
    return member.GetKind() == MemberKind::Enumeration;
}

/// Whether the member is the main number of an item; others describe it.
bool isMainNumber(const MemberView &member)
{
    return isNumber(member) && member.IsMandatory();
}

/// A list of names with a number each.
bool isChart(const MemberView &member)
{
    if (!isList(member) || member.GetSize() == 0)
        return false;
    const Members item(member.GetChild(0));
    return std::all_of(item.begin(), item.end(), isValue) && std::count_if(item.begin(), item.end(), isMainNumber) == 1;
}

QString textOf(const MemberView *member)
{
    return member ? member->GetValue().toString() : QString();
}

/// The number of objects in the lists of the items.
int grandchildren(const MemberView &list)
{
    int count = 0;
    for (int i = 0; i < list.GetSize(); ++i) {
        for (const MemberView &member : Members(list.GetChild(i)))
            count += isList(member) ? member.GetSize() : 0;
    }
    return count;
}

} // namespace

// In the order of the members in Content.h: each takes its own out of the facts.
Content::Content(const JobXml::TunerProperties &document, Problems &problems, const QString &source, Markup &out)
    : m_out(out), m_problems(problems), m_source(source), m_version(document.GetInitialVersionLoaded()),
      m_facts(document), m_objects(m_facts.takeAll(isObjectOrEmptyList)), m_charts(m_facts.takeAll(isChart)),
      m_lists(m_facts.takeAll(isList)), m_kind(m_facts.take(isEnumeration)), m_name(m_facts.take("name", isText))
{
}

bool Content::hasName() const
{
    return m_name && !textOf(&*m_name).isEmpty();
}

QString Content::title() const
{
    return hasName() ? textOf(&*m_name) : m_source;
}

bool Content::hasCards() const
{
    return std::any_of(m_lists.begin(), m_lists.end(), [](const MemberView &list) { return list.GetSize() != 0; });
}

void Content::showHeader()
{
    Objects objects(m_out, m_problems);
    const Tag header(m_out, "header", {{"class", "hero"}});
    if (m_kind) {
        const Tag line(m_out, "p");
        const bool isNamed = !textOf(&*m_kind).isEmpty();
        objects.named(*m_kind, isNamed ? Objects::Name::Omitted : Objects::Name::Seen, {}, isNamed ? "badge" : nullptr);
    }
    {
        const Tag heading(m_out, "h1");
        if (hasName())
            objects.named(*m_name, Objects::Name::Omitted);
        else
            showText(m_out, m_source);
    }
    const Tag line(m_out, "p", {{"class", "source"}});
    showText(m_out, m_source);
    m_out.words(QStringLiteral(" \u00b7 "));
    m_out.element("span", {{"class", "name"}}, "Version");
    m_out.words(" ");
    if (m_version.isEmpty())
        m_out.element("span", {{"class", "unset"}}, "not set");
    else
        showText(m_out, m_version);
    if (m_name && !hasName()) {
        m_out.words(QStringLiteral(" \u00b7 "));
        objects.named(*m_name, Objects::Name::Seen);
    }
}

void Content::showHeaderFindings()
{
    m_problems.show(m_out, ObjectPath(), m_facts);
}

void Content::showOverview()
{
    const Tag overview(m_out, "div", {{"class", "overview"}});
    {
        const Tag panel(m_out, "section",
                        {{"class", m_charts.empty() ? "panel whole" : "panel"}, {"aria-label", "Summary"}});
        Objects(m_out, m_problems).facts(m_facts, ObjectPath());
    }
    for (const MemberView &list : m_charts) {
        const Tag panel(m_out, "section", {{"class", "panel chart"}, {"data-member", list.GetName()}});
        showHeading(m_out, "h2", list);
        showChart(list);
    }
    for (const MemberView &object : m_objects)
        showObject(object);
}

void Content::showCards()
{
    for (const MemberView &list : m_lists)
        showCards(list);
}

bool Content::isShown(const ObjectPath &path) const
{
    return !m_out.isDiscarded() || !m_problems.countFrom(path).isZero();
}

void Content::showObject(const MemberView &member)
{
    const Tag panel(m_out, "section", {{"class", "panel whole"}, {"data-member", member.GetName()}});
    showHeading(m_out, "h2", member);
    if (member.GetSize() != 0) {
        const ObjectPath path = ObjectPath().below(member.GetName());
        const Members members(member.GetChild());
        m_problems.show(m_out, path, members);
        Objects(m_out, m_problems).facts(members, path);
    }
}

void Content::showChart(const MemberView &list)
{
    QVector<double> numbers;
    for (int i = 0; i < list.GetSize(); ++i) {
        const Members item(list.GetChild(i));
        const MemberView *number = item.find(isMainNumber);
        if (number && number->IsSet())
            numbers.append(number->GetValue().toDouble());
    }
    const Axis axis(numbers);
    const char *kind = axis.isLogarithmic() ? "logarithmic axis" : "linear axis";
    ExtraColumn bars;
    bars.htmlClass = "plot";
    bars.title = [&] { m_out.element("span", {{"class", "name"}}, kind); };
    bars.cell = [&](const DataObject &item) { showBar(axis, item); };
    bars.foot = [&] {
        const Tag picture(m_out, "svg",
                          {{"role", "img"},
                           {"aria-label",
                            QStringLiteral("%1 from %2 to %3")
                                .arg(QString::fromUtf8(kind), brief(axis.least()), brief(axis.most()))}});
        showLabels(axis);
    };
    Objects(m_out, m_problems).list(list, ObjectPath(), &bars);
}

void Content::showLabels(const Axis &axis)
{
    constexpr int narrow = 260; // the axis on a telephone, in pixels
    constexpr int character = 7;
    constexpr int gap = 12;
    int room = 0;
    for (const Axis::Tick &tick : axis.ticks())
        room += tick.label.isEmpty() ? 0 : tick.label.size() * character + gap;
    int count = 0;
    for (const Axis::Tick &tick : axis.ticks()) {
        if (tick.label.isEmpty())
            continue;
        // Where there is too little room for all of them, every other one is left out.
        const bool isOptional = room > narrow && count++ % 2 != 0;
        m_out.element("text", {{"class", isOptional ? "second" : nullptr}, {"x", percent(tick.at)}, {"y", "14"}},
                      tick.label);
    }
}

void Content::showTicks(const Axis &axis)
{
    for (const Axis::Tick &tick : axis.ticks()) {
        const QString at = percent(tick.at);
        m_out.element("line", {{"x1", at}, {"x2", at}, {"y2", "100%"}});
    }
}

void Content::showBar(const Axis &axis, const DataObject &item)
{
    const Members members(item);
    const MemberView *number = members.find(isMainNumber);
    const auto end = number && number->IsSet() ? axis.at(number->GetValue().toDouble()) : std::nullopt;
    const QString label = end ? QStringLiteral("bar to %1 of the axis").arg(percent(*end)) : QStringLiteral("no bar");
    const Tag picture(m_out, "svg", {{"role", "img"}, {"aria-label", label}});
    if (end) {
        showTicks(axis);
        const auto [from, to] = std::minmax({axis.base(), *end}); // by value: one of them is a temporary
        m_out.element("rect", {{"x", percent(from)}, {"width", percent(to - from)}});
    }
}

void Content::showCards(const MemberView &list)
{
    const int nodes = grandchildren(list);
    const bool isLarge = nodes > mostNodesLaidOut || list.GetSize() > mostNodesLaidOut;
    const Tag section(m_out, "section",
                      {{"class", isLarge ? "cards large" : "cards"}, {"data-member", list.GetName()}});
    showHeading(m_out, "h2", list);
    const bool isShort = nodes <= mostNodesOpen;
    const Paths::ItemSteps steps(list);
    inGroups(list.GetSize(), mostNodesLaidOut, "shelf", [&](int i) {
        // Every node repeats the step: a longer one would make the page much larger than the document.
        constexpr int longest = 400;
        const QString step = steps.at(i);
        const QString position = list.GetName() + QStringLiteral("[%1]").arg(i + 1);
        const Place place{ObjectPath().below(list.GetName(), i), anchorOf(step).size() > longest ? position : step};
        if (isShown(place.path))
            showCard(list.GetChild(i), list.GetName() + QStringLiteral(" %1").arg(i + 1), place, isShort || i == 0);
    });
}

template <class Show>
void Content::inGroups(int count, int most, const char *htmlClass, Show &&show)
{
    const auto range = [&](int first, int end) {
        for (int i = first; i < end; ++i)
            show(i);
    };
    if (count <= most) {
        range(0, count);
        return;
    }
    for (int first = 0; first < count; first += groupSize) {
        const Tag group(m_out, "div", {{"class", htmlClass}});
        range(first, std::min(first + groupSize, count));
    }
}

void Content::showCard(const DataObject &object, const QString &fallbackTitle, const Place &place, bool isOpen)
{
    Members members(object);
    const std::vector<MemberView> lists = members.takeAll(isList);
    const Tag card(m_out, "details",
                   {{"class", "card"}, {"id", anchorOf(place.text)}, {"open", isOpen ? "open" : nullptr}});
    {
        const Tag summary(m_out, "summary");
        // The display name if there is one, otherwise what identifies the object among its siblings.
        QStringList identity;
        for (const MemberView &member : members) {
            if (isIdentifyingText(member))
                identity.append(textOf(&member));
        }
        const QString displayName = textOf(members.find("displayName", isText));
        QString title = displayName.isEmpty() && !identity.isEmpty() ? identity.last() : displayName;
        if (title.isEmpty())
            title = fallbackTitle;
        {
            const Tag heading(m_out, "h3");
            showText(m_out, title);
        }
        if (!identity.isEmpty() && !identity.first().isEmpty() && identity.first() != title) {
            const Tag kind(m_out, "span", {{"class", "kind"}});
            showText(m_out, identity.first());
        }
        const Tag tallies(m_out, "span", {{"class", "tallies"}});
        showCount(m_problems.countFrom(place.path));
        for (const MemberView &list : lists)
            m_out.element("span", {{"class", "tally"}},
                          list.GetName() + QLatin1Char(' ') + QString::number(list.GetSize()));
    }
    const Tag inside(m_out, "div", {{"class", "inside"}});
    m_problems.show(m_out, place.path, members);
    Objects(m_out, m_problems).facts(members, place.path);
    for (const MemberView &list : lists)
        showNodes(list, place);
}

void Content::showCount(const Problems::Count &count)
{
    if (!count.isZero())
        m_out.element("span", {{"class", count.problems > 0 ? "tally bad" : "tally doubtful"}}, count.text());
}

void Content::showNodes(const MemberView &list, const Place &place)
{
    const bool isGrouped = list.GetSize() > groupSize;
    const Tag nodes(m_out, "div", {{"class", isGrouped ? "nodes grouped" : "nodes"}, {"data-member", list.GetName()}});
    showListName(m_out, list);
    const Paths::ItemSteps steps(list);
    inGroups(list.GetSize(), groupSize, "group", [&](int i) {
        const Place node{place.path.below(list.GetName(), i), place.text + QLatin1Char('/') + steps.at(i)};
        if (isShown(node.path))
            showNode(list.GetChild(i), node);
    });
}

void Content::showNode(const DataObject &object, const Place &place)
{
    Members members(object);
    const std::vector<MemberView> lists = members.takeAll(isList);
    const Tag node(m_out, "div", {{"class", "node"}, {"id", anchorOf(place.text)}});
    Objects objects(m_out, m_problems);
    {
        const Tag heading(m_out, "h4");
        if (const auto id = members.take(isIdentifyingText))
            objects.named(*id, textOf(&*id).isEmpty() ? Objects::Name::Seen : Objects::Name::Omitted);
    }
    m_problems.show(m_out, place.path, members);
    if (!members.isEmpty())
        objects.facts(members, place.path);
    for (const MemberView &list : lists) {
        const Tag content(m_out, "div", {{"data-member", list.GetName()}});
        showListName(m_out, list);
        Values values(m_out, m_problems, Unit::of(list));
        for (int i = 0; i < list.GetSize(); ++i)
            values.item(list.GetChild(i), place.path.below(list.GetName(), i));
    }
}

} // namespace TunerDocuments
