// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

/// What the formats say about each class, told a second time: the tests of this folder work out from it what reading
/// damaged data must give, without asking the library.
namespace Damage {

enum class Kind {
    Text,
    Boolean,
    Integer,
    Integer64,
    Unsigned64,
    Float,
    Double,
    TypeName, ///< of the document
    Modes, ///< the list of startup modes
    List, ///< of objects
    Child, ///< an object that is a member by itself
    Alternative, ///< an object that is chosen
};

enum Trait : unsigned {
    Plain = 0,
    Attribute = 1, ///< read from an attribute as well
    Mandatory = 2, ///< HasData() asks for it
    SnapshotIfSet = 4, ///< a snapshot holds it only if its flag is set
    SnapshotByCount = 8, ///< a list whose snapshot is read without looking at its flag
};

struct MemberRule
{
    int bit;
    const char *name;
    quint32 tag;
    Kind kind;
    unsigned traits;
    const char *object; ///< the class of an item, child or alternative

    bool has(Trait trait) const { return (traits & trait) != 0; }
};

struct ClassRule
{
    const char *name;
    quint32 identifier;
    QVector<MemberRule> members; ///< in the order of XML and records

    QVector<MemberRule> inBitOrder() const;
    const MemberRule *byTag(quint32 tag) const;
    const MemberRule *byName(const QString &name) const;
};

const QVector<ClassRule> &classRules();
const ClassRule &ruleOf(const QString &className);

/// -1 for a name that none has.
int typeByName(const QString &name);
int modeByName(const QString &name);
/// As a visitor is shown them: by name; what has no name by number, and -1 by a null text.
QVariant shownType(int type);
QVariant shownMode(int mode);
bool isMode(int mode);

constexpr quint32 versionTag = 0xCCFEDFA1;

} // namespace Damage
