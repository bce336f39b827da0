// SPDX-License-Identifier: MIT
#include <QtTest>

#include <ExceptionText.h>

#include "Note.h"

namespace {

/// The result of reading a text into a new note: the exception, the error string, or a null string.
QString readInto(Note &note, const QString &xml)
{
    bool read = false;
    const QString thrown = thrownBy([&] { read = note.SetXmlString(xml, true); });
    if (!thrown.isNull())
        return thrown;
    if (read != note.GetErrorString().isNull())
        return QStringLiteral("result and error string disagree");
    return note.GetErrorString();
}

/// Writes everything that an element can contain besides texts, each with a carriage return.
class Medley : public Note
{
public:
    using Part = void (*)(QXmlStreamWriter &writer);
    explicit Medley(Part part) : m_part(part) { }

    void GetXml(QXmlStreamWriter &writer) const override
    {
        writer.setAutoFormatting(false);
        writer.writeStartElement(QStringLiteral("Note"));
        m_part(writer);
        writer.writeEndElement();
    }

private:
    const Part m_part;
};

} // namespace

Q_DECLARE_METATYPE(Medley::Part)

class IRGObjectXmlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLoopReportsEveryChildElementAndNothingElse();
    void readerAtItsEndStaysUnchanged();
    void theLoopEndsAtTheElementsOwnEnd();
    void theLoopGoesIntoAnElementThatWasNotRead();
    void anElementOfTheOwnNameInsideOneThatWasNotReadEndsTheLoop();
    void loopEndsAtTheEndOfATruncatedDocument();
    void theLoopEndsOnADeviceThatStopsDelivering();
    void textOfAnElementIsReturned_data();
    void textOfAnElementIsReturned();
    void textOfATruncatedElementIsItsBeginning();
    void textIsReadWithThePassedFlag();
    void nothingIsResetBeforeReading();
    void malformedDocumentsAreRefusedWithTheirReason_data();
    void malformedDocumentsAreRefusedWithTheirReason();
    void anotherRootIsNotRead();
    void anExceptionOfTheModelPasses();
    void exceptionInATruncatedDocumentIsReportedAsTruncation();
    void errorStringDescribesOnlyTheLastOperation();
    void aWholeDocumentIsWritten();
    void anObjectWithoutDataWritesNothing();
    void anExceptionWhileWritingPasses();
    void documentsThatReadersTreatDifferentlyAreRefused_data();
    void documentsThatReadersTreatDifferentlyAreRefused();
    void textMayDeclareAnyKnownEncoding();
    void aTextIsReadBackAsItWasWritten_data();
    void aTextIsReadBackAsItWasWritten();
    void aTextThatXmlCannotCarryIsNotWritten_data();
    void aTextThatXmlCannotCarryIsNotWritten();
    void theFirstLineOfSeveralIsReported_data();
    void theFirstLineOfSeveralIsReported();
    void onlyTextsAndAttributeValuesEscapeCarriageReturns_data();
    void onlyTextsAndAttributeValuesEscapeCarriageReturns();
};

void IRGObjectXmlTest::onlyTextsAndAttributeValuesEscapeCarriageReturns_data()
{
    QTest::addColumn<Medley::Part>("part");
    QTest::addColumn<QString>("element");
    const auto row = [](const char *name, Medley::Part part, const char *element) {
        QTest::newRow(name) << part << QString::fromLatin1(element);
    };
    row(
        "text", [](QXmlStreamWriter &w) { w.writeCharacters(QStringLiteral("a\rb>c")); }, "<Note>a&#13;b&gt;c</Note>");
    row(
        "attribute", [](QXmlStreamWriter &w) { w.writeAttribute(QStringLiteral("x"), QStringLiteral("a\r>'\"b")); },
        "<Note x=\"a&#13;&gt;'&quot;b\"/>");
    row(
        "comment", [](QXmlStreamWriter &w) { w.writeComment(QStringLiteral("a\r->'<b")); },
        "<Note><!--a\r->'<b--></Note>");
    row(
        "processing instruction",
        [](QXmlStreamWriter &w) { w.writeProcessingInstruction(QStringLiteral("p"), QStringLiteral("a\r>'b")); },
        "<Note><?p a\r>'b?></Note>");
    row(
        "CDATA section", [](QXmlStreamWriter &w) { w.writeCDATA(QStringLiteral("a\r]]'>b")); },
        "<Note><![CDATA[a\r]]'>b]]></Note>");
    row(
        "CDATA section with its own end", [](QXmlStreamWriter &w) { w.writeCDATA(QStringLiteral("a]]>\rb")); },
        "<Note><![CDATA[a]]]]><![CDATA[>\rb]]></Note>");
    row(
        "texts around a comment",
        [](QXmlStreamWriter &w) {
            w.writeCharacters(QStringLiteral("\r"));
            w.writeComment(QStringLiteral("\r"));
            w.writeCharacters(QStringLiteral("\r\n"));
        },
        "<Note>&#13;<!--\r-->&#13;\n</Note>");
    row(
        "a document type before the root",
        [](QXmlStreamWriter &w) {
            w.writeDTD(QStringLiteral("<!DOCTYPE Note [<!ENTITY e \"\r>\"> <!-- ]\r> -->\r]>"));
            w.writeCharacters(QStringLiteral("\r"));
        },
        "<Note><!DOCTYPE Note [<!ENTITY e \"\r>\"> <!-- ]\r> -->\r]>&#13;</Note>");
}

