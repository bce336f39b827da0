// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QRegularExpression>
#include <QStringList>

/// The blocks of commands of a page of the manual.
inline QStringList commandsIn(const QString &page)
{
    QFile file(page);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString text = QString::fromUtf8(file.readAll());
    static const QRegularExpression block(QStringLiteral("```sh\n(.*?)```"),
                                          QRegularExpression::DotMatchesEverythingOption);
    QStringList blocks;
    for (auto found = block.globalMatch(text); found.hasNext();)
        blocks.append(found.next().captured(1));
    return blocks;
}
