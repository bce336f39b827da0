// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

#include <QString>

#include "documents/html/Objects.h"

namespace TunerDocuments {

/// Long lists are in groups, of which the browser lays out those on the screen: a few hundred groups are less to
/// arrange than thousands of nodes. A multiple of all numbers of columns, so that only the last group has a gap.
constexpr int groupSize = 48;

/// With more nodes or components, laying out only the visible ones saves time.
constexpr int mostNodesLaidOut = 500;

/// In a document with more nodes, all components but the first are closed.
constexpr int mostNodesOpen = 24;

/// Calls show(index) for all items of a list; if there are more than `most`, within an element for every few of them.
template <class Show>
void inGroups(Markup &out, int count, int most, const char *htmlClass, Show &&show)
{
    const auto range = [&](int first, int end) {
        for (int i = first; i < end; ++i)
            show(i);
    };
    if (count <= most) {
        range(0, count);
        return;
    }
    for (int first = 0; first < count; first += groupSize) {
        const Tag group(out, "div", {{"class", htmlClass}});
        range(first, std::min(first + groupSize, count));
    }
}

/// The text of a member; null without one.
QString textOf(const JobXml::MemberView *member);

/// A word in the heading of an object.
struct Mark
{
    const char *htmlClass = nullptr;
    QString text{}; ///< empty if there is none
};

/// Shows objects with lists of their own as cards, the items of these lists as nodes, and the values in them.
class Cards
{
public:
    struct Place
    {
        ObjectPath path;
        QString text; ///< the path as users write it
    };

    Cards(Markup &out, Problems &problems) : m_out(out), m_problems(problems) { }

    /// All items of a list, with a heading.
    void showCards(const JobXml::MemberView &list);
    /// `fallbackTitle` is the title of an object without a name.
    void showCard(const JobXml::DataObject &object, const QString &fallbackTitle, const Place &place, bool isOpen,
                  const Mark &mark = {});
    void showNode(const JobXml::DataObject &object, const Place &place, const Mark &mark = {});

    /// The heading of a card: its display name, or what identifies it among its siblings.
    void showTitle(const Members &members, const QString &fallbackTitle);
    void showMark(const Mark &mark);

private:
    /// Whether the object is shown. If only the problems count, objects without any are skipped.
    bool isShown(const ObjectPath &path) const;
    void showCount(const Problems::Count &count);
    void showNodes(const JobXml::MemberView &list, const Place &place);

    Markup &m_out;
    Problems &m_problems;
};

} // namespace TunerDocuments
