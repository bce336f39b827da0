// SPDX-License-Identifier: MIT
#include "documents/lint/TextWalk.h"

#include <algorithm>
#include <array>
#include <utility>

#include <jobxml/TunerProperties.h>

#include "documents/lint/LintedText.h"
#include "documents/lint/PlainText.h"
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

    /// The text of a value.
    struct Value
    {
        XmlMarkup::Span span;
        bool isAttribute;
    };

    /// An object that is being read.
    struct Object
    {
        const Shape &shape;
        int element;
        int place;
        /// For each list, the number of its items so far; for other members, the last element, or 0.
        std::array<int, mostMembers> read = {};
        int hint = 0; ///< the member that was read last
        bool hasAlternative = false; ///< whether one was read
    };

    /// What is between the present tag and the one before it.
    struct Between
    {
        XmlMarkup::Span span;
        int element = -1; ///< that directly contains it
    };

    bool next()
    {
        const auto &elements = m_markup.elements();
        const XmlMarkup::Element &current = elements.at(m_tag.element);
        const int index = m_tag.isEnd ? current.next : m_tag.element + 1;
        const int parent = m_tag.isEnd ? current.parent : m_tag.element;
        if (parent < 0)
            return false; // after the root
        const int begin = m_tag.isEnd ? current.end : current.startTag.end;
        const XmlMarkup::Element *const following = index < elements.size() ? &elements.at(index) : nullptr;
        if (following && following->parent == parent) {
            m_tag = {index, false};
            m_between = {{begin, following->startTag.begin}, parent};
        } else {
            m_tag = {parent, true};
            m_between = {{begin, elements.at(parent).content.end}, parent};
        }
        return true;
    }

    QLatin1String nameOf(int element) const { return m_markup.localName(m_markup.elements().at(element)); }

    void read(Object &object)
    {
        readAttributes(object);
        while (next()) {
            checkBetweenTags(object);
            if (!m_tag.isEnd)
                readChild(object);
            else if (m_tag.element == object.element || nameOf(m_tag.element) == nameOf(object.element))
                return;
        }
    }

    /// Checks what is between the present tag and the one before it, if that is in the object itself.
    void checkBetweenTags(const Object &object)
    {
        const char *const document = m_markup.document().constData();
        const XmlMarkup::Span &span = m_between.span;
        if (m_between.element == object.element && !PlainText::isBlank(document + span.begin, document + span.end))
            checkTexts(object, span); // in hardly any document
    }

    Q_NEVER_INLINE void checkTexts(const Object &object, const XmlMarkup::Span &span)
    {
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
            m_steps.push_back({member.name, isList ? object.read[std::size_t(index)]++ : -1});
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
        if (tag.next != element + 1)
            checkElementsInValue(member);
        if (tag.attributeCount != 0)
            checkAttributesOfValue(member);
        checkValue(member, m_markup.bytes(tag.content), false, {tag.startTag.begin, element});
        m_tag.isEnd = true;
    }

    /// Notes the present element as that of a member, and checks whether it replaces an earlier value.
    void replaceValue(Object &object, int member, TextSubject subject)
    {
        const int earlier = std::exchange(object.read[std::size_t(member)], m_tag.element);
        const Shape::Member &replaced = object.shape.members[std::size_t(member)];
        if (earlier > 0)
            checkReplacedElement(replaced, subject, earlier);
        else if (replaced.isAttribute)
            checkReplacedAttribute(replaced, subject, object.element);
    }

    Q_NEVER_INLINE void checkReplacedElement(const Shape::Member &member, TextSubject subject, int index)
    {
        const XmlMarkup::Element &element = m_markup.elements().at(index);
        checkReplaced(member, subject, {element.startTag.begin, index}, {element.content, false});
    }

    Q_NEVER_INLINE void checkReplacedAttribute(const Shape::Member &member, TextSubject subject, int element)
    {
        const int index = m_markup.findAttribute(m_markup.elements().at(element), member.name);
        if (index < 0)
            return;
        const XmlMarkup::Attribute &attribute = m_markup.attributes().at(index);
        checkReplaced(member, subject, {attribute.name.begin, element}, {attribute.value, true});
    }

    void checkReplaced(const Shape::Member &member, TextSubject subject, const TextPlace &place, const Value &value)
    {
        LintedText linted(m_steps, place, m_report);
        linted.setMember(member.name);
        linted.name = member.name;
        if (subject == TextSubject::RepeatedMember) {
            linted.text = textOf(value);
            linted.following = textOf({m_markup.elements().at(m_tag.element).content, false});
        }
        linted.check(subject);
    }

    QString textOf(const Value &value) const
    {
        const QLatin1String raw = m_markup.bytes(value.span);
        return (value.isAttribute ? XmlTexts::attribute(raw) : XmlTexts::element(raw)).value_or(toString(raw));
    }

    Q_NEVER_INLINE void checkElementsInValue(const Shape::Member &member)
    {
        const auto &elements = m_markup.elements();
        const int end = elements.at(m_tag.element).next;
        for (int i = m_tag.element + 1; i < end; i = elements.at(i).next) {
            LintedText linted(m_steps, {elements.at(i).startTag.begin, i}, m_report);
            linted.setMember(member.name);
            linted.name = member.name;
            linted.text = toString(nameOf(i));
            linted.check(TextSubject::ElementInValue);
        }
    }

    Q_NEVER_INLINE void checkAttributesOfValue(const Shape::Member &member)
    {
        const int element = m_tag.element;
        const XmlMarkup::Element &tag = m_markup.elements().at(element);
        Shape none; // of an object without members
        none.className = member.name;
        for (int i = tag.firstAttribute; i < tag.firstAttribute + tag.attributeCount; ++i) {
            const XmlMarkup::Span name = m_markup.attributes().at(i).name;
            checkUnknownAttribute(none, m_markup.bytes(name), {name.begin, element}, member.name);
        }
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

    /// `member` is the one whose value the element is, if it is not an object.
    void checkUnknownAttribute(const Shape &shape, QLatin1String name, const TextPlace &place,
                               QLatin1String member = {})
    {
        const QString full = toString(name);
        const auto colon = full.indexOf(QLatin1Char(':'));
        // A prefix is that of somebody else's attributes, unless the rest is a name of ours.
        const bool isForeign =
            full == QLatin1String("xmlns") || (colon >= 0 && !shape.attributeNames.contains(full.mid(colon + 1)));
        if (isForeign)
            return;
        LintedText linted(m_steps, place, m_report);
        linted.name = full;
        linted.className = shape.className;
        linted.setMember(member);
        linted.known = shape.attributeNames;
        linted.isElement = shape.elementNames.contains(full);
        linted.check(TextSubject::Attribute);
    }

    void checkValue(const Shape::Member &member, QLatin1String raw, bool isAttribute, const TextPlace &place)
    {
        const bool isBoolean = member.kind == MemberKind::Boolean;
        if (isBoolean ? PlainText::isBoolean(raw) : !isNumeric(member.kind) || PlainText::isNumber(raw, member.kind))
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
    Between m_between;
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
