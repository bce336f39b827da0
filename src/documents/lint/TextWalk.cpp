// SPDX-License-Identifier: MIT
#include "documents/lint/TextWalk.h"

#include <algorithm>
#include <array>
#include <utility>

#include <jobxml/TunerProperties.h>

#include "documents/lint/LintedText.h"
#include "documents/lint/XmlTexts.h"
#include "documents/values/FindMember.h"
#include "documents/xml/XmlBlanks.h"
#include "documents/xml/XmlTexts.h"

using JobXml::MemberKind;
using REPORTGENERATOR::XmlMarkup;

namespace TunerDocuments {

namespace {

const QLatin1String versionAttribute("Version");

QString toString(QLatin1String utf8)
{
    return QString::fromUtf8(utf8.data(), utf8.size());
}

/// Whether a number is one that every reader and writer keeps: a few digits, with at most two decimals for the types
/// that have any.
bool isPlainNumber(QLatin1String text, MemberKind kind)
{
    const char *at = text.data();
    const char *const end = at + text.size();
    if (at != end && *at == '-' && kind != MemberKind::UInt64)
        ++at;
    const char *const digits = at;
    qint64 whole = 0;
    constexpr int mostDigits = 18; // of a qint64
    while (at != end && *at >= '0' && *at <= '9' && at - digits < mostDigits)
        whole = whole * 10 + (*at++ - '0');
    const bool isFloat = kind == MemberKind::Float;
    const bool is64Bit = kind == MemberKind::Int64 || kind == MemberKind::UInt64;
    const int safeDigits = is64Bit ? mostDigits : 9;
    if (at == digits || at - digits > safeDigits)
        return false;
    const bool mayHaveDecimals = isFloat || kind == MemberKind::Double;
    const bool isKept = !isFloat || qint64(float(whole)) == whole;
    if (at == end || *at != '.' || !mayHaveDecimals)
        return at == end && isKept;
    const char *const decimals = ++at;
    bool hasZerosOnly = true;
    for (; at != end && *at >= '0' && *at <= '9'; ++at)
        hasZerosOnly = hasZerosOnly && *at == '0';
    constexpr qint64 finest = 100000; // below it, floats are less than a hundredth apart
    return at == end && at - decimals >= 1 && at - decimals <= 2 && isKept
        && (!isFloat || hasZerosOnly || whole < finest);
}

bool isPlainBoolean(QLatin1String text)
{
    return text == QLatin1String("true") || text == QLatin1String("false") || text == QLatin1String("1")
        || text == QLatin1String("0");
}

/// Follows a document as its readers do: they take every start tag in an object as that of a member, skip an unknown
/// element up to the next tag of its name, and end an object at the next end tag of its own.
class Walk
{
public:
    Walk(const XmlMarkup &markup, Report &report, Places *places) : m_markup(markup), m_report(report), m_places(places)
    {
    }

    void run()
    {
        JobXml::TunerProperties sample;
        sample.SetValidate(false);
        sample.Reset();
        m_presentVersion = sample.GetVersion();
        m_tag = {0, false};
        checkVersion();
        Object root{documentShape(), 0, Places::none};
        if (m_places)
            root.place = m_places->add(Places::none, 0, 0);
        read(root);
    }

    /// Whether any object has several, after run().
    bool hasSeveralAlternatives() const { return m_hasSeveralAlternatives; }

private:
    /// A start or end tag; an empty-element tag counts as both.
    struct Tag
    {
        int element = 0;
        bool isEnd = false;
    };

    static constexpr std::size_t mostMembers = 16;

    /// Where the value of a member was read.
    struct Value
    {
        int index = -1; ///< of the element or attribute; -1 if there is none
        bool isAttribute = false;
    };

    /// An object that is being read.
    struct Object
    {
        const Shape &shape;
        int element;
        int place;
        std::array<Value, mostMembers> values = {}; ///< the last ones of members that keep only one
        std::array<int, mostMembers> counts = {}; ///< the items of its lists so far
        int hint = 0; ///< the member that was read last
        bool hasAlternative = false; ///< whether one was read
    };

    bool next()
    {
        const auto &elements = m_markup.elements();
        const XmlMarkup::Element &current = elements.at(m_tag.element);
        const int following = m_tag.isEnd ? current.next : m_tag.element + 1;
        const int parent = m_tag.isEnd ? current.parent : m_tag.element;
        if (parent < 0)
            return false; // after the root
        if (following < elements.size() && elements.at(following).parent == parent)
            m_tag = {following, false};
        else
            m_tag = {parent, true};
        return true;
    }

    QLatin1String nameOf(int element) const { return m_markup.localName(m_markup.elements().at(element)); }

