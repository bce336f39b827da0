// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QVariant>

#include <jobxml/DataObject.h>

#include "documents/html/Members.h"
#include "documents/html/Problems.h"
#include "documents/html/Unit.h"

namespace TunerDocuments {

/// A column of a table beside those of the members.
struct ExtraColumn
{
    const char *htmlClass;
    std::function<void()> title;
    std::function<void(const JobXml::DataObject &item)> cell;
    std::function<void()> foot;
};

/// Shows members and objects of any kind that have no picture. An element that shows a value has the name of the member
/// in the attribute data-member.
class Objects
{
public:
    enum class Name { Seen, Omitted };

    Objects(Markup &out, Problems &problems) : m_out(out), m_problems(problems) { }

    /// A value and whether it is set, without its name.
    void value(const JobXml::MemberView &member, const Unit &unit = {});
    /// The same with its name, which is omitted where it is obvious.
    void named(const JobXml::MemberView &member, Name name, const Unit &unit = {}, const char *htmlClass = nullptr);
    /// All members with their names and findings; child objects follow the values.
    void facts(const Members &members, const ObjectPath &path);
    /// A list of child objects in a table, with a row for each and a column for each of their values. If the objects
    /// are not that simple, the same as children().
    void list(const JobXml::MemberView &member, const ObjectPath &path, const ExtraColumn *extra = nullptr);
    /// Child objects with all their members. An alternative that is not chosen is marked.
    void children(const JobXml::MemberView &member, const ObjectPath &path);

private:
    void enumerators(const JobXml::MemberView &member);
    void enumerator(const QVariant &entry);
    void row(const JobXml::DataObject &item, const ObjectPath &path, int columns, const ExtraColumn *extra);

    Markup &m_out;
    Problems &m_problems;
};

/// A number, with its digits in groups that are visually separated.
void showNumber(Markup &out, const QVariant &value);
/// A number and its unit. If a prefix makes it shorter, the number with the prefix precedes the exact one, which is
/// also its title.
void showQuantity(Markup &out, const QVariant &value, const Unit &unit);
/// A text, which may be empty or null.
void showText(Markup &out, const QString &text);
/// A heading for a list, with the number of its items.
void showHeading(Markup &out, const char *tag, const JobXml::MemberView &member);
/// The heading of a list whose items speak for themselves: only if something is missing.
void showListName(Markup &out, const JobXml::MemberView &list);

} // namespace TunerDocuments
