// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayList>
#include <QVariant>

/// JSON as text. Keys stay in the order in which they are added, so that people can read it and differences between two
/// versions are small.
namespace Json {

/// A text, boolean, number or list of them as documents in JSON hold it: a null text is null, and whole numbers of 64
/// bits are texts.
QByteArray value(const QVariant &value);

/// A number in the form 0x0123ABCD.
QByteArray hex(quint32 number);

class Object
{
public:
    Object &add(const char *key, const QByteArray &json);

    QByteArray onOneLine() const;
    /// A line for each key; those after the first begin with `indent`.
    QByteArray onLines(const QByteArray &indent) const;

private:
    QByteArrayList m_entries;
};

/// A list with a line for each item; those after the first begin with `indent`.
QByteArray listOnLines(const QByteArrayList &items, const QByteArray &indent);

} // namespace Json
