// SPDX-License-Identifier: MIT
#include <jobxml/Component.h>

#include "framework/ChildList.h"
#include "framework/NewObject.h"
#include "framework/Scalar.h"
#include "framework/Table.h"
#include "module/UnitStatics.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("Component"));

struct ComponentData
{
    ItemList<Node> nodes;
    QString type;
    QString name;
    QString displayName;
    bool optional = false;
};

// clang-format off
namespace row {
constexpr ChildList Node{       0, "Node",        0xC5E53936, &ComponentData::nodes,       Mandatory | ComparedByRightFlag | SnapshotReadByCount};
constexpr Scalar    type{       1, "type",        0x0BAD2053, &ComponentData::type,        Attribute | Mandatory | AlsoIdentifies};
constexpr Scalar    name{       2, "name",        0xCB4CF645, &ComponentData::name,        Attribute | Mandatory | Identifies};
constexpr Scalar    displayName{3, "displayName", 0xA1939AA3, &ComponentData::displayName, Attribute | WrittenWhenSet};
constexpr Scalar    optional{   4, "optional",    0x44E09811, &ComponentData::optional,    Attribute | Mandatory | WrittenWhenSet | SnapshotReadAlways};
} // namespace row

constexpr Table members{row::Node, row::type, row::name, row::displayName, row::optional};
constexpr ClassInfo component = describe<Component, members>(unitStatics.objectName, 0x0ADD1857);
// clang-format on

} // namespace

// clang-format off
Component::Component() : DataObject(component) {}
Component::Component(const Component &other) = default;
Component::Component(Component &&other) noexcept = default;
Component &Component::operator=(const Component &other) noexcept = default;
Component &Component::operator=(Component &&other) noexcept = default;
Component::~Component() = default;

bool Component::operator==(const Component &other) const { return areEqual(*this, other); }
bool Component::operator!=(const Component &other) const { return !areEqual(*this, other); }
void Component::swap(Component &other) noexcept { ObjectAccess::swapBlocks(*this, other); }

std::optional<Component> Component::fromXml(const QString &xml, QString *error) { return newFromXml<Component>(xml, error); }
std::optional<Component> Component::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<Component>(representation, error, limits);
}

qint64 Component::GetId() { return component.identifier; }
QString Component::GetStaticObjectName() { return unitStatics.objectName; }

QVector<Node> &Component::GetNode()                      { return row::Node.modify(*this); }
const QVector<Node> &Component::GetNode() const          { return row::Node.get(*this); }
void Component::SetNode(const QVector<Node> &items)      { row::Node.set(*this, items); }
void Component::AppendNode(const Node &item)             { row::Node.append(*this, item); }
bool Component::IsNodeSet() const                        { return row::Node.isSet(*this); }
void Component::ResetNode()                              { row::Node.reset(*this); }
bool Component::IsValidNode(const Node &) const          { return true; }
bool Component::IsValidNode(const QVector<Node> &) const { return true; }

QString Component::Gettype() const                      { return row::type.get(*this); }
void Component::Settype(QString value)                  { row::type.set(*this, std::move(value)); }
bool Component::IstypeSet() const                       { return row::type.isSet(*this); }
void Component::Resettype()                             { row::type.reset(*this); }
QString Component::GetDefaulttype() const               { return row::type.defaultValue(); }
bool Component::IsValidtype(const QString &value) const { return row::type.isValid(value); }

QString Component::Getname() const                      { return row::name.get(*this); }
void Component::Setname(QString value)                  { row::name.set(*this, std::move(value)); }
bool Component::IsnameSet() const                       { return row::name.isSet(*this); }
void Component::Resetname()                             { row::name.reset(*this); }
QString Component::GetDefaultname() const               { return row::name.defaultValue(); }
bool Component::IsValidname(const QString &value) const { return row::name.isValid(value); }

QString Component::GetdisplayName() const                      { return row::displayName.get(*this); }
void Component::SetdisplayName(QString value)                  { row::displayName.set(*this, std::move(value)); }
bool Component::IsdisplayNameSet() const                       { return row::displayName.isSet(*this); }
void Component::ResetdisplayName()                             { row::displayName.reset(*this); }
QString Component::GetDefaultdisplayName() const               { return row::displayName.defaultValue(); }
bool Component::IsValiddisplayName(const QString &value) const { return row::displayName.isValid(value); }

bool Component::Getoptional() const        { return row::optional.get(*this); }
void Component::Setoptional(bool value)    { row::optional.set(*this, value); }
bool Component::IsoptionalSet() const      { return row::optional.isSet(*this); }
void Component::Resetoptional()            { row::optional.reset(*this); }
bool Component::GetDefaultoptional() const { return row::optional.defaultValue(); }
// clang-format on

} // namespace JobXml
