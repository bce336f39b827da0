// SPDX-License-Identifier: MIT
#include <jobxml/SelectionItem.h>

#include "framework/Hash.h"
#include "framework/NewObject.h"
#include "framework/Scalar.h"
#include "framework/Table.h"
#include "module/UnitStatics.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("SelectionItem"));

struct SelectionItemData
{
    QString name;
    double value = 0.0;
};

// clang-format off
namespace row {
constexpr Scalar name{ 0, "name",  0xCB4CF645, &SelectionItemData::name,  Attribute | Mandatory | IsValidAcceptsNull | Identifies};
constexpr Scalar value{1, "value", 0xC14D665E, &SelectionItemData::value, Attribute | Mandatory};
} // namespace row

constexpr Table members{row::name, row::value};
constexpr ClassInfo selectionItem = describe<SelectionItem, members>(unitStatics.objectName, 0x228141C0);
// clang-format on

} // namespace

// clang-format off
SelectionItem::SelectionItem() : DataObject(selectionItem) {}
SelectionItem::SelectionItem(const SelectionItem &other) = default;
SelectionItem::SelectionItem(SelectionItem &&other) noexcept = default;
SelectionItem &SelectionItem::operator=(const SelectionItem &other) noexcept = default;
SelectionItem &SelectionItem::operator=(SelectionItem &&other) noexcept = default;
SelectionItem::~SelectionItem() = default;

bool SelectionItem::operator==(const SelectionItem &other) const { return areEqual(*this, other); }
bool SelectionItem::operator!=(const SelectionItem &other) const { return !areEqual(*this, other); }
void SelectionItem::swap(SelectionItem &other) noexcept { ObjectAccess::swapBlocks(*this, other); }
HashValue qHash(const SelectionItem &object, HashValue seed) { return hashOf(object, seed); }

std::optional<SelectionItem> SelectionItem::fromXml(const QString &xml, QString *error) { return newFromXml<SelectionItem>(xml, error); }
std::optional<SelectionItem> SelectionItem::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<SelectionItem>(representation, error, limits);
}

qint64 SelectionItem::GetId() { return selectionItem.identifier; }
QString SelectionItem::GetStaticObjectName() { return unitStatics.objectName; }

QString SelectionItem::Getname() const                      { return row::name.get(*this); }
void SelectionItem::Setname(QString value)                  { row::name.set(*this, std::move(value)); }
bool SelectionItem::IsnameSet() const                       { return row::name.isSet(*this); }
void SelectionItem::Resetname()                             { row::name.reset(*this); }
QString SelectionItem::GetDefaultname() const               { return row::name.defaultValue(); }
bool SelectionItem::IsValidname(const QString &value) const { return row::name.isValid(value); }

double SelectionItem::Getvalue() const                      { return row::value.get(*this); }
void SelectionItem::Setvalue(double value)                  { row::value.set(*this, value); }
bool SelectionItem::IsvalueSet() const                      { return row::value.isSet(*this); }
void SelectionItem::Resetvalue()                            { row::value.reset(*this); }
double SelectionItem::GetDefaultvalue() const               { return row::value.defaultValue(); }
bool SelectionItem::IsValidvalue(const double &value) const { return row::value.isValid(value); }
// clang-format on

} // namespace JobXml
