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

/// Sets or unsets a member, by chance. Returns false if the model refuses that.
inline bool applyRandomEdit(TunerDocuments::Editor &editor, RandomChanges &random)
{
    QStringList paths;
    addPaths(paths, editor.document().tuner, QString());
    const QString path = paths.at(random.below(paths.size()));
    try {
        if (random.below(4) == 0)
            editor.unset(path);
        else
            editor.set(path, valueFor(TunerDocuments::Paths::find(editor.document().tuner, path).member, random));
        return true;
    } catch (const ReportException &) {
        return false;
    } catch (const TunerDocuments::TypedValue::Mismatch &) {
        return false; // a member that holds objects
    } catch (const TunerDocuments::PathFailure &) {
        return false; // an alternative that has no data
    }
}