void IRGObjectXmlTest::onlyTextsAndAttributeValuesEscapeCarriageReturns()
{
    QFETCH(Medley::Part, part);
    QFETCH(QString, element);
    Medley medley(part);
    QCOMPARE(medley.GetXmlString(),
             QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>") + element + QLatin1Char('\n'));
}

void IRGObjectXmlTest::theLoopReportsEveryChildElementAndNothingElse()
{
    Note note;
    QCOMPARE(
        readInto(note,
                 QStringLiteral("<?xml version=\"1.0\"?><!-- a --><?p i?>\n<Note title='t'>\n one <a/><!-- b -->"
                                "<?p i?>two<b><c/></b><![CDATA[<no/>]]><text>x</text>&amp;three</Note>\n<!-- c -->")),
        QString());
    QCOMPARE(note.metElements, QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("text")}));
    QCOMPARE(note.text, QStringLiteral("x"));
    QCOMPARE(note.title, QStringLiteral("t"));
}

void IRGObjectXmlTest::readerAtItsEndStaysUnchanged()
{
    QXmlStreamReader reader(QStringLiteral("<Note/>"));
    while (!reader.atEnd())
        reader.readNext();
    Note note;
    note.ProcessXml(reader);
    QCOMPARE(reader.tokenType(), QXmlStreamReader::EndDocument);
    QVERIFY(!reader.hasError());

    QXmlStreamReader truncated(QStringLiteral("<Note><a/>"));
    while (truncated.readNext() != QXmlStreamReader::Invalid) { }
    truncated.addData(QStringLiteral("<b/></Note>")); // it could continue, but its error remains
    note.ProcessXml(truncated);
    QCOMPARE(note.metElements, QStringList());
}

void IRGObjectXmlTest::theLoopEndsAtTheElementsOwnEnd()
{
    QXmlStreamReader reader(QStringLiteral("<All><Note><a/></Note><b/></All>"));
    QVERIFY(reader.readNextStartElement());
    QVERIFY(reader.readNextStartElement());
    Note note;
    note.ProcessXml(reader);
    QVERIFY(reader.isEndElement());
    QCOMPARE(reader.name().toString(), QStringLiteral("Note"));
    QCOMPARE(note.metElements, QStringList({QStringLiteral("a")}));
    QVERIFY(reader.readNextStartElement());
    QCOMPARE(reader.name().toString(), QStringLiteral("b"));
}

