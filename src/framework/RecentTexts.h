// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QString>

#include "framework/Utf8.h"

namespace JobXml {

/// The short texts that have been read from a document in memory. Many of those in a document repeat earlier ones,
/// names of units and settings above all, so each is looked up here first: a text that is found shares the memory of
/// the earlier one.
class RecentTexts
{
public:
    /// For a document of so many bytes. The texts of small ones are read as they are.
    explicit RecentTexts(qint64 documentSize);

    /// utf8ToString() of these bytes, which must stay unchanged where they are as long as this object exists.
    QString text(const char *utf8, Size size)
    {
        return size < 1 || size > longest || m_bits == 0 ? utf8ToString(utf8, size) : shared(utf8, size);
    }

private:
    static constexpr int longest = 24; // longer texts are rarely repeated, and would displace others

    struct Entry
    {
        const char *utf8 = nullptr;
        QString text; // has as many characters as bytes, as every text in ASCII
    };

    QString shared(const char *utf8, Size size);

    const int m_bits; // of the hash of a text, which is the index of its entry
    std::unique_ptr<Entry[]> m_entries; // the last texts of each hash
};

} // namespace JobXml
