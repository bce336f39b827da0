// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include "json/JsonText.h"

/// A JSON object on one line, composed member by member: those that the library has composed need not be read again.
class JsonLine
{
public:
    void add(const QByteArray &key, const Json &value) { addComposed(key, JsonText::compact(value)); }

    /// Adds a value that is a text in JSON already, on one line.
    void addComposed(const QByteArray &key, const QByteArray &json)
    {
        m_members += (m_members.isEmpty() ? '{' : ',') + JsonText::compact(key) + ':' + json;
    }

    /// Adds a list of such values.
    void addList(const QByteArray &key, const QByteArrayList &items) { addComposed(key, '[' + items.join(',') + ']'); }

    /// The complete object, which has members.
    QByteArray text() const { return m_members + '}'; }

private:
    QByteArray m_members;
};
