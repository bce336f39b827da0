// SPDX-License-Identifier: MIT
#include "documents/lint/Places.h"

namespace TunerDocuments {

int Places::add(int parent, int member, int element)
{
    const int index = int(m_nodes.size());
    m_nodes.push_back({element, member});
    if (parent != none) {
        Node &above = m_nodes[std::size_t(parent)];
        if (above.last == none)
            above.first = index;
        else
            m_nodes[std::size_t(above.last)].next = index;
        above.last = index;
    }
    return index;
}

int Places::lastOf(int parent, int member) const
{
    int found = none;
    for (int i = m_nodes[std::size_t(parent)].first; i != none; i = m_nodes[std::size_t(i)].next) {
        if (m_nodes[std::size_t(i)].member == member)
            found = i;
    }
    return found;
}

void Places::childrenOf(int place, std::vector<std::vector<int>> &byMember) const
{
    for (std::vector<int> &places : byMember)
        places.clear();
    for (int i = place == none ? none : m_nodes[std::size_t(place)].first; i != none; i = m_nodes[std::size_t(i)].next)
        byMember[std::size_t(m_nodes[std::size_t(i)].member)].push_back(i);
}

int Places::itemOf(int place, int member, int item, Cursor &cursor) const
{
    const bool isFurther = cursor.place == place && cursor.member == member && cursor.item <= item;
    int passed = isFurther ? cursor.item : 0;
    for (int i = isFurther ? cursor.child : m_nodes[std::size_t(place)].first; i != none;
         i = m_nodes[std::size_t(i)].next) {
        if (m_nodes[std::size_t(i)].member == member && passed++ == item) {
            cursor = {place, member, item, i};
            return i;
        }
    }
    return none;
}

namespace {

/// All of the bytes: the constructor that receives a QByteArray ends at a NUL with Qt 5.
QLatin1String asText(const QByteArray &latin1)
{
    return QLatin1String(latin1.constData(), latin1.size());
}

} // namespace

TextPlace Places::find(const QVector<JobXml::Step> &steps, const QString &member, Cursors &cursors) const
{
    const Shape *shape = &documentShape();
    int place = root();
    if (int(cursors.size()) < steps.size())
        cursors.resize(std::size_t(steps.size()));
    for (int depth = 0; depth < steps.size(); ++depth) {
        const JobXml::Step &step = steps.at(depth);
        const int index = shape->find(asText(step.member.toLatin1()));
        int child = none;
        if (place != none && index != Shape::none)
            child =
                step.index < 0 ? lastOf(place, index) : itemOf(place, index, step.index, cursors[std::size_t(depth)]);
        if (child == none)
            return ofElement(place);
        place = child;
        shape = shape->members[std::size_t(index)].child.get();
    }
    const QByteArray name = member.toLatin1();
    const int index = name.isEmpty() ? Shape::none : shape->find(asText(name));
    if (place == none || index == Shape::none)
        return ofElement(place);
    // A list has no place of its own.
    const bool isList = shape->members[std::size_t(index)].kind == JobXml::MemberKind::ObjectList;
    const int element = isList ? none : lastOf(place, index);
    return element == none ? ofAttribute(place, asText(name)) : ofElement(element);
}

TextPlace Places::ofElement(int place) const
{
    if (place == none)
        return {};
    const int element = m_nodes[std::size_t(place)].element;
    return {m_markup.elements().at(element).startTag.begin, element};
}

TextPlace Places::ofAttribute(int place, QLatin1String name) const
{
    if (place == none)
        return {};
    const int element = m_nodes[std::size_t(place)].element;
    const int attribute = m_markup.findAttribute(m_markup.elements().at(element), name);
    if (attribute < 0)
        return ofElement(place);
    return {m_markup.attributes().at(attribute).name.begin, element};
}

} // namespace TunerDocuments
