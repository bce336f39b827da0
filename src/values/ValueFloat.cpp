// SPDX-License-Identifier: MIT
#include <jobxml/ValueFloat.h>

#include "framework/Hash.h"
#include "framework/NewObject.h"
#include "framework/Scalar.h"
#include "framework/Table.h"
#include "module/UnitStatics.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("ValueFloat"));

struct ValueFloatData
{
    QString id;
    float value = 0.0F;
};

// clang-format off
namespace row {
constexpr Scalar id{   0, "id",    0x2B262DC9, &ValueFloatData::id,    Attribute | Mandatory | Identifies};
constexpr Scalar value{1, "value", 0xE3DF649D, &ValueFloatData::value, Attribute | Mandatory};
} // namespace row

constexpr Table members{row::id, row::value};
constexpr ClassInfo valueFloat = describe<ValueFloat, members>(unitStatics.objectName, 0x6440D555);
// clang-format on

} // namespace

// clang-format off
ValueFloat::ValueFloat() : DataObject(valueFloat) {}
ValueFloat::ValueFloat(const ValueFloat &other) = default;
ValueFloat::ValueFloat(ValueFloat &&other) noexcept = default;
ValueFloat &ValueFloat::operator=(const ValueFloat &other) noexcept = default;
ValueFloat &ValueFloat::operator=(ValueFloat &&other) noexcept = default;
ValueFloat::~ValueFloat() = default;

bool ValueFloat::operator==(const ValueFloat &other) const { return areEqual(*this, other); }
bool ValueFloat::operator!=(const ValueFloat &other) const { return !areEqual(*this, other); }
void ValueFloat::swap(ValueFloat &other) noexcept { ObjectAccess::swapBlocks(*this, other); }
HashValue qHash(const ValueFloat &object, HashValue seed) { return hashOf(object, seed); }

std::optional<ValueFloat> ValueFloat::fromXml(const QString &xml, QString *error) { return newFromXml<ValueFloat>(xml, error); }
std::optional<ValueFloat> ValueFloat::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<ValueFloat>(representation, error, limits);
}

qint64 ValueFloat::GetId() { return valueFloat.identifier; }
QString ValueFloat::GetStaticObjectName() { return unitStatics.objectName; }

QString ValueFloat::Getid() const                      { return row::id.get(*this); }
void ValueFloat::Setid(QString value)                  { row::id.set(*this, std::move(value)); }
bool ValueFloat::IsidSet() const                       { return row::id.isSet(*this); }
void ValueFloat::Resetid()                             { row::id.reset(*this); }
QString ValueFloat::GetDefaultid() const               { return row::id.defaultValue(); }
bool ValueFloat::IsValidid(const QString &value) const { return row::id.isValid(value); }

float ValueFloat::Getvalue() const                      { return row::value.get(*this); }
void ValueFloat::Setvalue(float value)                  { row::value.set(*this, value); }
bool ValueFloat::IsvalueSet() const                     { return row::value.isSet(*this); }
void ValueFloat::Resetvalue()                           { row::value.reset(*this); }
float ValueFloat::GetDefaultvalue() const               { return row::value.defaultValue(); }
bool ValueFloat::IsValidvalue(const float &value) const { return row::value.isValid(value); }
// clang-format on

} // namespace JobXml
