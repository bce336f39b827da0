// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include <jobxml/DataObject.h>
#include <jobxml/Visit.h>

#include "documents/lint/Places.h"
#include "documents/lint/Report.h"
#include "documents/lint/Shape.h"

namespace TunerDocuments {

/// What the rules of a list see of an item.
struct LintedItem
{
    /// The texts that identify the item among its siblings. A value has those of its chosen alternative.
    std::array<QString, 2> identity;
    std::array<QLatin1String, 2> names; ///< of the members of these texts
    int texts = 0; ///< their number
    bool isIdentified = false; ///< whether all of them are there
    bool hasNumber = false; ///< whether its value is a number that is set
    double number = 0;

    /// Forgets the item, but not the memory: lists are as long as the document is large.
    void clear()
    {
        for (QString &text : identity)
            text = QString();
        texts = 0;
        isIdentified = false;
        hasNumber = false;
    }
};

/// An object that rules examine, with its members read once.
class LintedObject
{
public:
    using View = JobXml::MemberView;

    /// The members and what is in them, for one object at a time at each depth.
    struct Content
    {
        std::vector<QString> texts; ///< of the members that are texts
        std::vector<long double> numbers; ///< of the members that are numbers; exact for all of them
        std::vector<char> areSet; ///< whether those members are set
        std::vector<std::vector<LintedItem>> items; ///< of the members that are lists
        std::vector<std::vector<int>> places; ///< of the members that are elements
    };

    LintedObject(const JobXml::DataObject &object, const Shape &shape_, const Content &content,
                 const std::vector<LintStep> &steps, const Places *places, int place, Report &report)
        : shape(shape_), m_object(object), m_content(content), m_steps(steps), m_places(places), m_place(place),
          m_report(report)
    {
    }

    const Shape &shape;

    View member(int index) const { return shape.members[std::size_t(index)].view.Of(m_object); }
    bool isSet(int index) const { return member(index).IsSet(); }
    /// The same for a number, several times as fast.
    bool hasNumber(int index) const { return m_content.areSet[std::size_t(index)] != 0; }
    const QString &text(int index) const { return m_content.texts[std::size_t(index)]; }
    const std::vector<LintedItem> &items(int index) const { return m_content.items[std::size_t(index)]; }
    /// As the document has it.
    QString written(int index) const;

    long double number(int index) const { return m_content.numbers[std::size_t(index)]; }

    /// Reports a warning about a member.
    template <class Describe>
    void warn(int index, const Describe &describe) const
    {
        m_report.add(m_rule, placeOf(index), m_steps, nullptr, member(index).GetName(), describe);
    }

    /// Reports a warning about an item of a list, or about a member of that.
    template <class Describe>
    void warnItem(int list, int item, QLatin1String itemMember, const Describe &describe) const
    {
        const LintStep step{member(list).GetName(), item};
        m_report.add(m_rule, placeOfItem(list, item, itemMember), m_steps, &step, itemMember, describe);
    }

    /// Reports a warning about an entry of a list of names.
    template <class Describe>
    void warnEntry(int index, int entry, const Describe &describe) const
    {
        m_report.add(m_rule, placeOfItem(index, entry, {}), m_steps, nullptr, member(index).GetName(), describe, entry);
    }

    /// Applies the rules to it.
    void check(quint64 rules) const;

private:
    TextPlace placeOf(int index) const;
    TextPlace placeOfItem(int list, int item, QLatin1String itemMember) const;

    const JobXml::DataObject &m_object;
    const Content &m_content;
    const std::vector<LintStep> &m_steps;
    const Places *m_places; // null without a text
    const int m_place;
    Report &m_report;
    mutable int m_rule = 0;
};

/// Applies these rules about objects to all objects of a document. `places` may be null.
void lintObjects(const JobXml::DataObject &document, quint64 rules, const Places *places, Report &report);

} // namespace TunerDocuments
