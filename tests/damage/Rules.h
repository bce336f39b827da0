// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVariant>
#include <QVector>

/// The rules of each class, from share/model.json: names, tags, order and kinds. The Expected files implement how each
/// kind is read, so that the tests determine the expected result of damaged data without the library.
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
    Child, ///< an object, not in a list
    Alternative, ///< an object that is chosen
};

enum Trait : unsigned {
    Plain = 0,
    Attribute = 1, ///< read from an attribute as well
    Mandatory = 2, ///< required by HasData()
    SnapshotIfSet = 4, ///< a snapshot contains it only if its flag is set
    SnapshotByCount = 8, ///< a list whose snapshot is read without looking at its flag
};

struct MemberRule
{
    int bit;
    QByteArray name;
    quint32 tag;
    Kind kind;
    unsigned traits;
    QByteArray object; ///< the class of an item, child or alternative
    QVariant defaultValue; ///< the value for a visitor
    QStringList names; ///< of an enumeration, by number

    bool has(Trait trait) const { return (traits & trait) != 0; }
};

struct ClassRule
{
    QByteArray name;
    quint32 identifier;
    QVector<MemberRule> members; ///< in the order of XML and records

    QVector<MemberRule> inBitOrder() const;
    const MemberRule *byTag(quint32 tag) const;
    const MemberRule *byName(const QString &name) const;
};

const QVector<ClassRule> &classRules();
const ClassRule &ruleOf(const QString &className);

/// -1 for an unknown name.
int typeByName(const QString &name);
int modeByName(const QString &name);
/// The value for a visitor: the name, the number if there is no name, and a null text for -1.
QVariant shownType(int type);
QVariant shownMode(int mode);
bool isMode(int mode);

/// The version of a document as the member that it is in records, and the newest version.
const MemberRule &versionMember();

} // namespace Damage
