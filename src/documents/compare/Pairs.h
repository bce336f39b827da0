// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>

#include <jobxml/Visit.h>

namespace TunerDocuments {

/// The pairs of items of two lists: for each item the index of the other one, or -1.
///
/// Items with the same identity belong together, in order among those with the same one. Of the others that have an
/// identity, those belong together whose content is mostly the same: they were renamed. Items without identity are
/// paired by content, and the rest in order.
///
/// The time grows with the size of the lists, not with its square.
class Pairs
{
public:
    Pairs(const JobXml::MemberView &first, const JobXml::MemberView &second);

    int ofFirst(int index) const { return m_ofFirst[index]; }
    int ofSecond(int index) const { return m_ofSecond[index]; }

    /// Whether the item of the first list has another identity in the second one.
    bool isRenamed(int index) const { return m_isRenamed[index]; }

    /// Which items of the first list have to be moved to their position in the second one. As few as possible are
    /// moved, preferably those whose position differs.
    QVector<bool> moved() const;

private:
    class Renames;

    void add(int first, int second)
    {
        m_ofFirst[first] = second;
        m_ofSecond[second] = first;
    }

    /// Pairs the unpaired items by a key, in order among those with the same key; a null key pairs nothing.
    template <class Key>
    void pairByKey(const JobXml::MemberView &first, const JobXml::MemberView &second, Key keyOf);

    QVector<int> m_ofFirst;
    QVector<int> m_ofSecond;
    QVector<bool> m_isRenamed;
};

} // namespace TunerDocuments
