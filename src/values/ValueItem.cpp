// SPDX-License-Identifier: MIT
#include <jobxml/ValueItem.h>

#include "framework/Behavior.h"
#include "framework/Child.h"
#include "framework/Member.h"
#include "framework/NewObject.h"
#include "framework/Problems.h"
#include "framework/Table.h"
#include "framework/XmlOutput.h"
#include "module/NameList.h"
#include "module/UnitStatics.h"
#include "values/Alternatives.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("ValueItem"));

using Choice = ValueItem::ChoiceValueItem;

struct State
{
    State() = default;
    State(const State &other)
        : environment(REPORTGENERATOR::EnvironmentPointer::plain(other.environment->validate)), choice(other.choice)
    {
    } // copies have no logger
    State &operator=(const State &) = delete;

    // The environment propagated last; alternatives that are created later inherit it.
    REPORTGENERATOR::EnvironmentPointer environment = REPORTGENERATOR::EnvironmentPointer::plain(true);
    Choice choice = Choice::None;
};

struct ValueItemData
{
    Alternatives alternatives;
    State state;
};

// Departs: counts and is written only while it is chosen, and is created when it is first used. See Alternatives.
template <class T>
class Alternative final : public MemberOf<ValueItemData>
{
public:
    constexpr Alternative(int bit, const char *name, quint32 tag) : MemberOf(bit, name, tag, CreatedWithTheBlock) { }

    const T &get(const DataObject &object) const { return alternative(ObjectAccess::block(object)); }

    T &modify(DataObject &object) const
    {
        Block &own = ObjectAccess::block(object);
        T &chosen = alternative(own); // first, because it may run out of memory
        choose(own);
        return chosen;
    }

    void set(DataObject &object, const T &value) const
    {
        Block &own = ObjectAccess::block(object);
        alternative(own) = value;
        choose(own);
    }

    using Member::reset;

    bool isPresent(const Block &block) const override
    {
        const DataObject *const object = find(block);
        return object && object->HasData();
    }

    void reset(Block &block) const override
    {
        if (DataObject *const object = find(block))
            static_cast<T &>(*object) = T();
    }

    // For two items that have chosen this alternative. The item itself compares the flags.
    bool equals(Block *left, Block *right) const override
    {
        const auto *const inLeft = static_cast<const T *>(find(*left));
        const auto *const inRight = static_cast<const T *>(find(*right));
        if (inLeft && inRight)
            return *inLeft == *inRight;
        const T unused;
        return (inLeft ? *inLeft : unused) == (inRight ? *inRight : unused);
    }

    void check(const DataObject &object, Block &block) const override
    {
        if (!isChosen(block))
            return;
        if (!this->isSet(block))
            Errors::chosenNotSet(object, this->name());
        if (!isPresent(block))
            Errors::chosenWithoutData(object, this->name());
    }

    bool writesChildren(const Block &block) const override { return isChosen(block) && this->isSet(block); }

    void forEachChild(Block &block, const ChildAction &action) const override
    {
        if (const DataObject *const object = find(block))
            action(*object, -1);
    }

    void merge(DataObject &object, const DataObject &other) const override
    {
        if (writesChildren(ObjectAccess::block(other)))
            set(object, get(other));
    }

    MemberKind kind() const override { return MemberKind::Alternative; }
    bool isChosen(const Block *block) const override { return block && isChosen(*block); }
    int childCount(const Block &block) const override { return find(block) ? 1 : 0; }
    const DataObject &child(const Block &block, int) const override { return *find(block); }
    DataObject &editChild(DataObject &object, int) const override { return modify(object); }

    void writeXml(const DataObject &object, Block &block, XmlOutput &output) const override
    {
        // The item's check does not include the alternative, so it is checked here, and also in writeRecord().
        if (writesChildren(block))
            Child::writeXml(alternative(block), object, output, false);
    }

    void readXmlElement(DataObject &object, XmlInput &input) const override
    {
        T read;
        Propagation::propagateTo(read, Propagation::forReading(object));
        input.readChildOf(*this);
        if (Child::readXml(read, input, this->xmlName()))
            modify(object) = std::move(read);
    }

