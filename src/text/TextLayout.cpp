// SPDX-License-Identifier: MIT
#include "text/TextLayout.h"

#include <algorithm>

#include <QStringList>

namespace TextLayout {

QString wrapped(const QString &text, int start, int indentation, int width)
{
    QString result;
    int column = start;
    bool isFirst = true;
    const QStringList words = text.split(QLatin1Char(' '));
    for (const QString &word : words) {
        if (!isFirst && column + 1 + word.size() > width) {
            result += QLatin1Char('\n') + QString(indentation, QLatin1Char(' '));
            column = indentation;
        } else if (!isFirst) {
            result += QLatin1Char(' ');
            ++column;
        }
        result += word;
        column += int(word.size());
        isFirst = false;
    }
    return result + QLatin1Char('\n');
}

QString Columns::text(int indentation, int width) const
{
    int left = 0;
    for (const auto &row : m_rows)
        left = std::max(left, indentation + int(row.first.size()) + 2);
    QString result;
    for (const auto &row : m_rows)
        result += (QString(indentation, QLatin1Char(' ')) + row.first).leftJustified(left)
            + wrapped(row.second, left, left, width);
    return result;
}

} // namespace TextLayout
