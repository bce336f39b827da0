// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>

#include "Model.h"

namespace Model {

inline QString nameOf(const QJsonValue &classOrMember)
{
    return classOrMember.toObject().value(QLatin1String("name")).toString();
}

/// The members in released.json as "Component.name".
inline QSet<QString> releasedMembers()
{
    QFile file(QStringLiteral(EXAMPLES_DIR "/../tests/model/released.json"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s: %s", qUtf8Printable(file.fileName()), qUtf8Printable(file.errorString()));
    QSet<QString> names;
    const QJsonArray classes =
        QJsonDocument::fromJson(file.readAll()).object().value(QLatin1String("classes")).toArray();
    for (const QJsonValue &listed : classes) {
        const QJsonArray members = listed.toObject().value(QLatin1String("members")).toArray();
        for (const QJsonValue &member : members)
            names += nameOf(listed) + QLatin1Char('.') + nameOf(member);
    }
    if (names.isEmpty())
        qFatal("%s lists no member", qUtf8Printable(file.fileName()));
    return names;
}

/// What shows objects to people, without the members that are not set and that `expected` does not name. So a test
/// whose expectation is written out in full does not depend on members that join a class later. Whatever `expected`
/// names, and whatever is set, stays. The lines may be those of a tree ("name: null (not set)", "name = QString null
/// unset"), or hold several members ("name (not set), value 0 (not set)", "Holds name, value").
inline QString withoutNewMembers(QString shown, const QString &expected)
{
    const auto nameIn = [](const QString &path) { return path.section(QLatin1Char('.'), 1); };
    QSet<QString> names;
    for (const QString &path : membersOfAll())
        names += nameIn(path);
    for (const QString &path : releasedMembers()) // their names are shown wherever they occur
        names -= nameIn(path);
    for (const QString &name : qAsConst(names)) {
        if (expected.contains(QRegularExpression(QStringLiteral("\\b%1\\b").arg(name))))
            continue;
        for (const char *pattern : {"\n *%1:? [^\n]*(\\(not set\\)|unset)(?=\n|$)", // a line
                                    ", %1( [^,\n]*)? \\(not set\\)", // one of several in a line
                                    ",\\s*<?%1>?(?=[.,\n])", // a name in a list of names
                                    "\n( *)<?%1>?  +[^\n]*(\n\\1  +[^\n]*)*"}) // what explains it
            shown.remove(QRegularExpression(QString::fromLatin1(pattern).arg(name)));
    }
    return shown;
}

} // namespace Model