    void writeRecord(const DataObject &object, Block &block, BinaryWriter &writer) const override
    {
        if (writesChildren(block))
            Child::writeRecord(alternative(block), object, writer, this->tag(), false);
    }

    void readRecord(DataObject &object, BinaryReader &reader, qint32 length) const override
    {
        Block &own = ObjectAccess::block(object);
        this->members(own).state.choice = Choice(this->bit());
        reader.readChildOf(*this);
        readAlternative(object, own, reader, [&](T &read) {
            Child::readRecord(read, reader, length);
            return true;
        });
        // Only now: after an error in the record the alternative is chosen but not set.
        choose(ObjectAccess::block(object));
    }

    void writeSnapshot(const DataObject &, Block &block, BinaryWriter &writer) const override
    {
        if (writesChildren(block))
            Child::writeSnapshot(alternative(block), writer);
    }

    bool readSnapshot(DataObject &object, Block &block, BinaryReader &reader) const override
    {
        return !isChosen(block)
            || readAlternative(object, block, reader, [&](T &read) { return Child::readSnapshot(read, reader); });
    }

private:
    template <class Read>
    bool readAlternative(DataObject &object, Block &block, BinaryReader &reader, const Read &read) const
    {
        return Member::readPart(
            object, block, reader, [this](Block &found) -> T & { return alternative(found); }, read);
    }

    DataObject *find(Block &block) const { return members(block).alternatives.find(bit()); }
    const DataObject *find(const Block &block) const { return members(block).alternatives.find(bit()); }

    bool isChosen(const Block &block) const { return members(block).state.choice == Choice(bit()); }

    void choose(Block &block) const
    {
        block.flags.set(bit());
        members(block).state.choice = Choice(bit());
    }

    T &alternative(Block &block) const
    {
        if (DataObject *const object = find(block))
            return static_cast<T &>(*object);
        T &built = members(block).alternatives.template build<T>(bit());
        Propagation::propagateTo(built, members(block).state.environment);
        return built;
    }
};

// clang-format off
namespace row {
constexpr Alternative<ValueBoolean>      ValueBoolean{     0, "ValueBoolean",      0xE8182C83};
constexpr Alternative<ValueFloat>        ValueFloat{       1, "ValueFloat",        0x07877B18};
constexpr Alternative<ValueInt>          ValueInt{         2, "ValueInt",          0x4ACA6514};
constexpr Alternative<ValueInt64>        ValueInt64{       3, "ValueInt64",        0xC7AF86A5};
constexpr Alternative<ValueNumericFloat> ValueNumericFloat{4, "ValueNumericFloat", 0x881D77BB};
constexpr Alternative<ValueNumericInt>   ValueNumericInt{  5, "ValueNumericInt",   0x07114506};
constexpr Alternative<ValueNumericInt64> ValueNumericInt64{6, "ValueNumericInt64", 0x8CD014A1};
constexpr Alternative<ValueSelection>    ValueSelection{   7, "ValueSelection",    0xAA5F786F};
constexpr Alternative<ValueString>       ValueString{      8, "ValueString",       0x022B9478};
constexpr Alternative<ValueStringList>   ValueStringList{  9, "ValueStringList",   0x491ED6FE};
} // namespace row

constexpr Table members{row::ValueBoolean,
                        row::ValueFloat,
                        row::ValueInt,
                        row::ValueInt64,
                        row::ValueNumericFloat,
                        row::ValueNumericInt,
                        row::ValueNumericInt64,
                        row::ValueSelection,
                        row::ValueString,
                        row::ValueStringList};
// clang-format on

static_assert(members.size == std::size_t(Kinds::size), "the alternatives of a ValueItem are the kinds in Classes.def");

// The index of a name is the value of the choice and the bit of the row.
QStringList namesOfAlternatives()
{
    QStringList names;
    for (const Member *row : members.inBitOrder)
        names.append(QString(row->name())); // a copy: a program may keep it after unloading the library
    return names;
}

const NameList choiceNames(namesOfAlternatives());

ValueItemData &dataOf(Block &block)
{
    return static_cast<BlockOf<ValueItemData> &>(block).members;
}

State &stateOf(Block &block)
{
    return dataOf(block).state;
}

