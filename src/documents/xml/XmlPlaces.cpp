// SPDX-License-Identifier: MIT
#include "documents/xml/XmlPlaces.h"

#include <algorithm>

#include <QStringList>

#include <jobxml/Visit.h>

using namespace JobXml;

namespace TunerDocuments {

namespace {

/// The names of the child elements that an object reads.
QVector<QLatin1String> elementNamesOf(const DataObject &object)
{
    QVector<QLatin1String> names;
    visit(object, [&](const MemberView &member) {
        if (member.GetKind() != MemberKind::Choice)
            names.append(member.GetName());
    });
    return names;
}

const DataObject *childAt(const DataObject &object, const Step &step)
{
    const DataObject *child = nullptr;
    visit(object, [&](const MemberView &member) {
        const int index = qMax(step.index, 0);
        if (member.GetName() == step.member && index < member.GetSize())
            child = &member.GetChild(index);
    });
    return child;
}

} // namespace

XmlPlaces::XmlPlaces(const Markup &markup, const TunerProperties &tuner)
    : m_markup(markup), m_tuner(tuner),
      m_isOlder(tuner.GetInitialVersionLoaded().toFloat() < tuner.GetVersion().toFloat())
{
}

QString XmlPlaces::refusal() const
{
    if (!m_markup.isComplete())
        return QStringLiteral("the tags of the document cannot be found");
    // An unknown element is skipped up to the next tag of its name, wherever that is, and no object contains its own
    // kind: such a document is not what it seems to be.
    const auto &elements = m_markup.elements();
    const auto nested = std::find_if(elements.begin(), elements.end(),
                                     [](const Markup::Element &element) { return element.containsItsName; });
    if (nested == elements.end())
        return QString();
    return QStringLiteral("the document has a '%1' inside another one").arg(m_markup.localName(*nested));
}

QVector<XmlPlaces::Child> XmlPlaces::childrenOf(int element, const DataObject &object) const
{
    const QVector<QLatin1String> names = elementNamesOf(object);
    const bool isEntered = &object == &m_tuner && !m_isOlder;
    QVector<Child> children;
    for (int i = element + 1; i < m_markup.elements().at(element).next;) {
        const Markup::Element &child = m_markup.elements().at(i);
        const QLatin1String name = m_markup.localName(child);
        const auto known = std::find(names.begin(), names.end(), name);
        const bool isKnown = known != names.end();
        if (isKnown)
            children.append({i, *known});
        i = isKnown || !isEntered ? child.next : i + 1;
    }
    return children;
}

QVector<int> XmlPlaces::elementsOf(const QVector<Step> &steps) const
{
    QVector<int> elements = {0};
    const DataObject *object = &m_tuner;
    for (const Step &step : steps) {
        QVector<int> next;
        for (const int element : qAsConst(elements)) {
            const QVector<Child> children = childrenOf(element, *object);
            for (const Child &child : children) {
                if (child.member == step.member)
                    next.append(child.element);
            }
        }
        bool isAlternative = false;
        visit(*object, [&](const MemberView &member) {
            if (member.GetName() == step.member)
                isAlternative = member.GetKind() == MemberKind::Alternative;
        });
        if (step.index >= 0)
            next = next.mid(step.index, 1);
        else if (isAlternative && !next.isEmpty())
            next = {next.last()}; // each one replaces the one before
        elements = next;
        object = childAt(*object, step);
        if (elements.isEmpty() || !object)
            return {};
    }
    return elements;
}

QVector<XmlPlaces::Value> XmlPlaces::valuesOf(const QVector<int> &elements, const DataObject &object,
                                              const MemberView &member) const
{
    QVector<Value> values;
    for (const int element : elements) {
        const int attribute =
            member.IsAttribute() ? m_markup.findAttribute(m_markup.elements().at(element), member.GetName()) : -1;
        if (attribute >= 0)
            values.append({true, attribute});
        const QVector<Child> children = childrenOf(element, object);
        for (const Child &child : children) {
            if (child.member == member.GetName())
                values.append({false, child.element});
        }
    }
    return values;
}

} // namespace TunerDocuments
