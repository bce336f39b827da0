// SPDX-License-Identifier: MIT
#pragma once

#include "framework/ObjectAccess.h"
#include "framework/VisitedMember.h"

namespace JobXml {

class BinaryReader;
class BinaryWriter;
class Propagation;
class Trail;
class XmlInput;
class XmlOutput;

/// The steps of DataObject's operations, for the objects of one class: a constant to which the ClassInfo refers. Most
/// classes follow the rules and have `Behavior::regular`. A class that departs from a rule overrides the step in its
/// own source.
///
/// The steps neither propagate flag and logger nor check unless they say so.
class Behavior
{
public:
    static const Behavior regular;

    virtual bool equals(const DataObject &left, const DataObject &right) const;

    /// Checks the object and everything below it. Unless `environment` is null, propagates it in the same traversal.
    virtual void check(const DataObject &object, bool flag,
                       const REPORTGENERATOR::EnvironmentPointer *environment) const;
    virtual void collectProblems(const DataObject &object, const Trail &trail, const ProblemVisitor &visitor) const;

    /// Calls the action for each member, in the order in which visitors see them.
    virtual void forEachMember(const DataObject &object, const MemberAction &action) const;

    virtual void propagateToChildren(const DataObject &object, const Propagation &propagation) const;
    /// Propagates the validate flag of an object that has just been copied to the children that were copied with it.
    virtual void propagateToCopies(const DataObject &copy) const;
    /// See Propagation::copy().
    virtual void copyEnvironments(const DataObject &original, const DataObject &copy) const;

    virtual void writeElement(const DataObject &object, XmlOutput &output) const;
    /// Reads the attributes of the element whose start tag was read last.
    virtual void readAttributes(DataObject &object, XmlInput &input) const;
    /// For a child element that is not a member.
    virtual void readUnknownElement(DataObject &object, XmlInput &input) const;

    virtual void writeRecords(const DataObject &object, BinaryWriter &writer) const;
    virtual void readRecord(DataObject &object, BinaryReader &reader, quint32 tag, qint32 length) const;

    virtual void writeSnapshot(const DataObject &object, BinaryWriter &writer) const;
    virtual bool readSnapshot(DataObject &object, BinaryReader &reader) const;

protected:
    constexpr Behavior() = default;
    ~Behavior() = default; // constants are never deleted

    // The parts of the steps above, for classes that add something between them:
    static void collectProblemsOf(const Member &member, const DataObject &object, Block &own, const Trail &trail,
                                  const ProblemVisitor &visitor);
    static void writeMembers(const DataObject &object, XmlOutput &output);
    static void writeSnapshotFlags(const DataObject &object, BinaryWriter &writer);
    static bool readSnapshotFlags(DataObject &object, BinaryReader &reader);
    static void writeSnapshotMembers(const DataObject &object, BinaryWriter &writer);
    static bool readSnapshotMembers(DataObject &object, BinaryReader &reader);

private:
    static void checkMemberByMember(const DataObject &object, Block &own, bool flag,
                                    const REPORTGENERATOR::EnvironmentPointer *environment);
    static void checkChildren(const DataObject &object, Block &own, const Member &member, bool flag,
                              const REPORTGENERATOR::EnvironmentPointer *environment);
};

/// `left == right` for two objects of one class.
inline bool areEqual(const DataObject &left, const DataObject &right)
{
    return ObjectAccess::behavior(left).equals(left, right);
}

} // namespace JobXml
