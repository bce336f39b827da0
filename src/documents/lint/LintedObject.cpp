// SPDX-License-Identifier: MIT
#include "documents/lint/LintedObject.h"

#include <deque>

#include <QtAlgorithms>

#include <tunerdocuments/Value.h>

using JobXml::DataObject;
using JobXml::MemberKind;
using JobXml::MemberView;

namespace TunerDocuments {

QString LintedObject::written(int index) const
{
    return ValueText::ofValue(member(index).GetValue());
}

void LintedObject::check(quint64 rules) const
{
    const std::vector<Rule> &all = allRules();
    for (; rules != 0; rules &= rules - 1) {
        m_rule = int(qCountTrailingZeroBits(rules));
        all[std::size_t(m_rule)].checkObject(*this);
    }
}

TextPlace LintedObject::placeOf(int index) const
{
    if (!m_places)
        return {};
    // A child element is read after the attributes, and replaces them.
    const std::vector<int> &elements = m_content.places[std::size_t(index)];
    return elements.empty() ? m_places->ofAttribute(m_place, member(index).GetName())
                            : m_places->ofElement(elements.back());
}

TextPlace LintedObject::placeOfItem(int list, int item, QLatin1String itemMember) const
{
    if (!m_places)
        return {};
    const std::vector<int> &elements = m_content.places[std::size_t(list)];
    if (item >= int(elements.size()))
        return m_places->ofElement(m_place);
    const int place = elements[std::size_t(item)];
    if (itemMember.size() == 0)
        return m_places->ofElement(place);
    const int element = m_places->lastOf(place, shape.members[std::size_t(list)].child->find(itemMember));
    return element == Places::none ? m_places->ofAttribute(place, itemMember) : m_places->ofElement(element);
}

namespace {

long double numberOf(const MemberView &member, MemberKind kind)
{
    // The value has the type of the kind; converting it takes longer.
    const QVariant value = member.GetValue();
    const void *const data = value.constData();
    switch (kind) {
    case MemberKind::Int:
        return static_cast<long double>(*static_cast<const int *>(data));
    case MemberKind::Int64:
        return static_cast<long double>(*static_cast<const qlonglong *>(data));
    case MemberKind::UInt64:
        return static_cast<long double>(*static_cast<const qulonglong *>(data));
    case MemberKind::Float:
        return static_cast<long double>(*static_cast<const float *>(data));
    default:
        return static_cast<long double>(*static_cast<const double *>(data));
    }
}

/// Goes through a document from the root down: items first, since the rules of a list compare them.
class Walk
{
public:
    Walk(quint64 rules, const Places *places, Report &report) : m_rules(rules), m_places(places), m_report(report) { }

    /// `summary` may be null.
    void visit(const DataObject &object, const Shape &shape, int place, LintedItem *summary)
    {
        LintedObject::Content &content = contentOf(object, shape, place);
        for (const int part : shape.parts) {
            if (descend(object, content, shape, std::size_t(part), summary))
                break;
        }
        if (summary)
            summarize(content, shape, *summary);
        const LintedObject linted(object, shape, content, m_steps, m_places, place, m_report);
        linted.check(shape.rules & m_rules);
    }

private:
    LintedObject::Content &contentOf(const DataObject &object, const Shape &shape, int place)
    {
        if (m_contents.size() == m_steps.size())
            m_contents.emplace_back();
        LintedObject::Content &content = m_contents[m_steps.size()];
        const std::size_t size = shape.members.size();
        if (content.texts.size() < size) {
            content.texts.resize(size);
            content.numbers.resize(size);
            content.areSet.resize(size);
            content.items.resize(size);
            content.places.resize(size);
        }
        for (const int text : shape.texts) {
            const QVariant value = shape.members[std::size_t(text)].view.Of(object).GetValue();
            content.texts[std::size_t(text)] = *static_cast<const QString *>(value.constData());
        }
        for (const int number : shape.numbers) {
            const Shape::Member &member = shape.members[std::size_t(number)];
            const MemberView view = member.view.Of(object);
            content.numbers[std::size_t(number)] = numberOf(view, member.kind);
            content.areSet[std::size_t(number)] = view.IsSet() ? 1 : 0;
        }
        if (m_places)
            m_places->childrenOf(place, content.places);
        return content;
    }

    /// Visits what is in a member. Returns whether no other member has anything that counts.
    bool descend(const DataObject &object, LintedObject::Content &content, const Shape &shape, std::size_t index,
                 LintedItem *summary)
    {
        const Shape::Member &part = shape.members[index];
        const MemberView member = part.view.Of(object);
        if (part.kind == MemberKind::ObjectList) {
            std::vector<LintedItem> &items = content.items[index];
            items.resize(std::size_t(member.GetSize()));
            for (int i = 0; i < int(items.size()); ++i) {
                items[std::size_t(i)].clear();
                m_steps.push_back({part.name, i});
                visit(member.GetChild(i), *part.child, placeAt(content, index, i), &items[std::size_t(i)]);
                m_steps.pop_back();
            }
            return false;
        }
        const bool isAlternative = part.kind == MemberKind::Alternative;
        if (isAlternative && !member.IsChosen())
            return false;
        if (member.GetSize() != 0) {
            const std::vector<int> &places = content.places[index];
            m_steps.push_back({part.name, -1});
            visit(member.GetChild(), *part.child, places.empty() ? Places::none : places.back(),
                  isAlternative ? summary : nullptr);
            m_steps.pop_back();
        }
        return isAlternative;
    }

    int placeAt(const LintedObject::Content &content, std::size_t index, int item) const
    {
        const std::vector<int> &places = content.places[index];
        return item < int(places.size()) ? places[std::size_t(item)] : Places::none;
    }

    static void summarize(const LintedObject::Content &content, const Shape &shape, LintedItem &item)
    {
        for (const int index : shape.identifying) {
            if (item.texts == int(item.identity.size()))
                break;
            const QString &text = content.texts[std::size_t(index)];
            item.isIdentified = !text.isNull() && (item.texts == 0 || item.isIdentified);
            item.names[std::size_t(item.texts)] = shape.members[std::size_t(index)].name;
            item.identity[std::size_t(item.texts++)] = text;
        }
        const int number = shape.value.number;
        if (number >= 0 && content.areSet[std::size_t(number)] != 0) {
            item.hasNumber = true;
            item.number = double(content.numbers[std::size_t(number)]);
        }
    }

    const quint64 m_rules;
    const Places *m_places;
    Report &m_report;
    std::vector<LintStep> m_steps;
    std::deque<LintedObject::Content> m_contents; // by depth
};

} // namespace

void lintObjects(const DataObject &document, quint64 rules, const Places *places, Report &report)
{
    Walk(rules & report.enabled(), places, report)
        .visit(document, documentShape(), places ? places->root() : Places::none, nullptr);
}

} // namespace TunerDocuments
