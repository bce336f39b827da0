// SPDX-License-Identifier: MIT
#pragma once

#include "Documents.h"
#include "Encodings.h"

/// Complete and incomplete components for the tests of that class.
namespace Components {

using namespace JobXml;

constexpr char incompleteNode[] =
    "IncompleteDefinitionException: Component: Tried to append not completely defined or invalid item Node.";

inline QString missing(const char *member)
{
    return QStringLiteral("OutOfRangeException: Component: Please set %1 properly.").arg(QLatin1String(member));
}

/// A component with all members set and two nodes of one value each.
inline Component wholeComponent()
{
    Component component = aComponent(QStringLiteral("Pre"), 2);
    component.SetdisplayName(QStringLiteral("H\u00F6he"));
    component.Setoptional(true);
    return component;
}

/// A node whose check passes although it has no data.
inline Node nodeWithEmptyList()
{
    Node node;
    node.Setid(QStringLiteral("a"));
    node.SetValueItem({});
    return node;
}

/// A component with one node, but the flag of the list of nodes is clear.
inline Component withUnsetList()
{
    Component component = aComponent();
    readSnapshot(component,
                 bytes("16 00 00 00 00" // type, name and optional set; no nodes to append
                       "00 00 00 02 00 46 00 00 00 02 00 6E 00")); // type "F", name "n", not optional
    return component;
}

/// Of type "F" and name "n", with an empty list of nodes.
inline Component withoutOptional()
{
    Component component;
    component.SetValidate(false);
    component.SetNode({});
    component.Settype(QStringLiteral("F"));
    component.Setname(QStringLiteral("n"));
    return component;
}

} // namespace Components