Choice choiceOf(const Block *block)
{
    return block ? static_cast<const BlockOf<ValueItemData> *>(block)->members.state.choice : Choice::None;
}

/// The choice, for visitors. It is not a row of the table, because its encoding differs from that of every member.
class ChoiceMember final : public VisitedMember
{
public:
    constexpr ChoiceMember() : VisitedMember("ChoiceValueItem", Mandatory) { }

    MemberKind kind() const override { return MemberKind::Choice; }
    bool isSet(const Block *block) const override { return choiceOf(block) != Choice::None; }
    QStringList names() const override { return choiceNames.names(); }
    QVariant value(const Block *block) const override
    {
        return choiceNames.variant(int(choiceOf(block)), int(Choice::None));
    }
    bool setValue(DataObject &object, const QVariant &value) const override
    {
        const auto choice = choiceNames.fromVariant(value, Choice::None);
        if (choice)
            stateOf(ObjectAccess::block(object)).choice = *choice;
        return choice.has_value();
    }
    void reset(DataObject &object) const override { setValue(object, QString()); }
    void setFlag(DataObject &, bool) const override { }
};

constexpr ChoiceMember choiceMember;

/// The row of a choice; null for None and for invalid values.
const Member *rowOf(Choice choice)
{
    return int(choice) < int(members.size) ? members.inBitOrder[std::size_t(choice)] : nullptr;
}

class ItemBehavior final : public Behavior
{
    // Departs: ignores the alternatives that are not chosen, and the flag of the right one.
    bool equals(const DataObject &left, const DataObject &right) const override
    {
        Block &leftBlock = ObjectAccess::block(left);
        Block &rightBlock = ObjectAccess::block(right);
        if (choiceOf(&leftBlock) != choiceOf(&rightBlock))
            return false;
        const Member *chosen = rowOf(choiceOf(&leftBlock));
        return !chosen || !chosen->isSet(leftBlock) || chosen->equals(&leftBlock, &rightBlock);
    }

    // Departs: does nothing unless validating; the alternative itself is checked when it is written.
    void check(const DataObject &item, bool, const REPORTGENERATOR::EnvironmentPointer *environment) const override
    {
        Block &own = ObjectAccess::block(item);
        if (environment)
            propagateToChildren(item, Propagation(*environment));
        if (!item.GetValidate())
            return;
        const Member *chosen = rowOf(choiceOf(&own));
        if (!chosen)
            Errors::nothingChosen(item, choiceMember.name());
        chosen->check(item, own);
    }

    // Departs: without a choice, that is the only problem. There can be none in alternatives that are not chosen.
    void collectProblems(const DataObject &item, const Trail &trail, const ProblemVisitor &visitor) const override
    {
        Block &own = ObjectAccess::block(item);
        if (const Member *chosen = rowOf(choiceOf(&own)))
            collectProblemsOf(*chosen, item, own, trail, visitor);
        else
            collectProblem(trail, &choiceMember, visitor, [&] { Errors::nothingChosen(item, choiceMember.name()); });
    }

    // Departs: visitors see the choice first.
    void forEachMember(const DataObject &item, const MemberAction &action) const override
    {
        action(choiceMember);
        Behavior::forEachMember(item, action);
    }

    // Departs: also stores the environment, for alternatives that are created later.
    void propagateToChildren(const DataObject &item, const Propagation &propagation) const override
    {
        if (!item.IsInitialized())
            return;
        ValueItemData &data = dataOf(ObjectAccess::block(item));
        data.alternatives.forEach([&](const DataObject &alternative) { propagation.propagateTo(alternative); });
        propagation.propagateTo(data.state.environment);
    }

    // Departs: writes the chosen alternative alone, and propagates to the others.
    void writeElement(const DataObject &item, XmlOutput &output) const override
    {
        output.writeStartElement(item.GetObjectName());
        Block &own = ObjectAccess::block(item);
        if (const Member *chosen = chosenForWriting(own, output))
            chosen->writeXml(item, own, output);
        output.writeEndElement();
    }
    void writeRecords(const DataObject &item, BinaryWriter &writer) const override
    {
        Block &own = ObjectAccess::block(item);
        if (const Member *chosen = chosenForWriting(own, writer))
            chosen->writeRecord(item, own, writer);
    }

