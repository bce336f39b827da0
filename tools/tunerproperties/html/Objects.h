// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QVariant>

#include <jobxml/DataObject.h>

#include "html/Members.h"
#include "html/Problems.h"

/// A column of a table beside those of the members.
struct ExtraColumn
{
    const char *htmlClass;
    std::function<void()> title;
    std::function<void(const JobXml::DataObject &item)> cell;
    std::function<void()> foot;
};

/// Shows members and objects of whatever kind, for all that has no picture of its own. What shows a value carries the
/// name of its member as an attribute, data-member, and as a text, which not every reader needs to see.
class Objects
{
public:
    enum class Name { Seen, Unseen };

    Objects(Markup &out, Problems &problems) : m_out(out), m_problems(problems) { }

    /// A value and whether it is set; without its name.
    void value(const JobXml::MemberView &member);
    /// The same with its name.
    void named(const JobXml::MemberView &member, Name name, const char *tag = "span", const char *htmlClass = "member");
    /// All members with their names; child objects after the values.
    void facts(const Members &members, const Spot &spot);
    /// A list of child objects in a table, a row for each and a column for each of their values. The row of `current`
    /// is marked. For what is not so simple, the same as child().
    void list(const JobXml::MemberView &member, const Spot &spot, int current = -1, const ExtraColumn *extra = nullptr);
    /// Child objects with all that they hold.
    void children(const JobXml::MemberView &member, const Spot &spot);

private:
    void enumerators(const JobXml::MemberView &member);
    void enumerator(const QVariant &entry);
    void row(const JobXml::DataObject &item, const Spot &spot, bool isCurrent, int columns, const ExtraColumn *extra);

    Markup &m_out;
    Problems &m_problems;
};

/// A number; its digits stand in groups, apart to the eye alone.
void showNumber(Markup &out, const QVariant &value);
/// A text, which may be empty or none.
void showText(Markup &out, const QString &text);
/// A heading for a list, with the number of its items.
void showHeading(Markup &out, const char *tag, const JobXml::MemberView &member);
/// The name of a list whose items are seen to be such: for those who listen, and as a heading if something is missing.
void showListName(Markup &out, const JobXml::MemberView &list);
