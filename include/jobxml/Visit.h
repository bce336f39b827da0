// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1String>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <jobxml/DataObject.h>

namespace JobXml {

class VisitedMember;

/// What a member is, and which type its value has for a visitor.
enum class MemberKind {
    Text, ///< QString; null means that there is no text
    Boolean, ///< bool
    Int, ///< int
    Int64, ///< qlonglong
    UInt64, ///< qulonglong
    Float, ///< float
    Double, ///< double
    Enumeration, ///< QString, the name; null for the invalid value, and an int for others without a name
    EnumerationList, ///< QVariantList of the same
    Choice, ///< which alternative of a ValueItem is chosen: an enumeration with their names; null for none
    Object, ///< a child object
    ObjectList, ///< a list of child objects
    Alternative, ///< a child object that counts only while it is chosen
};

/// Writes a kind as spelled in C++: `MemberKind::Text`.
JOBXML_EXPORT QDebug operator<<(QDebug debug, MemberKind kind);

/// Read access to a member of an object. It changes nothing: no flag, no choice, and neither detaches nor allocates
/// data of this object or a child. Refers to the object, so it must not outlive it; always returns the present state.
///
/// Child objects are those of the object itself, which may share them with others to which it was assigned. Use visit()
/// and functions that do not create data (see DataObject::IsInitialized()) on them, or use copies.
class JOBXML_EXPORT MemberView
{
public:
    /// As in XML: "type", "Component". Of the choice: "ChoiceValueItem". A view of the library's own characters, which
    /// is valid until the library is unloaded: construct a QString from it to keep the name any longer.
    QLatin1String GetName() const;
    /// What it is, and with that the type of its value.
    MemberKind GetKind() const;
    /// Its set flag; of a choice, whether anything is chosen.
    bool IsSet() const;

    /// Whether DataObject::HasData() requires it.
    bool IsMandatory() const;

    /// Whether its text identifies the object among its siblings, alone or with others: type and name of a Component,
    /// for instance. Items with the same identity count as the same item when two lists are compared.
    bool IsIdentifying() const;

    /// Whether XML has it as an attribute. Readers also accept a child element of the name; all other members, except
    /// the choice, which has no place of its own in XML, are child elements only.
    bool IsAttribute() const;

    /// False for an alternative that is not chosen, also if it is set; true for every other member.
    bool IsChosen() const;

    /// The names that an enumeration has, in the order of its values; empty for other kinds.
    QStringList GetNames() const;

    /// The value, set or not, in the type of the kind; invalid for child objects and lists of them.
    QVariant GetValue() const;

    /// The value of a new object.
    QVariant GetDefaultValue() const;

    /// How many child objects there are: of a list, its items; of an alternative, 1 if it was ever used; of a child
    /// object that is a member by itself, 1 if the object has data. 0 for values.
    int GetSize() const;

    /// A child object; `index` is less than GetSize(). Only for kinds that have child objects: for others it throws
    /// std::logic_error, since the call is an error of the program; so do EditChild(), AppendChild(), RemoveChild(),
    /// MoveChild() and ArrangeChildren().
    const DataObject &GetChild(int index = 0) const;

    /// The same member of another object, which must be of the same class: for visitors of many objects, which visit
    /// one of each class to find the members that they need. The object of this view is not used, and need not exist
    /// any longer.
    MemberView Of(const DataObject &object) const { return MemberView(*m_row, object); }

protected:
    MemberView(const VisitedMember &row, const DataObject &object) : m_row(&row), m_object(&object) { }

    const VisitedMember &row() const { return *m_row; }

private:
    template <class Visitor>
    friend void visit(const DataObject &object, Visitor &&visitor);
    friend class MemberEditor;
    using Call = void (*)(void *visitor, MemberView &member);

    static void forEach(const DataObject &object, Call call, void *visitor);

    const VisitedMember *m_row;
    const DataObject *m_object;
};

/// Read and write access to a member of an object.
class JOBXML_EXPORT MemberEditor : public MemberView
{
public:
    /// Like the setter: stores the value and sets the flag. While validating, throws what the setter throws for a null
    /// text or an invalid tuner type (OutOfRangeException), and stores nothing; the setter of the modes accepts invalid
    /// ones. For a choice: chooses the alternative, whose value and flag stay unchanged. Returns false and changes
    /// nothing if the value is not of the type of the kind or not a name of the enumeration, or if this is not a value.
    [[nodiscard]] bool SetValue(const QVariant &value);

    /// Like the non-const getter: returns a child object for modification, sets the flag, and chooses an alternative.
    /// `index` is less than GetSize(), except that 0 is always valid if the member is not a list. The reference is
    /// valid as long as that of the getter.
    DataObject &EditChild(int index = 0);

    /// Appends a new item to a list, as `AppendX` does, and returns it for modification; it has the flag and logger of
    /// its list's object. Throws IncompleteDefinitionException while validating, since a new item has no data. Only for
    /// lists of objects.
    DataObject &AppendChild();

    /// \name The order of a list
    /// Like changing the vector that the non-const getter returns: sets the flag, which stays set if the list becomes
    /// empty, and checks nothing. Items keep their data, flags and loggers. References to items become invalid, also to
    /// those that stay. Only for lists of objects; an index is that of an item, otherwise it throws std::logic_error
    /// and changes nothing, as GetChild() does.
    /// @{

    /// Removes an item.
    void RemoveChild(int index);
    /// Moves an item: it is at the index `to` afterwards. The items between move by one position.
    void MoveChild(int from, int to);
    /// Any number of removals and moves in one pass: afterwards the list consists of the items at these indexes, in
    /// this order. Items whose index is missing are removed; no index occurs twice.
    void ArrangeChildren(const QVector<int> &order);
    /// @}

    /// Like `ResetX`: clears the flag and restores the default. For a choice, only resets the choice.
    void Reset();

    /// Only sets or clears the flag, without a check, as reading a snapshot does: to restore an earlier state of an
    /// object. Does nothing for a choice, which has no flag of its own.
    void SetFlag(bool set);

private:
    template <class Visitor>
    friend void visit(DataObject &object, Visitor &&visitor);

    MemberEditor(const VisitedMember &row, DataObject &object) : MemberView(row, object) { }

    static void forEach(DataObject &object, Call call, void *visitor);
    Q_DECL_HIDDEN DataObject &object() const;
    Q_DECL_HIDDEN QVector<int> presentOrder() const;
};

/// Shows each member of an object to a visitor, in the order in which XML writes them, whether or not it is set: calls
/// `visitor(const MemberView &)`. To descend, visit the children. For a ValueItem, the choice comes first and then all
/// alternatives, of which only the chosen one counts. The version of a document is not a member, see
/// TunerProperties::GetVersion().
///
/// Changes nothing; for an object without data, the members have their defaults, and it stays without data.
template <class Visitor>
void visit(const DataObject &object, Visitor &&visitor)
{
    auto show = [&](const MemberView &member) { visitor(member); };
    MemberView::forEach(
        object, [](void *context, MemberView &member) { (*static_cast<decltype(show) *>(context))(member); }, &show);
}

/// The same with members that can be changed: calls `visitor(MemberEditor &)`. Only the visitor changes the object.
/// Exceptions pass through.
template <class Visitor>
void visit(DataObject &object, Visitor &&visitor)
{
    auto show = [&](MemberEditor &member) { visitor(member); };
    MemberEditor::forEach(
        object,
        [](void *context, MemberView &member) {
            (*static_cast<decltype(show) *>(context))(static_cast<MemberEditor &>(member));
        },
        &show);
}

} // namespace JobXml
