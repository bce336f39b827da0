// SPDX-License-Identifier: MIT
#include <tunerdocuments/Path.h>

using namespace JobXml;

namespace TunerDocuments::Paths {

namespace {

void listFrom(const DataObject &object, const QString &start,
              const std::function<void(const QString &, const MemberView &)> &action)
{
    visit(object, [&](const MemberView &member) {
        if (!member.IsSet() || !member.IsChosen())
            return;
        const bool isList = member.GetKind() == MemberKind::ObjectList;
        if (!isList && member.GetKind() != MemberKind::Object && member.GetKind() != MemberKind::Alternative) {
            action(start + member.GetName(), member);
            return;
        }
        const QStringList steps = isList ? stepsTo(member) : QStringList{member.GetName()};
        for (int i = 0; i < member.GetSize(); ++i)
            listFrom(member.GetChild(i), start + steps.at(i) + QLatin1Char('/'), action);
    });
}

} // namespace

void list(const DataObject &root, const std::function<void(const QString &, const MemberView &)> &action)
{
    listFrom(root, QString(), action);
}

} // namespace TunerDocuments::Paths
