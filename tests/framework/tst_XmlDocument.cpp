// SPDX-License-Identifier: MIT
#include <QTemporaryDir>
#include <QtTest>

#include "Documents.h"
#include "ExceptionText.h"
#include "Model.h"
#include "interop/Generator.h"

using namespace JobXml;

namespace {

/// For objects of derived classes the library calls GetXml(), because it does not know their content.
template <class T>
class ByWriter : public T
{
public:
    explicit ByWriter(const T &object)
    {
        static_cast<T &>(*this) = object;
        this->SetValidate(object.GetValidate());
    }
};

/// Every visible result of writing a document.
struct Outcome
{
    QString text;
    QString error;
    QString thrown;

    bool operator==(const Outcome &other) const
    {
        return text == other.text && text.isNull() == other.text.isNull() && error == other.error
            && thrown == other.thrown;
    }
};

template <class T>
Outcome outcomeOf(T &object)
{
    Outcome outcome;
    outcome.thrown = thrownBy([&] { outcome.text = object.GetXmlString(); });
    outcome.error = object.GetErrorString();
    return outcome;
}

template <class T>
bool isWrittenTheSameWay(T object)
{
    ByWriter<T> byWriter(object);
    const Outcome direct = outcomeOf(object);
    const Outcome written = outcomeOf(byWriter);
    if (direct == written)
        return true;
    qWarning() << direct.text << direct.error << direct.thrown << "is not" << written.text << written.error
               << written.thrown;
    return false;
}

/// Whether the text is, in an element and in an attribute.
bool isWrittenTheSameWay(const QString &text)
{
    BandwidthSelection selection;
    selection.SetName(text);
    selection.SetMaxBandwidth(0.125);
    StringItem item;
    item.Setvalue(text);
    return isWrittenTheSameWay(selection) && isWrittenTheSameWay(item);
}

template <class T>
void checkRandomObjects()
{
    for (const bool validate : {true, false}) {
        for (int seed = 0; seed < 60; ++seed) {
            T object;
            object.SetValidate(validate);
            build(object, QByteArray("document ") + QByteArray::number(seed));
            QVERIFY2(isWrittenTheSameWay(object), QByteArray::number(seed).constData());
            object.SetValidate(!validate);
            QVERIFY2(isWrittenTheSameWay(object), QByteArray::number(seed).constData());
        }
        T empty;
        empty.SetValidate(validate);
        QVERIFY(isWrittenTheSameWay(empty));
    }
}

} // namespace

/// GetXmlString() and SaveXml() do not use QXmlStreamWriter, but write the same bytes.
class XmlDocumentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDocumentIsIndentedAndEndsWithItsLine();
    void objectsOfEveryClassAreWrittenAsByTheWriter();
    void everyCharacterIsWrittenAsByTheWriter();
    void neighboringCharactersAreWrittenAsByTheWriter_data();
    void neighboringCharactersAreWrittenAsByTheWriter();
    void fileContainsTheSameBytes();
    void overriddenGetXmlIsCalled();
    void rejectedTextInTheMiddleOfADocumentIsReportedWithItsLine();
};

void XmlDocumentTest::aDocumentIsIndentedAndEndsWithItsLine()
{
    BandwidthSelection selection;
    selection.SetName(QStringLiteral("1 < 2 & \"3\" > 2\t\r\n'\u00E4\u20AC\U0001F4E1"));
    selection.SetMaxBandwidth(-0.125);
    QCOMPARE(selection.GetXmlString(),
             QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                            "<BandwidthSelection>\n"
                            "  <Name>1 &lt; 2 &amp; &quot;3&quot; &gt; 2\t&#13;\n'\u00E4\u20AC\U0001F4E1</Name>\n"
                            "  <MaxBandwidth>-0.13</MaxBandwidth>\n"
                            "</BandwidthSelection>\n"));
    StringItem item;
    item.Setvalue(QStringLiteral("1 < 2 & \"3\" > 2\t\r\n'\u00E4\u20AC\U0001F4E1"));
    QCOMPARE(item.GetXmlString(),
             QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                            "<StringItem value=\"1 &lt; 2 &amp; &quot;3&quot; &gt; 2&#9;&#13;&#10;'"
                            "\u00E4\u20AC\U0001F4E1\"/>\n"));
}

