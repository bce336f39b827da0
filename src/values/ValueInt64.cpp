// SPDX-License-Identifier: MIT
#include <jobxml/ValueInt64.h>

#include "framework/Hash.h"
#include "framework/NewObject.h"
#include "framework/Scalar.h"
#include "framework/Table.h"
#include "module/UnitStatics.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("ValueInt64"));

struct ValueInt64Data
{
    QString id;
    qint64 value = 0;
};

// clang-format off
namespace row {
constexpr Scalar id{   0, "id",    0x2B262DC9, &ValueInt64Data::id,    Attribute | Mandatory | Identifies};
constexpr Scalar value{1, "value", 0x64A03F86, &ValueInt64Data::value, Attribute | Mandatory};
} // namespace row

constexpr Table members{row::id, row::value};
constexpr ClassInfo valueInt64 = describe<ValueInt64, members>(unitStatics.objectName, 0x4E82A0AA);
// clang-format on

} // namespace

// clang-format off
ValueInt64::ValueInt64() : DataObject(valueInt64) {}
ValueInt64::ValueInt64(const ValueInt64 &other) = default;
ValueInt64::ValueInt64(ValueInt64 &&other) noexcept = default;
ValueInt64 &ValueInt64::operator=(const ValueInt64 &other) noexcept = default;
ValueInt64 &ValueInt64::operator=(ValueInt64 &&other) noexcept = default;
ValueInt64::~ValueInt64() = default;

bool ValueInt64::operator==(const ValueInt64 &other) const { return areEqual(*this, other); }
bool ValueInt64::operator!=(const ValueInt64 &other) const { return !areEqual(*this, other); }
void ValueInt64::swap(ValueInt64 &other) noexcept { ObjectAccess::swapBlocks(*this, other); }
HashValue qHash(const ValueInt64 &object, HashValue seed) { return hashOf(object, seed); }

std::optional<ValueInt64> ValueInt64::fromXml(const QString &xml, QString *error) { return newFromXml<ValueInt64>(xml, error); }
std::optional<ValueInt64> ValueInt64::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<ValueInt64>(representation, error, limits);
}

qint64 ValueInt64::GetId() { return valueInt64.identifier; }
QString ValueInt64::GetStaticObjectName() { return unitStatics.objectName; }

QString ValueInt64::Getid() const                      { return row::id.get(*this); }
void ValueInt64::Setid(QString value)                  { row::id.set(*this, std::move(value)); }
bool ValueInt64::IsidSet() const                       { return row::id.isSet(*this); }
void ValueInt64::Resetid()                             { row::id.reset(*this); }
QString ValueInt64::GetDefaultid() const               { return row::id.defaultValue(); }
bool ValueInt64::IsValidid(const QString &value) const { return row::id.isValid(value); }

qint64 ValueInt64::Getvalue() const                      { return row::value.get(*this); }
void ValueInt64::Setvalue(qint64 value)                  { row::value.set(*this, value); }
bool ValueInt64::IsvalueSet() const                      { return row::value.isSet(*this); }
void ValueInt64::Resetvalue()                            { row::value.reset(*this); }
qint64 ValueInt64::GetDefaultvalue() const               { return row::value.defaultValue(); }
bool ValueInt64::IsValidvalue(const qint64 &value) const { return row::value.isValid(value); }
// clang-format on

} // namespace JobXml
