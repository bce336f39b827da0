// SPDX-License-Identifier: MIT
#include "documents/lint/TextWalk.h"

#include <algorithm>
#include <array>

#include <jobxml/TunerProperties.h>

#include "documents/lint/LintedText.h"
#include "documents/lint/XmlTexts.h"

using JobXml::MemberKind;
using REPORTGENERATOR::XmlMarkup;

namespace TunerDocuments {

void LintedText::check(TextSubject subject)
{
    const std::vector<Rule> &rules = allRules();
    for (m_rule = 0; m_rule < int(rules.size()); ++m_rule) {
        if (rules[std::size_t(m_rule)].subject == subject && (m_report.enabled() & bitOf(m_rule)) != 0)
            rules[std::size_t(m_rule)].checkText(*this);
    }
}

namespace {

constexpr char disableMark[] = "tunerproperties-lint-disable";

const QLatin1String versionAttribute("Version");

QString toString(QLatin1String utf8)
{
    return QString::fromUtf8(utf8.data(), utf8.size());
}

// --- Comments --------------------------------------------------------------------------------------------------------

/// The comments that disable rules.
class Comments
{
public:
    Comments(const XmlMarkup &markup, Report &report) : m_markup(markup), m_report(report) { }

    /// Returns whether they disable any rule.
    bool apply()
    {
        if (!m_markup.document().contains(disableMark))
            return false;
        findElements();
        std::vector<quint64> disabled(std::size_t(m_markup.elements().size()), 0);
        quint64 all = 0;
        forEach([&](int, int element, const QStringList &names) {
            for (const QString &name : names) {
                const quint64 rule = bitNamed(name);
                all |= rule;
                if (element >= 0)
                    disabled[std::size_t(element)] |= rule;
            }
        });
        for (std::size_t i = 0; i < disabled.size(); ++i) {
            const int parent = m_markup.elements().at(int(i)).parent;
            if (parent >= 0)
                disabled[i] |= disabled[std::size_t(parent)];
        }
        m_report.setDisabledInElements(std::move(disabled));
        reportUseless();
        return all != 0;
    }

private:
    /// Finds the element directly after each comment, from the last one backward: comments may be in a row.
    void findElements()
    {
        const auto &comments = m_markup.comments();
        m_elements.assign(std::size_t(comments.size()), -1);
        for (int i = comments.size() - 1; i >= 0; --i) {
            const int next = afterBlanks(comments.at(i).whole.end);
            const int element = comments.at(i).next;
            if (i + 1 < comments.size() && comments.at(i + 1).whole.begin == next)
                m_elements[std::size_t(i)] = m_elements[std::size_t(i) + 1];
            else if (element < m_markup.elements().size() && m_markup.elements().at(element).startTag.begin == next)
                m_elements[std::size_t(i)] = element;
        }
    }

    int afterBlanks(int at) const
    {
        const QByteArray &text = m_markup.document();
        while (at < text.size() && QByteArray(" \t\r\n").contains(text.at(at)))
            ++at;
        return at;
    }

    /// Calls `action(comment, element, names)` for each comment that is meant to disable rules.
    template <class Action>
    void forEach(const Action &action) const
    {
        for (int i = 0; i < m_markup.comments().size(); ++i) {
            const QString text = toString(m_markup.bytes(m_markup.comments().at(i).whole));
            const QString content = text.mid(4, text.size() - 7).trimmed();
            if (!content.startsWith(QLatin1String(disableMark)))
                continue;
            const QString names = content.mid(int(qstrlen(disableMark))).replace(QLatin1Char(','), QLatin1Char(' '));
            action(i, m_elements[std::size_t(i)], names.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts));
        }
    }

    /// 0 for an unknown rule.
    static quint64 bitNamed(const QString &name)
    {
        for (std::size_t i = 0; i < allRules().size(); ++i) {
            if (name == QLatin1String(allRules()[i].name))
                return bitOf(int(i));
        }
        return 0;
    }

    void reportUseless()
    {
        forEach([&](int comment, int element, const QStringList &names) {
            if (element < 0)
                warn(comment, QString());
            else if (names.isEmpty())
                warn(comment, QStringLiteral(""));
            else {
                for (const QString &name : names) {
                    if (bitNamed(name) == 0)
                        warn(comment, name);
                }
            }
        });
    }

