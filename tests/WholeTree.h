// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/Visit.h>

/// Walks through an object and everything below it that counts: of a choice, only the chosen alternative.
namespace WholeTree {

/// Calls a function for each child object in a member that counts, and with its index in the list, or -1.
template <class Function>
void forEachChild(const JobXml::MemberView &member, Function &&function)
{
    const bool isList = member.GetKind() == JobXml::MemberKind::ObjectList;
    if (!isList && !(member.IsSet() && member.IsChosen()))
        return;
    for (int i = 0; i < member.GetSize(); ++i)
        function(member.GetChild(i), isList ? i : -1);
}

/// Calls a function for an object and for everything below it.
template <class Function>
void visit(const JobXml::DataObject &root, Function &&function)
{
    function(root);
    JobXml::visit(root, [&](const JobXml::MemberView &member) {
        forEachChild(member, [&](const JobXml::DataObject &child, int) { WholeTree::visit(child, function); });
    });
}

/// The number of objects of the tree for which `matches` returns true.
template <class Matches>
int count(const JobXml::DataObject &root, Matches &&matches)
{
    int found = 0;
    WholeTree::visit(root, [&](const JobXml::DataObject &object) { found += matches(object) ? 1 : 0; });
    return found;
}

inline int size(const JobXml::DataObject &root)
{
    return count(root, [](const JobXml::DataObject &) { return true; });
}

} // namespace WholeTree
