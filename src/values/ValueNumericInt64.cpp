// SPDX-License-Identifier: MIT
#include <jobxml/ValueNumericInt64.h>

#include "framework/Hash.h"
#include "framework/NewObject.h"
#include "module/UnitStatics.h"
#include "values/RangedNumber.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("ValueNumericInt64"));

struct Tags
{
    static constexpr quint32 value = 0x64A03F86;
    static constexpr quint32 min = 0x6A28E46A;
    static constexpr quint32 max = 0x86123363;
    static constexpr quint32 step = 0x27D34B73;
};

using row = RangedNumber<qint64, Tags>;

constexpr ClassInfo valueNumericInt64 = describe<ValueNumericInt64, row::members>(unitStatics.objectName, 0x044D7AEC);

} // namespace

// clang-format off
ValueNumericInt64::ValueNumericInt64() : DataObject(valueNumericInt64) {}
ValueNumericInt64::ValueNumericInt64(const ValueNumericInt64 &other) = default;
ValueNumericInt64::ValueNumericInt64(ValueNumericInt64 &&other) noexcept = default;
ValueNumericInt64 &ValueNumericInt64::operator=(const ValueNumericInt64 &other) noexcept = default;
ValueNumericInt64 &ValueNumericInt64::operator=(ValueNumericInt64 &&other) noexcept = default;
ValueNumericInt64::~ValueNumericInt64() = default;

bool ValueNumericInt64::operator==(const ValueNumericInt64 &other) const { return areEqual(*this, other); }
bool ValueNumericInt64::operator!=(const ValueNumericInt64 &other) const { return !areEqual(*this, other); }
void ValueNumericInt64::swap(ValueNumericInt64 &other) noexcept { ObjectAccess::swapBlocks(*this, other); }
HashValue qHash(const ValueNumericInt64 &object, HashValue seed) { return hashOf(object, seed); }

std::optional<ValueNumericInt64> ValueNumericInt64::fromXml(const QString &xml, QString *error) { return newFromXml<ValueNumericInt64>(xml, error); }
std::optional<ValueNumericInt64> ValueNumericInt64::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<ValueNumericInt64>(representation, error, limits);
}

qint64 ValueNumericInt64::GetId() { return valueNumericInt64.identifier; }
QString ValueNumericInt64::GetStaticObjectName() { return unitStatics.objectName; }

QString ValueNumericInt64::Getid()                            { return row::id.get(*this); }
QString ValueNumericInt64::Getid() const                      { return row::id.get(*this); }
void ValueNumericInt64::Setid(QString value)                  { row::id.set(*this, std::move(value)); }
bool ValueNumericInt64::IsidSet() const                       { return row::id.isSet(*this); }
void ValueNumericInt64::Resetid()                             { row::id.reset(*this); }
QString ValueNumericInt64::GetDefaultid() const               { return row::id.defaultValue(); }
bool ValueNumericInt64::IsValidid(const QString &value) const { return row::id.isValid(value); }

qint64 ValueNumericInt64::Getvalue() const                      { return row::value.get(*this); }
void ValueNumericInt64::Setvalue(qint64 value)                  { row::value.set(*this, value); }
bool ValueNumericInt64::IsvalueSet() const                      { return row::value.isSet(*this); }
void ValueNumericInt64::Resetvalue()                            { row::value.reset(*this); }
qint64 ValueNumericInt64::GetDefaultvalue() const               { return row::value.defaultValue(); }
bool ValueNumericInt64::IsValidvalue(const qint64 &value) const { return row::value.isValid(value); }

qint64 ValueNumericInt64::Getmin() const                      { return row::min.get(*this); }
void ValueNumericInt64::Setmin(qint64 value)                  { row::min.set(*this, value); }
bool ValueNumericInt64::IsminSet() const                      { return row::min.isSet(*this); }
void ValueNumericInt64::Resetmin()                            { row::min.reset(*this); }
qint64 ValueNumericInt64::GetDefaultmin() const               { return row::min.defaultValue(); }
bool ValueNumericInt64::IsValidmin(const qint64 &value) const { return row::min.isValid(value); }

qint64 ValueNumericInt64::Getmax() const                      { return row::max.get(*this); }
void ValueNumericInt64::Setmax(qint64 value)                  { row::max.set(*this, value); }
bool ValueNumericInt64::IsmaxSet() const                      { return row::max.isSet(*this); }
void ValueNumericInt64::Resetmax()                            { row::max.reset(*this); }
qint64 ValueNumericInt64::GetDefaultmax() const               { return row::max.defaultValue(); }
bool ValueNumericInt64::IsValidmax(const qint64 &value) const { return row::max.isValid(value); }

qint64 ValueNumericInt64::Getstep() const                      { return row::step.get(*this); }
void ValueNumericInt64::Setstep(qint64 value)                  { row::step.set(*this, value); }
bool ValueNumericInt64::IsstepSet() const                      { return row::step.isSet(*this); }
void ValueNumericInt64::Resetstep()                            { row::step.reset(*this); }
qint64 ValueNumericInt64::GetDefaultstep() const               { return row::step.defaultValue(); }
bool ValueNumericInt64::IsValidstep(const qint64 &value) const { return row::step.isValid(value); }
// clang-format on

} // namespace JobXml
