// SPDX-License-Identifier: MIT
#include <jobxml/Node.h>

#include "framework/ChildList.h"
#include "framework/NewObject.h"
#include "framework/Scalar.h"
#include "framework/Table.h"
#include "module/UnitStatics.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("Node"));

struct NodeData
{
    ItemList<ValueItem> valueItems;
    QString id;
};

// clang-format off
namespace row {
constexpr ChildList ValueItem{0, "ValueItem", 0x4F71131F, &NodeData::valueItems, Mandatory | ComparedByRightFlag | SnapshotReadByCount};
constexpr Scalar    id{       1, "id",        0x2B262DC9, &NodeData::id,         Attribute | Mandatory | Identifies};
} // namespace row

constexpr Table members{row::ValueItem, row::id};
constexpr ClassInfo node = describe<Node, members>(unitStatics.objectName, 0xC8131DB4);
// clang-format on

} // namespace

// clang-format off
Node::Node() : DataObject(node) {}
Node::Node(const Node &other) = default;
Node::Node(Node &&other) noexcept = default;
Node &Node::operator=(const Node &other) noexcept = default;
Node &Node::operator=(Node &&other) noexcept = default;
Node::~Node() = default;

bool Node::operator==(const Node &other) const { return areEqual(*this, other); }
bool Node::operator!=(const Node &other) const { return !areEqual(*this, other); }
void Node::swap(Node &other) noexcept { ObjectAccess::swapBlocks(*this, other); }

std::optional<Node> Node::fromXml(const QString &xml, QString *error) { return newFromXml<Node>(xml, error); }
std::optional<Node> Node::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<Node>(representation, error, limits);
}

qint64 Node::GetId() { return node.identifier; }
QString Node::GetStaticObjectName() { return unitStatics.objectName; }

QVector<ValueItem> &Node::GetValueItem()                      { return row::ValueItem.modify(*this); }
const QVector<ValueItem> &Node::GetValueItem() const          { return row::ValueItem.get(*this); }
void Node::SetValueItem(const QVector<ValueItem> &items)      { row::ValueItem.set(*this, items); }
void Node::AppendValueItem(const ValueItem &item)             { row::ValueItem.append(*this, item); }
bool Node::IsValueItemSet() const                             { return row::ValueItem.isSet(*this); }
void Node::ResetValueItem()                                   { row::ValueItem.reset(*this); }
bool Node::IsValidValueItem(const ValueItem &) const          { return true; }
bool Node::IsValidValueItem(const QVector<ValueItem> &) const { return true; }

QString Node::Getid() const                      { return row::id.get(*this); }
void Node::Setid(QString value)                  { row::id.set(*this, std::move(value)); }
bool Node::IsidSet() const                       { return row::id.isSet(*this); }
void Node::Resetid()                             { row::id.reset(*this); }
QString Node::GetDefaultid() const               { return row::id.defaultValue(); }
bool Node::IsValidid(const QString &value) const { return row::id.isValid(value); }
// clang-format on

} // namespace JobXml