void IRGObjectXmlTest::theLoopGoesIntoAnElementThatWasNotRead()
{
    Note note;
    note.readsChildren = false;
    QCOMPARE(readInto(note, QStringLiteral("<Note><a><b>x</b></a><c/></Note>")), QString());
    QCOMPARE(note.metElements, QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
}

void IRGObjectXmlTest::anElementOfTheOwnNameInsideOneThatWasNotReadEndsTheLoop()
{
    const QString xml = QStringLiteral("<Note><a><Note/></a><b/></Note>");
    Note leaving;
    leaving.readsChildren = false;
    QCOMPARE(readInto(leaving, xml), QString()); // the document itself is complete
    QCOMPARE(leaving.metElements, QStringList({QStringLiteral("a"), QStringLiteral("Note")}));

    Note reading;
    QCOMPARE(readInto(reading, xml), QString());
    QCOMPARE(reading.metElements, QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

void IRGObjectXmlTest::loopEndsAtTheEndOfATruncatedDocument()
{
    QXmlStreamReader reader(QStringLiteral("<Note><a/><b>"));
    QVERIFY(reader.readNextStartElement());
    Note note;
    note.ProcessXml(reader);
    QVERIFY(reader.hasError());
    QCOMPARE(note.metElements, QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

/// Has 10,000 bytes more than it delivers.
class StuckBuffer : public QBuffer
{
public:
    qint64 size() const override { return QBuffer::size() + 10000; }
    bool atEnd() const override { return false; }
};

void IRGObjectXmlTest::theLoopEndsOnADeviceThatStopsDelivering()
{
    StuckBuffer device;
    device.setData("<Note><a/>");
    QVERIFY(device.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&device);
    QVERIFY(reader.readNextStartElement());
    Note note;
    note.ProcessXml(reader);
    QVERIFY(reader.hasError());
    QVERIFY(!reader.atEnd()); // so this does not show it
    QCOMPARE(note.metElements, QStringList({QStringLiteral("a")}));
}

void IRGObjectXmlTest::textOfAnElementIsReturned_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << QStringLiteral("ab c") << QStringLiteral("ab c");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("blanks and lines stay") << QStringLiteral(" a\n b ") << QStringLiteral(" a\n b ");
    QTest::newRow("entities") << QStringLiteral("&lt;&amp;&#228;&#x20AC;&gt;") << QStringLiteral("<&ä€>");
    QTest::newRow("CDATA") << QStringLiteral("a<![CDATA[<b>&amp;]]>c") << QStringLiteral("a<b>&amp;c");
    QTest::newRow("comment and instruction") << QStringLiteral("a<!-- b --><?c d?>e") << QStringLiteral("ae");
    QTest::newRow("nested text is left out") << QStringLiteral("a<x>b<y>c</y>d</x>e<z/>f") << QStringLiteral("aef");
    QTest::newRow("nested element of the same name") << QStringLiteral("a<text>b</text>c") << QStringLiteral("ac");
}

void IRGObjectXmlTest::textOfAnElementIsReturned()
{
    QFETCH(QString, content);
    QFETCH(QString, text);
    QXmlStreamReader reader(QStringLiteral("<Note><text>") + content + QStringLiteral("</text><b/></Note>"));
    QVERIFY(reader.readNextStartElement());
    QVERIFY(reader.readNextStartElement());
    QCOMPARE(Note().GetTextValue(reader), text);
    QVERIFY(reader.isEndElement());
    QCOMPARE(reader.name().toString(), QStringLiteral("text"));
    QCOMPARE(reader.readNext(), QXmlStreamReader::StartElement);
    QCOMPARE(reader.name().toString(), QStringLiteral("b"));
}

void IRGObjectXmlTest::textOfATruncatedElementIsItsBeginning()
{
    Note note;
    QCOMPARE(readInto(note, QStringLiteral("<Note><text>half a <b>sen")),
             QStringLiteral("XML text:1:25: Premature end of document."));
    QCOMPARE(note.text, QStringLiteral("half a "));
}

void IRGObjectXmlTest::textIsReadWithThePassedFlag()
{
    Note note;
    QVERIFY(note.SetXmlString(QStringLiteral("<Note/>"), false));
    QVERIFY(!note.GetValidate());
    QVERIFY(!note.SetXmlString(QStringLiteral("<Not"), true));
    QVERIFY(note.GetValidate());
}

void IRGObjectXmlTest::nothingIsResetBeforeReading()
{
    Note note(QStringLiteral("old"));
    QCOMPARE(readInto(note, QStringLiteral("<Note title='new'/>")), QString());
    QCOMPARE(note.text, QStringLiteral("old"));
    QCOMPARE(note.title, QStringLiteral("new"));
}

void IRGObjectXmlTest::malformedDocumentsAreRefusedWithTheirReason_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const char *xml, const char *error) {
        QTest::newRow(name) << QString::fromUtf8(xml) << QStringLiteral("XML text:") + QString::fromUtf8(error);
    };
    row("nothing", "", "1:1: Premature end of document.");
    row("only blanks", " \n ", "2:1: Premature end of document.");
    row("no XML", "note", "1:1: Start tag expected.");
    row("cut in the root's tag", "<Note title='", "1:13: Premature end of document.");
    row("cut after the root's tag", "<Note>\n", "2:1: Premature end of document.");
    row("tags that do not match", "<Note>\n  <b>\n</a></Note>", "3:4: Opening and ending tag mismatch.");
    row("a bare less-than", "<Note>\n\n\xc3\xa4\xc3\xa4<<", "3:4: Unexpected '<'.");
    row("an attribute twice", "<Note a='1'\n a='2'/>", "2:8: Attribute 'a' redefined.");
    row("an unknown entity", "<Note>&who;</Note>", "1:11: Entity 'who' not declared.");
    row("a forbidden character", "<Note>&#1;</Note>", "1:10: Invalid character reference.");
    row("text after the root", "<Note/>x", "1:8: Extra content at end of document.");
    row("a second root", "<Note/>\n<Note/>", "2:7: Extra content at end of document.");
    row("another root", "<!-- -->\n<Node><Note/></Node>", "2:6: the root element is 'Node', not 'Note'");
    row("a root that differs in case", "<note/>", "1:7: the root element is 'note', not 'Note'");
}

void IRGObjectXmlTest::malformedDocumentsAreRefusedWithTheirReason()
{
    QFETCH(QString, xml);
    QFETCH(QString, error);
    Note note;
    QCOMPARE(readInto(note, xml), error);
}

void IRGObjectXmlTest::anotherRootIsNotRead()
{
    Note note;
    QVERIFY(!note.SetXmlString(QStringLiteral("<Node title='t'><text>x</text></Node>"), true));
    QCOMPARE(note.readCalls, 0);
}

void IRGObjectXmlTest::anExceptionOfTheModelPasses()
{
    Note note;
    QCOMPARE(readInto(note, QStringLiteral("<Note><text>kept</text><bad/></Note>")),
             QStringLiteral("InvalidXmlException: Note: a bad child"));
    QVERIFY(note.GetErrorString().isNull());
    QCOMPARE(note.text, QStringLiteral("kept"));

    // The document is also malformed, but this has not been detected yet.
    QCOMPARE(readInto(note, QStringLiteral("<Note><bad/></Not>")),
             QStringLiteral("InvalidXmlException: Note: a bad child"));
}

void IRGObjectXmlTest::exceptionInATruncatedDocumentIsReportedAsTruncation()
{
    Note note;
    QCOMPARE(readInto(note, QStringLiteral("<Note><whole>all of it</whole></Note>")), QString());
    QCOMPARE(readInto(note, QStringLiteral("<Note><whole>all o</whole></Note>")),
             QStringLiteral("InvalidXmlException: Note: half a whole"));
    QCOMPARE(readInto(note, QStringLiteral("<Note>\n<whole>all o")),
             QStringLiteral("XML text:2:12: Premature end of document."));
}

void IRGObjectXmlTest::errorStringDescribesOnlyTheLastOperation()
{
    Note note;
    QVERIFY(!note.SetXmlString(QStringLiteral("<Note"), true));
    QVERIFY(!note.GetErrorString().isNull());
    QVERIFY(note.SetXmlString(QStringLiteral("<Note/>"), true));
    QVERIFY(note.GetErrorString().isNull());
    QVERIFY(!note.SetXmlString(QStringLiteral("<Note"), true));
    QCOMPARE(thrownBy([&] { return note.SetXmlString(QStringLiteral("<Note><bad/></Note>"), true); }),
             QStringLiteral("InvalidXmlException: Note: a bad child"));
    QVERIFY(note.GetErrorString().isNull());
}

void IRGObjectXmlTest::aWholeDocumentIsWritten()
{
    Note note(QStringLiteral("Größe < 3 € & \"mehr\""));
    note.title = QStringLiteral("a\"b\n");
    QCOMPARE(note.GetXmlString(),
             QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                            "<Note title=\"a&quot;b&#10;\">\n"
                            "  <text>Größe &lt; 3 € &amp; &quot;mehr&quot;</text>\n"
                            "</Note>\n"));
}

void IRGObjectXmlTest::anObjectWithoutDataWritesNothing()
{
    Note note;
    QVERIFY(note.GetXmlString().isNull());
    QVERIFY(note.GetErrorString().isNull());
    note.SetValidate(false);
    QCOMPARE(note.GetXmlString(),
             QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                            "<Note>\n  <text></text>\n</Note>\n"));
}

