// SPDX-License-Identifier: MIT
#pragma once

#include <map>

#include <QByteArray>
#include <QByteArrayList>
#include <QVector>

#include "documents/edit/JsonLayout.h"
#include "documents/values/Replacement.h"
#include "json/Json.h"

namespace TunerDocuments {

/// Changes of the members of a JSON object or the items of a JSON list: some are removed, others added next to
/// them. Where one is removed and another one added after it, that takes its place.
class JsonEntries
{
public:
    /// A list or an object of the text; all of them must outlive this object.
    JsonEntries(const QByteArray &text, const JsonLayout &layout, const Json &container);

    int count() const { return int(m_entries.size()); }
    /// The index of a member; -1 if there is none.
    int indexOf(const QByteArray &key) const;

    void remove(int entry);
    void addBefore(int entry, const QByteArray &text);
    void addAfter(int entry, const QByteArray &text);
    /// Adds entries to a container without any.
    void addFirst(const QByteArrayList &texts);

    /// A value as it is laid out next to an entry, or in a container without any (-1).
    QByteArray laidOut(const Json &value, int neighbor) const;

    /// What separates key and value there.
    QByteArray colonAt(int neighbor) const;

    /// All of that.
    Replacements replacements() const;

private:
    struct Entry
    {
        int begin;
        int end;
    };

    struct Fate
    {
        bool isRemoved = false;
        QByteArrayList before{};
        QByteArrayList after{};
    };

    bool isLeft(int entry) const;
    QByteArray separatorAt(int entry) const;
    QByteArray firstSeparator() const;

    const QByteArray &m_text;
    const JsonLayout &m_layout;
    const Json &m_container;
    QVector<Entry> m_entries;
    std::map<int, Fate> m_fates;
    QByteArrayList m_first;
};

} // namespace TunerDocuments
