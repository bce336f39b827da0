// SPDX-License-Identifier: MIT
#include <QTest>

#include <tunerdocuments/Value.h>

using namespace TunerDocuments;

/// Values as texts.
class ValuesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreCellsOfATable_data();
    void textsAreCellsOfATable();
};

void ValuesTest::textsAreCellsOfATable_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");
    QTest::newRow("plain") << QStringLiteral("98.5 \u00B5V \"x\"") << QStringLiteral("98.5 \u00B5V \"x\"");
    QTest::newRow("empty") << QStringLiteral("") << QStringLiteral("");
    QTest::newRow("line ends and tab") << QStringLiteral("a\nb\r\tc") << QStringLiteral("a\\nb\\r\\tc");
    QTest::newRow("backslash") << QStringLiteral("a\\nb\nc") << QStringLiteral("a\\\\nb\\nc");
    QTest::newRow("invisible") << QStringLiteral("a\u200Db") << QStringLiteral("a\\u200db");
}

void ValuesTest::textsAreCellsOfATable()
{
    QFETCH(QString, text);
    QFETCH(QString, line);
    QCOMPARE(TypedValue::onOneLine(text), line);
}

TEST_SUITE(ValuesTest)
#include "tst_Values.moc"
