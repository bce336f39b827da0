// SPDX-License-Identifier: MIT
#pragma once

#include "Rules.h"

/// Lists of texts to test with.

inline JobXml::StringItem textItem(const char *value)
{
    JobXml::StringItem object;
    object.Setvalue(QString::fromUtf8(value));
    return object;
}

/// A list "l" with the value "Z" and these texts.
inline JobXml::ValueStringList textList(std::initializer_list<const char *> texts)
{
    auto object = sample<JobXml::ValueStringList>("l", QStringLiteral("Z"));
    for (const char *text : texts)
        object.AppendStringItem(textItem(text));
    return object;
}

/// A list with the text "X", whose flag is not set.
inline JobXml::ValueStringList withUnsetTexts()
{
    JobXml::ValueStringList object = textList({"X"});
    readSnapshot(object, bytes("06 00 00 00 00 00 00 00 02 00 6C 00 00 00 02 00 5A"));
    return object;
}

inline QStringList textsOf(const JobXml::ValueStringList &object)
{
    QStringList texts;
    for (const JobXml::StringItem &text : object.GetStringItem())
        texts.append(text.Getvalue());
    return texts;
}

inline QStringList texts(std::initializer_list<const char *> utf8)
{
    QStringList result;
    for (const char *text : utf8)
        result.append(QString::fromUtf8(text));
    return result;
}

const char incompleteTextItem[] = "IncompleteDefinitionException: ValueStringList: Tried to append not completely "
                                  "defined or invalid item StringItem.";
