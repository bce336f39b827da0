// SPDX-License-Identifier: MIT
#pragma once

#include <QPair>
#include <QString>
#include <QVector>

/// Text in lines of limited width.
namespace TextLayout {

/// Wraps the text; lines after the first are indented. The first begins at the column `start`.
QString wrapped(const QString &text, int start, int indentation, int width = 80);

/// Names on the left, their meanings on the right.
class Columns
{
public:
    void add(const QString &name, const QString &meaning) { m_rows.append({name, meaning}); }

    /// Each line is indented by that many blanks.
    QString text(int indentation = 2, int width = 80) const;

private:
    QVector<QPair<QString, QString>> m_rows;
};

} // namespace TextLayout
