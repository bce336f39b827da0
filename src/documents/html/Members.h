// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include <QString>

#include <jobxml/Visit.h>

#include "documents/values/FindMember.h"

namespace TunerDocuments {

bool isText(const JobXml::MemberView &member);
/// Whether the text identifies an object among its siblings.
bool isIdentifyingText(const JobXml::MemberView &member);
bool isBoolean(const JobXml::MemberView &member);
bool isList(const JobXml::MemberView &member);
/// Whether it has a value of its own, and no child objects.
bool isValue(const JobXml::MemberView &member);
bool isAlternative(const JobXml::MemberView &member);
bool isChosenAlternative(const JobXml::MemberView &member);
/// Whether it is an alternative that is not chosen although a document in JSON would have it: it is set, or holds a
/// value that a new one does not have.
bool isKeptAlternative(const JobXml::MemberView &member);
/// Whether it is a choice or an alternative that says nothing: the chosen alternative shows what the choice is, and the
/// others hold nothing.
bool isIrrelevant(const JobXml::MemberView &member);

/// The members of an object, of which a page shows some in special ways. Those are taken out; the rest is shown
/// afterwards, so that nothing is missing. Refers to the object.
class Members
{
public:
    using View = JobXml::MemberView;
    using Test = bool (*)(const View &);

    Members() = default;
    explicit Members(const JobXml::DataObject &object);

    /// The first member that passes the test.
    const View *find(Test test) const;
    /// The member of this name, if it passes the test.
    const View *find(const char *name, Test test) const;
    const View *find(const QString &name) const;

    std::optional<View> take(Test test) { return take(find(test)); }
    std::optional<View> take(const char *name, Test test) { return take(find(name, test)); }
    /// All members that pass the test.
    std::vector<View> takeAll(Test test);

    bool isEmpty() const { return m_members.empty(); }
    auto begin() const { return m_members.begin(); }
    auto end() const { return m_members.end(); }

private:
    std::optional<View> take(const View *member);

    std::vector<View> m_members;
};

} // namespace TunerDocuments
