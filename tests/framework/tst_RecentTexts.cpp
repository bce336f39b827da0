// SPDX-License-Identifier: MIT
#include <QBuffer>
#include <QDataStream>
#include <QHash>
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

/// Where texts are read from.
enum class Way { Attributes, Elements, Representation, Buffer };

/// A document of one component with 100 nodes, each with the string value `unit`.
QString documentWithRepeatedUnit(Way way)
{
    QByteArray xml = "<TunerProperties Version=\"1.1\" name=\"a\" type=\"Receiver\" baseresource=\"b\" quantity=\"1\""
                     " hwProcessing=\"true\"><Component type=\"Generic\" name=\"c\" optional=\"false\">";
    for (int i = 0; i < 100; ++i) {
        xml += "<Node id=\"node " + QByteArray::number(i) + "\"><ValueItem>";
        xml += way == Way::Elements ? "<ValueString><id>unit</id><value>dBm</value></ValueString>"
                                    : "<ValueString id=\"unit\" value=\"dBm\"/>";
        xml += "</ValueItem></Node>";
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
    void theTextsOfASmallRecordInALargeBufferAreReadAsTheyAre();
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

// Of three letters, so that most texts occur again: soon, or when others have taken their place.
void RecentTextsTest::everyOneOfManyTextsIsReadAsItIs()
{
    constexpr quint32 seed = 20261122;
    std::mt19937 random(seed);
    RecentTexts texts(1'000'000);
    QByteArray document;
    for (int i = 0; i < 500'000; ++i)
        document += char('a' + random() % 3);

    QHash<QString, QString> last;
    int shared = 0;
    int displaced = 0;
    for (int i = 0; i < 100'000; ++i) {
        const int size = 1 + int(random() % 8);
        const int at = int(random() % unsigned(document.size() - size));
        const QString expected = QString::fromLatin1(document.constData() + at, size);
        const QString text = texts.text(document.constData() + at, size);
        if (text != expected)
            QFAIL(qPrintable(
                QStringLiteral("text %1 is \"%2\" instead of \"%3\"").arg(QString::number(i), text, expected)));
        if (last.contains(expected))
            ++(areShared(text, last.value(expected)) ? shared : displaced);
        last.insert(expected, text);
    }
    QVERIFY2(shared > 1000, QByteArray::number(shared).constData());
    QVERIFY2(displaced > 1000, QByteArray::number(displaced).constData());
}

void RecentTextsTest::repeatedTextsOfADocumentAreShared_data()
{
    QTest::addColumn<int>("way");

    QTest::newRow("attributes of XML") << int(Way::Attributes);
    QTest::newRow("elements of XML") << int(Way::Elements);
    QTest::newRow("a representation") << int(Way::Representation);
    QTest::newRow("records in a buffer") << int(Way::Buffer);
}

void RecentTextsTest::repeatedTextsOfADocumentAreShared()
{
    QFETCH(const int, way);
    TunerProperties tuner;
    QVERIFY(documentWithRepeatedUnit(Way(way)).size() > largeEnough);
    QVERIFY(tuner.SetXmlString(documentWithRepeatedUnit(Way(way)), true));
    if (way == int(Way::Representation) || way == int(Way::Buffer)) {
        QByteArray records = tuner.GetBinaryRepresentationAsQByteArray();
        QVERIFY(records.size() > largeEnough);
        tuner = TunerProperties();
        if (way == int(Way::Representation)) {
            QVERIFY(tuner.SetBinaryRepresentation(records));
        } else {
            QBuffer buffer(&records);
            QVERIFY(buffer.open(QIODevice::ReadOnly));
            QDataStream stream(&buffer);
            quint32 identifier = 0;
            qint32 length = 0;
            stream >> identifier >> length;
            tuner.SetBinary(stream, length);
        }
    }

    QCOMPARE(unit(tuner, 1).Getid(), QStringLiteral("unit"));
    QCOMPARE(unit(tuner, 2).Getid(), QStringLiteral("unit"));
    QVERIFY(areShared(unit(tuner, 1).Getid(), unit(tuner, 2).Getid()));
    QCOMPARE(unit(tuner, 1).Getvalue(), QStringLiteral("dBm"));
    QVERIFY(areShared(unit(tuner, 1).Getvalue(), unit(tuner, 2).Getvalue()));
}

// A table of the size of the buffer, for each of the records, would take longer than reading it.
void RecentTextsTest::theTextsOfASmallRecordInALargeBufferAreReadAsTheyAre()
{
    TunerProperties tuner;
    QVERIFY(tuner.SetXmlString(documentWithRepeatedUnit(Way::Buffer), true));
    const QVector<Node> nodes = std::as_const(tuner).GetComponent().at(0).GetNode();
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::ReadWrite));
    QDataStream stream(&buffer);
    Component few;
    few.SetNode({nodes.at(0), nodes.at(1)});
    few.Settype(QStringLiteral("t"));
    few.Setname(QStringLiteral("n"));
    few.Setoptional(false);
    QVERIFY(few.GetBinary(stream, 1, true));
    QVERIFY(tuner.GetComponent()[0].GetBinary(stream, 1, true));
    QVERIFY(buffer.size() > largeEnough);
    QVERIFY(buffer.seek(0));

    quint32 tag = 0;
    qint32 length = 0;
    stream >> tag >> length;
    QVERIFY(length < largeEnough);
    Component read;
    read.SetBinary(stream, length);

    const auto id = [&](int node) {
        return std::as_const(read).GetNode().at(node).GetValueItem().at(0).GetValueString().Getid();
    };
    QCOMPARE(id(0), QStringLiteral("unit"));
    QCOMPARE(id(1), QStringLiteral("unit"));
    QVERIFY(!areShared(id(0), id(1)));
}

TEST_SUITE_WITHOUT_APPLICATION(RecentTextsTest)
#include "tst_RecentTexts.moc"
