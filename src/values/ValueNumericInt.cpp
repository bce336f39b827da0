// SPDX-License-Identifier: MIT
#include <jobxml/ValueNumericInt.h>

#include "framework/Hash.h"
#include "framework/NewObject.h"
#include "module/UnitStatics.h"
#include "values/RangedNumber.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("ValueNumericInt"));

struct Tags
{
    static constexpr quint32 value = 0x0BA44238;
    static constexpr quint32 min = 0x685654A1;
    static constexpr quint32 max = 0x25F6AFCC;
    static constexpr quint32 step = 0x43766B23;
};

using row = RangedNumber<int, Tags>;

constexpr ClassInfo valueNumericInt = describe<ValueNumericInt, row::members>(unitStatics.objectName, 0xC55D0588);

} // namespace

// clang-format off
ValueNumericInt::ValueNumericInt() : DataObject(valueNumericInt) {}
ValueNumericInt::ValueNumericInt(const ValueNumericInt &other) = default;
ValueNumericInt::ValueNumericInt(ValueNumericInt &&other) noexcept = default;
ValueNumericInt &ValueNumericInt::operator=(const ValueNumericInt &other) noexcept = default;
ValueNumericInt &ValueNumericInt::operator=(ValueNumericInt &&other) noexcept = default;
ValueNumericInt::~ValueNumericInt() = default;

bool ValueNumericInt::operator==(const ValueNumericInt &other) const { return areEqual(*this, other); }
bool ValueNumericInt::operator!=(const ValueNumericInt &other) const { return !areEqual(*this, other); }
void ValueNumericInt::swap(ValueNumericInt &other) noexcept { ObjectAccess::swapBlocks(*this, other); }
HashValue qHash(const ValueNumericInt &object, HashValue seed) { return hashOf(object, seed); }

std::optional<ValueNumericInt> ValueNumericInt::fromXml(const QString &xml, QString *error) { return newFromXml<ValueNumericInt>(xml, error); }
std::optional<ValueNumericInt> ValueNumericInt::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<ValueNumericInt>(representation, error, limits);
}

qint64 ValueNumericInt::GetId() { return valueNumericInt.identifier; }
QString ValueNumericInt::GetStaticObjectName() { return unitStatics.objectName; }

QString ValueNumericInt::Getid()                            { return row::id.get(*this); }
QString ValueNumericInt::Getid() const                      { return row::id.get(*this); }
void ValueNumericInt::Setid(QString value)                  { row::id.set(*this, std::move(value)); }
bool ValueNumericInt::IsidSet() const                       { return row::id.isSet(*this); }
void ValueNumericInt::Resetid()                             { row::id.reset(*this); }
QString ValueNumericInt::GetDefaultid() const               { return row::id.defaultValue(); }
bool ValueNumericInt::IsValidid(const QString &value) const { return row::id.isValid(value); }

int ValueNumericInt::Getvalue() const                      { return row::value.get(*this); }
void ValueNumericInt::Setvalue(int value)                  { row::value.set(*this, value); }
bool ValueNumericInt::IsvalueSet() const                   { return row::value.isSet(*this); }
void ValueNumericInt::Resetvalue()                         { row::value.reset(*this); }
int ValueNumericInt::GetDefaultvalue() const               { return row::value.defaultValue(); }
bool ValueNumericInt::IsValidvalue(const int &value) const { return row::value.isValid(value); }

int ValueNumericInt::Getmin() const                      { return row::min.get(*this); }
void ValueNumericInt::Setmin(int value)                  { row::min.set(*this, value); }
bool ValueNumericInt::IsminSet() const                   { return row::min.isSet(*this); }
void ValueNumericInt::Resetmin()                         { row::min.reset(*this); }
int ValueNumericInt::GetDefaultmin() const               { return row::min.defaultValue(); }
bool ValueNumericInt::IsValidmin(const int &value) const { return row::min.isValid(value); }

int ValueNumericInt::Getmax() const                      { return row::max.get(*this); }
void ValueNumericInt::Setmax(int value)                  { row::max.set(*this, value); }
bool ValueNumericInt::IsmaxSet() const                   { return row::max.isSet(*this); }
void ValueNumericInt::Resetmax()                         { row::max.reset(*this); }
int ValueNumericInt::GetDefaultmax() const               { return row::max.defaultValue(); }
bool ValueNumericInt::IsValidmax(const int &value) const { return row::max.isValid(value); }

int ValueNumericInt::Getstep() const                      { return row::step.get(*this); }
void ValueNumericInt::Setstep(int value)                  { row::step.set(*this, value); }
bool ValueNumericInt::IsstepSet() const                   { return row::step.isSet(*this); }
void ValueNumericInt::Resetstep()                         { row::step.reset(*this); }
int ValueNumericInt::GetDefaultstep() const               { return row::step.defaultValue(); }
bool ValueNumericInt::IsValidstep(const int &value) const { return row::step.isValid(value); }
// clang-format on

} // namespace JobXml