void IRGObjectXmlTest::anExceptionWhileWritingPasses()
{
    Note note(QStringLiteral("half"));
    QCOMPARE(thrownBy([&] { return note.GetXmlString(); }),
             QStringLiteral("IncompleteDefinitionException: Note: half a note"));
}

void IRGObjectXmlTest::documentsThatReadersTreatDifferentlyAreRefused_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QString &xml, const char *error) {
        QTest::newRow(name) << xml << QStringLiteral("XML text:") + QString::fromUtf8(error);
    };
    const QString begin = QStringLiteral("<Note>\n<text>a");
    const QString end = QStringLiteral("</text></Note>");
    row("U+0000", begin + QChar(0) + end, "2:7: Invalid XML character.");
    row("U+0000 at the end", begin + end + QChar(0), "2:21: Invalid XML character.");
    row("first half of a pair", begin + QChar(0xD83D) + end, "2:7: Invalid XML character.");
    row("second half of a pair", begin + QChar(0xDCE1) + end, "2:7: Invalid XML character.");
    row("halves in the wrong order", begin + QChar(0xDCE1) + QChar(0xD83D) + end, "2:7: Invalid XML character.");
    row("half of a pair at the end", begin + end + QChar(0xD83D), "2:21: Invalid XML character.");
    row("a document type after the root", begin + end + QStringLiteral("<!DOCTYPE a>"),
        "2:23: a document has one document type at most, before its root element");
    row("two document types", QStringLiteral("<!DOCTYPE Note><!DOCTYPE Note>") + begin + end,
        "1:17: a document has one document type at most, before its root element");
    row("a long name", QStringLiteral("<Note><") + QString(4096, QLatin1Char('n')) + QStringLiteral("/></Note>"),
        "1:4102: a name has more than 4095 characters");
    row("a long end tag", begin + QStringLiteral("</") + QString(4096, QLatin1Char('n')) + QLatin1Char('>'),
        "2:4104: a name has more than 4095 characters");
    row("an unknown encoding", QStringLiteral("<?xml version='1.0' encoding='klingon'?>") + begin + end,
        "1:39: the encoding 'klingon' is not supported, only UTF-8, UTF-16, UTF-32, US-ASCII, ISO-8859-1, "
        "ISO-8859-15 and windows-1252");
}

