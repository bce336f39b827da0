// SPDX-License-Identifier: MIT
#include <QtTest>

#include <random>

#include <jobxml/Component.h>
#include <jobxml/Node.h>
#include <jobxml/TunerProperties.h>
#include <jobxml/ValueItem.h>
#include <jobxml/ValueString.h>

#include "framework/RecentTexts.h"

using namespace JobXml;

namespace {

constexpr int largeEnough = 4096; // bytes of a document whose texts are looked up

bool areShared(const QString &one, const QString &other)
{
    return !one.isNull() && one.constData() == other.constData();
}

/// Reads the bytes as they are in a document.
QString read(RecentTexts &texts, const QByteArray &bytes)
{
    return texts.text(bytes.constData(), bytes.size());
}

/// A document of one component with 100 nodes, each with the string value `unit`.
QString documentWithRepeatedUnit()
{
    QByteArray xml = "<TunerProperties Version=\"1.1\" name=\"a\" type=\"Receiver\" baseresource=\"b\" quantity=\"1\""
                     " hwProcessing=\"true\"><Component type=\"Generic\" name=\"c\" optional=\"false\">";
    for (int i = 0; i < 100; ++i) {
        xml += "<Node id=\"node " + QByteArray::number(i)
            + "\"><ValueItem><ValueString id=\"unit\" value=\"dBm\"/></ValueItem></Node>";
    }
    return QString::fromLatin1(xml + "</Component></TunerProperties>");
}

const ValueString &unit(const TunerProperties &tuner, int node)
{
    return tuner.GetComponent().at(0).GetNode().at(node).GetValueItem().at(0).GetValueString();
}

} // namespace

class RecentTextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTextThatIsRepeatedIsShared_data();
    void aTextThatIsRepeatedIsShared();
    void aTextThatIsNotSharedIsReadAsItIs_data();
    void aTextThatIsNotSharedIsReadAsItIs();
    void textsThatDifferInOneByteAreReadAsTheyAre_data();
    void textsThatDifferInOneByteAreReadAsTheyAre();
    void aTextIsNotMistakenForTheBeginningOfAnother();
    void theTextsOfASmallDocumentAreReadAsTheyAre();
    void everyOneOfManyTextsIsReadAsItIs();
    void repeatedTextsOfADocumentAreShared_data();
    void repeatedTextsOfADocumentAreShared();
};

void RecentTextsTest::aTextThatIsRepeatedIsShared_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");

    QTest::newRow("one character") << QByteArray("m") << QStringLiteral("m");
    QTest::newRow("three characters") << QByteArray("dBm") << QStringLiteral("dBm");
    QTest::newRow("four characters") << QByteArray("unit") << QStringLiteral("unit");
    QTest::newRow("eight characters") << QByteArray("polarity") << QStringLiteral("polarity");
    QTest::newRow("16 characters") << QByteArray("reference clocks") << QStringLiteral("reference clocks");
    QTest::newRow("17 characters") << QByteArray("reference clock 2") << QStringLiteral("reference clock 2");
    QTest::newRow("24 characters") << QByteArray("automatic gain control 2")
                                   << QStringLiteral("automatic gain control 2");
    QTest::newRow("with a NUL") << QByteArray("a\0b", 3) << QStringLiteral("a") + QChar(QChar::Null) + QLatin1Char('b');
    QTest::newRow("not UTF-8") << QByteArray("\xB5V") << QStringLiteral("\uFFFDV");
}

void RecentTextsTest::aTextThatIsRepeatedIsShared()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, text);
    RecentTexts texts(largeEnough);
    const QByteArray again(bytes.constData(), bytes.size()); // elsewhere in memory

    const QString first = read(texts, bytes);
    const QString second = read(texts, again);

    QCOMPARE(first, text);
    QCOMPARE(second, text);
    QVERIFY(areShared(first, second));
}

void RecentTextsTest::aTextThatIsNotSharedIsReadAsItIs_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");

    QTest::newRow("25 characters") << QByteArray("automatic gain control 10")
                                   << QStringLiteral("automatic gain control 10");
    QTest::newRow("beyond ASCII") << QByteArray("\xC2\xB5V") << QStringLiteral("\u00B5V");
    QTest::newRow("a byte order mark") << QByteArray("\xEF\xBB\xBF"
                                                     "dBm")
                                       << QStringLiteral("\uFEFFdBm");
}

