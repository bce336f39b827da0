// SPDX-License-Identifier: MIT
#include <jobxml/ValueInt.h>

#include "framework/Hash.h"
#include "framework/NewObject.h"
#include "framework/Scalar.h"
#include "framework/Table.h"
#include "module/UnitStatics.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("ValueInt"));

struct ValueIntData
{
    QString id;
    int value = 0;
};

// clang-format off
namespace row {
constexpr Scalar id{   0, "id",    0x2B262DC9, &ValueIntData::id,    Attribute | Mandatory | Identifies};
constexpr Scalar value{1, "value", 0x0BA44238, &ValueIntData::value, Attribute | Mandatory};
} // namespace row

constexpr Table members{row::id, row::value};
constexpr ClassInfo valueInt = describe<ValueInt, members>(unitStatics.objectName, 0x278DA93B);
// clang-format on

} // namespace

// clang-format off
ValueInt::ValueInt() : DataObject(valueInt) {}
ValueInt::ValueInt(const ValueInt &other) = default;
ValueInt::ValueInt(ValueInt &&other) noexcept = default;
ValueInt &ValueInt::operator=(const ValueInt &other) noexcept = default;
ValueInt &ValueInt::operator=(ValueInt &&other) noexcept = default;
ValueInt::~ValueInt() = default;

bool ValueInt::operator==(const ValueInt &other) const { return areEqual(*this, other); }
bool ValueInt::operator!=(const ValueInt &other) const { return !areEqual(*this, other); }
void ValueInt::swap(ValueInt &other) noexcept { ObjectAccess::swapBlocks(*this, other); }
HashValue qHash(const ValueInt &object, HashValue seed) { return hashOf(object, seed); }

std::optional<ValueInt> ValueInt::fromXml(const QString &xml, QString *error) { return newFromXml<ValueInt>(xml, error); }
std::optional<ValueInt> ValueInt::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<ValueInt>(representation, error, limits);
}

qint64 ValueInt::GetId() { return valueInt.identifier; }
QString ValueInt::GetStaticObjectName() { return unitStatics.objectName; }

QString ValueInt::Getid() const                      { return row::id.get(*this); }
void ValueInt::Setid(QString value)                  { row::id.set(*this, std::move(value)); }
bool ValueInt::IsidSet() const                       { return row::id.isSet(*this); }
void ValueInt::Resetid()                             { row::id.reset(*this); }
QString ValueInt::GetDefaultid() const               { return row::id.defaultValue(); }
bool ValueInt::IsValidid(const QString &value) const { return row::id.isValid(value); }

int ValueInt::Getvalue() const                      { return row::value.get(*this); }
void ValueInt::Setvalue(int value)                  { row::value.set(*this, value); }
bool ValueInt::IsvalueSet() const                   { return row::value.isSet(*this); }
void ValueInt::Resetvalue()                         { row::value.reset(*this); }
int ValueInt::GetDefaultvalue() const               { return row::value.defaultValue(); }
bool ValueInt::IsValidvalue(const int &value) const { return row::value.isValid(value); }
// clang-format on

} // namespace JobXml
