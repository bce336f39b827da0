// SPDX-License-Identifier: MIT
#include <jobxml/ValueString.h>

#include "framework/Hash.h"
#include "framework/NewObject.h"
#include "framework/Scalar.h"
#include "framework/Table.h"
#include "module/UnitStatics.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("ValueString"));

struct ValueStringData
{
    QString id;
    QString value;
};

// clang-format off
namespace row {
constexpr Scalar id{   0, "id",    0x2B262DC9, &ValueStringData::id,    Attribute | Mandatory | Identifies};
constexpr Scalar value{1, "value", 0xCEFF51BA, &ValueStringData::value, Attribute | Mandatory};
} // namespace row

constexpr Table members{row::id, row::value};
constexpr ClassInfo valueString = describe<ValueString, members>(unitStatics.objectName, 0xC5ECF92B);
// clang-format on

} // namespace

// clang-format off
ValueString::ValueString() : DataObject(valueString) {}
ValueString::ValueString(const ValueString &other) = default;
ValueString::ValueString(ValueString &&other) noexcept = default;
ValueString &ValueString::operator=(const ValueString &other) noexcept = default;
ValueString &ValueString::operator=(ValueString &&other) noexcept = default;
ValueString::~ValueString() = default;

bool ValueString::operator==(const ValueString &other) const { return areEqual(*this, other); }
bool ValueString::operator!=(const ValueString &other) const { return !areEqual(*this, other); }
void ValueString::swap(ValueString &other) noexcept { ObjectAccess::swapBlocks(*this, other); }
HashValue qHash(const ValueString &object, HashValue seed) { return hashOf(object, seed); }

std::optional<ValueString> ValueString::fromXml(const QString &xml, QString *error) { return newFromXml<ValueString>(xml, error); }
std::optional<ValueString> ValueString::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<ValueString>(representation, error, limits);
}

qint64 ValueString::GetId() { return valueString.identifier; }
QString ValueString::GetStaticObjectName() { return unitStatics.objectName; }

QString ValueString::Getid() const                      { return row::id.get(*this); }
void ValueString::Setid(QString value)                  { row::id.set(*this, std::move(value)); }
bool ValueString::IsidSet() const                       { return row::id.isSet(*this); }
void ValueString::Resetid()                             { row::id.reset(*this); }
QString ValueString::GetDefaultid() const               { return row::id.defaultValue(); }
bool ValueString::IsValidid(const QString &value) const { return row::id.isValid(value); }

QString ValueString::Getvalue() const                      { return row::value.get(*this); }
void ValueString::Setvalue(QString value)                  { row::value.set(*this, std::move(value)); }
bool ValueString::IsvalueSet() const                       { return row::value.isSet(*this); }
void ValueString::Resetvalue()                             { row::value.reset(*this); }
QString ValueString::GetDefaultvalue() const               { return row::value.defaultValue(); }
bool ValueString::IsValidvalue(const QString &value) const { return row::value.isValid(value); }
// clang-format on

} // namespace JobXml
