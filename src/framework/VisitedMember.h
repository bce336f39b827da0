// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

#include <jobxml/DataObject.h>
#include <jobxml/Visit.h>

#include "framework/Block.h"
#include "text/OwnText.h"

namespace JobXml {

/// The properties of a member, as its row states them.
enum Traits : unsigned {
    NoTraits = 0,
    Attribute = 1 << 0, ///< an XML attribute; otherwise a child element. Reading accepts a child element for both
    Mandatory = 1 << 1, ///< required by HasData() and Check()
    WrittenWhenSet = 1 << 2, ///< omitted from all three encodings while its flag is clear
    SnapshotReadAlways = 1 << 3, ///< reading a snapshot always expects it, although it is WrittenWhenSet
    SnapshotReadByCount = 1 << 4, ///< a list: reading a snapshot uses its count and ignores its flag
    ComparedByRightFlag = 1 << 5, ///< a list: equals an unset one if it is empty, even if it is set
    IsValidAcceptsNull = 1 << 6, ///< a text: IsValid accepts null, although the setter refuses it
    Identifies = 1 << 7, ///< a text: distinguishes the object from its siblings and is its name for users
    AlsoIdentifies = 1 << 8, ///< a text: also distinguishes the object from its siblings, but is not its name
    UsuallySeveralItems = 1 << 9, ///< a list: reading reserves memory for several items at once
    /// A list: omitted if it is empty, and in snapshots if its flag is clear. The row type implements this; the trait
    /// documents it in the table and in model.json.
    WrittenUnlessEmpty = 1 << 15,
    // Set by the kinds of rows and by the codecs, not in the tables:
    HoldsChildren = 1 << 10,
    CreatedWithTheBlock = 1 << 11, ///< a child that inherits flag and logger when the block is created
    ListOfChildren = 1 << 12,
    PresentByValue = 1 << 13, ///< presence does not depend on the flag alone
    MayBeInvalid = 1 << 14, ///< some values fail the check although they are set
};

constexpr Traits operator|(Traits left, Traits right)
{
    return Traits(unsigned(left) | unsigned(right));
}

/// Refers to a function of the caller that is called for each of several objects. Must not be stored.
template <class... Arguments>
class ActionOn
{
public:
    template <class Function>
    explicit ActionOn(Function &function)
        : m_context(&function),
          m_call([](void *context, Arguments... arguments) { (*static_cast<Function *>(context))(arguments...); })
    {
    }

    void operator()(Arguments... arguments) const { m_call(m_context, arguments...); }

private:
    void *m_context;
    void (*m_call)(void *, Arguments...);
};

/// Receives a child object and its index in its list, or -1 for a child that is not in a list.
using ChildAction = ActionOn<const DataObject &, int>;
using MemberAction = ActionOn<const VisitedMember &>;

/// The operations of MemberView and MemberEditor on a member. The block is null if the object has no data. Only the
/// operations for editors, which receive the object itself, change it.
class VisitedMember
{
public:
    QLatin1String name() const { return QLatin1String(m_name); }
    constexpr bool has(Traits traits) const { return (m_traits & traits) == traits; }

    virtual MemberKind kind() const = 0;
    virtual bool isSet(const Block *block) const = 0;
    virtual bool isChosen(const Block *) const { return true; }
    virtual QStringList names() const { return {}; }
    virtual QVariant value(const Block *) const { return {}; }
    virtual int childCount(const Block &) const { return 0; }
    virtual const DataObject &child(const Block &, int) const { throwNoSuchChild(); }

    virtual bool setValue(DataObject &, const QVariant &) const { return false; }
    virtual DataObject &editChild(DataObject &, int) const { throwNoSuchChild(); }
    virtual DataObject &appendChild(DataObject &) const { throwNoSuchChild(); }
    /// The indexes are those of items, each at most once.
    virtual void arrangeChildren(DataObject &, const QVector<int> &) const { throwNoSuchChild(); }
    virtual void reset(DataObject &object) const = 0;
    virtual void setFlag(DataObject &object, bool set) const = 0;

    // Only after a mistake of the visitor, which can look up the member's kind and the number of its children.
    [[noreturn]] void throwNoSuchChild() const
    {
        throw std::logic_error(REPORTGENERATOR::ownText("JobXml: '%1' holds no such object").arg(name()).toStdString());
    }

protected:
    constexpr VisitedMember(const char *name, Traits traits) : m_name(name), m_traits(traits) { }
    ~VisitedMember() = default; // constants, see Member

private:
    const char *m_name;
    Traits m_traits;
};

} // namespace JobXml
