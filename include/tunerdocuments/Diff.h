// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QByteArray>
#include <QString>
#include <QVector>

#include <jobxml/Visit.h>

#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// The member that a difference concerns, or the item of a list, in one of the two documents. What later versions know
/// about it, functions of this class will return.
struct TUNERDOCUMENTS_EXPORT DifferencePlace
{
    /// No place: the document does not have it.
    DifferencePlace() = default;
    /// That of the member at the end of the steps, or of the item of a list.
    DifferencePlace(const QVector<JobXml::Step> &theSteps, const std::optional<JobXml::MemberView> &theMember)
        : steps(theSteps), member(theMember)
    {
    }

    /// The steps from the document; the last one has an index if this is an item of a list. Empty if the document does
    /// not have it.
    QVector<JobXml::Step> steps{};
    /// The member, or the list of the item: its value, its flag, its child objects. No value if the document does not
    /// have it. Refers to the document, so it must not be used after the document was changed or destroyed.
    std::optional<JobXml::MemberView> member{};

    /// Whether the document has it.
    bool isThere() const { return member.has_value(); }
    /// The position of an item in its list, counted from 0; -1 if this is not an item.
    int position() const { return steps.isEmpty() ? -1 : steps.last().index; }
    /// The item of the list, or the child object of the member; null if there is none.
    const JobXml::DataObject *object() const;

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
};

/// A difference between two documents. What later versions know about it, functions of this class will return.
struct TUNERDOCUMENTS_EXPORT Difference
{
    /// What has happened.
    enum Kind : int {
        Removed, ///< an item, or an object, that only the first document has
        Added, ///< one that only the second document has
        Changed, ///< another value, another flag, or both
        Moved, ///< an item with another position among its neighbors
        Renamed, ///< an item with another identity
    };

    Kind kind = Changed; ///< what has happened
    /// The path in the first document; for an added item, that of its list, with the step that it has in the second
    /// document.
    QString path;
    /// The same with the documents exchanged.
    QString secondPath;

    /// \name Both sides as text, for people
    /// Values, contents of objects, steps of a renamed item, positions counted from 1 of a moved one. Null for a side
    /// that does not exist.
    /// @{
    QString before;
    QString after;
    /// @}

    /// \name Both sides, for programs
    /// That of a document that does not have the item is empty; an object is always a member of both.
    /// @{
    DifferencePlace first{};
    DifferencePlace second{};
    /// @}

    /// True if only the flag of a list or an object differs: its content is compared by itself.
    bool isFlagOnly = false;
    /// \name The flags of the list of a removed or added item
    /// In both documents, if they are not what follows from the number of its items.
    /// @{
    std::optional<bool> firstListIsSet{};
    std::optional<bool> secondListIsSet{};
    /// @}

    /// On one line: "~ quantity: 1 -> 2".
    QString text() const;

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
};

/// Finds all differences between two objects of the same class, in the order of the first one; removed items come
/// before the items that were added at the same place. There are none if the objects are equal as JSON.
///
/// Items of lists are paired by identity. Of the others, those with mostly the same content were renamed, and items
/// without identity are paired by content, and the rest in order.
TUNERDOCUMENTS_EXPORT QVector<Difference> findDifferences(const JobXml::DataObject &first,
                                                          const JobXml::DataObject &second);

/// The same, passing each difference to the action as soon as it is found.
TUNERDOCUMENTS_EXPORT void findDifferences(const JobXml::DataObject &first, const JobXml::DataObject &second,
                                           const std::function<void(const Difference &)> &action);

/// A difference as an object in JSON on one line, without a line feed; see Patch. The manual's page on changes
/// describes it. Throws UnstorableContent for a text that JSON cannot represent; its message begins with `name`.
TUNERDOCUMENTS_EXPORT QByteArray toJson(const Difference &difference, const QString &name);

} // namespace TunerDocuments

Q_DECLARE_TYPEINFO(TunerDocuments::DifferencePlace, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(TunerDocuments::Difference, Q_MOVABLE_TYPE);
