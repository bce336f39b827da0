// SPDX-License-Identifier: MIT
#include "documents/xml/XmlValues.h"

#include <algorithm>

#include <QByteArrayList>
#include <QStringList>
#include <QXmlStreamReader>

#include "documents/values/ExactNotation.h"
#include "documents/values/FindMember.h"
#include "documents/values/NameArrangement.h"
#include "documents/xml/XmlBlanks.h"
#include "documents/xml/XmlText.h"
#include "documents/xml/XmlTexts.h"

using namespace JobXml;

namespace TunerDocuments {

void XmlValues::write(const MemberView &member, const QString &typed)
{
    const QVector<XmlPlaces::Value> values = m_places.valuesOf(m_children.elements(), m_children.object(), member);
    if (!member.IsSet()) {
        removeValues(values);
        return;
    }
    if (member.GetKind() == MemberKind::EnumerationList) {
        writeNames(member, values);
        return;
    }
    const QString text = typed.isNull() ? XmlText::ofValue(member).value(0) : typed;
    if (values.isEmpty())
        addValue(member, text);
    else if (values.last().isAttribute)
        replaceAttribute(values.last().index, text, isNumber(member));
    else
        replaceContent(values.last().index, text, isNumber(member));
}

bool XmlValues::hasExactly(const MemberView &member, const QString &typed) const
{
    const QVector<XmlPlaces::Value> values = m_places.valuesOf(m_children.elements(), m_children.object(), member);
    return !values.isEmpty() && isExactNotation(member.GetKind(), readText(values.last()), typed);
}

/// The text of a value as readers return it.
QString XmlValues::readText(const XmlPlaces::Value &value) const
{
    const QByteArray &document = m_markup.document();
    QXmlStreamReader reader;
    reader.setNamespaceProcessing(false); // prefixes are declared outside
    if (value.isAttribute) {
        const Span quoted = m_markup.attributes().at(value.index).value;
        reader.addData("<a v=" + document.mid(quoted.begin - 1, quoted.size() + 2) + "/>");
        reader.readNextStartElement();
        return reader.attributes().value(QLatin1String("v")).toString();
    }
    const Span content = m_markup.elements().at(value.index).content;
    reader.addData("<a>" + document.mid(content.begin, content.size()) + "</a>");
    reader.readNextStartElement();
    return reader.readElementText(QXmlStreamReader::SkipChildElements);
}

/// The names of a list, for arrangeNames(): they are in one element each. What the text has instead of a name of the
/// model keeps its text.
class XmlValues::Names
{
public:
    Names(XmlValues &values, const MemberView &member, const QVector<XmlPlaces::Value> &places)
        : m_values(values), m_member(member), m_places(places), m_texts(XmlText::ofValue(member))
    {
    }

    QStringList before() const
    {
        const QStringList known = m_member.GetNames();
        QStringList names;
        for (const XmlPlaces::Value &place : m_places) {
            const QString text = m_values.readText(place);
            names.append(known.contains(text) ? text : QString());
        }
        return names;
    }
    QStringList after() const { return m_texts; }

    void replace(int place, int name, int origin)
    {
        m_values.replaceContent(elementAt(place), text(name, origin), false);
    }
    void remove(int place) { m_values.m_children.remove(elementAt(place)); }
    void addBefore(int place, int name, int origin)
    {
        m_values.m_children.addBefore(elementAt(place), element(name, origin, layoutAt(place)));
    }
    void addAfter(int place, int name, int origin)
    {
        m_values.m_children.addAfter(elementAt(place), element(name, origin, layoutAt(place)));
    }
    void addFirst(int name)
    {
        const QString list = m_member.GetName();
        m_values.m_children.add(list, {element(name, -1, m_values.m_children.layoutFor(list))});
    }

private:
    int elementAt(int place) const { return m_places.at(place).index; }
    XmlText::Layout layoutAt(int place) const { return m_values.m_children.layoutAt(elementAt(place)); }
    QString text(int name, int origin) const
    {
        return origin < 0 ? m_texts.at(name) : m_values.readText(m_places.at(origin));
    }
    QByteArray element(int name, int origin, const XmlText::Layout &layout) const
    {
        return XmlText::element(m_member.GetName(), text(name, origin), layout, m_values.m_encoding);
    }

