// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include "../src/module/Classes.h"

/// The whole model as visited by visit(), starting at the document. Tests compare lists that must be complete with it.
/// The library itself uses the lists JobXml::Classes and JobXml::Kinds.
namespace Model {

inline bool holdsObjects(JobXml::MemberKind kind)
{
    using Kind = JobXml::MemberKind;
    return kind == Kind::Object || kind == Kind::ObjectList || kind == Kind::Alternative;
}

/// A child of the member, with a new item appended to a list.
inline JobXml::DataObject &newChild(JobXml::MemberEditor &member)
{
    return member.GetKind() == JobXml::MemberKind::ObjectList ? member.AppendChild() : member.EditChild();
}

/// The members of an object, in the order in which they are written. The choice of a ValueItem is not one of them:
/// encodings express it by the alternative that they contain.
inline QStringList members(const JobXml::DataObject &object)
{
    QStringList names;
    JobXml::visit(object, [&](const JobXml::MemberView &member) {
        if (member.GetKind() != JobXml::MemberKind::Choice)
            names += member.GetName();
    });
    return names;
}

/// Calls `use(DataObject &)` with a new object of each class, first the passed one and then those that it can contain.
template <class Use>
void forEachClass(JobXml::DataObject &object, QStringList &seen, Use &&use)
{
    if (seen.contains(object.GetObjectName()))
        return;
    seen += object.GetObjectName();
    object.SetValidate(false);
    use(object);
    JobXml::visit(object, [&](JobXml::MemberEditor &member) {
        if (holdsObjects(member.GetKind()))
            forEachClass(newChild(member), seen, use);
    });
}

template <class Use>
void forEachClass(Use &&use)
{
    JobXml::TunerProperties document;
    QStringList seen;
    forEachClass(document, seen, use);
}

/// The names of the classes, sorted.
inline QStringList classes()
{
    QStringList names;
    forEachClass([&](const JobXml::DataObject &object) { names += object.GetObjectName(); });
    names.sort();
    return names;
}

/// The members of all classes as "Component.name", sorted.
inline QStringList membersOfAll()
{
    QStringList names;
    forEachClass([&](const JobXml::DataObject &object) {
        for (const QString &member : members(object))
            names += object.GetObjectName() + QLatin1Char('.') + member;
    });
    names.sort();
    return names;
}

/// The names of a list of classes, JobXml::Classes or JobXml::Kinds.
template <class List>
QStringList namesIn()
{
    QStringList names;
    List::forEach([&](auto tag) { names += decltype(tag)::Class::GetStaticObjectName(); });
    return names;
}

/// Names that a test states, followed by those of classes that are newer. `List` is in the order of joining the model.
template <class List>
QStringList withNewNames(const QStringList &stated)
{
    return stated + namesIn<List>().mid(stated.size());
}

} // namespace Model
