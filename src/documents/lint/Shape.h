// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include <QStringList>

#include <jobxml/Visit.h>

namespace TunerDocuments {

/// The members of a class, as visit() shows them. Rules recognize what an object is by its shape: a number with min,
/// max and step, a number with a list of options.
struct Shape
{
    static constexpr int none = -1;

    struct Member
    {
        QLatin1String name;
        JobXml::MemberKind kind;
        bool isIdentifying;
        bool isAttribute; ///< whether XML may have it as an attribute
        JobXml::MemberView view; ///< of an object that does not exist any more: see MemberView::Of()
        std::unique_ptr<Shape> child; ///< of objects, lists of them and alternatives
    };

    /// The index of the member of that name, or `none`. The search begins at `hint`, since most documents have members
    /// in their order.
    int find(QLatin1String name, int hint = 0) const
    {
        return hint < int(members.size()) && members[std::size_t(hint)].name == name ? hint : search(name);
    }
    /// The same for a number, or for a text.
    int findNumber(const char *name) const;
    int findText(const char *name) const;
    /// The index of the first member of that kind.
    int findKind(JobXml::MemberKind kind) const;

    bool hasRange() const { return value.number >= 0 && min >= 0 && max >= 0 && step >= 0; }

    QString className;
    std::vector<Member> members;
    std::vector<int> texts; ///< the indexes of the members that are texts
    std::vector<int> numbers;
    std::vector<int> parts; ///< the indexes of those with child objects
    std::vector<int> alternatives;
    std::vector<int> identifying; ///< the indexes of the texts that identify an object
    QStringList attributeNames; ///< of the members that may be attributes
    QStringList elementNames; ///< of the members that may be elements

    /// \name Indexes of members, or `none`
    /// @{
    struct
    {
        int number = none;
        int text = none;
    } value;
    int min = none;
    int max = none;
    int step = none;
    int index = none;
    int text = none;
    int list = none; ///< of objects
    int choice = none;
    /// @}
    quint64 rules = 0; ///< the rules that apply to its objects

private:
    int search(QLatin1String name) const;
};

/// The shape of a document, which includes all others.
const Shape &documentShape();

} // namespace TunerDocuments