    // Departs: also stores the environment of a copy, for alternatives that are created later.
    void propagateToCopies(const DataObject &copy) const override
    {
        ValueItemData &data = dataOf(ObjectAccess::block(copy));
        data.state.environment = Propagation::forChildren(copy);
        const Propagation propagation(data.state.environment, Propagation::Validate);
        data.alternatives.forEach([&](const DataObject &alternative) { propagation.propagateToCopy(alternative); });
    }

    // Departs: also copies the stored environment.
    void copyEnvironments(const DataObject &original, const DataObject &copy) const override
    {
        Behavior::copyEnvironments(original, copy);
        if (const Block *from = ObjectAccess::existingBlock(original))
            stateOf(ObjectAccess::block(copy)).environment =
                static_cast<const BlockOf<ValueItemData> *>(from)->members.state.environment;
    }

    // Departs: writes the choice as a byte between flags and members.
    void writeSnapshot(const DataObject &item, BinaryWriter &writer) const override
    {
        writeSnapshotFlags(item, writer);
        writer.put(qint8(stateOf(ObjectAccess::block(item)).choice));
        writeSnapshotMembers(item, writer);
    }

    // Departs: always reads the chosen alternative, although it is only written if its flag is set.
    bool readSnapshot(DataObject &item, BinaryReader &reader) const override
    {
        quint8 choice = 0;
        if (!readSnapshotFlags(item, reader) || !reader.take(choice))
            return false;
        stateOf(ObjectAccess::block(item)).choice = Choice(choice);
        return readSnapshotMembers(item, reader);
    }

private:
    /// The row to write; null if nothing is chosen or set.
    static const Member *chosenForWriting(Block &own, WriteTarget &target)
    {
        ValueItemData &data = dataOf(own);
        const Member *const row = rowOf(data.state.choice);
        const bool isWritten = row && row->writesChildren(own);
        Composition *const composition = target.composition();
        if (!composition)
            return isWritten ? row : nullptr;

        const DataObject *const chosen = isWritten ? data.alternatives.find(row->bit()) : nullptr;
        Propagation(composition->environment).propagateTo(data.state.environment);
        data.alternatives.forEach([&](const DataObject &alternative) {
            if (&alternative != chosen)
                skipChild(alternative, *composition);
        });
        if (!chosen)
            target.noteProblem();
        // While validating, an alternative that was never used is not created.
        return chosen || (isWritten && !composition->validates) ? row : nullptr;
    }
};

constexpr ItemBehavior behavior;
constexpr ClassInfo valueItem =
    describe<ValueItem, members, 2 - Alternatives::kinds>(unitStatics.objectName, 0xA6C468CF, behavior);

} // namespace

ValueItem::ValueItem() : DataObject(valueItem) { }

// clang-format off
ValueItem::ValueItem(const ValueItem &other) = default;
ValueItem::ValueItem(ValueItem &&other) noexcept = default;
ValueItem &ValueItem::operator=(const ValueItem &other) noexcept = default;
ValueItem &ValueItem::operator=(ValueItem &&other) noexcept = default;
ValueItem::~ValueItem() = default;

void ValueItem::swap(ValueItem &other) noexcept { ObjectAccess::swapBlocks(*this, other); }

std::optional<ValueItem> ValueItem::fromXml(const QString &xml, QString *error) { return newFromXml<ValueItem>(xml, error); }
std::optional<ValueItem> ValueItem::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<ValueItem>(representation, error, limits);
}

qint64 ValueItem::GetId() { return valueItem.identifier; }
QString ValueItem::GetStaticObjectName() { return unitStatics.objectName; }

ValueBoolean &ValueItem::GetValueBoolean()                      { return row::ValueBoolean.modify(*this); }
const ValueBoolean &ValueItem::GetValueBoolean() const          { return row::ValueBoolean.get(*this); }
void ValueItem::SetValueBoolean(const ValueBoolean &value)      { row::ValueBoolean.set(*this, value); }
bool ValueItem::IsValueBooleanSet() const                       { return row::ValueBoolean.isSet(*this); }
void ValueItem::ResetValueBoolean()                             { row::ValueBoolean.reset(*this); }
bool ValueItem::IsValidValueBoolean(const ValueBoolean &) const { return true; }

