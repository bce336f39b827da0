// SPDX-License-Identifier: MIT
#include "html/Content.h"

#include <algorithm>

#include "html/Axis.h"
#include "html/Values.h"

using JobXml::DataObject;
using JobXml::MemberKind;
using JobXml::MemberView;

namespace {

/// In a document with more nodes, all components but the first are closed.
constexpr int mostNodesOpen = 24;

/// With more nodes, laying out only the visible ones saves time.
constexpr int mostNodesLaidOut = 500;

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

Content::Content(const JobXml::TunerProperties &document, Problems &problems, const QString &source)
    : m_problems(problems), m_title(source)
{
    Members members(document);
    const std::vector<MemberView> objects = members.takeAll(isObjectOrEmptyList);
    const std::vector<MemberView> charts = members.takeAll(isChart);
    const std::vector<MemberView> lists = members.takeAll(isList);
    showHeader(members, document.GetInitialVersionLoaded(), source);
    showOverview(members, objects, charts);
    for (const MemberView &list : lists)
        showCards(list);
}

void Content::showHeader(Members &members, const QString &version, const QString &source)
{
    Objects objects(m_header, m_problems);
    const auto kind = members.take(isEnumeration);
    const auto name = members.take("name", isText);
    {
        const Tag header(m_header, "header", {{"class", "hero"}});
        if (kind) {
            const Tag line(m_header, "p");
            const bool hasName = !textOf(&*kind).isEmpty();
            objects.named(*kind, hasName ? Objects::Name::Unseen : Objects::Name::Seen, "span",
                          hasName ? "badge" : "member");
        }
        {
            const Tag heading(m_header, "h1");
            if (name && !textOf(&*name).isEmpty()) {
                m_title = textOf(&*name);
                objects.named(*name, Objects::Name::Unseen);
            } else {
                showText(m_header, source);
            }
        }
        const Tag line(m_header, "p", {{"class", "source"}});
        showText(m_header, source);
        m_header.words(QStringLiteral(" \u00b7 "));
        m_header.element("span", {{"class", "name"}}, "Version");
        m_header.words(" ");
        if (version.isEmpty())
            m_header.element("span", {{"class", "unset"}}, "not set");
        else
            showText(m_header, version);
        if (name && textOf(&*name).isEmpty()) {
            m_header.words(QStringLiteral(" \u00b7 "));
            objects.named(*name, Objects::Name::Seen);
        }
    }
}

void Content::showOverview(const Members &facts, const std::vector<MemberView> &objects,
                           const std::vector<MemberView> &charts)
{
    const Tag overview(m_overview, "div", {{"class", "overview"}});
    {
        const Tag panel(m_overview, "section",
                        {{"class", charts.empty() ? "panel whole" : "panel"}, {"aria-label", "Summary"}});
        Objects(m_overview, m_problems).facts(facts, ObjectPath());
    }
    for (const MemberView &list : charts) {
        const Tag panel(m_overview, "section", {{"class", "panel"}, {"data-member", list.GetName()}});
        showHeading(m_overview, "h2", list);
        showChart(list);
    }
    for (const MemberView &object : objects)
        showObject(object);
}

void Content::showObject(const MemberView &member)
{
    const Tag panel(m_overview, "section", {{"class", "panel whole"}, {"data-member", member.GetName()}});
    showHeading(m_overview, "h2", member);
    if (member.GetSize() != 0) {
        const ObjectPath path = ObjectPath().below(member.GetName());
        m_problems.show(m_overview, path);
        Objects(m_overview, m_problems).facts(Members(member.GetChild()), path);
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
    bars.title = [&] { m_overview.element("span", {{"class", "name"}}, kind); };
    bars.cell = [&](const DataObject &item) { showBar(axis, item); };
    bars.foot = [&] {
        const Tag picture(m_overview, "svg",
                          {{"role", "img"},
                           {"aria-label",
                            QStringLiteral("%1 from %2 to %3")
                                .arg(QString::fromUtf8(kind), brief(axis.least()), brief(axis.most()))}});
        for (const Axis::Tick &tick : axis.ticks())
            m_overview.element("text", {{"x", percent(tick.at)}, {"y", "14"}}, tick.label);
    };
    Objects(m_overview, m_problems).list(list, ObjectPath(), -1, &bars);
}

void Content::showTicks(const Axis &axis)
{
    for (const Axis::Tick &tick : axis.ticks()) {
        const QString at = percent(tick.at);
        m_overview.element("line", {{"x1", at}, {"x2", at}, {"y2", "100%"}});
    }
}

void Content::showBar(const Axis &axis, const DataObject &item)
{
    const Members members(item);
    const MemberView *number = members.find(isMainNumber);
    const auto end = number && number->IsSet() ? axis.at(number->GetValue().toDouble()) : std::nullopt;
    const QString label = end ? QStringLiteral("bar to %1 of the axis").arg(percent(*end)) : QStringLiteral("no bar");
    const Tag picture(m_overview, "svg", {{"role", "img"}, {"aria-label", label}});
    if (end) {
        showTicks(axis);
        const auto [from, to] = std::minmax({axis.base(), *end}); // by value: one of them is a temporary
        m_overview.element("rect", {{"x", percent(from)}, {"width", percent(to - from)}});
    }
}

void Content::showCards(const MemberView &list)
{
    m_hasCards = m_hasCards || list.GetSize() != 0;
    const int nodes = grandchildren(list);
    const Tag section(m_cards, "section",
                      {{"class", nodes > mostNodesLaidOut ? "cards large" : "cards"}, {"data-member", list.GetName()}});
    showHeading(m_cards, "h2", list);
    const bool isShort = nodes <= mostNodesOpen;
    for (int i = 0; i < list.GetSize(); ++i)
        showCard(list.GetChild(i), list.GetName() + QStringLiteral(" %1").arg(i + 1),
                 ObjectPath().below(list.GetName(), i), isShort || i == 0);
}

void Content::showCard(const DataObject &object, const QString &fallbackTitle, const ObjectPath &path, bool isOpen)
{
    Members members(object);
    const std::vector<MemberView> lists = members.takeAll(isList);
    const Tag card(m_cards, "details", {{"class", "card"}, {"open", isOpen ? "open" : nullptr}});
    {
        const Tag summary(m_cards, "summary");
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
            const Tag heading(m_cards, "h3");
            showText(m_cards, title);
        }
        if (!identity.isEmpty() && !identity.first().isEmpty() && identity.first() != title) {
            const Tag kind(m_cards, "span", {{"class", "kind"}});
            showText(m_cards, identity.first());
        }
        const Tag tallies(m_cards, "span", {{"class", "tallies"}});
        if (const int count = m_problems.countFrom(path))
            m_cards.element("span", {{"class", "tally bad"}},
                            count == 1 ? QStringLiteral("1 problem") : QStringLiteral("%1 problems").arg(count));
        for (const MemberView &list : lists)
            m_cards.element("span", {{"class", "tally"}},
                            list.GetName() + QLatin1Char(' ') + QString::number(list.GetSize()));
    }
    const Tag inside(m_cards, "div", {{"class", "inside"}});
    m_problems.show(m_cards, path);
    Objects(m_cards, m_problems).facts(members, path);
    for (const MemberView &list : lists) {
        const Tag nodes(m_cards, "div", {{"class", "nodes"}, {"data-member", list.GetName()}});
        showListName(m_cards, list);
        for (int i = 0; i < list.GetSize(); ++i)
            showNode(list.GetChild(i), path.below(list.GetName(), i));
    }
}

void Content::showNode(const DataObject &object, const ObjectPath &path)
{
    Members members(object);
    const std::vector<MemberView> lists = members.takeAll(isList);
    const Tag node(m_cards, "div", {{"class", "node"}});
    Objects objects(m_cards, m_problems);
    {
        const Tag heading(m_cards, "h4");
        if (const auto id = members.take(isIdentifyingText))
            objects.named(*id, textOf(&*id).isEmpty() ? Objects::Name::Seen : Objects::Name::Unseen);
    }
    m_problems.show(m_cards, path);
    if (!members.isEmpty())
        objects.facts(members, path);
    Values values(m_cards, m_problems);
    for (const MemberView &list : lists) {
        const Tag content(m_cards, "div", {{"data-member", list.GetName()}});
        showListName(m_cards, list);
        for (int i = 0; i < list.GetSize(); ++i)
            values.item(list.GetChild(i), path.below(list.GetName(), i));
    }
}
