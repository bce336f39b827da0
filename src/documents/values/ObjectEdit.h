// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>

#include <QString>
#include <QVariant>
#include <QVector>

#include <jobxml/Visit.h>

namespace TunerDocuments {

/// A value and whether it is set.
struct ValueState
{
    QVariant value;
    bool isSet = false;

    /// As ValueText::ofMember() shows a member.
    QString text() const;
};

struct MemberEdit;

/// What changes in an object: its members by name, and with them everything below. All indexes are those before the
/// change. A description is changed by apply(), and the text of a document by the editors, which follow it.
struct ObjectEdit
{
    std::map<QString, MemberEdit> members{};

    /// The edit of the object at the end of the steps.
    ObjectEdit &at(const QVector<JobXml::Step> &steps);

    /// The edit of a member; null if it does not change.
    const MemberEdit *of(const JobXml::MemberView &member) const;
};

struct MemberEdit
{
    std::optional<ValueState> value{}; ///< of a value
    QString typed{}; ///< the value as the user has typed it, for the text; null if it was not typed
    std::optional<bool> flag{}; ///< of an object or a list; it stays as it is otherwise
    bool isReplaced = false; ///< an object: by a copy of `replacement`, or by a new one if that is null
    const JobXml::DataObject *replacement = nullptr;
    std::map<int, ObjectEdit> children{}; ///< by index; 0 for an object
    QVector<const JobXml::DataObject *> added{}; ///< to a list, which has copies of them at first after its other items
    std::optional<QVector<int>> order{}; ///< the items that a list has afterwards; indexes include the added ones

    /// The items that a list of `size` items has afterwards.
    QVector<int> orderOf(int size) const;

    /// Which of them stay where they are in a text while the others are moved to their places, or added.
    static QVector<bool> stayingItems(QVector<int> order, int size);
};

} // namespace TunerDocuments