ValueFloat &ValueItem::GetValueFloat()                      { return row::ValueFloat.modify(*this); }
const ValueFloat &ValueItem::GetValueFloat() const          { return row::ValueFloat.get(*this); }
void ValueItem::SetValueFloat(const ValueFloat &value)      { row::ValueFloat.set(*this, value); }
bool ValueItem::IsValueFloatSet() const                     { return row::ValueFloat.isSet(*this); }
void ValueItem::ResetValueFloat()                           { row::ValueFloat.reset(*this); }
bool ValueItem::IsValidValueFloat(const ValueFloat &) const { return true; }

ValueInt &ValueItem::GetValueInt()                      { return row::ValueInt.modify(*this); }
const ValueInt &ValueItem::GetValueInt() const          { return row::ValueInt.get(*this); }
void ValueItem::SetValueInt(const ValueInt &value)      { row::ValueInt.set(*this, value); }
bool ValueItem::IsValueIntSet() const                   { return row::ValueInt.isSet(*this); }
void ValueItem::ResetValueInt()                         { row::ValueInt.reset(*this); }
bool ValueItem::IsValidValueInt(const ValueInt &) const { return true; }

ValueInt64 &ValueItem::GetValueInt64()                      { return row::ValueInt64.modify(*this); }
const ValueInt64 &ValueItem::GetValueInt64() const          { return row::ValueInt64.get(*this); }
void ValueItem::SetValueInt64(const ValueInt64 &value)      { row::ValueInt64.set(*this, value); }
bool ValueItem::IsValueInt64Set() const                     { return row::ValueInt64.isSet(*this); }
void ValueItem::ResetValueInt64()                           { row::ValueInt64.reset(*this); }
bool ValueItem::IsValidValueInt64(const ValueInt64 &) const { return true; }

ValueNumericFloat &ValueItem::GetValueNumericFloat()                      { return row::ValueNumericFloat.modify(*this); }
const ValueNumericFloat &ValueItem::GetValueNumericFloat() const          { return row::ValueNumericFloat.get(*this); }
void ValueItem::SetValueNumericFloat(const ValueNumericFloat &value)      { row::ValueNumericFloat.set(*this, value); }
bool ValueItem::IsValueNumericFloatSet() const                            { return row::ValueNumericFloat.isSet(*this); }
void ValueItem::ResetValueNumericFloat()                                  { row::ValueNumericFloat.reset(*this); }
bool ValueItem::IsValidValueNumericFloat(const ValueNumericFloat &) const { return true; }

ValueNumericInt &ValueItem::GetValueNumericInt()                      { return row::ValueNumericInt.modify(*this); }
const ValueNumericInt &ValueItem::GetValueNumericInt() const          { return row::ValueNumericInt.get(*this); }
void ValueItem::SetValueNumericInt(const ValueNumericInt &value)      { row::ValueNumericInt.set(*this, value); }
bool ValueItem::IsValueNumericIntSet() const                          { return row::ValueNumericInt.isSet(*this); }
void ValueItem::ResetValueNumericInt()                                { row::ValueNumericInt.reset(*this); }
bool ValueItem::IsValidValueNumericInt(const ValueNumericInt &) const { return true; }

ValueNumericInt64 &ValueItem::GetValueNumericInt64()                      { return row::ValueNumericInt64.modify(*this); }
const ValueNumericInt64 &ValueItem::GetValueNumericInt64() const          { return row::ValueNumericInt64.get(*this); }
void ValueItem::SetValueNumericInt64(const ValueNumericInt64 &value)      { row::ValueNumericInt64.set(*this, value); }
bool ValueItem::IsValueNumericInt64Set() const                            { return row::ValueNumericInt64.isSet(*this); }
void ValueItem::ResetValueNumericInt64()                                  { row::ValueNumericInt64.reset(*this); }
bool ValueItem::IsValidValueNumericInt64(const ValueNumericInt64 &) const { return true; }

