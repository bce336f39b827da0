// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayList>
#include <QVariant>

/// JSON as text. Keys stay in the order in which they are added, so that it is readable and two versions differ little.
namespace Json {

/// A text, boolean, number or list of them, as in JSON documents: a null text is null, and 64-bit integers are texts.
QByteArray value(const QVariant &value);

/// A number in the form 0x0123ABCD.
QByteArray hex(quint32 number);

class Object
{
public:
    Object &add(const char *key, const QByteArray &json);

    QByteArray onOneLine() const;
    /// One line for each key; `indent` precedes all lines but the first.
    QByteArray onLines(const QByteArray &indent) const;

private:
    QByteArrayList m_entries;
};

/// A list with one line for each item; `indent` precedes all lines but the first.
QByteArray listOnLines(const QByteArrayList &items, const QByteArray &indent);

} // namespace Json
