// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <QByteArray>
#include <QString>
#include <QStringList>

/// What the elements of the schema may contain, from which the cases are made.
namespace Schema {

inline QString text(const QByteArray &utf8)
{
    return QString::fromUtf8(utf8);
}

inline QStringList texts(const QByteArray &separatedByBars)
{
    return text(separatedByBars).split(QLatin1Char('|'));
}

/// A good document.
struct Element
{
    QByteArray name;
    QByteArray document;
    bool isLeaf; ///< has no child elements
};

/// The texts that a kind of member accepts and refuses. The next narrower or wider kind treats the first text of each
/// list differently, so that this text detects a member of the wrong kind.
struct Kind
{
    QStringList accepted;
    QStringList refused;
    const char *facet; ///< the rule of the schema that refuses
};

enum Presence { Mandatory, Optional };

struct Attribute
{
    QByteArray element;
    QByteArray name;
    const Kind &kind;
    Presence presence;
};

/// The members whose text is in an element of its own.
struct TextElement
{
    QByteArray element;
    QByteArray name;
    const Kind &kind;
};

struct Rules
{
    std::vector<Element> elements;
    std::vector<Attribute> attributes;
    std::vector<TextElement> textElements;
};

/// The elements that are written out in ElementRules.cpp.
const std::vector<Element> &stated();

/// All that is written out there, and the same for each other class, attribute and text element of the model. Of these,
/// share/model.json states the kind and whether it is mandatory.
const Rules &rules();

} // namespace Schema
