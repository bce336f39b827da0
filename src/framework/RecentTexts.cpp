// SPDX-License-Identifier: MIT
#include "framework/RecentTexts.h"

#include <cstring>

namespace JobXml {

namespace {

constexpr int leastBits = 4;
constexpr int mostBits = 9; // 8 KiB, which stay in the cache
constexpr int bytesPerEntry = 256; // of a document: more entries than it has texts would cost more than they save

int bitsFor(qint64 documentSize)
{
    int bits = 0;
    while (bits < mostBits && documentSize >= qint64(bytesPerEntry) << (bits + 1))
        ++bits;
    return bits < leastBits ? 0 : bits;
}

template <class Word>
quint64 wordAt(const char *bytes)
{
    Word word = 0;
    std::memcpy(&word, bytes, sizeof(word));
    return word;
}

/// Depends on all bytes of up to 24.
quint64 hashOf(const char *bytes, Size size)
{
    constexpr quint64 multiplier = 0x9E3779B97F4A7C15; // an odd number without a pattern in its bits
    const char *const end = bytes + size;
    quint64 hash = quint64(size);
    const auto add = [&hash](quint64 word) { hash = ((hash ^ word) * multiplier) ^ (hash >> 32); };
    if (size >= 8) {
        add(wordAt<quint64>(bytes));
        if (size > 16)
            add(wordAt<quint64>(bytes + 8));
        add(wordAt<quint64>(end - 8));
    } else if (size >= 4) {
        add(wordAt<quint32>(bytes) << 32 | wordAt<quint32>(end - 4));
    } else {
        add(quint64(uchar(bytes[0]) << 16 | uchar(bytes[size / 2]) << 8 | uchar(end[-1])));
    }
    return (hash ^ (hash >> 32)) * multiplier;
}

} // namespace

RecentTexts::RecentTexts(qint64 documentSize) : m_bits(bitsFor(documentSize)) { }

QString RecentTexts::shared(const char *utf8, Size size)
{
    if (!m_entries)
        m_entries = std::make_unique<Entry[]>(std::size_t(1) << m_bits);
    Entry &entry = m_entries[std::size_t(hashOf(utf8, size) >> (64 - m_bits))];
    if (entry.text.size() == size && std::memcmp(entry.utf8, utf8, std::size_t(size)) == 0)
        return entry.text;
    QString text = utf8ToString(utf8, size);
    if (text.size() == size)
        entry = {utf8, text};
    return text;
}

} // namespace JobXml
