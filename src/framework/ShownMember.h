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
    Attribute = 1 << 0, ///< an XML attribute; otherwise a child element. Reading takes a child element for both
    Mandatory = 1 << 1, ///< required by HasData() and Check()
    WrittenWhenSet = 1 << 2, ///< left out of all three encodings while its flag is clear
    SnapshotReadAlways = 1 << 3, ///< although WrittenWhenSet: snapshots are read as if it were always there
    SnapshotReadByCount = 1 << 4, ///< a list whose snapshot is read by its count alone, whatever its flag says
    ComparedByRightFlag = 1 << 5, ///< a list that equals an unset one when it is empty, set or not
    NullPassesIsValid = 1 << 6, ///< a text whose IsValid accepts null, although its setter refuses it
    Identifies = 1 << 7, ///< a text that distinguishes the object from its siblings; people call the object by it
    IdentifiesToo = 1 << 8, ///< distinguishes it from its siblings as well, but is not what people call it by
    UsuallyHoldsSeveral = 1 << 9, ///< a list for which reading reserves memory for several items at once
    WrittenUnlessEmpty =
        1 << 15, ///< a list that tagged records leave out if it is empty, snapshots if its flag is clear
    // Set by the kinds of rows and by the codecs, not in the tables:
    HoldsChildren = 1 << 10,
    CreatedWithTheBlock = 1 << 11, ///< a child that inherits flag and logger as soon as there is a block
    ListOfChildren = 1 << 12,
    PresentByValue = 1 << 13, ///< presence does not depend on the flag alone
    MayBeInvalid = 1 << 14, ///< some values fail the check although they are set
};

constexpr Traits operator|(Traits left, Traits right)
{
    return Traits(unsigned(left) | unsigned(right));
}

/// A call for each of several things; refers to the caller's function and is not kept.
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

/// A child object, and its index in its list; -1 for one that is a member by itself.
using ChildAction = ActionOn<const DataObject &, int>;
using MemberAction = ActionOn<const ShownMember &>;

/// What visitors see of a member, and do to it; see MemberView and MemberEditor. The block is null if the object has no
/// data. Only the operations for an editor, which take the object itself, change anything.
class ShownMember
{
public:
    QLatin1String name() const { return QLatin1String(m_name); }
    constexpr bool has(Traits traits) const { return (m_traits & traits) == traits; }

    virtual MemberKind kind() const = 0;
    virtual bool isMarked(const Block *block) const = 0;
    virtual bool isChosen(const Block *) const { return true; }
    virtual QStringList names() const { return {}; }
    virtual QVariant value(const Block *) const { return {}; }
    virtual int childCount(const Block &) const { return 0; }
    virtual const DataObject &child(const Block &, int) const { hasNoSuchObject(); }

    virtual bool setValue(DataObject &, const QVariant &) const { return false; }
    virtual DataObject &editChild(DataObject &, int) const { hasNoSuchObject(); }
    virtual DataObject &appendChild(DataObject &) const { hasNoSuchObject(); }
    virtual void reset(DataObject &object) const = 0;
    virtual void setFlag(DataObject &object, bool set) const = 0;

    // Only by a mistake of the visitor, who knows the kind of the member and the number of its children.
    [[noreturn]] void hasNoSuchObject() const
    {
        throw std::logic_error(REPORTGENERATOR::ownText("JobXml: '%1' holds no such object").arg(name()).toStdString());
    }

protected:
    constexpr ShownMember(const char *name, Traits traits) : m_name(name), m_traits(traits) { }
    ~ShownMember() = default; // constants, see Member

private:
    const char *m_name;
    Traits m_traits;
};

} // namespace JobXml
