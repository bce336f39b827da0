// SPDX-License-Identifier: MIT
#include "documents/html/Values.h"

#include <cmath>

#include <tunerdocuments/Value.h>

using JobXml::DataObject;
using JobXml::MemberKind;
using JobXml::MemberView;

namespace TunerDocuments {

namespace {

bool isChosenAlternative(const MemberView &member)
{
    return member.GetKind() == MemberKind::Alternative && member.IsChosen();
}

bool isAlternative(const MemberView &member)
{
    return member.GetKind() == MemberKind::Alternative;
}

bool isChoice(const MemberView &member)
{
    return member.GetKind() == MemberKind::Choice;
}

bool isInteger(const MemberView &member)
{
    return member.GetKind() == MemberKind::Int || member.GetKind() == MemberKind::Int64;
}

QString numberText(const MemberView &member)
{
    return ValueText::ofValue(member.GetValue());
}

/// The numbers of a slider, compared without conversion: a 64-bit integer has more digits than a floating-point number.
class Range
{
public:
    Range(const MemberView &value, const MemberView &min, const MemberView &max, const MemberView &step)
        : m_integers(isInteger(value) && isInteger(min) && isInteger(max)), m_value(amount(value)), m_min(amount(min)),
          m_max(amount(max)), m_step(amount(step)),
          m_isWhole(value.IsSet() && min.IsSet() && max.IsSet() && std::isfinite(m_value) && std::isfinite(m_min)
                    && std::isfinite(m_max))
    {
    }

    /// The reason why the value has no position between min and max; null if it has one.
    QString problem() const
    {
        if (!m_isWhole)
            return QStringLiteral("value, min and max have to be set, and finite");
        if (m_min > m_max)
            return QStringLiteral("min is above max");
        if (m_value < m_min)
            return QStringLiteral("value is below min");
        return m_value > m_max ? QStringLiteral("value is above max") : QString();
    }

    /// Whether there is a position to show, possibly at an end.
    bool hasLocation() const { return m_isWhole && m_min <= m_max; }

    /// From 0 to 1; values beyond an end are at the end.
    long double position() const
    {
        if (m_value <= m_min || m_min == m_max)
            return 0;
        return m_value >= m_max ? 1 : (m_value - m_min) / (m_max - m_min);
    }

    /// The number of steps, if it is a whole number small enough to draw a line for each.
    int steps() const
    {
        constexpr int most = 24;
        const long double count = m_step > 0 && hasLocation() ? (m_max - m_min) / m_step : 0;
        const bool isWhole = std::abs(count - std::round(count)) < 1e-4L; // steps like 0.1 are not exact
        return count >= 2 && count <= most && isWhole ? int(std::lround(count)) : 0;
    }

private:
    long double amount(const MemberView &member) const
    {
        return m_integers ? static_cast<long double>(member.GetValue().toLongLong()) : member.GetValue().toDouble();
    }

    bool m_integers;
    long double m_value;
    long double m_min;
    long double m_max;
    long double m_step;
    bool m_isWhole;
};

} // namespace

void Values::item(const DataObject &item, const ObjectPath &path)
{
    const Tag element(m_out, "div", {{"class", "value"}});
    m_problems.show(m_out, path);
    Members members(item);
    if (const auto alternative = members.take(isChosenAlternative)) {
        members.take(isChoice); // visible as the kind of the chosen value
        chosen(*alternative, path.below(alternative->GetName()));
    } else {
        m_out.element("p", {{"class", "id nothing"}}, "no value chosen");
    }
    members.takeAll(isAlternative);
    if (!members.isEmpty()) {
        const Tag rest(m_out, "div", {{"class", "whole"}});
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
            m_objects.named(*member, text.isEmpty() ? Objects::Name::Seen : Objects::Name::Unseen);
            m_out.words(" ");
            label = text.isEmpty() ? label : text;
        }
        m_out.element("span", {{"class", "kind"}}, alternative.GetName());
        if (!isThere || !alternative.IsSet()) {
            m_out.words(" ");
            m_out.element("span", {{"class", "unset"}}, "not set");
        }
    }
    m_problems.show(m_out, path);
    if (!slider(members, label) && !dropDown(members, path, label) && !textList(members, path)) {
        if (const auto value = members.take("value", isValue))
            plain(*value);
    }
    if (!members.isEmpty()) {
        const Tag rest(m_out, "div", {{"class", "whole"}});
        m_objects.facts(members, path);
    }
}

void Values::plain(const MemberView &value)
{
    constexpr int longText = 24;
    const bool isLong = isText(value) && value.GetValue().toString().size() > longText;
    const Tag now(m_out, "div", {{"class", isLong ? "now long" : "now"}});
    m_objects.named(value, Objects::Name::Unseen, "span", isNumber(value) ? "field" : "member");
}