    XmlValues &m_values;
    const MemberView &m_member;
    const QVector<XmlPlaces::Value> &m_places;
    const QStringList m_texts;
};

void XmlValues::writeNames(const MemberView &member, const QVector<XmlPlaces::Value> &values)
{
    Names names(*this, member, values);
    arrangeNames(names, names.before(), names.after());
}

void XmlValues::replaceAttribute(int attribute, const QString &text, bool isNumber)
{
    const QByteArray &document = m_markup.document();
    const Span value = m_markup.attributes().at(attribute).value;
    const Span span = isNumber ? XmlBlanks::trimmed(document, value) : value;
    const QByteArray written = XmlText::inAttribute(text, document.at(value.end), m_encoding);
    if (m_markup.bytes(span) != QLatin1String(written))
        m_out.append({span.begin, span.end, written, span.size() > 0});
}

void XmlValues::replaceContent(int element, const QString &text, bool isNumber)
{
    const QByteArray &document = m_markup.document();
    const Markup::Element &place = m_markup.elements().at(element);
    const QByteArray written = XmlText::inElement(text, m_encoding);
    if (place.isEmptyTag) {
        constexpr int endSize = 2; // "/>"
        if (!written.isEmpty())
            m_out.append({place.startTag.end - endSize, place.startTag.end,
                          '>' + written + "</" + document.mid(place.name.begin, place.name.size()) + '>'});
        return;
    }
    QVector<Span> texts = XmlTexts::inElement(m_markup, element);
    if (isNumber) { // blanks around a number do not matter
        for (Span &span : texts)
            span = XmlBlanks::trimmed(document, span);
        texts.erase(std::remove_if(texts.begin(), texts.end(), [](const Span &span) { return span.size() == 0; }),
                    texts.end());
    }
    if (texts.isEmpty()) {
        m_out.append({place.content.begin, place.content.begin, written});
        return;
    }
    if (texts.size() == 1 && m_markup.bytes(texts.first()) == QLatin1String(written))
        return;
    for (int i = 0; i < texts.size(); ++i)
        m_out.append({texts.at(i).begin, texts.at(i).end, i == 0 ? written : QByteArray(), true});
}

void XmlValues::removeValues(const QVector<XmlPlaces::Value> &values)
{
    for (const XmlPlaces::Value &value : values) {
        if (!value.isAttribute) {
            m_children.remove(value.index);
            continue;
        }
        Span span = m_markup.attributes().at(value.index).whole();
        span.begin -= int(XmlBlanks::before(m_markup.document(), span.begin).size());
        m_out.append({span.begin, span.end, QByteArray()});
    }
}

void XmlValues::addValue(const MemberView &member, const QString &text)
{
    const int element = m_children.elements().last();
    // An author who writes the other members as elements wants this one as an element, too.
    bool hasAttributes = false;
    bool hasElements = false;
    visit(m_children.object(), [&](const MemberView &other) {
        if (!other.IsAttribute())
            return;
        const QVector<XmlPlaces::Value> values = m_places.valuesOf({element}, m_children.object(), other);
        for (const XmlPlaces::Value &value : values)
            (value.isAttribute ? hasAttributes : hasElements) = true;
    });
    if (member.IsAttribute() && (hasAttributes || !hasElements))
        addAttribute(member, text);
    else
        m_children.add(member.GetName(),
                       {XmlText::element(member.GetName(), text, m_children.layoutFor(member.GetName()), m_encoding)});
}

/// The attribute follows those that the library writes before it, separated as they are.
void XmlValues::addAttribute(const MemberView &member, const QString &text)
{
    const QByteArray &document = m_markup.document();
    const Markup::Element &place = m_markup.elements().at(m_children.elements().last());
    const auto &attributes = m_markup.attributes();
    const Neighbors neighbors = neighborsOf(place, member);
    const int neighbor = neighbors.before >= 0 ? neighbors.before : neighbors.after;
    const char quote = neighbor < 0 ? '"' : document.at(attributes.at(neighbor).value.end);
    const QByteArray attribute = QByteArray(member.GetName().data(), member.GetName().size()) + '=' + quote
        + XmlText::inAttribute(text, quote, m_encoding) + quote;
    if (neighbor < 0) {
        m_out.append({place.name.end, place.name.end, ' ' + attribute});
        return;
    }
    const Span whole = attributes.at(neighbor).whole();
    // The first attribute is usually on the line of its tag, and the others below it.
    const bool isFirst = neighbor == place.firstAttribute;
    const bool hasSecond = place.attributeCount > 1;
    const int sample = isFirst && hasSecond ? neighbor + 1 : neighbor;
    const QByteArray blanks = XmlBlanks::before(document, attributes.at(sample).name.begin);
    if (neighbors.before >= 0)
        m_out.append({whole.end, whole.end, blanks + attribute});
    else
        m_out.append({whole.begin, whole.begin, attribute + blanks});
}

XmlValues::Neighbors XmlValues::neighborsOf(const Markup::Element &place, const MemberView &member) const
{
    QStringList order;
    QVector<bool> areSet;
    visit(m_children.object(), [&](const MemberView &other) {
        if (!other.IsAttribute())
            return;
        order.append(other.GetName());
        areSet.append(other.IsSet());
    });
    const auto isUnset = [&](auto attribute) { return attribute >= 0 && !areSet.at(attribute); };
    const auto position = order.indexOf(member.GetName());
    Neighbors neighbors;
    for (int i = place.firstAttribute; i < place.firstAttribute + place.attributeCount; ++i) {
        const auto other = order.indexOf(m_markup.bytes(m_markup.attributes().at(i).name));
        if (isUnset(other))
            continue; // it is removed
        if (other < position) // -1 for those that the model does not have
            neighbors.before = i;
        else if (neighbors.after < 0)
            neighbors.after = i;
    }
    return neighbors;
}

} // namespace TunerDocuments
