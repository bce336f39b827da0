// SPDX-License-Identifier: MIT
#include <jobxml/ValueSelection.h>

#include "framework/ChildList.h"
#include "framework/NewObject.h"
#include "framework/Scalar.h"
#include "framework/Table.h"
#include "module/UnitStatics.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("ValueSelection"));

struct ValueSelectionData
{
    ItemList<SelectionItem> selectionItems;
    QString id;
    double value = 0.0;
    QString text;
    int index = 0;
};

// clang-format off
namespace row {
constexpr ChildList SelectionItem{0, "SelectionItem", 0x4FB19F31, &ValueSelectionData::selectionItems, Mandatory | ComparedByRightFlag | UsuallySeveralItems};
constexpr Scalar    id{           1, "id",            0x2B262DC9, &ValueSelectionData::id,             Attribute | Mandatory | IsValidAcceptsNull | Identifies};
constexpr Scalar    value{        2, "value",         0xC14D665E, &ValueSelectionData::value,          Attribute | Mandatory};
constexpr Scalar    text{         3, "text",          0xA323E10D, &ValueSelectionData::text,           Attribute | Mandatory | IsValidAcceptsNull};
constexpr Scalar    index{        4, "index",         0x2128394B, &ValueSelectionData::index,          Attribute | Mandatory};
} // namespace row

constexpr Table members{row::SelectionItem, row::id, row::value, row::text, row::index};
constexpr ClassInfo valueSelection = describe<ValueSelection, members>(unitStatics.objectName, 0x00C375A5);
// clang-format on

} // namespace

// clang-format off
ValueSelection::ValueSelection() : DataObject(valueSelection) {}
ValueSelection::ValueSelection(const ValueSelection &other) = default;
ValueSelection::ValueSelection(ValueSelection &&other) noexcept = default;
ValueSelection &ValueSelection::operator=(const ValueSelection &other) noexcept = default;
ValueSelection &ValueSelection::operator=(ValueSelection &&other) noexcept = default;
ValueSelection::~ValueSelection() = default;

bool ValueSelection::operator==(const ValueSelection &other) const { return areEqual(*this, other); }
bool ValueSelection::operator!=(const ValueSelection &other) const { return !areEqual(*this, other); }
void ValueSelection::swap(ValueSelection &other) noexcept { ObjectAccess::swapBlocks(*this, other); }

std::optional<ValueSelection> ValueSelection::fromXml(const QString &xml, QString *error) { return newFromXml<ValueSelection>(xml, error); }
std::optional<ValueSelection> ValueSelection::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<ValueSelection>(representation, error, limits);
}

qint64 ValueSelection::GetId() { return valueSelection.identifier; }
QString ValueSelection::GetStaticObjectName() { return unitStatics.objectName; }

QVector<SelectionItem> &ValueSelection::GetSelectionItem()                      { return row::SelectionItem.modify(*this); }
const QVector<SelectionItem> &ValueSelection::GetSelectionItem() const          { return row::SelectionItem.get(*this); }
void ValueSelection::SetSelectionItem(const QVector<SelectionItem> &items)      { row::SelectionItem.set(*this, items); }
void ValueSelection::AppendSelectionItem(const SelectionItem &item)             { row::SelectionItem.append(*this, item); }
bool ValueSelection::IsSelectionItemSet() const                                 { return row::SelectionItem.isSet(*this); }
void ValueSelection::ResetSelectionItem()                                       { row::SelectionItem.reset(*this); }
bool ValueSelection::IsValidSelectionItem(const SelectionItem &) const          { return true; }
bool ValueSelection::IsValidSelectionItem(const QVector<SelectionItem> &) const { return true; }

QString ValueSelection::Getid() const                      { return row::id.get(*this); }
void ValueSelection::Setid(QString value)                  { row::id.set(*this, std::move(value)); }
bool ValueSelection::IsidSet() const                       { return row::id.isSet(*this); }
void ValueSelection::Resetid()                             { row::id.reset(*this); }
QString ValueSelection::GetDefaultid() const               { return row::id.defaultValue(); }
bool ValueSelection::IsValidid(const QString &value) const { return row::id.isValid(value); }

double ValueSelection::Getvalue() const                      { return row::value.get(*this); }
void ValueSelection::Setvalue(double value)                  { row::value.set(*this, value); }
bool ValueSelection::IsvalueSet() const                      { return row::value.isSet(*this); }
void ValueSelection::Resetvalue()                            { row::value.reset(*this); }
double ValueSelection::GetDefaultvalue() const               { return row::value.defaultValue(); }
bool ValueSelection::IsValidvalue(const double &value) const { return row::value.isValid(value); }

QString ValueSelection::Gettext() const                      { return row::text.get(*this); }
void ValueSelection::Settext(QString value)                  { row::text.set(*this, std::move(value)); }
bool ValueSelection::IstextSet() const                       { return row::text.isSet(*this); }
void ValueSelection::Resettext()                             { row::text.reset(*this); }
QString ValueSelection::GetDefaulttext() const               { return row::text.defaultValue(); }
bool ValueSelection::IsValidtext(const QString &value) const { return row::text.isValid(value); }

int ValueSelection::Getindex() const                      { return row::index.get(*this); }
void ValueSelection::Setindex(int value)                  { row::index.set(*this, value); }
bool ValueSelection::IsindexSet() const                   { return row::index.isSet(*this); }
void ValueSelection::Resetindex()                         { row::index.reset(*this); }
int ValueSelection::GetDefaultindex() const               { return row::index.defaultValue(); }
bool ValueSelection::IsValidindex(const int &value) const { return row::index.isValid(value); }
// clang-format on

} // namespace JobXml
