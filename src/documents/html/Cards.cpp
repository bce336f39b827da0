// SPDX-License-Identifier: MIT
#include "documents/html/Cards.h"

#include <tunerdocuments/Path.h>

#include "documents/html/Anchor.h"
#include "documents/html/Values.h"
#include "documents/paths/ItemSteps.h"

using JobXml::DataObject;
using JobXml::MemberView;

namespace TunerDocuments {

namespace {

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

QString textOf(const MemberView *member)
{
    return member ? member->GetValue().toString() : QString();
}

bool Cards::isShown(const ObjectPath &path) const
{
    return !m_out.isDiscarded() || !m_problems.countFrom(path).isZero();
}

void Cards::showCards(const MemberView &list)
{
    const int nodes = grandchildren(list);
    const bool isLarge = nodes > mostNodesLaidOut || list.GetSize() > mostNodesLaidOut;
    const Tag section(m_out, "section",
                      {{"class", isLarge ? "cards large" : "cards"}, {"data-member", list.GetName()}});
    showHeading(m_out, "h2", list);
    const bool isShort = nodes <= mostNodesOpen;
    const Paths::ItemSteps steps(list);
    inGroups(m_out, list.GetSize(), mostNodesLaidOut, "shelf", [&](int i) {
        // Every node repeats the step: a longer one would make the page much larger than the document.
        constexpr int longest = 400;
        const QString step = steps.at(i);
        const QString position = list.GetName() + QStringLiteral("[%1]").arg(i + 1);
        const Place place{ObjectPath().below(list.GetName(), i), anchorOf(step).size() > longest ? position : step};
        if (isShown(place.path))
            showCard(list.GetChild(i), list.GetName() + QStringLiteral(" %1").arg(i + 1), place, isShort || i == 0);
    });
}

void Cards::showCard(const DataObject &object, const QString &fallbackTitle, const Place &place, bool isOpen,
                     const Mark &mark)
{
    Members members(object);
    const std::vector<MemberView> lists = members.takeAll(isList);
    const Tag card(m_out, "details",
                   {{"class", "card"}, {"id", anchorOf(place.text)}, {"open", isOpen ? "open" : nullptr}});
    {
        const Tag summary(m_out, "summary");
        showTitle(members, fallbackTitle);
        const Tag tallies(m_out, "span", {{"class", "tallies"}});
        showMark(mark);
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

void Cards::showCount(const Problems::Count &count)
{
    if (!count.isZero())
        m_out.element("span", {{"class", count.problems > 0 ? "tally bad" : "tally doubtful"}}, count.text());
}

void Cards::showNodes(const MemberView &list, const Place &place)
{
    const bool isGrouped = list.GetSize() > groupSize;
    const Tag nodes(m_out, "div", {{"class", isGrouped ? "nodes grouped" : "nodes"}, {"data-member", list.GetName()}});
    showListName(m_out, list);
    const Paths::ItemSteps steps(list);
    inGroups(m_out, list.GetSize(), groupSize, "group", [&](int i) {
        const Place below{place.path.below(list.GetName(), i), place.text + QLatin1Char('/') + steps.at(i)};
        if (isShown(below.path))
            showNode(list.GetChild(i), below);
    });
}

void Cards::showNode(const DataObject &object, const Place &place, const Mark &mark)
{
    Members members(object);
    const std::vector<MemberView> lists = members.takeAll(isList);
    const Tag node(m_out, "div", {{"class", "node"}, {"id", anchorOf(place.text)}});
    Objects objects(m_out, m_problems);
    {
        const Tag heading(m_out, "h4");
        if (const auto id = members.take(isIdentifyingText))
            objects.named(*id, textOf(&*id).isEmpty() ? Objects::Name::Seen : Objects::Name::Omitted);
        showMark(mark);
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

void Cards::showTitle(const Members &members, const QString &fallbackTitle)
{
    // The display name if there is one, otherwise what identifies the object among its siblings.
    QStringList identity;
    for (const MemberView &member : members) {
        if (isIdentifyingText(member))
            identity.append(textOf(&member));
    }
    const QString displayName = textOf(members.find("displayName", isText));
    QString text = displayName.isEmpty() && !identity.isEmpty() ? identity.last() : displayName;
    if (text.isEmpty())
        text = fallbackTitle;
    {
        const Tag heading(m_out, "h3");
        showText(m_out, text);
    }
    if (!identity.isEmpty() && !identity.first().isEmpty() && identity.first() != text) {
        const Tag kind(m_out, "span", {{"class", "kind"}});
        showText(m_out, identity.first());
    }
}

void Cards::showMark(const Mark &mark)
{
    if (!mark.text.isEmpty())
        m_out.element("span", {{"class", mark.htmlClass}}, mark.text);
}

} // namespace TunerDocuments
