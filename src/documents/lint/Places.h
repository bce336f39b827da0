// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <reportbase/XmlMarkup.h>

#include "documents/lint/Report.h"
#include "documents/lint/Shape.h"

namespace TunerDocuments {

/// Where the objects of a document are in its text: a tree of the elements from which objects, and members that are
/// elements, were read.
class Places
{
public:
    static constexpr int none = -1;

    explicit Places(const REPORTGENERATOR::XmlMarkup &markup) : m_markup(markup) { }

    /// Adds an element that is read into a member, which has that index, of the object at `parent`. The root has
    /// `none`.
    int add(int parent, int member, int element);
    /// The last place of that member; `none` if there is none yet.
    int lastOf(int parent, int member) const;

    int root() const { return m_nodes.empty() ? none : 0; }

    /// The places of the members of an object: for each member, in the order of the text.
    void childrenOf(int place, std::vector<std::vector<int>> &byMember) const;

    /// Where the search for steps has arrived at each depth. If places are looked for in their order, each item of a
    /// list is passed once.
    struct Cursor
    {
        int place = none; ///< of the object
        int member = none;
        int item = none;
        int child = none; ///< the place of that item
    };
    using Cursors = std::vector<Cursor>;

    /// The place of the member of the object at these steps, or of the object, as far as they are in the text.
    TextPlace find(const QVector<JobXml::Step> &steps, const QString &member, Cursors &cursors) const;

    TextPlace ofElement(int place) const;
    /// The attribute of that name, or the element if it has none.
    TextPlace ofAttribute(int place, QLatin1String name) const;

private:
    struct Node
    {
        int element;
        int member;
        int first = none; // child
        int last = none;
        int next = none; // sibling
    };

    int itemOf(int place, int member, int item, Cursor &cursor) const;

    const REPORTGENERATOR::XmlMarkup &m_markup;
    std::vector<Node> m_nodes;
};

} // namespace TunerDocuments
