// SPDX-License-Identifier: MIT
#include <jobxml/DataObject.h>

#include "framework/Errors.h"
#include "framework/HandDown.h"
#include "framework/Member.h"
#include "framework/Table.h"

namespace JobXml {

using REPORTGENERATOR::EnvironmentPointer;

// --- Construction, copies, moves -------------------------------------------------------------------------------------

// The base's own answer, nearly always without asking for it: the environment as it is.
inline EnvironmentPointer DataObject::environmentForCopy() const
{
    const bool hasMore = isOfDerivedClass() || environment()->own || environment()->logger;
    return hasMore ? IRGObject::environmentForCopy() : environment();
}

DataObject::DataObject(const ClassInfo &info) : IRGObject(info) { }

// The copies of children follow their own flags, and each of them all of its tree. So where a child's flag is the right
// one there is nothing left to do below it.
DataObject::DataObject(const DataObject &other) : IRGObject(other.objectClass(), other.environmentForCopy())
{
    if (!other.m_block)
        return;
    m_block = info().clone(*other.m_block);
    if (info().children == 0)
        return;
    const EnvironmentPointer environment = environmentForChildren();
    const HandDown handDown(environment, HandDown::Validate);
    auto follow = [&](const DataObject &child, int) {
        if (child.environment()->validate != environment->validate)
            child.takeDown(handDown);
    };
    info().forEach(info().children, [&](const Member &member) { member.forEachChild(*m_block, ChildAction(follow)); });
}

DataObject::DataObject(DataObject &&other) noexcept
    : IRGObject(other.objectClass(), other.environmentForCopy()), m_block(std::exchange(other.m_block, nullptr))
{
}

DataObject &DataObject::operator=(const DataObject &other) noexcept
{
    if (this == &other)
        return *this;
    if (other.m_block)
        other.m_block->addOwner();
    release(info(), std::exchange(m_block, other.m_block));
    return *this;
}

DataObject &DataObject::operator=(DataObject &&other) noexcept
{
    if (this != &other)
        release(info(), std::exchange(m_block, std::exchange(other.m_block, nullptr)));
    return *this;
}

DataObject::~DataObject()
{
    release(info(), m_block);
}

void DataObject::release(const REPORTGENERATOR::ObjectClass &objectClass, Block *block) noexcept
{
    if (block && block->dropOwner())
        static_cast<const ClassInfo &>(objectClass).destroy(block);
}

void DataObject::swapData(DataObject &other) noexcept
{
    std::swap(m_block, other.m_block);
}

// --- State -----------------------------------------------------------------------------------------------------------

Block &DataObject::block() const
{
    if (!m_block) {
        m_block = info().create();
        if (info().builtWithTheBlock != 0 || isOfDerivedClass())
            handOver();
    } else if (m_block->isShared()) {
        Block *own = info().clone(*m_block);
        release(info(), std::exchange(m_block, own));
    }
    return *m_block;
}

bool DataObject::IsInitialized() const noexcept
{
    return m_block != nullptr;
}

bool DataObject::HasData() const
{
    if (!m_block)
        return false;
    const ClassInfo &info = this->info();
    const auto byFlag = quint16(info.mandatory & ~info.presentByValue);
    bool isPresent = (m_block->flags.all() & byFlag) == byFlag;
    info.forEach(info.mandatory & info.presentByValue,
                 [&](const Member &member) { isPresent = isPresent && member.isPresent(*m_block); });
    return isPresent;
}

bool DataObject::AnyData() const
{
    if (!m_block)
        return false;
    for (const Member *member : info().bitOrder()) {
        if (member->isPresent(*m_block))
            return true;
    }
    return false;
}

void DataObject::Reset()
{
    if (!m_block)
        return;
    Block &own = block();
    own.flags.clearAll();
    for (const Member *member : info().bitOrder())
        member->reset(own);
}

void DataObject::ResetToDefault()
{
    const bool existed = IsInitialized();
    block();
    if (existed)
        Reset();
}

bool DataObject::equals(const DataObject &other) const
{
    if (!m_block && !other.m_block)
        return true;
    Block *left = m_block ? &Member::block(*this) : nullptr;
    Block *right = other.m_block ? &Member::block(other) : nullptr;
    for (const Member *member : info().writtenOrder()) {
        if (!member->equals(left, right))
            return false;
    }
    return true;
}

bool DataObject::MergeRGObject(const REPORTGENERATOR::IRGObject &other)
{
    const auto *source = dynamic_cast<const DataObject *>(&other);
    // A derived class with an identifier of its own is another class, although its members are the same.
    if (!source || source->m_classIdentifier != m_classIdentifier || &source->info() != &info())
        return false;
    if (source == this || !source->m_block)
        return true;
    block();
    for (const Member *member : info().bitOrder())
        member->merge(*this, *source);
    return true;
}

void DataObject::forEachMember(const MemberAction &action) const
{
    for (const Member *member : info().writtenOrder())
        action(*member);
}

// --- Validate flag and logger ----------------------------------------------------------------------------------------

void DataObject::SetValidate(bool validate) const
{
    IRGObject::SetValidate(validate);
    const EnvironmentPointer environment = environmentForChildren();
    handDownToChildren(HandDown(environment, HandDown::Validate));
}

void DataObject::SetLogger(std::shared_ptr<REPORTGENERATOR::Logger> logger) const
{
    IRGObject::SetLogger(std::move(logger));
    const EnvironmentPointer environment = environmentForChildren();
    handDownToChildren(HandDown(environment, HandDown::Logger));
}

void DataObject::SetObjectType(REPORTGENERATOR::ObjectTypes) { }

void DataObject::handOver() const
{
    if (isOfDerivedClass()) {
        SetValidate(GetValidate());
        SetLogger(GetLogger());
    } else {
        const EnvironmentPointer environment = environmentForChildren();
        handDownToChildren(HandDown(environment, HandDown::Both));
    }
}

void DataObject::handDownToChildren(const HandDown &handDown) const
{
    if (!m_block || info().children == 0)
        return;
    Block &own = Member::block(*this);
    auto hand = [&](const DataObject &child, int) { child.takeDown(handDown); };
    info().forEach(info().children, [&](const Member &member) { member.forEachChild(own, ChildAction(hand)); });
}

void DataObject::takeDown(const HandDown &handDown) const
{
    handDown.change(*this);
    if (m_block && (info().children | info().builtWithTheBlock) != 0)
        handDownToChildren(handDown);
}

void DataObject::copyEnvironments(const DataObject &original) const
{
    takeEnvironment(original.environment());
    if (!original.m_block)
        return;
    info().forEach(info().children | info().builtWithTheBlock, [&](const Member &member) {
        for (int i = 0; i < member.childCount(*original.m_block); ++i)
            member.child(*m_block, i).copyEnvironments(member.child(*original.m_block, i));
    });
}

// --- Check -----------------------------------------------------------------------------------------------------------

void DataObject::Check(bool flag) const
{
    if (isOfDerivedClass()) {
        handOver();
        checkTree(flag, nullptr);
        return;
    }
    try {
        const EnvironmentPointer environment = environmentForChildren();
        checkTree(flag, &environment); // one walk for both
    } catch (...) {
        handOver(); // what a check does not reach is told all the same
        throw;
    }
}

void DataObject::Check() const
{
    Check(false);
}

void DataObject::checkTree(bool flag, const EnvironmentPointer *handedDown) const
{
    Block &own = Member::block(*this);
    const ClassInfo &info = this->info();
    const quint16 set = own.flags.all();
    bool isGood = (set & info.mandatory) == info.mandatory;
    info.forEach(set & info.mayHoldTheInvalid,
                 [&](const Member &member) { isGood = isGood && !member.holdsTheInvalid(own); });
    if (!isGood)
        checkMemberByMember(flag, handedDown, own);
    info.forEach(info.children, [&](const Member &member) { checkChildren(member, flag, handedDown, own); });
}

// Something is wrong with a member. A child of a member in front of it comes first, if something is wrong there too.
void DataObject::checkMemberByMember(bool flag, const EnvironmentPointer *handedDown, Block &own) const
{
    for (const Member *member : info().bitOrder()) {
        member->check(*this, own);
        checkChildren(*member, flag, handedDown, own);
    }
}

void DataObject::checkChildren(const Member &member, bool flag, const EnvironmentPointer *handedDown, Block &own) const
{
    const bool isSet = member.isSet(own);
    if (!handedDown && isOfDerivedClass()) {
        // Whatever the derived class has made of flag and logger, each child passes on its own.
        auto checkByItself = [=](const DataObject &child, int) { child.Check(flag); };
        if (isSet)
            member.forEachChild(own, ChildAction(checkByItself));
        return;
    }
    auto check = [=](const DataObject &child, int) {
        if (handedDown)
            child.takeEnvironment(*handedDown);
        if (isSet)
            child.checkTree(flag, handedDown);
        else if (handedDown)
            child.handDownToChildren(HandDown(*handedDown, HandDown::Both));
    };
    member.forEachChild(own, ChildAction(check));
}

namespace {

/// Passes on the problem that the check throws, if it throws one. The check of a derived class may throw others than
/// ours.
template <class Check>
void collect(const Place &place, QLatin1String member, const ProblemVisitor &visitor, Check &&check)
{
    try {
        check();
    } catch (const ReportException &e) {
        visitor({place, e.GetMessageText(), QString(member)});
    }
}

/// Whether the writer drops or replaces a character of what the object writes.
bool losesTextInXml(const DataObject &object)
{
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    object.GetXml(writer);
    writer.writeCharacters(QString(QLatin1Char(' '))); // shows whether the last text ended with half a character
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
    handOver();
    bool isWritten = true; // in one form at least
    bool isWrittenAsXml = true;
    const ProblemVisitor visit = [&](const Problem &problem) {
        isWritten = isWritten && problem.xmlOnly;
        isWrittenAsXml = false;
        visitor(problem);
    };
    collectProblems({}, visit);
    if (const Member *empty = emptyList())
        visit({{}, Errors::emptyList(*this, empty->name()), QString(empty->name())});

    // What a derived class adds to Check(), HasData() and the XML is in no row.
    if (!isOfDerivedClass())
        return;
    if (isWritten)
        collect({}, {}, visit, [&] { Check(); });
    if (isWritten && !HasData())
        visit({{}, Errors::withoutData(*this)});
    if (isWrittenAsXml && losesTextInXml(*this))
        visit({{}, Errors::ownTextNotForXml(*this), {}, true});
}

void DataObject::collectProblems(const Place &place, const ProblemVisitor &visitor) const
{
    Block &own = block();
    for (const Member *member : info().bitOrder()) {
        collect(place, member->name(), visitor, [&] { member->check(*this, own); });
        const QString refusalByXml = member->refusalByXml(*this, own);
        if (!refusalByXml.isNull())
            visitor({place, refusalByXml, QString(member->name()), true});
        auto collectFromChild = [&](const DataObject &child, int index) {
            const Place childsPlace = place.below(child.label(index), {member->name(), index});
            child.collectProblems(childsPlace, visitor);
            if (const Member *empty = child.emptyList())
                collect(childsPlace, empty->name(), visitor, [&] { member->checkForWriting(*this, child); });
        };
        if (member->writesChildren(own))
            member->forEachChild(own, ChildAction(collectFromChild));
    }
}

// The mandatory list that is set but empty. Check() lets it pass, but the object has no data.
const Member *DataObject::emptyList() const
{
    const Block &own = block();
    for (const Member *member : info().bitOrder()) {
        if (member->has(Mandatory) && member->isList() && member->isSet(own) && !member->isPresent(own))
            return member;
    }
    return nullptr;
}

// What tells an object from its siblings: its name if it has one, else its place, counted from 1 as people do.
QString DataObject::label(int index) const
{
    if (m_block) {
        for (const Member *member : info().bitOrder()) {
            const QString identification = member->identification(*m_block);
            if (!identification.isEmpty())
                return GetObjectName() + QLatin1String(" \"") + identification + QLatin1Char('"');
        }
    }
    return index < 0 ? GetObjectName() : GetObjectName() + QLatin1Char(' ') + QString::number(index + 1);
}

// --- Whether there is something to write -----------------------------------------------------------------------------

// Check() propagates flag and logger on its way; not doing both keeps writing at one walk over the tree. A derived
// class may override either, so there the order of the steps counts: what SetValidate() makes of the flag decides
// whether Check() is called.
bool DataObject::mayWrite() const
{
    const bool isDerived = isOfDerivedClass();
    if (isDerived || !GetValidate())
        handOver();
    if (GetValidate()) {
        Check();
        if (GetValidate() && !HasData()) // tested again: Check() of a derived class may propagate once more
            return false;
    }
    block();
    return true;
}

// Where the parent's check included the object, checking again at every level would be work times depth.
bool DataObject::mayWriteNested(Preparation preparation) const
{
    if (preparation == Preparation::Nothing)
        return mayWrite();
    if (environment()->validate) {
        if (preparation != Preparation::Checked)
            checkTree(false, nullptr);
        if (!HasData())
            return false;
    }
    block();
    return true;
}

} // namespace JobXml
