// SPDX-License-Identifier: MIT
#pragma once

#include <type_traits>

#include <QString>
#include <QTest>

/// A text of a row: literals are UTF-8.
struct RowText : QString
{
    RowText(const char *utf8) : QString(QString::fromUtf8(utf8)) { }
    RowText(const QString &text) : QString(text) { }
};

/// The columns of data for a test, and the function that adds a row to them:
///
///     const Rows<QString, int> row("files", "status");
///     row("one file", "good.xml", 0);
///     row("bad.xml", 1); // named after its first cell
template <class... Columns>
class Rows
{
    template <class Column>
    using Name = const char *;
    template <class Column>
    using Cell = std::conditional_t<std::is_same_v<Column, QString>, RowText, Column>;

public:
    explicit Rows(Name<Columns>... names) { (QTest::addColumn<Columns>(names), ...); }

    void operator()(const char *title, const Cell<Columns> &...cells) const
    {
        (QTest::newRow(title) << ... << static_cast<const Columns &>(cells));
    }

    void operator()(const Cell<Columns> &...cells) const { (*this)(nameOf(cells...).constData(), cells...); }

private:
    template <class... Others>
    static QByteArray nameOf(const QString &first, const Others &...)
    {
        return first.toUtf8();
    }
    template <class... Others>
    static QByteArray nameOf(const QByteArray &first, const Others &...)
    {
        return first;
    }
};