    void read(Object &object)
    {
        readAttributes(object);
        while (nextIn(object)) {
            if (!m_tag.isEnd)
                readChild(object);
            else if (m_tag.element == object.element || nameOf(m_tag.element) == nameOf(object.element))
                return;
        }
    }

    /// The same as next() for an object, whose text it checks.
    bool nextIn(const Object &object)
    {
        const XmlMarkup::Element &current = m_markup.elements().at(m_tag.element);
        const bool isInObject = object.element == (m_tag.isEnd ? current.parent : m_tag.element);
        const int begin = m_tag.isEnd ? current.end : current.startTag.end;
        if (!next())
            return false;
        if (isInObject) {
            const XmlMarkup::Element &following = m_markup.elements().at(m_tag.element);
            checkBetweenTags(object, {begin, m_tag.isEnd ? following.content.end : following.startTag.begin});
        }
        return true;
    }

    void checkBetweenTags(const Object &object, const XmlMarkup::Span &span)
    {
        if (XmlBlanks::trimmed(m_markup.document(), span).size() == 0)
            return; // as nearly everywhere
        const int following = m_tag.isEnd ? m_markup.elements().at(m_tag.element).next : m_tag.element;
        const QVector<XmlMarkup::Span> texts = XmlTexts::inPart(m_markup, span, following);
        for (const XmlMarkup::Span &text : texts)
            checkStrayText(object, XmlBlanks::trimmed(m_markup.document(), text));
    }

    void checkStrayText(const Object &object, const XmlMarkup::Span &span)
    {
        const QLatin1String raw = m_markup.bytes(span);
        const QString text = XmlTexts::element(raw).value_or(toString(raw)).simplified();
        if (text.isEmpty())
            return;
        LintedText linted(m_steps, {span.begin, object.element}, m_report);
        linted.className = object.shape.className;
        linted.text = text;
        linted.check(TextSubject::StrayText);
    }

    void readAttributes(Object &object)
    {
        const Shape &shape = object.shape;
        const int element = m_tag.element;
        const XmlMarkup::Element &tag = m_markup.elements().at(element);
        int hint = 0;
        for (int i = tag.firstAttribute; i < tag.firstAttribute + tag.attributeCount; ++i) {
            const XmlMarkup::Attribute &attribute = m_markup.attributes().at(i);
            const QLatin1String name = m_markup.bytes(attribute.name);
            const int member = shape.find(name, hint);
            hint = member + 1;
            if (member >= 0 && shape.members[std::size_t(member)].isAttribute) {
                object.values[std::size_t(member)] = {i, true};
                checkValue(shape.members[std::size_t(member)], m_markup.bytes(attribute.value), true,
                           {attribute.name.begin, element});
            } else if (!m_steps.empty() || name != versionAttribute)
                checkUnknownAttribute(shape, name, {attribute.name.begin, element});
        }
    }

    void readChild(Object &object)
    {
        const int element = m_tag.element;
        const XmlMarkup::Element &tag = m_markup.elements().at(element);
        int index = object.shape.find(m_markup.bytes(tag.name), object.hint);
        if (index < 0)
            index = object.shape.find(nameOf(element)); // it may have a prefix
        object.hint = std::max(index, 0);
        if (index < 0 || object.shape.members[std::size_t(index)].kind == MemberKind::Choice) {
            readUnknown(object.shape);
            return;
        }
        const Shape::Member &member = object.shape.members[std::size_t(index)];
        if (member.child) {
            const bool isList = member.kind == MemberKind::ObjectList;
            if (member.kind == MemberKind::Alternative) {
                m_hasSeveralAlternatives = m_hasSeveralAlternatives || object.hasAlternative;
                object.hasAlternative = true;
                replaceValue(object, index, TextSubject::RepeatedAlternative);
            }
            m_steps.push_back({member.name, isList ? object.counts[std::size_t(index)]++ : -1});
            // A child object that occurs several times is read further, in contrast to an alternative.
            int place = Places::none;
            if (m_places && member.kind == MemberKind::Object)
                place = m_places->lastOf(object.place, index);
            if (m_places && place == Places::none)
                place = m_places->add(object.place, index, element);
            Object child{*member.child, element, place};
            read(child);
            m_steps.pop_back();
            return;
        }
        if (m_places)
            m_places->add(object.place, index, element);
        if (member.kind != MemberKind::EnumerationList)
            replaceValue(object, index, TextSubject::RepeatedMember);
        checkValue(member, m_markup.bytes(tag.content), false, {tag.startTag.begin, element});
        m_tag.isEnd = true;
    }

