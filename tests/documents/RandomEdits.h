// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>

#include <QRegularExpression>

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

/// Often the value that the member has: the text may have garbage that only reads as that.
inline QString valueFor(const JobXml::MemberView &member, RandomChanges &random)
{
    const bool isNumberOrBoolean = member.GetKind() == JobXml::MemberKind::Boolean
        || (member.GetKind() != JobXml::MemberKind::Text && member.GetNames().isEmpty());
    if (isNumberOrBoolean && random.below(4) == 0)
        return TunerDocuments::TypedValue::print(member.GetValue());
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
    case JobXml::MemberKind::EnumerationList: {
        const QStringList lists = {QStringLiteral("Scan,DF,Stop"), QStringLiteral("Polar"), QStringLiteral("DF,FFM"),
                                   QStringLiteral("FFM,Scan,DF,Polar,DF")};
        return lists.at(random.below(lists.size()));
    }
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

/// What a document that was read again from its edited text has of an edit other than what was requested; null if it
/// has exactly that.
inline QString problemAfter(const JobXml::TunerProperties &read, const RandomEdit &edit)
{
    const QVector<JobXml::Step> &steps = edit.target.steps;
    const JobXml::DataObject *object = &read;
    QString problem;
    for (int depth = 0; object; ++depth) {
        const JobXml::DataObject *child = nullptr;
        JobXml::visit(*object, [&](const JobXml::MemberView &member) {
            if (member.GetName() != steps.at(depth).member)
                return;
            const int index = qMax(steps.at(depth).index, 0);
            if (depth + 1 < steps.size()) {
                child = index < member.GetSize() ? &member.GetChild(index) : nullptr;
                problem = child || edit.value.isNull() ? QString() : QStringLiteral("the object is missing");
                return;
            }
            // Reading an older version sets the quantity.
            const bool isSetByVersion = edit.target.path == QLatin1String("quantity");
            if (edit.value.isNull()) {
                problem = member.IsSet() && !isSetByVersion && member.GetKind() != JobXml::MemberKind::Choice
                    ? QStringLiteral("it is still set")
                    : QString();
                return;
            }
            const QString requested =
                TunerDocuments::ValueText::ofValue(TunerDocuments::TypedValue::parse(member, edit.value));
            const QString found = TunerDocuments::ValueText::ofMember(member);
            if (found != requested)
                problem = found + QStringLiteral(" is not ") + requested;
        });
        object = child;
    }
    return problem.isNull() ? QString() : edit.target.path + QStringLiteral(": ") + problem;
}

/// Whether the text of a number or a boolean denotes what was typed. Only a decimal point may be written otherwise.
inline bool denotes(JobXml::MemberKind kind, const QString &text, const QString &typed)
{
    static const QRegularExpression number(
        QStringLiteral(R"(^\s*[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+-]?[0-9]+)?\s*\z)"));
    const QString lower = text.toLower();
    switch (kind) {
    case JobXml::MemberKind::Boolean:
        return typed == QLatin1String("true") || typed == QLatin1String("1")
            ? lower == QLatin1String("true") || lower == QLatin1String("1")
            : lower == QLatin1String("false") || lower == QLatin1String("0");
    case JobXml::MemberKind::Int:
    case JobXml::MemberKind::Int64:
    case JobXml::MemberKind::UInt64:
        return number.match(text).hasMatch() && text.trimmed().toLongLong() == typed.toLongLong();
    case JobXml::MemberKind::Float:
    case JobXml::MemberKind::Double:
        // With more digits than the members keep.
        return number.match(typed).hasMatch() ? number.match(text).hasMatch()
                && std::strtold(text.toLatin1().constData(), nullptr)
                    == std::strtold(typed.toLatin1().constData(), nullptr)
                                              : lower.trimmed().left(3) == typed.toLower().left(3); // nan, inf, -in
    default:
        return true;
    }
}

/// How many names two lists share at their beginnings and, of the others, at their ends.
struct SharedNames
{
    SharedNames(const QStringList &one, const QStringList &other)
    {
        const int size = qMin(one.size(), other.size());
        while (first < size && one.at(first) == other.at(first))
            ++first;
        while (last < size - first && one.at(one.size() - 1 - last) == other.at(other.size() - 1 - last))
            ++last;
    }

    int first = 0;
    int last = 0;
};

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
