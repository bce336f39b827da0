// SPDX-License-Identifier: MIT
#include <QBuffer>
#include <QXmlStreamWriter>
#include <QtTest>

#include "text/XmlCharacters.h"

using REPORTGENERATOR::firstNotForXml;

namespace {

/// Whether a QXmlStreamWriter writes the text unchanged. It only reports half of a surrogate pair with the next text.
bool isWritten(const QString &text)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QXmlStreamWriter writer(&buffer);
    writer.writeStartElement(QStringLiteral("a"));
    writer.writeCharacters(text);
    writer.writeCharacters(QStringLiteral(" "));
    return !writer.hasError();
}

} // namespace

/// The rule which characters XML cannot carry is that of QXmlStreamWriter.
class XmlCharactersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyUnitIsRefusedWhereTheWriterRefusesIt()
    {
        int refused = 0;
        for (int unit = 0; unit <= 0xFFFF; ++unit) {
            const QString text = QStringLiteral("ab") + QChar(ushort(unit)) + QStringLiteral("c");
            const auto found = firstNotForXml(text);
            QVERIFY2(found == (isWritten(text) ? -1 : 2), QByteArray::number(unit, 16).constData());
            refused += found >= 0 ? 1 : 0;
        }
        QCOMPARE(refused, 32 - 3 + 2048 + 2); // control characters except TAB, LF and CR; surrogates; U+FFFE and U+FFFF
    }

    void halfOfAPairIsRefusedWhereverItIs_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("first");
        const QChar high(0xD83D);
        const QChar low(0xDCE1);
        QTest::newRow("a pair") << QString(high) + low << -1;
        QTest::newRow("two pairs") << QString(high) + low + high + low << -1;
        QTest::newRow("the halves exchanged") << QString(low) + high << 0;
        QTest::newRow("two first halves and a second") << QString(high) + high + low << 0;
        QTest::newRow("a pair and a second half") << QString(high) + low + low << 2;
        QTest::newRow("a first half at the end") << QStringLiteral("abc") + high << 3;
        QTest::newRow("no text") << QString() << -1;
    }

    void halfOfAPairIsRefusedWhereverItIs()
    {
        QFETCH(QString, text);
        QFETCH(int, first);
        QCOMPARE(int(firstNotForXml(text)), first);
        QCOMPARE(isWritten(text), first < 0);
    }
};

TEST_SUITE(XmlCharactersTest)
#include "tst_XmlCharacters.moc"
