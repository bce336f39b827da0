// SPDX-License-Identifier: MIT
#include "documents/html/Values.h"

#include <algorithm>

#include <tunerdocuments/Value.h>

using JobXml::DataObject;
using JobXml::MemberKind;
using JobXml::MemberView;

namespace TunerDocuments {

namespace {

bool isChoice(const MemberView &member)
{
    return member.GetKind() == MemberKind::Choice;
}

QString numberText(const MemberView &member)
{
    return ValueText::ofValue(member.GetValue());
}

} // namespace

void Values::item(const DataObject &item, const ObjectPath &path)
{
    Members members(item);
    const auto alternative = members.take(isChosenAlternative);
    if (alternative)
        members.take(isChoice); // visible as the kind of the chosen value
    // The unit is also beside the numbers, so it takes little room of its own.
    const bool isUnit = !m_unit.isNone() && alternative && Unit::isUnit(*alternative);
    const Tag element(m_out, "div", {{"class", isUnit ? "value small" : "value"}});
    m_problems.show(m_out, path, members);
    if (alternative)
        chosen(*alternative, path.below(alternative->GetName()));
    else
        m_out.element("p", {{"class", "id nothing"}}, "no value chosen");
    if (!std::all_of(members.begin(), members.end(), isIrrelevant)) {
        const Tag rest(m_out, "div", {{"class", "rest whole"}});
        m_objects.facts(members, path);
    }
}

void Values::chosen(const MemberView &alternative, const ObjectPath &path)
{
    const bool isThere = alternative.GetSize() != 0;
    Members members = isThere ? Members(alternative.GetChild()) : Members();
    QString label = alternative.GetName();
    {
        const Tag id(m_out, "p", {{"class", "id"}, {"data-member", alternative.GetName()}});
        if (const auto member = members.take(isIdentifyingText)) {
            const QString text = member->GetValue().toString();
            m_objects.named(*member, text.isEmpty() ? Objects::Name::Seen : Objects::Name::Omitted);
            m_out.words(" ");
            label = text.isEmpty() ? label : text;
        }
        m_out.element("span", {{"class", "kind"}}, alternative.GetName());
        if (!isThere || !alternative.IsSet()) {
            m_out.words(" ");
            m_out.element("span", {{"class", "unset"}}, "not set");
        }
    }
    if (!scale(members, label) && !selection(members, path) && !textList(members, path)) {
        if (const auto value = members.take("value", isValue))
            plain(*value);
    }
    m_problems.show(m_out, path, members);
    if (!members.isEmpty()) {
        const Tag rest(m_out, "div", {{"class", "rest whole"}});
        m_objects.facts(members, path);
    }
}

void Values::plain(const MemberView &value)
{
    constexpr int longText = 24;
    const bool isLong = isText(value) && value.GetValue().toString().size() > longText;
    const Tag now(m_out, "div", {{"class", isLong ? "now long" : "now"}});
    m_objects.named(value, Objects::Name::Omitted, m_unit);
}

bool Values::scale(Members &members, const QString &label)
{
    const std::optional<Range> range = Range::of(members);
    if (!range)
        return false;
    const MemberView value = *members.take("value", isNumber);
    const MemberView min = *members.take("min", isNumber);
    const MemberView max = *members.take("max", isNumber);
    const MemberView step = *members.take("step", isNumber);
    plain(value);
    picture(*range, label, {numberText(value), numberText(min), numberText(max), numberText(step)});
    const Tag ends(m_out, "div", {{"class", "range whole"}});
    m_objects.named(min, Objects::Name::Seen, m_unit);
    m_objects.named(step, Objects::Name::Seen, m_unit);
    m_objects.named(max, Objects::Name::Seen, m_unit);
    return true;
}

void Values::picture(const Range &range, const QString &label, const QStringList &numbers)
{
    QString description =
        QStringLiteral("%1, from %2 to %3, step %4").arg(numbers.at(0), numbers.at(1), numbers.at(2), numbers.at(3));
    if (!m_unit.isNone())
        description += QLatin1Char(' ') + m_unit.text();
    if (range.isLogarithmic())
        description += QStringLiteral(", logarithmic axis");
    // A meter shows values between its ends; a value beyond them is an image with a text.
    const bool isMeter = range.isInside();
    const Tag picture(m_out, "span",
                      {{"class", isMeter ? "scale whole" : "scale out whole"},
                       {"role", isMeter ? "meter" : "img"},
                       {"title", range.isLogarithmic() ? "logarithmic axis" : nullptr},
                       {"aria-label", isMeter ? label : label + QStringLiteral(": ") + description},
                       {"aria-valuemin", isMeter ? numbers.at(1) : QString()},
                       {"aria-valuemax", isMeter ? numbers.at(2) : QString()},
                       {"aria-valuenow", isMeter ? numbers.at(0) : QString()},
                       {"aria-valuetext", isMeter ? description : QString()}});
    const Tag drawing(m_out, "svg", {{"aria-hidden", "true"}});
    m_out.voidElement("rect", {{"width", "100%"}});
    if (!range.hasLocation())
        return;
    const QString position = percent(range.position());
    m_out.voidElement("rect", {{"width", position}});
    {
        const Tag group(m_out, "g");
        const QVector<double> ticks = range.ticks();
        for (const double tick : ticks)
            m_out.voidElement("rect", {{"x", percent(tick)}});
    }
    m_out.voidElement("rect", {{"class", "mark"}, {"x", position}});
}

bool Values::selection(Members &members, const ObjectPath &path)
{
    if (!members.find(isList) || !members.find("value", isNumber))
        return false;
    const MemberView list = *members.take(isList);
    const MemberView value = *members.take("value", isNumber);
    const auto text = members.take("text", isText);
    const auto index = members.take("index", isNumber);
    const int current = index && index->IsSet() ? index->GetValue().toInt() : -1;
    {
        const Tag now(m_out, "div", {{"class", "now"}});
        if (text) {
            m_objects.named(*text, Objects::Name::Omitted);
            m_out.words(" ");
        }
        m_objects.named(value, Objects::Name::Omitted, m_unit, text ? "amount" : nullptr);
    }
    options(list, path, [current](int i, const Members &) { return i == current; });
    if (index) {
        const Tag below(m_out, "div", {{"class", "range whole"}});
        m_objects.named(*index, Objects::Name::Seen);
    }
    return true;
}

bool Values::textList(Members &members, const ObjectPath &path)
{
    if (!members.find(isList) || !members.find("value", isText))
        return false;
    const MemberView list = *members.take(isList);
    const MemberView value = *members.take("value", isText);
    plain(value);
    options(list, path, [&](int, const Members &option) {
        const MemberView *const text = option.find(isText);
        return text && value.IsSet() && text->GetValue() == value.GetValue();
    });
    return true;
}

void Values::options(const MemberView &list, const ObjectPath &path,
                     const std::function<bool(int index, const Members &option)> &isCurrent)
{
    constexpr int mostOpen = 12;
    const int count = list.GetSize();
    const Tag whole(m_out, "div", {{"class", "whole"}, {"data-member", list.GetName()}});
    showListName(m_out, list);
    if (count == 0)
        return;
    bool hasFindings = false; // which must be seen
    for (int i = 0; i < count && !hasFindings; ++i)
        hasFindings = m_problems.hasAt(path.below(list.GetName(), i));
    const auto show = [&] {
        const Tag items(m_out, "ul", {{"class", "options"}});
        for (int i = 0; i < count; ++i) {
            const Members members(list.GetChild(i));
            option(members, path.below(list.GetName(), i), isCurrent(i, members));
        }
    };
    if (count <= mostOpen) {
        show();
        return;
    }
    const Tag fold(m_out, "details", {{"class", "fold"}, {"open", hasFindings ? "open" : nullptr}});
    m_out.element("summary", {}, QStringLiteral("%1 options").arg(count));
    show();
}

void Values::option(const Members &option, const ObjectPath &path, bool isCurrent)
{
    const Tag item(m_out, "li", {{"aria-current", isCurrent ? "true" : nullptr}});
    if (std::all_of(option.begin(), option.end(), isValue)) {
        const char *separator = nullptr;
        for (const MemberView &member : option) {
            if (separator)
                m_out.words(separator);
            m_objects.named(member, Objects::Name::Omitted, m_unit, isNumber(member) ? "amount" : nullptr);
            separator = " ";
        }
        m_problems.show(m_out, path);
    } else {
        m_problems.show(m_out, path, option);
        m_objects.facts(option, path);
    }
}

} // namespace TunerDocuments