    void warn(int index, const QString &word)
    {
        const XmlMarkup::Comment &comment = m_markup.comments().at(index);
        const std::vector<LintStep> noSteps;
        LintedText linted(noSteps, {comment.whole.begin, comment.parent}, m_report);
        linted.text = word;
        for (const Rule &rule : allRules())
            linted.known.append(QString::fromLatin1(rule.name));
        linted.check(TextSubject::Comment);
    }

    const XmlMarkup &m_markup;
    Report &m_report;
    std::vector<int> m_elements; // by comment; -1 if there is none directly after it
};

// --- Elements --------------------------------------------------------------------------------------------------------

/// Whether a number is one that every reader and writer keeps: a few digits, with at most two decimals for the types
/// that have any.
bool isPlainNumber(QLatin1String text, MemberKind kind)
{
    const char *at = text.data();
    const char *const end = at + text.size();
    if (at != end && *at == '-' && kind != MemberKind::UInt64)
        ++at;
    const char *const digits = at;
    while (at != end && *at >= '0' && *at <= '9')
        ++at;
    const bool is64Bit = kind == MemberKind::Int64 || kind == MemberKind::UInt64;
    const int safeDigits = is64Bit ? 18 : 9;
    if (at == digits || at - digits > safeDigits)
        return false;
    const bool mayHaveDecimals = kind == MemberKind::Float || kind == MemberKind::Double;
    if (at == end || *at != '.' || !mayHaveDecimals)
        return at == end;
    const char *const decimals = ++at;
    while (at != end && *at >= '0' && *at <= '9')
        ++at;
    return at == end && at - decimals >= 1 && at - decimals <= 2;
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
        Object root{documentShape(), Places::none};
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

    /// An object that is being read.
    struct Object
    {
        const Shape &shape;
        int place;
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
        const int element = m_tag.element;
        readAttributes(object.shape);
        while (next()) {
            if (!m_tag.isEnd)
                readChild(object);
            else if (m_tag.element == element || nameOf(m_tag.element) == nameOf(element))
                return;
        }
    }

    void readAttributes(const Shape &shape)
    {
        const int element = m_tag.element;
        const XmlMarkup::Element &tag = m_markup.elements().at(element);
        int hint = 0;
        for (int i = tag.firstAttribute; i < tag.firstAttribute + tag.attributeCount; ++i) {
            const XmlMarkup::Attribute &attribute = m_markup.attributes().at(i);
            const QLatin1String name = m_markup.bytes(attribute.name);
            const int member = shape.find(name, hint);
            hint = member + 1;
            if (member >= 0 && shape.members[std::size_t(member)].isAttribute)
                checkValue(shape.members[std::size_t(member)], m_markup.bytes(attribute.value), true,
                           {attribute.name.begin, element});
            else if (!m_steps.empty() || name != versionAttribute)
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
            }
            m_steps.push_back({member.name, isList ? object.counts[std::size_t(index)]++ : -1});
            // A child object that occurs several times is read further, in contrast to an alternative.
            int place = Places::none;
            if (m_places && member.kind == MemberKind::Object)
                place = m_places->lastOf(object.place, index);
            if (m_places && place == Places::none)
                place = m_places->add(object.place, index, element);
            Object child{*member.child, place};
            read(child);
            m_steps.pop_back();
            return;
        }
        if (m_places)
            m_places->add(object.place, index, element);
        checkValue(member, m_markup.bytes(tag.content), false, {tag.startTag.begin, element});
        m_tag.isEnd = true;
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
        if (isBoolean ? isPlainBoolean(raw) : !Shape::isNumber(member.kind) || isPlainNumber(raw, member.kind))
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

bool applyComments(const XmlMarkup &markup, Report &report)
{
    return Comments(markup, report).apply();
}

bool lintText(const XmlMarkup &markup, Report &report, Places *places)
{
    Walk walk(markup, report, places);
    walk.run();
    return walk.hasSeveralAlternatives();
}

} // namespace TunerDocuments
