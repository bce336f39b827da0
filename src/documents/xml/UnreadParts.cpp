// SPDX-License-Identifier: MIT
#include "documents/xml/UnreadParts.h"

#include <utility>

#include "documents/values/FindMember.h"
#include "documents/xml/XmlBlanks.h"
#include "documents/xml/XmlTexts.h"

using namespace JobXml;
using REPORTGENERATOR::XmlMarkup;

namespace TunerDocuments {

UnreadParts::UnreadParts(const XmlMarkup &markup, const TunerProperties &tuner)
    : m_markup(markup), m_tuner(tuner), m_places(markup, tuner)
{
}

void UnreadParts::visit(const QVector<Step> &steps, const Action &action)
{
    const QVector<int> elements = m_places.elementsOf(steps);
    const DataObject *const object = objectAt(m_tuner, steps);
    if (elements.isEmpty() || !object)
        return;
    m_action = &action;
    m_steps = steps;
    visitObject(elements.last(), *object);
}

void UnreadParts::visitObject(int element, const DataObject &object)
{
    visitAttributes(element);
    visitTexts(element);
    const QVector<XmlPlaces::Child> children = m_places.childrenOf(element, object);
    bool hasAlternative = false;
    JobXml::visit(object, [&](const MemberView &member) {
        QVector<XmlPlaces::Value> values;
        const int attribute =
            member.IsAttribute() ? m_markup.findAttribute(m_markup.elements().at(element), member.GetName()) : -1;
        if (attribute >= 0)
            values.append({true, attribute});
        for (const XmlPlaces::Child &child : children) {
            if (child.member == member.GetName())
                values.append({false, child.element});
        }
        if (values.isEmpty())
            return;
        if (member.GetKind() == MemberKind::Alternative && std::exchange(hasAlternative, true))
            report(UnreadPart::SecondAlternative, values.first(),
                   QStringLiteral("an item holds one value, and there are several"), QByteArray(), QString());
        visitValues(member, values);
    });
}

/// Those of other namespaces: readers accept them for the programs that know them.
void UnreadParts::visitAttributes(int element)
{
    const XmlMarkup::Element &tag = m_markup.elements().at(element);
    for (int i = tag.firstAttribute; i < tag.firstAttribute + tag.attributeCount; ++i) {
        const XmlMarkup::Attribute &attribute = m_markup.attributes().at(i);
        const QByteArray name = bytes(attribute.name);
        if (name.contains(':') && !name.startsWith("xmlns:"))
            report(UnreadPart::Content, attribute.name.begin,
                   QStringLiteral("there is an attribute of another namespace, which would be lost"),
                   bytes(attribute.whole()));
    }
}

void UnreadParts::visitTexts(int element)
{
    const QVector<XmlMarkup::Span> texts = XmlTexts::inElement(m_markup, element);
    for (const XmlMarkup::Span &text : texts) {
        const XmlMarkup::Span part = XmlBlanks::trimmed(m_markup.document(), text);
        if (part.size() > 0)
            report(UnreadPart::Content, part.begin, QStringLiteral("there is a text that would be lost"), bytes(part));
    }
}

void UnreadParts::visitValues(const MemberView &member, const QVector<XmlPlaces::Value> &values)
{
    const MemberKind kind = member.GetKind();
    const bool isList = kind == MemberKind::ObjectList || kind == MemberKind::EnumerationList;
    const bool isReadFurther = kind == MemberKind::Object;
    if (values.size() > 1 && !isList) {
        QByteArray lost;
        for (int i = 0; i + 1 < values.size(); ++i)
            lost += bytes(spanOf(values.at(i)));
        report(isReadFurther ? UnreadPart::SecondObject : UnreadPart::EarlierValue, values.at(1),
               QStringLiteral("'%1' is there twice").arg(member.GetName()), lost, member.GetName());
    }
    const bool areAllRead = isList || isReadFurther;
    const int size = int(values.size());
    for (int i = areAllRead ? 0 : size - 1; i < size; ++i)
        visitValue(values.at(i), member, kind == MemberKind::ObjectList ? i : 0);
}

void UnreadParts::visitValue(const XmlPlaces::Value &value, const MemberView &member, int child)
{
    if (value.isAttribute)
        return;
    if (!holdsObjects(member)) {
        visitPlainValue(value.index, member);
    } else if (child < member.GetSize()) {
        m_steps.append({member.GetName(), member.GetKind() == MemberKind::ObjectList ? child : -1});
        visitObject(value.index, member.GetChild(child));
        m_steps.removeLast();
    }
}

void UnreadParts::visitPlainValue(int element, const MemberView &member)
{
    const XmlMarkup::Element &tag = m_markup.elements().at(element);
    if (tag.next != element + 1) {
        const XmlMarkup::Element &nested = m_markup.elements().at(element + 1);
        report(UnreadPart::Content, nested.startTag.begin,
               QStringLiteral("there is an element in a value, which would be lost"), bytes(nested.whole()),
               member.GetName());
    }
}

void UnreadParts::report(UnreadPart::Kind kind, const XmlPlaces::Value &value, const QString &problem,
                         const QByteArray &text, const QString &member)
{
    report(kind, spanOf(value).begin, problem, text, member);
}

void UnreadParts::report(UnreadPart::Kind kind, int offset, const QString &problem, const QByteArray &text,
                         const QString &member)
{
    (*m_action)({kind, offset, problem, text, m_steps, member});
}

XmlMarkup::Span UnreadParts::spanOf(const XmlPlaces::Value &value) const
{
    return value.isAttribute ? m_markup.attributes().at(value.index).whole()
                             : m_markup.elements().at(value.index).whole();
}

QByteArray UnreadParts::bytes(const XmlMarkup::Span &span) const
{
    const QLatin1String view = m_markup.bytes(span);
    return QByteArray(view.data(), view.size());
}

} // namespace TunerDocuments
