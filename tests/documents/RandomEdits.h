// SPDX-License-Identifier: MIT
#pragma once

#include <tunerdocuments/Editor.h>
#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

#include "documents/RandomChanges.h"

/// All members that have values, as complete paths.
inline void addPaths(QStringList &paths, const JobXml::DataObject &object, const QString &start)
{
    JobXml::visit(object, [&](const JobXml::MemberView &member) {
        if (!member.IsChosen())
            return;
        if (member.GetSize() == 0 && member.GetKind() != JobXml::MemberKind::ObjectList
            && member.GetKind() != JobXml::MemberKind::Object)
            paths.append(start + member.GetName());
        const QStringList steps = TunerDocuments::Paths::stepsTo(member);
        for (int i = 0; i < member.GetSize(); ++i) {
            const QString step =
                member.GetKind() == JobXml::MemberKind::ObjectList ? steps.at(i) : QString(member.GetName());
            addPaths(paths, member.GetChild(i), start + step + QLatin1Char('/'));
        }
    });
}

inline QString valueFor(const JobXml::MemberView &member, RandomChanges &random)
{
    const QStringList texts = {QStringLiteral(""), QStringLiteral("a"), QStringLiteral(" <&>\"' "),
                               QStringLiteral("\n\t\u00E4\U0001F600")};
    switch (member.GetKind()) {
    case JobXml::MemberKind::Text:
        return texts.at(random.below(texts.size()));
    case JobXml::MemberKind::Boolean:
        return random.below(2) ? QStringLiteral("true") : QStringLiteral("0");
    case JobXml::MemberKind::Enumeration:
    case JobXml::MemberKind::Choice:
        return member.GetNames().at(random.below(member.GetNames().size()));
    case JobXml::MemberKind::EnumerationList:
        return random.below(2) ? QStringLiteral("Scan,DF,Stop") : QStringLiteral("Polar");
    case JobXml::MemberKind::Float:
    case JobXml::MemberKind::Double:
        return random.below(2) ? QStringLiteral("0.2567") : QStringLiteral("-1e10");
    default:
        return QString::number(random.below(1000));
    }
}

/// What is set or unset.
struct RandomEdit
{
    TunerDocuments::Paths::Target target; ///< before the edit
    QString value; ///< null if it is unset
};

/// Throws PathFailure for an alternative that has no data.
inline RandomEdit randomEdit(const JobXml::DataObject &document, RandomChanges &random)
{
    QStringList paths;
    addPaths(paths, document, QString());
    const TunerDocuments::Paths::Target target =
        TunerDocuments::Paths::find(document, paths.at(random.below(paths.size())));
    const bool isUnset = random.below(4) == 0;
    return {target, isUnset ? QString() : valueFor(target.member, random)};
}

/// Returns false if the model refuses the edit.
inline bool apply(TunerDocuments::Editor &editor, const RandomEdit &edit)
{
    try {
        if (edit.value.isNull())
            editor.unset(edit.target.path);
        else
            editor.set(edit.target.path, edit.value);
        return true;
    } catch (const ReportException &) {
        return false;
    } catch (const TunerDocuments::TypedValue::Mismatch &) {
        return false; // a member that holds objects
    }
}