ValueSelection &ValueItem::GetValueSelection()                      { return row::ValueSelection.modify(*this); }
const ValueSelection &ValueItem::GetValueSelection() const          { return row::ValueSelection.get(*this); }
void ValueItem::SetValueSelection(const ValueSelection &value)      { row::ValueSelection.set(*this, value); }
bool ValueItem::IsValueSelectionSet() const                         { return row::ValueSelection.isSet(*this); }
void ValueItem::ResetValueSelection()                               { row::ValueSelection.reset(*this); }
bool ValueItem::IsValidValueSelection(const ValueSelection &) const { return true; }

ValueString &ValueItem::GetValueString()                      { return row::ValueString.modify(*this); }
const ValueString &ValueItem::GetValueString() const          { return row::ValueString.get(*this); }
void ValueItem::SetValueString(const ValueString &value)      { row::ValueString.set(*this, value); }
bool ValueItem::IsValueStringSet() const                      { return row::ValueString.isSet(*this); }
void ValueItem::ResetValueString()                            { row::ValueString.reset(*this); }
bool ValueItem::IsValidValueString(const ValueString &) const { return true; }

ValueStringList &ValueItem::GetValueStringList()                      { return row::ValueStringList.modify(*this); }
const ValueStringList &ValueItem::GetValueStringList() const          { return row::ValueStringList.get(*this); }
void ValueItem::SetValueStringList(const ValueStringList &value)      { row::ValueStringList.set(*this, value); }
bool ValueItem::IsValueStringListSet() const                          { return row::ValueStringList.isSet(*this); }
void ValueItem::ResetValueStringList()                                { row::ValueStringList.reset(*this); }
bool ValueItem::IsValidValueStringList(const ValueStringList &) const { return true; }

// clang-format on

// Departs: comparing initializes both items if one of them is initialized.
bool ValueItem::operator==(const ValueItem &other) const
{
    return (!IsInitialized() && !other.IsInitialized()) || areEqual(*this, other);
}

bool ValueItem::operator!=(const ValueItem &other) const
{
    return !(*this == other);
}

const ValueItem::ChoiceValueItem &ValueItem::GetChoiceValueItem() const
{
    return stateOf(ObjectAccess::block(*this)).choice;
}

void ValueItem::ResetChoiceValueItem()
{
    if (IsInitialized())
        stateOf(ObjectAccess::block(*this)).choice = Choice::None;
}

bool ValueItem::IsValidChoiceValueItem(const ChoiceValueItem &choice) const
{
    return choice != Choice::None;
}

// Departs: does not store the choice. Setting an alternative chooses it.
void ValueItem::InitChoice(const ChoiceValueItem &choice)
{
    const ChoiceValueItem wanted = choice; // a copy: `choice` may refer to the item's own choice, which is reset now
    Reset();
    ObjectAccess::block(*this);
    if (wanted == Choice::None)
        Errors::invalidChoice(*this);
}

QString ValueItem::ChoiceValueItemToName(const ChoiceValueItem &choice) const
{
    return choiceNames.name(int(choice));
}

ValueItem::ChoiceValueItem ValueItem::NameToChoiceValueItem(const QString &name) const
{
    return ChoiceValueItem(quint8(choiceNames.value(name))); // -1, for an unknown name, becomes 255
}

QStringList ValueItem::GetChoiceValueItems()
{
    return choiceNames.names();
}

QStringList ValueItem::GetGUIChoiceValueItems()
{
    return choiceNames.displayNames();
}

// Departs: uses only the chosen alternative, and ignores its flag.
bool ValueItem::HasData() const
{
    const Member *chosen = rowOf(choiceOf(ObjectAccess::existingBlock(*this)));
    return chosen && chosen->isPresent(*ObjectAccess::existingBlock(*this));
}

// Departs: true as soon as an alternative is chosen.
bool ValueItem::AnyData() const
{
    return choiceOf(ObjectAccess::existingBlock(*this)) != Choice::None;
}

// Departs: also resets the choice.
void ValueItem::Reset()
{
    DataObject::Reset();
    ResetChoiceValueItem();
}

QDebug operator<<(QDebug debug, ValueItem::ChoiceValueItem value)
{
    return choiceNames.write(std::move(debug), "ValueItem::ChoiceValueItem", int(value),
                             int(ValueItem::ChoiceValueItem::None), "None");
}

} // namespace JobXml
