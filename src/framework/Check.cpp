// SPDX-License-Identifier: MIT
#include <QXmlStreamWriter>

#include "framework/Behavior.h"
#include "framework/Child.h"
#include "framework/Errors.h"
#include "framework/Member.h"
#include "framework/Problems.h"
#include "framework/Propagation.h"

namespace JobXml {

using REPORTGENERATOR::EnvironmentPointer;

// --- Check -----------------------------------------------------------------------------------------------------------

void DataObject::Check(bool flag) const
{
    const Behavior &behavior = ObjectAccess::behavior(*this);
    if (ObjectAccess::isOfDerivedClass(*this)) {
        Propagation::propagate(*this);
        behavior.check(*this, flag, nullptr);
        return;
    }
    try {
        const EnvironmentPointer environment = Propagation::forChildren(*this);
        behavior.check(*this, flag, &environment); // one traversal for both
    } catch (...) {
        Propagation::propagate(*this); // also to the objects that the check did not reach
        throw;
    }
}

void DataObject::Check() const
{
    Check(false);
}

namespace {

/// Whether Member::check() finds nothing in any member of an object that follows the rules.
bool areGood(const ClassInfo &info, Block &own)
{
    const quint16 set = own.flags.all();
    bool isGood = (set & info.mandatory) == info.mandatory;
    info.forEach(set & info.mayBeInvalid, [&](const Member &member) { isGood = isGood && !member.isInvalid(own); });
    return isGood;
}

} // namespace

void Behavior::check(const DataObject &object, bool flag, const EnvironmentPointer *environment) const
{
    Block &own = ObjectAccess::block(object);
    const ClassInfo &info = ObjectAccess::info(object);
    if (!areGood(info, own))
        checkMemberByMember(object, own, flag, environment);
    info.forEach(info.children, [&](const Member &member) { checkChildren(object, own, member, flag, environment); });
}

// Called if a member is missing or invalid. Reports a problem of an earlier member's child first, if there is one.
void Behavior::checkMemberByMember(const DataObject &object, Block &own, bool flag,
                                   const EnvironmentPointer *environment)
{
    for (const Member *member : ObjectAccess::info(object).bitOrder()) {
        member->check(object, own);
        checkChildren(object, own, *member, flag, environment);
    }
}

void Behavior::checkChildren(const DataObject &object, Block &own, const Member &member, bool flag,
                             const EnvironmentPointer *environment)
{
    const bool isSet = member.isSet(own);
    if (!environment && ObjectAccess::isOfDerivedClass(object)) {
        // The derived class may have changed flag and logger, so each child propagates its own.
        auto checkChild = [=](const DataObject &child, int) { child.Check(flag); };
        if (isSet)
            member.forEachChild(own, ChildAction(checkChild));
        return;
    }
    auto checkChild = [=](const DataObject &child, int) {
        if (environment)
            Propagation::propagateTo(child, *environment);
        const Behavior &behavior = ObjectAccess::behavior(child);
        if (isSet)
            behavior.check(child, flag, environment);
        else if (environment)
            behavior.propagateToChildren(child, Propagation(*environment));
    };
    member.forEachChild(own, ChildAction(checkChild));
}

// --- Problems --------------------------------------------------------------------------------------------------------

namespace {

/// The mandatory list that is set but empty. Check() accepts it, but the object has no data.
const Member *emptyList(const DataObject &object)
{
    const Block &own = ObjectAccess::block(object);
    const ClassInfo &info = ObjectAccess::info(object);
    const Member *empty = nullptr;
    info.forEach(info.mandatory & own.flags.all(), [&](const Member &member) {
        if (!empty && member.isList() && !member.isPresent(own))
            empty = &member;
    });
    return empty;
}

/// Whether the writer drops or replaces a character that the object writes.
bool losesTextInXml(const DataObject &object)
{
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    object.GetXml(writer);
    writer.writeCharacters(QString(QLatin1Char(' '))); // detects half a surrogate pair at the end of the last text
    return writer.hasError();
}

} // namespace

QVector<Problem> DataObject::GetProblems() const
{
    QVector<Problem> problems;
    VisitProblems([&](const Problem &problem) { problems.append(problem); });
    return problems;
}

void DataObject::VisitProblems(const ProblemVisitor &visitor) const
{
    Propagation::propagate(*this);
    bool isWritten = true; // in one form at least
    bool isWrittenAsXml = true;
    const ProblemVisitor visit = [&](const Problem &problem) {
        isWritten = isWritten && problem.xmlOnly;
        isWrittenAsXml = false;
        visitor(problem);
    };
    collectProblems({}, visit);
    if (const Member *empty = emptyList(*this))
        visit({{}, Errors::emptyList(*this, empty->name()), QString(empty->name())});

    // Additions of a derived class to Check(), HasData() and the XML are not in the rows.
    if (!ObjectAccess::isOfDerivedClass(*this))
        return;
    if (isWritten)
        collectProblem(Trail({}), nullptr, visit, [&] { Check(); });
    if (isWritten && !HasData())
        visit(Problem({}, Errors::withoutData(*this)));
    if (isWrittenAsXml && losesTextInXml(*this))
        visit(Problem({}, Errors::ownTextNotForXml(*this), {}, true));
}

void DataObject::collectProblems(const ObjectPath &path, const ProblemVisitor &visitor) const
{
    ObjectAccess::behavior(*this).collectProblems(*this, Trail(path), visitor);
}

void Behavior::collectProblems(const DataObject &object, const Trail &trail, const ProblemVisitor &visitor) const
{
    Block &own = ObjectAccess::block(object);
    const ClassInfo &info = ObjectAccess::info(object);
    // In a good member only a text, which may be invalid in general, or something in a child can be a problem.
    const unsigned all = (1U << info.memberCount) - 1;
    const unsigned suspects = areGood(info, own) ? info.mayBeInvalid | info.children : all;
    info.forEach(quint16(suspects),
                 [&](const Member &member) { collectProblemsOf(member, object, own, trail, visitor); });
}

void Behavior::collectProblemsOf(const Member &member, const DataObject &object, Block &own, const Trail &trail,
                                 const ProblemVisitor &visitor)
{
    collectProblem(trail, &member, visitor, [&] { member.check(object, own); });
    const QString xmlProblem = member.xmlProblem(object, own);
    if (!xmlProblem.isNull())
        visitor(Problem(trail.path(), xmlProblem, QString(member.name()), true));
    auto collectFromChild = [&](const DataObject &child, int index) {
        const Trail below(trail, member, child, index);
        // Members are of the model's own classes, so there is no override of DataObject::collectProblems().
        ObjectAccess::behavior(child).collectProblems(child, below, visitor);
        if (const Member *empty = emptyList(child))
            collectProblem(below, empty, visitor, [&] { member.checkForWriting(object, child); });
    };
    if (member.writesChildren(own))
        member.forEachChild(own, ChildAction(collectFromChild));
}

// --- Preparing to write ----------------------------------------------------------------------------------------------

// Check() also propagates flag and logger, so that writing needs one traversal of the tree. A derived class may
// override either, so the order of the steps matters for its objects: SetValidate() may change the flag that decides
// whether Check() is called.
bool prepareToWrite(const DataObject &object)
{
    if (ObjectAccess::isOfDerivedClass(object) || !object.GetValidate())
        Propagation::propagate(object);
    if (object.GetValidate()) {
        object.Check();
        if (object.GetValidate()
            && !object.HasData()) // checked again: Check() of a derived class may have changed the flag
            return false;
    }
    ObjectAccess::block(object);
    return true;
}

// A child that the parent's check included is not checked again: that would multiply the work by the depth of the tree.
// A derived parent may override the operations that check and propagate, so they need not have reached the child.
bool prepareToWrite(const DataObject &child, const DataObject &parent, bool isChecked)
{
    if (ObjectAccess::isOfDerivedClass(parent))
        return prepareToWrite(child);
    if (ObjectAccess::environment(child)->validate) {
        if (!isChecked)
            ObjectAccess::behavior(child).check(child, false, nullptr);
        if (!child.HasData())
            return false;
    }
    ObjectAccess::block(child);
    return true;
}

} // namespace JobXml
