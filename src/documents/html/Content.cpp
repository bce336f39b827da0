// SPDX-License-Identifier: MIT
#include "documents/html/Content.h"

#include <algorithm>

#include "documents/html/Axis.h"
#include "documents/html/Cards.h"

using JobXml::DataObject;
using JobXml::MemberKind;
using JobXml::MemberView;

namespace TunerDocuments {

namespace {

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
    Cards cards(m_out, m_problems);
    for (const MemberView &list : m_lists)
        cards.showCards(list);
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
        room += tick.label.isEmpty() ? 0 : int(tick.label.size()) * character + gap;
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

} // namespace TunerDocuments
