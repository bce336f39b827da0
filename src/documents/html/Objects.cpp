// SPDX-License-Identifier: MIT
#include "documents/html/Objects.h"

#include <algorithm>

#include <tunerdocuments/Value.h>

using JobXml::DataObject;
using JobXml::MemberKind;
using JobXml::MemberView;

namespace TunerDocuments {

namespace {

bool isEmptyValue(const QVariant &value)
{
    return value.userType() == QMetaType::QVariantList
        ? value.toList().isEmpty()
        : value.userType() == QMetaType::QString && value.toString().isNull();
}

void showNothing(Markup &out, const char *word)
{
    out.element("span", {{"class", "nothing word"}}, word);
}

/// The class of a fact, according to the room that it takes.
const char *widthOf(const MemberView &member)
{
    constexpr int longText = 24;
    if (member.GetKind() == MemberKind::EnumerationList)
        return "whole";
    return isText(member) && member.GetValue().toString().size() > longText ? "wide" : nullptr;
}

} // namespace

void showNumber(Markup &out, const QVariant &value)
{
    constexpr int group = 3;
    constexpr int fewest = 5; // digits to separate into groups
    const QString text = ValueText::ofValue(value);
    const Tag number(out, "span", {{"class", "number"}});
    int end = 0; // of the integer digits
    const int start = text.startsWith(QLatin1Char('-')) ? 1 : 0;
    for (end = start; end < text.size() && text.at(end).isDigit();)
        ++end;
    if (end - start < fewest || text.contains(QLatin1Char('e'))) {
        out.words(text);
        return;
    }
    int at = start + (end - start - 1) % group + 1;
    out.words(text.left(at));
    for (; at < end; at += group)
        out.element("i", {}, text.mid(at, group));
    out.words(text.mid(end));
}

void showQuantity(Markup &out, const QVariant &value, const Unit &unit)
{
    const auto exact = [&] {
        showNumber(out, value);
        out.words(QString(QChar(0xA0)));
        out.element("span", {{"class", "unit"}}, unit.text());
    };
    if (unit.isNone()) {
        showNumber(out, value);
        return;
    }
    const QString number = ValueText::ofValue(value);
    const QString prefixed = unit.withPrefix(number);
    if (prefixed.isNull()) {
        exact();
        return;
    }
    out.element("span", {{"class", "prefixed"}, {"title", number + QLatin1Char(' ') + unit.text()}}, prefixed);
    out.words(" ");
    const Tag all(out, "span", {{"class", "exact"}});
    exact();
}

void showText(Markup &out, const QString &text)
{
    if (text.isEmpty()) {
        showNothing(out, text.isNull() ? "null" : "empty");
        return;
    }
    const Tag isolated(out, "bdi");
    out.text(text);
}

void showHeading(Markup &out, const char *tag, const MemberView &member)
{
    const Tag heading(out, tag);
    out.words(member.GetName());
    if (isList(member)) {
        out.words(" ");
        out.element("span", {{"class", "tally"}}, QString::number(member.GetSize()));
    }
    if (isKeptAlternative(member)) {
        out.words(" ");
        out.element("span", {{"class", "unchosen"}}, "not chosen");
    }
    if (!member.IsSet()) {
        out.words(" ");
        out.element("span", {{"class", "unset"}}, "not set");
    }
}

void showListName(Markup &out, const MemberView &list)
{
    if (list.GetSize() == 0 || !list.IsSet())
        showHeading(out, "h5", list);
}

void Objects::enumerator(const QVariant &entry)
{
    if (entry.userType() == QMetaType::Int)
        showNumber(m_out, entry);
    else if (isEmptyValue(entry))
        showNothing(m_out, "null");
    else
        m_out.element("span", {{"class", "word"}}, entry.toString());
}

void Objects::enumerators(const MemberView &member)
{
    const QVariantList entries = member.GetValue().toList();
    if (entries.isEmpty()) {
        showNothing(m_out, "empty");
        return;
    }
    const Tag list(m_out, "ul", {{"class", "chips"}});
    for (const QVariant &entry : entries) {
        const Tag item(m_out, "li");
        enumerator(entry);
    }
}

void Objects::value(const MemberView &member, const Unit &unit)
{
    const QVariant value = member.GetValue();
    // What a new object has not is shown even if it is nothing.
    if (member.IsSet() || !isEmptyValue(value) || !isEmptyValue(member.GetDefaultValue())) {
        switch (member.GetKind()) {
        case MemberKind::Text:
            showText(m_out, value.toString());
            break;
        case MemberKind::Boolean:
            // A word: a picture of a switch would suggest that it can be operated.
            m_out.element("span", {{"class", value.toBool() ? "word yes" : "word no"}},
                          value.toBool() ? "true" : "false");
            break;
        case MemberKind::Enumeration:
        case MemberKind::Choice:
            enumerator(value);
            break;
        case MemberKind::EnumerationList:
            enumerators(member);
            break;
        default:
            if (isNumber(member))
                showQuantity(m_out, value, unit);
            else
                showText(m_out, value.toString());
        }
    }
    if (!member.IsSet()) {
        m_out.words(" ");
        m_out.element("span", {{"class", "unset"}}, "not set");
    }
}

void Objects::named(const MemberView &member, Name name, const Unit &unit, const char *htmlClass)
{
    const Tag element(m_out, "span", {{"class", htmlClass}, {"data-member", member.GetName()}});
    if (name == Name::Seen) {
        m_out.element("span", {{"class", "name"}}, member.GetName());
        m_out.words(" ");
    }
    value(member, unit);
}

void Objects::facts(const Members &members, const ObjectPath &path)
{
    if (std::any_of(members.begin(), members.end(), isValue)) {
        const Tag list(m_out, "dl", {{"class", "facts"}});
        for (const MemberView &member : members) {
            if (!isValue(member) || isIrrelevant(member))
                continue;
            const bool hasFinding = m_problems.hasAt(path, member.GetName());
            const Tag fact(m_out, "div",
                           {{"data-member", member.GetName()}, {"class", hasFinding ? "whole" : widthOf(member)}});
            m_out.element("dt", {{"class", "name"}}, member.GetName());
            const Tag description(m_out, "dd");
            value(member);
            m_problems.showMember(m_out, path, member.GetName());
        }
    }
    for (const MemberView &member : members) {
        if (!isValue(member) && !isIrrelevant(member))
            children(member, path);
    }
}

void Objects::children(const MemberView &member, const ObjectPath &path)
{
    const Tag object(
        m_out, "div",
        {{"class", isKeptAlternative(member) ? "object other" : "object"}, {"data-member", member.GetName()}});
    showHeading(m_out, "h5", member);
    if (isList(member)) {
        list(member, path);
    } else if (member.GetSize() != 0) {
        const ObjectPath below = path.below(member.GetName());
        const Members inside(member.GetChild());
        m_problems.show(m_out, below, inside);
        facts(inside, below);
    }
}

void Objects::list(const MemberView &member, const ObjectPath &path, const ExtraColumn *extra)
{
    if (member.GetSize() == 0)
        return;
    const Members first(member.GetChild(0));
    if (!std::all_of(first.begin(), first.end(), isValue)) {
        for (int i = 0; i < member.GetSize(); ++i) {
            const ObjectPath below = path.below(member.GetName(), i);
            const Tag item(m_out, "div", {{"class", "object"}});
            const Members inside(member.GetChild(i));
            m_problems.show(m_out, below, inside);
            facts(inside, below);
        }
        return;
    }
    const Tag table(m_out, "table", {{"class", extra ? "bars" : nullptr}});
    int columns = 0;
    {
        const Tag head(m_out, "thead");
        const Tag line(m_out, "tr");
        const auto title = [&](const MemberView &shown) {
            ++columns;
            m_out.element("th", {{"scope", "col"}, {"class", isNumber(shown) ? "amount name" : "name"}},
                          shown.GetName());
        };
        for (const MemberView &shown : first)
            title(shown);
        if (extra) {
            ++columns;
            const Tag cell(m_out, "th", {{"scope", "col"}, {"class", extra->htmlClass}});
            extra->title();
        }
    }
    {
        const Tag body(m_out, "tbody");
        for (int i = 0; i < member.GetSize(); ++i)
            row(member.GetChild(i), path.below(member.GetName(), i), columns, extra);
    }
    if (extra) {
        const Tag foot(m_out, "tfoot");
        const Tag line(m_out, "tr");
        for (int i = 0; i < columns - 1; ++i)
            m_out.element("td", {});
        const Tag cell(m_out, "td", {{"class", extra->htmlClass}});
        extra->foot();
    }
}

void Objects::row(const DataObject &item, const ObjectPath &path, int columns, const ExtraColumn *extra)
{
    {
        const Tag line(m_out, "tr");
        for (const MemberView &member : Members(item)) {
            const Tag cell(m_out, "td",
                           {{"data-member", member.GetName()}, {"class", isNumber(member) ? "amount" : nullptr}});
            value(member);
        }
        if (extra) {
            const Tag cell(m_out, "td", {{"class", extra->htmlClass}});
            extra->cell(item);
        }
    }
    if (m_problems.hasAt(path)) {
        const Tag line(m_out, "tr");
        const Tag cell(m_out, "td", {{"colspan", QString::number(columns)}});
        m_problems.show(m_out, path);
    }
}

} // namespace TunerDocuments
