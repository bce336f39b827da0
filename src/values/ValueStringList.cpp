// SPDX-License-Identifier: MIT
#include <jobxml/ValueStringList.h>

#include "framework/ChildList.h"
#include "framework/NewObject.h"
#include "framework/Scalar.h"
#include "framework/Table.h"
#include "module/UnitStatics.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("ValueStringList"));

struct ValueStringListData
{
    ItemList<StringItem> stringItems;
    QString id;
    QString value;
};

// clang-format off
namespace row {
constexpr ChildList StringItem{0, "StringItem", 0x2940EBDD, &ValueStringListData::stringItems, Mandatory | ComparedByRightFlag | UsuallySeveralItems};
constexpr Scalar    id{        1, "id",         0x2B262DC9, &ValueStringListData::id,          Attribute | Mandatory | IsValidAcceptsNull | Identifies};
constexpr Scalar    value{     2, "value",      0xCEFF51BA, &ValueStringListData::value,       Attribute | Mandatory | IsValidAcceptsNull};
} // namespace row

constexpr Table members{row::StringItem, row::id, row::value};
constexpr ClassInfo valueStringList = describe<ValueStringList, members>(unitStatics.objectName, 0xC290BC31);
// clang-format on

} // namespace

// clang-format off
ValueStringList::ValueStringList() : DataObject(valueStringList) {}
ValueStringList::ValueStringList(const ValueStringList &other) = default;
ValueStringList::ValueStringList(ValueStringList &&other) noexcept = default;
ValueStringList &ValueStringList::operator=(const ValueStringList &other) noexcept = default;
ValueStringList &ValueStringList::operator=(ValueStringList &&other) noexcept = default;
ValueStringList::~ValueStringList() = default;

bool ValueStringList::operator==(const ValueStringList &other) const { return areEqual(*this, other); }
bool ValueStringList::operator!=(const ValueStringList &other) const { return !areEqual(*this, other); }
void ValueStringList::swap(ValueStringList &other) noexcept { ObjectAccess::swapBlocks(*this, other); }

std::optional<ValueStringList> ValueStringList::fromXml(const QString &xml, QString *error) { return newFromXml<ValueStringList>(xml, error); }
std::optional<ValueStringList> ValueStringList::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<ValueStringList>(representation, error, limits);
}

qint64 ValueStringList::GetId() { return valueStringList.identifier; }
QString ValueStringList::GetStaticObjectName() { return unitStatics.objectName; }

QVector<StringItem> &ValueStringList::GetStringItem()                      { return row::StringItem.modify(*this); }
const QVector<StringItem> &ValueStringList::GetStringItem() const          { return row::StringItem.get(*this); }
void ValueStringList::SetStringItem(const QVector<StringItem> &items)      { row::StringItem.set(*this, items); }
void ValueStringList::AppendStringItem(const StringItem &item)             { row::StringItem.append(*this, item); }
bool ValueStringList::IsStringItemSet() const                              { return row::StringItem.isSet(*this); }
void ValueStringList::ResetStringItem()                                    { row::StringItem.reset(*this); }
bool ValueStringList::IsValidStringItem(const StringItem &) const          { return true; }
bool ValueStringList::IsValidStringItem(const QVector<StringItem> &) const { return true; }

QString ValueStringList::Getid() const                      { return row::id.get(*this); }
void ValueStringList::Setid(QString value)                  { row::id.set(*this, std::move(value)); }
bool ValueStringList::IsidSet() const                       { return row::id.isSet(*this); }
void ValueStringList::Resetid()                             { row::id.reset(*this); }
QString ValueStringList::GetDefaultid() const               { return row::id.defaultValue(); }
bool ValueStringList::IsValidid(const QString &value) const { return row::id.isValid(value); }

QString ValueStringList::Getvalue() const                      { return row::value.get(*this); }
void ValueStringList::Setvalue(QString value)                  { row::value.set(*this, std::move(value)); }
bool ValueStringList::IsvalueSet() const                       { return row::value.isSet(*this); }
void ValueStringList::Resetvalue()                             { row::value.reset(*this); }
QString ValueStringList::GetDefaultvalue() const               { return row::value.defaultValue(); }
bool ValueStringList::IsValidvalue(const QString &value) const { return row::value.isValid(value); }
// clang-format on

} // namespace JobXml
