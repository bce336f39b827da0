// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1String>
#include <QStringList>
#include <QVariant>

#include <jobxml/DataObject.h>

namespace JobXml {

class ShownMember;

/// What a member is, and which type its value has for a visitor.
enum class MemberKind {
    Text, ///< QString; null is no text
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

/// Writes a kind as C++ spells it: `MemberKind::Text`.
JOBXML_EXPORT QDebug operator<<(QDebug debug, MemberKind kind);

/// A member of an object, to look at. Looking changes nothing: no flag, no choice, and no object gets data of its own
/// by it, neither this one nor a child. Refers to the object, so it must not outlive it; always tells the present
/// state.
///
/// Child objects are those of the object itself, which may share them with others to which it was assigned. Look at
/// them by visit() and by what does not create data (see DataObject::IsInitialized()), or at copies of them.
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

    /// Whether DataObject::HasData() asks for it.
    bool IsMandatory() const;

    /// Whether its text tells the object from its siblings, alone or with others: type and name of a Component, for
    /// instance. What is alike in all of them is the same item to someone who compares two lists.
    bool IsIdentifying() const;

    /// False for an alternative that is not chosen, whatever it holds; true for every other member.
    bool IsChosen() const;

    /// The names that an enumeration has, in the order of its values; empty for other kinds.
    QStringList GetNames() const;

    /// The value, set or not, in the type that the kind tells; invalid for child objects and lists of them.
    QVariant GetValue() const;

    /// The value of a new object.
    QVariant GetDefaultValue() const;

    /// How many child objects there are: of a list, its items; of an alternative, 1 if it was ever used; of a child
    /// object that is a member by itself, 1 if the object has data. 0 for values.
    int GetSize() const;

    /// A child object; `index` is less than GetSize(). For kinds that have child objects only: a member that holds
    /// values throws std::logic_error, which is a mistake of the program; so do EditChild() and AppendChild().
    const DataObject &GetChild(int index = 0) const;

protected:
    MemberView(const ShownMember &row, const DataObject &object) : m_row(&row), m_object(&object) { }

    const ShownMember &row() const { return *m_row; }

private:
    template <class Visitor>
    friend void visit(const DataObject &object, Visitor &&visitor);
    friend class MemberEditor;
    using Call = void (*)(void *visitor, MemberView &member);

    static void forEach(const DataObject &object, Call call, void *visitor);

    const ShownMember *m_row;
    const DataObject *m_object;
};

/// A member of an object, to look at and to change.
class JOBXML_EXPORT MemberEditor : public MemberView
{
public:
    /// As the setter: stores the value and sets the flag. While validating, throws what the setter throws for a null
    /// text or for a tuner type that is none (OutOfRangeException), and stores nothing; the setter of the modes takes
    /// what is none. Of a choice: chooses
    /// the alternative, whose value and flag stay as they are. Returns false and changes nothing if the value is not of
    /// the type that the kind tells, no name of the enumeration, or if this is no value.
    [[nodiscard]] bool SetValue(const QVariant &value);

    /// As the getter for modifying: a child object, which may now be changed; sets the flag, and chooses an
    /// alternative. `index` is less than GetSize(), except that 0 is always right where there is no list. The reference
    /// holds as long as that of the getter.
    DataObject &EditChild(int index = 0);

    /// Appends a new item to a list, as `AppendX` does, and returns it to be filled; it has the flag and logger of its
    /// list's object. Throws IncompleteDefinitionException while validating, since a new item has no data. Only for
    /// lists of objects.
    DataObject &AppendChild();

    /// As `ResetX`: clears the flag and puts the default back. Resets nothing of a choice but the choice.
    void Reset();

    /// Sets or clears the flag alone, and checks nothing, as reading a snapshot does: for whoever restores an object to
    /// the state that it once had. Does nothing to a choice, which has no flag of its own.
    void SetFlag(bool set);

private:
    template <class Visitor>
    friend void visit(DataObject &object, Visitor &&visitor);

    MemberEditor(const ShownMember &row, DataObject &object) : MemberView(row, object) { }

    static void forEach(DataObject &object, Call call, void *visitor);
    Q_DECL_HIDDEN DataObject &object() const;
};

/// Shows each member of an object to a visitor, in the order in which XML writes them, whether or not it is set: calls
/// `visitor(const MemberView &)`. To descend, visit the children. Of a ValueItem, the choice comes first and then all
/// alternatives; what counts is the chosen one. The version of a document is no member, see
/// TunerProperties::GetVersion().
///
/// Changes nothing at all; an object without data shows its members as they are by default and stays without data.
template <class Visitor>
void visit(const DataObject &object, Visitor &&visitor)
{
    auto show = [&](const MemberView &member) { visitor(member); };
    MemberView::forEach(
        object, [](void *context, MemberView &member) { (*static_cast<decltype(show) *>(context))(member); }, &show);
}

/// The same with members that can be changed: calls `visitor(MemberEditor &)`. Changes nothing but what the visitor
/// changes. What is thrown passes through.
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
