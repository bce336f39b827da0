// SPDX-License-Identifier: MIT
#include "documents/compare/Contents.h"

#include <QStringList>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Value.h>

using namespace JobXml;

namespace TunerDocuments {

namespace Contents {

bool differsFromDefault(const MemberView &member)
{
    return member.IsSet() || ValueText::ofValue(member.GetValue()) != ValueText::ofValue(member.GetDefaultValue());
}

namespace {

QString text(const MemberView &member, Amount amount)
{
    const QString flag = member.IsSet() ? QString() : QLatin1Char(' ') + ValueText::notSet();
    if (member.GetKind() != MemberKind::ObjectList) {
        const bool isChosen = member.GetKind() == MemberKind::Alternative && member.IsChosen();
        // The path of an item contains its identity, which is that of the chosen alternative.
        const QString child = member.GetSize() == 0
            ? QString()
            : Contents::text(member.GetChild(), amount, amount == Amount::Whole || !isChosen);
        if (amount == Amount::Brief && isChosen && member.IsSet())
            return member.GetName() + (child.isEmpty() ? QString() : QLatin1Char(' ') + child);
        return child.isEmpty() && !member.IsSet()
            ? QString()
            : member.GetName() + QStringLiteral(" {") + child + QLatin1Char('}') + flag;
    }
    if (member.GetSize() == 0 && !member.IsSet())
        return QString();
    if (amount == Amount::Brief)
        return QString::number(member.GetSize()) + QLatin1Char(' ') + member.GetName() + flag;
    QStringList items;
    for (int i = 0; i < member.GetSize(); ++i)
        items.append(QLatin1Char('{') + Contents::text(member.GetChild(i), amount, true) + QLatin1Char('}'));
    return member.GetName() + QStringLiteral(" [") + items.join(QStringLiteral(", ")) + QLatin1Char(']') + flag;
}

} // namespace

QString text(const DataObject &object, Amount amount, bool withIdentity)
{
    QStringList parts;
    visit(object, [&](const MemberView &member) {
        QString part;
        if (holdsObjects(member))
            part = text(member, amount);
        else if (member.GetKind() == MemberKind::Choice)
            part = amount == Amount::Whole && member.IsSet() ? ValueText::ofMember(member) : QString();
        else if ((withIdentity || !member.IsIdentifying()) && differsFromDefault(member))
            part = member.GetName() + QLatin1Char(' ') + ValueText::ofMember(member);
        if (!part.isEmpty())
            parts.append(part);
    });
    return parts.join(QStringLiteral(", "));
}

QString textOfChild(const MemberView &member)
{
    return member.GetSize() == 0 ? QString() : text(member.GetChild(), Amount::Brief, true);
}

bool areAlike(const DataObject &first, const DataObject &second)
{
    bool areAlike = true;
    findDifferences(first, second, [&](const Difference &) { areAlike = false; });
    return areAlike;
}

bool childrenAreAlike(const MemberView &first, const MemberView &second)
{
    if (first.GetSize() == 0 || second.GetSize() == 0)
        return textOfChild(first).isEmpty() && textOfChild(second).isEmpty();
    return areAlike(first.GetChild(), second.GetChild());
}

void store(MemberEditor &member, const QVariant &value, bool isSet)
{
    [[maybe_unused]] const bool isStored = member.SetValue(value);
    Q_ASSERT(isStored); // it is a value of the same member in another object
    member.SetFlag(isSet);
}

void copy(const DataObject &source, DataObject &target)
{
    const std::vector<MemberView> members = membersOf(source);
    std::size_t next = 0;
    target.SetValidate(false); // a new object validates
    visit(target, [&](MemberEditor &member) {
        const MemberView &from = members[next++];
        if (from.GetKind() == MemberKind::ObjectList) {
            for (int i = 0; i < from.GetSize(); ++i)
                copy(from.GetChild(i), member.AppendChild());
        } else if (holdsObjects(from)) {
            if (from.GetSize() != 0)
                copy(from.GetChild(), member.EditChild());
        } else {
            store(member, from.GetValue(), from.IsSet());
        }
        member.SetFlag(from.IsSet());
    });
    visit(target, [&](MemberEditor &member) { // copying an alternative has chosen it
        if (member.GetKind() == MemberKind::Choice)
            store(member, members.front().GetValue(), true);
    });
}

DataObject &newObjectAt(DataObject &document, const QVector<Step> &steps)
{
    document.SetValidate(false);
    DataObject *object = &document;
    for (const Step &step : steps) {
        DataObject *child = nullptr;
        visit(*object, [&](MemberEditor &member) {
            if (member.GetName() == step.member)
                child = member.GetKind() == MemberKind::ObjectList ? &member.AppendChild() : &member.EditChild();
        });
        object = child;
        object->SetValidate(false);
    }
    return *object;
}

} // namespace Contents

} // namespace TunerDocuments
