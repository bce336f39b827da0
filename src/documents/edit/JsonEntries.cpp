// SPDX-License-Identifier: MIT
#include "documents/edit/JsonEntries.h"

#include <algorithm>

#include "documents/edit/JsonBlanks.h"

namespace TunerDocuments {

JsonEntries::JsonEntries(const QByteArray &text, const JsonLayout &layout, const Json &container)
    : m_text(text), m_layout(layout), m_container(container)
{
    if (container.isObject()) {
        for (const Json::Member &member : container.members())
            m_entries.append({int(member.value.memberBegin()), int(member.value.textEnd())});
    } else {
        for (const Json &item : container.items())
            m_entries.append({int(item.textBegin()), int(item.textEnd())});
    }
}

int JsonEntries::indexOf(const QByteArray &key) const
{
    const Json::Object &members = m_container.members();
    const auto found =
        std::find_if(members.begin(), members.end(), [&](const Json::Member &member) { return member.key == key; });
    return found == members.end() ? -1 : int(found - members.begin());
}

void JsonEntries::remove(int entry)
{
    m_fates[entry].isRemoved = true;
}

void JsonEntries::addBefore(int entry, const QByteArray &text)
{
    m_fates[entry].before.append(text);
}

void JsonEntries::addAfter(int entry, const QByteArray &text)
{
    m_fates[entry].after.append(text);
}

void JsonEntries::addFirst(const QByteArrayList &texts)
{
    m_first += texts;
}

/// What separates an entry from the comma before it.
QByteArray JsonEntries::separatorAt(int entry) const
{
    const auto blanks = [this](int at) { return JsonBlanks::before(m_text, m_entries.at(at).begin); };
    if (entry > 0)
        return blanks(entry);
    // The first entry is often on the line of its bracket, and the others below it.
    if (m_entries.size() > 1)
        return blanks(1);
    return blanks(0).isEmpty() ? QByteArray(" ") : blanks(0);
}

/// What separates the first entry from the bracket: nothing for an object, unless others take several lines.
QByteArray JsonEntries::firstSeparator() const
{
    const int begin = int(m_container.textBegin());
    const int feed = int(m_text.lastIndexOf('\n', begin));
    if (feed < 0 || (m_container.isObject() && !m_layout.breaksObjects()))
        return QByteArray();
    int end = feed + 1;
    while (JsonBlanks::isBlank(m_text.at(end)))
        ++end;
    const QByteArray indentation = m_text.mid(feed + 1, end - feed - 1);
    return (feed > 0 && m_text.at(feed - 1) == '\r' ? "\r\n" : "\n") + indentation + m_layout.step();
}

QByteArray JsonEntries::colonAt(int neighbor) const
{
    return neighbor < 0 ? QByteArray(": ")
                        : JsonBlanks::colonBefore(m_text, m_container.members().at(std::size_t(neighbor)).value);
}

QByteArray JsonEntries::laidOut(const Json &value, int neighbor) const
{
    const QByteArray before = neighbor < 0 ? firstSeparator() : separatorAt(neighbor);
    const auto line = before.lastIndexOf('\n');
    const QByteArray lineStart =
        line < 0 ? QByteArray() : (before.contains('\r') ? "\r\n" : "\n") + before.mid(line + 1);
    const auto at = std::size_t(neighbor);
    const Json *const beside = neighbor < 0 ? nullptr
        : m_container.isObject()            ? &m_container.members().at(at).value
                                            : &m_container.items().at(at);
    return m_layout.written(value, lineStart, beside, m_container);
}

/// Whether there is something in its place afterwards.
bool JsonEntries::isLeft(int entry) const
{
    const auto fate = m_fates.find(entry);
    return fate == m_fates.end() || !fate->second.isRemoved || !fate->second.before.isEmpty()
        || !fate->second.after.isEmpty();
}

Replacements JsonEntries::replacements() const
{
    Replacements out;
    if (m_entries.isEmpty() && !m_first.isEmpty()) {
        const QByteArray separator = firstSeparator();
        QByteArray last = separator;
        if (!separator.isEmpty())
            last.chop(m_layout.step().size());
        out.append({int(m_container.textBegin()) + 1, int(m_container.textEnd()) - 1,
                    separator + m_first.join(',' + (separator.isEmpty() ? QByteArray(" ") : separator)) + last});
    }
    int done = 0; // entries before this one are replaced
    for (const auto &[entry, fate] : m_fates) {
        const Entry &place = m_entries.at(entry);
        const QByteArray between = ',' + separatorAt(entry);
        if (!isLeft(entry)) {
            if (entry < done)
                continue;
            // A comma is removed with each: the one before it, except for the first entry.
            int next = entry + 1;
            while (next < m_entries.size() && !isLeft(next))
                ++next;
            done = next;
            if (entry > 0)
                out.append({m_entries.at(entry - 1).end, m_entries.at(next - 1).end, QByteArray()});
            else if (next < m_entries.size())
                out.append({place.begin, m_entries.at(next).begin, QByteArray()});
            else
                out.append({place.begin, m_entries.last().end, QByteArray()});
            continue;
        }
        if (fate.isRemoved) {
            out.append({place.begin, place.end, (fate.before + fate.after).join(between)});
            continue;
        }
        for (const QByteArray &text : fate.before)
            out.append({place.begin, place.begin, text + between});
        for (const QByteArray &text : fate.after)
            out.append({place.end, place.end, between + text});
    }
    return out;
}

} // namespace TunerDocuments
