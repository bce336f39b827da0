// SPDX-License-Identifier: MIT
#include <jobxml/ValueBoolean.h>

#include "framework/Hash.h"
#include "framework/NewObject.h"
#include "framework/Scalar.h"
#include "framework/Table.h"
#include "module/UnitStatics.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("ValueBoolean"));

struct ValueBooleanData
{
    QString id;
    bool value = false;
};

// clang-format off
namespace row {
constexpr Scalar id{   0, "id",    0x2B262DC9, &ValueBooleanData::id,    Attribute | Mandatory | Identifies};
constexpr Scalar value{1, "value", 0x89537E94, &ValueBooleanData::value, Attribute | Mandatory | WrittenWhenSet | SnapshotReadAlways};
} // namespace row

constexpr Table members{row::id, row::value};
constexpr ClassInfo valueBoolean = describe<ValueBoolean, members>(unitStatics.objectName, 0xC8FC2661);
// clang-format on

} // namespace

// clang-format off
ValueBoolean::ValueBoolean() : DataObject(valueBoolean) {}
ValueBoolean::ValueBoolean(const ValueBoolean &other) = default;
ValueBoolean::ValueBoolean(ValueBoolean &&other) noexcept = default;
ValueBoolean &ValueBoolean::operator=(const ValueBoolean &other) noexcept = default;
ValueBoolean &ValueBoolean::operator=(ValueBoolean &&other) noexcept = default;
ValueBoolean::~ValueBoolean() = default;

bool ValueBoolean::operator==(const ValueBoolean &other) const { return areEqual(*this, other); }
bool ValueBoolean::operator!=(const ValueBoolean &other) const { return !areEqual(*this, other); }
void ValueBoolean::swap(ValueBoolean &other) noexcept { ObjectAccess::swapBlocks(*this, other); }
HashValue qHash(const ValueBoolean &object, HashValue seed) { return hashOf(object, seed); }

std::optional<ValueBoolean> ValueBoolean::fromXml(const QString &xml, QString *error) { return newFromXml<ValueBoolean>(xml, error); }
std::optional<ValueBoolean> ValueBoolean::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<ValueBoolean>(representation, error, limits);
}

qint64 ValueBoolean::GetId() { return valueBoolean.identifier; }
QString ValueBoolean::GetStaticObjectName() { return unitStatics.objectName; }

QString ValueBoolean::Getid() const                      { return row::id.get(*this); }
void ValueBoolean::Setid(QString value)                  { row::id.set(*this, std::move(value)); }
bool ValueBoolean::IsidSet() const                       { return row::id.isSet(*this); }
void ValueBoolean::Resetid()                             { row::id.reset(*this); }
QString ValueBoolean::GetDefaultid() const               { return row::id.defaultValue(); }
bool ValueBoolean::IsValidid(const QString &value) const { return row::id.isValid(value); }

bool ValueBoolean::Getvalue() const        { return row::value.get(*this); }
void ValueBoolean::Setvalue(bool value)    { row::value.set(*this, value); }
bool ValueBoolean::IsvalueSet() const      { return row::value.isSet(*this); }
void ValueBoolean::Resetvalue()            { row::value.reset(*this); }
bool ValueBoolean::GetDefaultvalue() const { return row::value.defaultValue(); }
// clang-format on

} // namespace JobXml
