// SPDX-License-Identifier: MIT
#include <jobxml/ValueNumericFloat.h>

#include "framework/Hash.h"
#include "framework/NewObject.h"
#include "module/UnitStatics.h"
#include "values/RangedNumber.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("ValueNumericFloat"));

struct Tags
{
    static constexpr quint32 value = 0xE3DF649D;
    static constexpr quint32 min = 0x655BA9DC;
    static constexpr quint32 max = 0x81166ACB;
    static constexpr quint32 step = 0xA8D464CF;
};

using row = RangedNumber<float, Tags>;

constexpr ClassInfo valueNumericFloat = describe<ValueNumericFloat, row::members>(unitStatics.objectName, 0x4BA90080);

} // namespace

// clang-format off
ValueNumericFloat::ValueNumericFloat() : DataObject(valueNumericFloat) {}
ValueNumericFloat::ValueNumericFloat(const ValueNumericFloat &other) = default;
ValueNumericFloat::ValueNumericFloat(ValueNumericFloat &&other) noexcept = default;
ValueNumericFloat &ValueNumericFloat::operator=(const ValueNumericFloat &other) noexcept = default;
ValueNumericFloat &ValueNumericFloat::operator=(ValueNumericFloat &&other) noexcept = default;
ValueNumericFloat::~ValueNumericFloat() = default;

bool ValueNumericFloat::operator==(const ValueNumericFloat &other) const { return areEqual(*this, other); }
bool ValueNumericFloat::operator!=(const ValueNumericFloat &other) const { return !areEqual(*this, other); }
void ValueNumericFloat::swap(ValueNumericFloat &other) noexcept { ObjectAccess::swapBlocks(*this, other); }
HashValue qHash(const ValueNumericFloat &object, HashValue seed) { return hashOf(object, seed); }

std::optional<ValueNumericFloat> ValueNumericFloat::fromXml(const QString &xml, QString *error) { return newFromXml<ValueNumericFloat>(xml, error); }
std::optional<ValueNumericFloat> ValueNumericFloat::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<ValueNumericFloat>(representation, error, limits);
}

qint64 ValueNumericFloat::GetId() { return valueNumericFloat.identifier; }
QString ValueNumericFloat::GetStaticObjectName() { return unitStatics.objectName; }

QString ValueNumericFloat::Getid()                            { return row::id.get(*this); }
QString ValueNumericFloat::Getid() const                      { return row::id.get(*this); }
void ValueNumericFloat::Setid(QString value)                  { row::id.set(*this, std::move(value)); }
bool ValueNumericFloat::IsidSet() const                       { return row::id.isSet(*this); }
void ValueNumericFloat::Resetid()                             { row::id.reset(*this); }
QString ValueNumericFloat::GetDefaultid() const               { return row::id.defaultValue(); }
bool ValueNumericFloat::IsValidid(const QString &value) const { return row::id.isValid(value); }

float ValueNumericFloat::Getvalue() const                      { return row::value.get(*this); }
void ValueNumericFloat::Setvalue(float value)                  { row::value.set(*this, value); }
bool ValueNumericFloat::IsvalueSet() const                     { return row::value.isSet(*this); }
void ValueNumericFloat::Resetvalue()                           { row::value.reset(*this); }
float ValueNumericFloat::GetDefaultvalue() const               { return row::value.defaultValue(); }
bool ValueNumericFloat::IsValidvalue(const float &value) const { return row::value.isValid(value); }

float ValueNumericFloat::Getmin() const                      { return row::min.get(*this); }
void ValueNumericFloat::Setmin(float value)                  { row::min.set(*this, value); }
bool ValueNumericFloat::IsminSet() const                     { return row::min.isSet(*this); }
void ValueNumericFloat::Resetmin()                           { row::min.reset(*this); }
float ValueNumericFloat::GetDefaultmin() const               { return row::min.defaultValue(); }
bool ValueNumericFloat::IsValidmin(const float &value) const { return row::min.isValid(value); }

float ValueNumericFloat::Getmax() const                      { return row::max.get(*this); }
void ValueNumericFloat::Setmax(float value)                  { row::max.set(*this, value); }
bool ValueNumericFloat::IsmaxSet() const                     { return row::max.isSet(*this); }
void ValueNumericFloat::Resetmax()                           { row::max.reset(*this); }
float ValueNumericFloat::GetDefaultmax() const               { return row::max.defaultValue(); }
bool ValueNumericFloat::IsValidmax(const float &value) const { return row::max.isValid(value); }

float ValueNumericFloat::Getstep() const                      { return row::step.get(*this); }
void ValueNumericFloat::Setstep(float value)                  { row::step.set(*this, value); }
bool ValueNumericFloat::IsstepSet() const                     { return row::step.isSet(*this); }
void ValueNumericFloat::Resetstep()                           { row::step.reset(*this); }
float ValueNumericFloat::GetDefaultstep() const               { return row::step.defaultValue(); }
bool ValueNumericFloat::IsValidstep(const float &value) const { return row::step.isValid(value); }
// clang-format on

} // namespace JobXml