void XmlDocumentTest::objectsOfEveryClassAreWrittenAsByTheWriter()
{
    Classes::forEach([&](auto tag) { checkRandomObjects<typename decltype(tag)::Class>(); });
}

void XmlDocumentTest::everyCharacterIsWrittenAsByTheWriter()
{
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        QVERIFY2(isWrittenTheSameWay(QString(QChar(ushort(unit)))), QByteArray::number(unit, 16).constData());
    }
}

void XmlDocumentTest::neighboringCharactersAreWrittenAsByTheWriter_data()
{
    QTest::addColumn<QString>("odd");
    QTest::newRow("a pair") << QStringLiteral("\U0001F4E1");
    QTest::newRow("the last pair") << QStringLiteral("\U0010FFFF");
    QTest::newRow("the second half first") << QString(QChar(0xDCE1)) + QChar(0xD83D);
    QTest::newRow("a first half") << QString(QChar(0xD83D));
    QTest::newRow("two first halves and a second") << QString(QChar(0xD83D)) + QStringLiteral("\U0001F4E1");
    QTest::newRow("a byte order mark") << QString(QChar(0xFEFF));
    QTest::newRow("two byte order marks") << QString(2, QChar(0xFEFF));
    QTest::newRow("no character") << QString(QChar(0xFFFE));
    QTest::newRow("NUL") << QString(QChar(0));
    QTest::newRow("a control character") << QString(QChar(0x1B));
    QTest::newRow("a line of Windows") << QStringLiteral("\r\n");
    QTest::newRow("what must be escaped") << QStringLiteral("<&>\"'");
    QTest::newRow("the end of a section") << QStringLiteral("]]>");
    QTest::newRow("a reference") << QStringLiteral("&#13;");
    QTest::newRow("umlauts") << QStringLiteral("\u00E4\u00F6\u00FC");
}

void XmlDocumentTest::neighboringCharactersAreWrittenAsByTheWriter()
{
    QFETCH(QString, odd);
    for (int before = 0; before < 20; ++before) {
        for (int after = 0; after < 20; ++after) {
            const QString text = QString(before, QLatin1Char('b')) + odd + QString(after, QLatin1Char('a'));
            QVERIFY(isWrittenTheSameWay(text));
            QVERIFY(isWrittenTheSameWay(text + odd));
            QVERIFY(isWrittenTheSameWay(text + QChar(0xE4)));
        }
    }
}

void XmlDocumentTest::fileContainsTheSameBytes()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const auto saved = [&](const REPORTGENERATOR::IRGObject &object) {
        QFile file(folder.filePath(QStringLiteral("saved.xml")));
        return object.SaveXml(file.fileName()) && file.open(QIODevice::ReadOnly) ? file.readAll()
                                                                                 : QByteArray("nothing");
    };
    TunerProperties document = aDocument(50);
    document.Setname(QStringLiteral("\u00B5V \U0001F4E1 \r"));
    const QByteArray bytes = saved(document);
    QVERIFY(bytes.contains("name=\"\xC2\xB5V \xF0\x9F\x93\xA1 &#13;\""));
    QCOMPARE(bytes, saved(ByWriter<TunerProperties>(document)));
    QCOMPARE(QString::fromUtf8(bytes), document.GetXmlString());
}

void XmlDocumentTest::overriddenGetXmlIsCalled()
{
    class Note : public StringItem
    {
    public:
        void GetXml(QXmlStreamWriter &writer) const override { writer.writeTextElement(GetObjectName(), Getvalue()); }
    };
    Note note;
    note.Setvalue(QStringLiteral("text"));
    QCOMPARE(note.GetXmlString(),
             QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<StringItem>text</StringItem>\n"));
}

void XmlDocumentTest::rejectedTextInTheMiddleOfADocumentIsReportedWithItsLine()
{
    TunerProperties document = aDocument(2);
    document.GetComponent()[0].GetNode()[1].Setid(QString(QChar(0x0B)));
    QVERIFY(document.GetXmlString().isNull());
    const QString error = document.GetErrorString();
    QVERIFY2(error.startsWith(QStringLiteral("XML text: ")), qPrintable(error));
    QVERIFY2(error.contains(QStringLiteral("line 16")), qPrintable(error));
    QVERIFY(isWrittenTheSameWay(document));
}

TEST_SUITE(XmlDocumentTest)
#include "tst_XmlDocument.moc"