void RecentTextsTest::aTextThatIsNotSharedIsReadAsItIs()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, text);
    RecentTexts texts(largeEnough);

    const QString first = read(texts, bytes);
    const QString second = read(texts, bytes);

    QCOMPARE(first, text);
    QCOMPARE(second, text);
    QVERIFY(!areShared(first, second));
}

void RecentTextsTest::textsThatDifferInOneByteAreReadAsTheyAre_data()
{
    QTest::addColumn<int>("size");

    for (int size = 1; size <= 24; ++size)
        QTest::addRow("%d", size) << size;
}

void RecentTextsTest::textsThatDifferInOneByteAreReadAsTheyAre()
{
    QFETCH(const int, size);
    RecentTexts texts(largeEnough);
    QVector<QByteArray> document(size + 1, QByteArray(size, 'a'));
    for (int i = 0; i < size; ++i)
        document[i][i] = 'b';

    for (int i = 0; i < size; ++i) {
        QCOMPARE(read(texts, document.last()), QString(size, QLatin1Char('a')));
        QCOMPARE(read(texts, document.at(i)), QString::fromLatin1(document.at(i)));
    }
}

void RecentTextsTest::aTextIsNotMistakenForTheBeginningOfAnother()
{
    RecentTexts texts(largeEnough);
    const QByteArray bytes("reference clock");

    for (int size = 0; size <= bytes.size(); ++size)
        QCOMPARE(texts.text(bytes.constData(), size), QStringLiteral("reference clock").left(size));
    QVERIFY(!texts.text(bytes.constData(), 0).isNull());
}

void RecentTextsTest::theTextsOfASmallDocumentAreReadAsTheyAre()
{
    RecentTexts texts(largeEnough - 1);
    const QByteArray bytes("dBm");

    const QString first = read(texts, bytes);
    const QString second = read(texts, bytes);

    QCOMPARE(first, QStringLiteral("dBm"));
    QCOMPARE(second, QStringLiteral("dBm"));
    QVERIFY(!areShared(first, second));
}

// Of a few letters, so that there are texts that occur again, before and after others have taken their place.
void RecentTextsTest::everyOneOfManyTextsIsReadAsItIs()
{
    constexpr quint32 seed = 20261122;
    std::mt19937 random(seed);
    RecentTexts texts(1'000'000);
    QByteArray document;
    for (int i = 0; i < 500'000; ++i)
        document += char('a' + random() % 3);

    int sharedCount = 0;
    QString previous;
    for (int i = 0; i < 100'000; ++i) {
        const int size = 1 + int(random() % 8);
        const int at = int(random() % unsigned(document.size() - size));
        const QString text = texts.text(document.constData() + at, size);
        if (text != QString::fromLatin1(document.constData() + at, size))
            QFAIL(qPrintable(QStringLiteral("text %1 is \"%2\"").arg(i).arg(text)));
        sharedCount += areShared(text, previous) ? 1 : 0;
        previous = text;
    }
    QVERIFY(sharedCount > 0);
}

void RecentTextsTest::repeatedTextsOfADocumentAreShared_data()
{
    QTest::addColumn<bool>("areRecords");

    QTest::newRow("XML") << false;
    QTest::newRow("records") << true;
}

void RecentTextsTest::repeatedTextsOfADocumentAreShared()
{
    QFETCH(const bool, areRecords);
    TunerProperties tuner;
    QVERIFY(documentWithRepeatedUnit().size() > largeEnough);
    QVERIFY(tuner.SetXmlString(documentWithRepeatedUnit(), true));
    if (areRecords) {
        const QByteArray records = tuner.GetBinaryRepresentationAsQByteArray();
        QVERIFY(records.size() > largeEnough);
        tuner = TunerProperties();
        QVERIFY(tuner.SetBinaryRepresentation(records));
    }

    QCOMPARE(unit(tuner, 1).Getid(), QStringLiteral("unit"));
    QCOMPARE(unit(tuner, 2).Getid(), QStringLiteral("unit"));
    QVERIFY(areShared(unit(tuner, 1).Getid(), unit(tuner, 2).Getid()));
    QCOMPARE(unit(tuner, 1).Getvalue(), QStringLiteral("dBm"));
    QVERIFY(areShared(unit(tuner, 1).Getvalue(), unit(tuner, 2).Getvalue()));
}

TEST_SUITE_WITHOUT_APPLICATION(RecentTextsTest)
#include "tst_RecentTexts.moc"