void IRGObjectXmlTest::documentsThatReadersTreatDifferentlyAreRefused()
{
    QFETCH(const QString, xml);
    QFETCH(const QString, error);
    Note note;
    QCOMPARE(note.SetXmlString(xml, false), false);
    QCOMPARE(note.GetErrorString(), error);
}

void IRGObjectXmlTest::textMayDeclareAnyKnownEncoding()
{
    for (const char *name : {"UTF-8", "utf8", "UTF-16", "UTF-16BE", "UTF-32LE", "ISO-8859-1", "latin1", "ISO-8859-15",
                             "windows-1252", "US-ASCII"}) {
        Note note;
        const QString xml = QStringLiteral("<?xml version='1.0' encoding='%1' standalone='yes'?><Note>"
                                           "<text>\u00E4\u20AC\U0001F4E1</text></Note>");
        QVERIFY2(note.SetXmlString(xml.arg(QLatin1String(name)), true), qPrintable(note.GetErrorString()));
        QCOMPARE(note.text, QStringLiteral("\u00E4\u20AC\U0001F4E1"));
    }
}

void IRGObjectXmlTest::aTextIsReadBackAsItWasWritten_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("markup") << QStringLiteral("<a b='c'>&amp;\"]]>");
    QTest::newRow("white space") << QStringLiteral(" a\tb\nc ");
    QTest::newRow("carriage returns") << QStringLiteral("a\rb\r\nc\r");
    QTest::newRow("a surrogate pair") << QString::fromUtf8("\xf0\x9f\x93\xa1");
    QTest::newRow("the last characters") << QString::fromUtf8(
        "\x7f\xc2\x85\xe2\x80\xa8\xef\xb7\x90\xef\xbf\xbd\xf4\x8f\xbf\xbf");
}

void IRGObjectXmlTest::aTextIsReadBackAsItWasWritten()
{
    QFETCH(QString, text);
    Note note(text);
    note.title = text;
    Note other;
    QCOMPARE(readInto(other, note.GetXmlString()), QString());
    QCOMPARE(other.text, text);
    QCOMPARE(other.title, text);
}

