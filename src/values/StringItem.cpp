// SPDX-License-Identifier: MIT
#include <jobxml/StringItem.h>

#include "framework/Hash.h"
#include "framework/NewObject.h"
#include "framework/Scalar.h"
#include "framework/Table.h"
#include "module/UnitStatics.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("StringItem"));

struct StringItemData
{
    QString value;
};

// clang-format off
namespace row {
constexpr Scalar value{0, "value", 0xCEFF51BA, &StringItemData::value, Attribute | Mandatory | IsValidAcceptsNull | AlsoIdentifies};
} // namespace row

constexpr Table members{row::value};
constexpr ClassInfo stringItem = describe<StringItem, members>(unitStatics.objectName, 0xEBB03A60);
// clang-format on

} // namespace

// clang-format off
StringItem::StringItem() : DataObject(stringItem) {}
StringItem::StringItem(const StringItem &other) = default;
StringItem::StringItem(StringItem &&other) noexcept = default;
StringItem &StringItem::operator=(const StringItem &other) noexcept = default;
StringItem &StringItem::operator=(StringItem &&other) noexcept = default;
StringItem::~StringItem() = default;

bool StringItem::operator==(const StringItem &other) const { return areEqual(*this, other); }
bool StringItem::operator!=(const StringItem &other) const { return !areEqual(*this, other); }
void StringItem::swap(StringItem &other) noexcept { ObjectAccess::swapBlocks(*this, other); }
HashValue qHash(const StringItem &object, HashValue seed) { return hashOf(object, seed); }

std::optional<StringItem> StringItem::fromXml(const QString &xml, QString *error) { return newFromXml<StringItem>(xml, error); }
std::optional<StringItem> StringItem::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<StringItem>(representation, error, limits);
}

qint64 StringItem::GetId() { return stringItem.identifier; }
QString StringItem::GetStaticObjectName() { return unitStatics.objectName; }

QString StringItem::Getvalue() const                      { return row::value.get(*this); }
void StringItem::Setvalue(QString value)                  { row::value.set(*this, std::move(value)); }
bool StringItem::IsvalueSet() const                       { return row::value.isSet(*this); }
void StringItem::Resetvalue()                             { row::value.reset(*this); }
QString StringItem::GetDefaultvalue() const               { return row::value.defaultValue(); }
bool StringItem::IsValidvalue(const QString &value) const { return row::value.isValid(value); }
// clang-format on

} // namespace JobXml