    /// Notes the present element as that of a member, and checks whether it replaces an earlier value.
    void replaceValue(Object &object, int member, TextSubject subject)
    {
        const Value earlier = std::exchange(object.values[std::size_t(member)], {m_tag.element, false});
        if (earlier.index < 0)
            return;
        const int offset = earlier.isAttribute ? m_markup.attributes().at(earlier.index).name.begin
                                               : m_markup.elements().at(earlier.index).startTag.begin;
        LintedText linted(m_steps, {offset, earlier.isAttribute ? object.element : earlier.index}, m_report);
        const QLatin1String name = object.shape.members[std::size_t(member)].name;
        linted.setMember(name);
        linted.name = name;
        if (subject == TextSubject::RepeatedMember) {
            linted.text = textOf(earlier);
            linted.following = textOf({m_tag.element, false});
        }
        linted.check(subject);
    }

    QString textOf(const Value &value) const
    {
        const QLatin1String raw = m_markup.bytes(value.isAttribute ? m_markup.attributes().at(value.index).value
                                                                   : m_markup.elements().at(value.index).content);
        return (value.isAttribute ? XmlTexts::attribute(raw) : XmlTexts::element(raw)).value_or(toString(raw));
    }

    void readUnknown(const Shape &shape)
    {
        const int element = m_tag.element;
        const bool isSkipped = !m_steps.empty() || m_isOlder;
        LintedText linted(m_steps, {m_markup.elements().at(element).startTag.begin, element}, m_report);
        linted.name = toString(nameOf(element));
        linted.className = shape.className;
        linted.known = shape.elementNames;
        linted.isSkipped = isSkipped;
        linted.check(TextSubject::Element);
        if (!isSkipped)
            return;
        if (!m_markup.elements().at(element).containsItsName) {
            m_tag.isEnd = true;
            return;
        }
        const QLatin1String name = nameOf(element);
        while (next() && nameOf(m_tag.element) != name) { }
    }

    void checkUnknownAttribute(const Shape &shape, QLatin1String name, const TextPlace &place)
    {
        const QString full = toString(name);
        const int colon = full.indexOf(QLatin1Char(':'));
        // A prefix is that of somebody else's attributes, unless the rest is a name of ours.
        const bool isForeign =
            full == QLatin1String("xmlns") || (colon >= 0 && !shape.attributeNames.contains(full.mid(colon + 1)));
        if (isForeign)
            return;
        LintedText linted(m_steps, place, m_report);
        linted.name = full;
        linted.className = shape.className;
        linted.known = shape.attributeNames;
        linted.isElement = shape.elementNames.contains(full);
        linted.check(TextSubject::Attribute);
    }

    void checkValue(const Shape::Member &member, QLatin1String raw, bool isAttribute, const TextPlace &place)
    {
        const bool isBoolean = member.kind == MemberKind::Boolean;
        if (isBoolean ? isPlainBoolean(raw) : !isNumeric(member.kind) || isPlainNumber(raw, member.kind))
            return;
        const std::optional<QString> text = isAttribute ? XmlTexts::attribute(raw) : XmlTexts::element(raw);
        if (!text)
            return;
        LintedText linted(m_steps, place, m_report);
        linted.setMember(member.name);
        linted.name = member.name;
        linted.kind = member.kind;
        linted.text = *text;
        linted.check(isBoolean ? TextSubject::Boolean : TextSubject::Number);
    }

    void checkVersion()
    {
        const XmlMarkup::Element &root = m_markup.elements().at(0);
        const int index = m_markup.findAttribute(root, versionAttribute);
        const int offset = index < 0 ? root.startTag.begin : m_markup.attributes().at(index).name.begin;
        LintedText linted(m_steps, {offset, 0}, m_report);
        linted.presentVersion = m_presentVersion;
        if (index >= 0)
            linted.text =
                XmlTexts::attribute(m_markup.bytes(m_markup.attributes().at(index).value)).value_or(QString());
        m_isOlder = linted.text.toFloat() < m_presentVersion.toFloat();
        linted.check(TextSubject::Version);
    }

    const XmlMarkup &m_markup;
    Report &m_report;
    Places *const m_places;
    QString m_presentVersion;
    bool m_hasSeveralAlternatives = false;
    bool m_isOlder = false; // unknown elements of the document are skipped with what is in them
    Tag m_tag;
    std::vector<LintStep> m_steps;
};

} // namespace

bool canLintText(const XmlMarkup &markup)
{
    return markup.isComplete() && markup.localName(markup.elements().first()) == QLatin1String("TunerProperties");
}

bool lintText(const XmlMarkup &markup, Report &report, Places *places)
{
    Walk walk(markup, report, places);
    walk.run();
    return walk.hasSeveralAlternatives();
}

} // namespace TunerDocuments