void IRGObjectXmlTest::aTextThatXmlCannotCarryIsNotWritten_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("NUL") << QStringLiteral("a") + QChar(0) + QStringLiteral("b");
    QTest::newRow("a control character") << QStringLiteral("\x01");
    QTest::newRow("the last control character") << QStringLiteral("a\x1f");
    QTest::newRow("vertical tab") << QStringLiteral("\vb");
    QTest::newRow("form feed") << QStringLiteral("a\fb");
    QTest::newRow("U+FFFE") << QStringLiteral("a") + QChar(0xFFFE);
    QTest::newRow("U+FFFF") << QStringLiteral("a") + QChar(0xFFFF);
    QTest::newRow("half a pair, then text") << QStringLiteral("a") + QChar(0xD83D) + QStringLiteral("b");
    QTest::newRow("half a pair at the end") << QStringLiteral("a") + QChar(0xD83D);
    QTest::newRow("a second half alone") << QStringLiteral("a") + QChar(0xDCE1);
    QTest::newRow("nothing but a second half") << QString(QChar(0xDCE1));
    QTest::newRow("half a pair after lines") << QStringLiteral("a\n\nb") + QChar(0xD83D);
    QTest::newRow("a control character after lines") << QStringLiteral("a\n\nb\x01");
    QTest::newRow("half a pair after a pair") << QStringLiteral("\U0001F4E1>\"") + QChar(0xD83D);
}

void IRGObjectXmlTest::aTextThatXmlCannotCarryIsNotWritten()
{
    QFETCH(QString, text);
    const QString error =
        QStringLiteral("XML text: a text in or just above line %1 of the document contains a character that XML cannot "
                       "carry (a control character, U+FFFE, U+FFFF or half a surrogate pair)");
    Note note(text);
    QVERIFY(note.GetXmlString().isNull());
    QCOMPARE(note.GetErrorString(), error.arg(3));

    Note titled(QStringLiteral("fine"));
    titled.title = text;
    QVERIFY(titled.GetXmlString().isNull());
    QCOMPARE(titled.GetErrorString(), error.arg(2));

    titled.writesOnlyTheTitle = true; // nothing follows it
    QVERIFY(titled.GetXmlString().isNull());
    QCOMPARE(titled.GetErrorString(), error.arg(2));
}

void IRGObjectXmlTest::theFirstLineOfSeveralIsReported_data()
{
    QTest::addColumn<Medley::Part>("part");
    QTest::addColumn<int>("line");
    QTest::newRow("a control character, then half a pair") << Medley::Part([](QXmlStreamWriter &w) {
        w.writeCharacters(QStringLiteral("\n"));
        w.writeTextElement(QStringLiteral("a"), QStringLiteral("\x01"));
        w.writeCharacters(QStringLiteral("\n\n"));
        w.writeTextElement(QStringLiteral("b"), QString(QChar(0xD83D)));
    }) << 2;
    QTest::newRow("half a pair, then a control character") << Medley::Part([](QXmlStreamWriter &w) {
        w.writeCharacters(QStringLiteral("\n"));
        w.writeTextElement(QStringLiteral("a"), QString(QChar(0xD83D)));
        w.writeCharacters(QStringLiteral("\n\n"));
        w.writeTextElement(QStringLiteral("b"), QStringLiteral("\x01"));
    }) << 2;
    QTest::newRow("U+0000 in a comment") << Medley::Part([](QXmlStreamWriter &w) {
        w.writeCharacters(QStringLiteral("\n\n"));
        w.writeComment(QStringLiteral("a") + QChar(0) + QStringLiteral("b"));
    }) << 3;
}

void IRGObjectXmlTest::theFirstLineOfSeveralIsReported()
{
    QFETCH(Medley::Part, part);
    QFETCH(int, line);
    Medley medley(part);
    QVERIFY(medley.GetXmlString().isNull());
    QCOMPARE(medley.GetErrorString(),
             QStringLiteral("XML text: a text in or just above line %1 of the document contains a character that XML "
                            "cannot carry (a control character, U+FFFE, U+FFFF or half a surrogate pair)")
                 .arg(line));
}

TEST_SUITE(IRGObjectXmlTest)
#include "tst_IRGObjectXml.moc"