bool Values::slider(Members &members, const QString &label)
{
    for (const char *name : {"value", "min", "max", "step"}) {
        if (!members.find(name, isNumber))
            return false;
    }
    const MemberView value = *members.take("value", isNumber);
    const MemberView min = *members.take("min", isNumber);
    const MemberView max = *members.take("max", isNumber);
    const MemberView step = *members.take("step", isNumber);
    plain(value);

    const Range range(value, min, max, step);
    const QString problem = range.problem();
    const bool isMeter = problem.isNull();
    const QString description = QStringLiteral("%1, from %2 to %3, step %4")
                                    .arg(numberText(value), numberText(min), numberText(max), numberText(step));
    {
        // A meter shows values between its ends; a value beyond them is an image with a text.
        const Tag picture(
            m_out, "span",
            {{"class", isMeter ? "slider whole" : "slider out whole"},
             {"role", isMeter ? "meter" : "img"},
             {"aria-label",
              isMeter ? label : label + QStringLiteral(": ") + description + QStringLiteral("; ") + problem},
             {"aria-valuemin", isMeter ? numberText(min) : QString()},
             {"aria-valuemax", isMeter ? numberText(max) : QString()},
             {"aria-valuenow", isMeter ? numberText(value) : QString()},
             {"aria-valuetext", isMeter ? description : QString()}});
        const Tag drawing(m_out, "svg", {{"aria-hidden", "true"}});
        m_out.element("rect", {{"width", "100%"}});
        if (range.hasLocation()) {
            const QString position = percent(double(range.position()));
            m_out.element("rect", {{"width", position}});
            for (int i = 1, steps = range.steps(); i < steps; ++i) {
                const QString at = percent(double(i) / steps);
                m_out.element("line", {{"x1", at}, {"x2", at}, {"y1", "14"}, {"y2", "18"}});
            }
            m_out.element("circle", {{"cx", position}});
        }
    }
    {
        const Tag ends(m_out, "div", {{"class", "range whole"}});
        m_objects.named(min, Objects::Name::Seen);
        m_objects.named(step, Objects::Name::Seen);
        m_objects.named(max, Objects::Name::Seen);
    }
    if (!isMeter)
        note(problem);
    return true;
}

bool Values::dropDown(Members &members, const ObjectPath &path, const QString &label)
{
    if (!members.find(isList) || !members.find("value", isNumber))
        return false;
    const MemberView options = *members.take(isList);
    const MemberView value = *members.take("value", isNumber);
    const auto text = members.take("text", isText);
    const auto index = members.take("index", isNumber);
    const int current = index && index->IsSet() ? index->GetValue().toInt() : -1;
    {
        const Tag drop(m_out, "details", {{"class", "drop whole"}});
        {
            const Tag summary(m_out, "summary");
            const Tag shown(m_out, "span");
            m_out.element("span", {{"class", "unseen"}}, label);
            m_out.words(" ");
            if (text) {
                m_objects.named(*text, Objects::Name::Unseen);
                m_out.words(" ");
            }
            m_objects.named(value, Objects::Name::Unseen, "span", text ? "member amount" : "member");
        }
        const Tag content(m_out, "div", {{"data-member", options.GetName()}});
        showListName(m_out, options);
        m_objects.list(options, path, current);
    }
    {
        const Tag below(m_out, "div", {{"class", "below whole"}});
        if (index)
            m_objects.named(*index, Objects::Name::Seen);
        m_out.element("span", {},
                      options.GetSize() == 1 ? QStringLiteral("1 option")
                                             : QStringLiteral("%1 options").arg(options.GetSize()));
    }
    if (index && index->IsSet())
        noteDifferences(options, current, text ? &*text : nullptr, value);
    return true;
}

// The document stores the choice separately from the options, so the two may differ.
void Values::noteDifferences(const MemberView &options, int index, const MemberView *text, const MemberView &value)
{
    if (index < 0 || index >= options.GetSize()) {
        note(QStringLiteral("no option has the index %1").arg(index));
        return;
    }
    const Members option(options.GetChild(index));
    const MemberView *name = option.find(isText);
    const MemberView *number = option.find(isNumber);
    if (text && name && text->GetValue() != name->GetValue())
        note(QStringLiteral("the option at this index has a different %1").arg(name->GetName()));
    if (number && value.GetValue() != number->GetValue())
        note(QStringLiteral("the option at this index has a different %1").arg(number->GetName()));
}

bool Values::textList(Members &members, const ObjectPath &path)
{
    if (!members.find(isList) || !members.find("value", isText))
        return false;
    const MemberView entries = *members.take(isList);
    const MemberView value = *members.take("value", isText);
    plain(value);
    const Tag list(m_out, "div", {{"class", "whole"}, {"data-member", entries.GetName()}});
    showListName(m_out, entries);
    bool isAmong = false;
    {
        const Tag items(m_out, "ul", {{"class", "chips"}});
        for (int i = 0; i < entries.GetSize(); ++i) {
            Members entry(entries.GetChild(i));
            const auto text = entry.take(isText);
            const bool isCurrent = text && value.IsSet() && text->GetValue() == value.GetValue();
            isAmong = isAmong || isCurrent;
            const Tag item(m_out, "li", {{"aria-current", isCurrent ? "true" : nullptr}});
            if (text)
                m_objects.named(*text, Objects::Name::Unseen);
            if (!entry.isEmpty())
                m_objects.facts(entry, path.below(entries.GetName(), i));
        }
    }
    for (int i = 0; i < entries.GetSize(); ++i)
        m_problems.show(m_out, path.below(entries.GetName(), i));
    if (value.IsSet() && !isAmong)
        note(QStringLiteral("the value is not in the list"));
    return true;
}

void Values::note(const QString &text)
{
    m_out.element("p", {{"class", "note whole"}}, text);
}

} // namespace TunerDocuments
