// SPDX-License-Identifier: MIT
#pragma once

#include <QPair>
#include <QString>
#include <QVector>

/// Text for people, in lines that fit.
namespace TextLayout {

/// The words of the text in lines; those behind the first are indented. The first begins at the column `start`.
QString wrapped(const QString &text, int start, int indentation, int width = 80);

/// Names on the left, what they mean on the right.
class Columns
{
public:
    void add(const QString &name, const QString &meaning) { m_rows.append({name, meaning}); }

    /// Each line begins with so many blanks.
    QString text(int indentation = 2, int width = 80) const;

private:
    QVector<QPair<QString, QString>> m_rows;
};

} // namespace TextLayout
