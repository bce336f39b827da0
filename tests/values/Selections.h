// SPDX-License-Identifier: MIT
#pragma once

#include "Rules.h"

/// Selections to test with.

inline JobXml::SelectionItem option(const char *name, double value)
{
    JobXml::SelectionItem object;
    object.Setname(QString::fromUtf8(name));
    object.Setvalue(value);
    return object;
}

/// The selection "s" without options: value 0.5, text "on", index -1.
inline JobXml::ValueSelection selectionWithoutOptions()
{
    auto object = sample<JobXml::ValueSelection>("s", 0.5);
    object.Settext(QStringLiteral("on"));
    object.Setindex(-1);
    return object;
}

/// The same with these options.
inline JobXml::ValueSelection selection(std::initializer_list<JobXml::SelectionItem> options)
{
    JobXml::ValueSelection object = selectionWithoutOptions();
    for (const JobXml::SelectionItem &each : options)
        object.AppendSelectionItem(each);
    return object;
}

/// The selection with one option "a", whose flag is not set.
inline JobXml::ValueSelection withUnsetOptions()
{
    JobXml::ValueSelection object = selection({option("a", 1.5)});
    readSnapshot(object,
                 bytes("1E 00 00 00 00 00 00 00 02 00 73 3F E0 00 00 00 00 00 00"
                       "00 00 00 04 00 6F 00 6E FF FF FF FF FF FF FF FF"));
    return object;
}

inline QStringList namesOf(const JobXml::ValueSelection &object)
{
    QStringList names;
    for (const JobXml::SelectionItem &each : object.GetSelectionItem())
        names.append(each.Getname());
    return names;
}

const char incompleteOption[] = "IncompleteDefinitionException: ValueSelection: Tried to append not completely "
                                "defined or invalid item SelectionItem.";
