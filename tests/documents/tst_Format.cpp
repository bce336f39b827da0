// SPDX-License-Identifier: MIT
#include <QRegularExpression>
#include <QTest>
#include <QXmlStreamReader>

#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Form.h>
#include <tunerdocuments/Format.h>
#include <tunerdocuments/NewDocument.h>

#include "Encoded.h"
#include "Rows.h"
#include "documents/RandomChanges.h"
#include "documents/format/SameContent.h"
#include "framework/Random.h"
#include "framework/XmlSpellings.h"

using namespace TunerDocuments;
using JobXml::TunerProperties;

/// The canonical layout of documents.
class FormatTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void xmlIsLaidOut_data();
    void xmlIsLaidOut();
    void contentThatMayBeTextStays_data();
    void contentThatMayBeTextStays();
    void lineEndsBecomeLineFeeds_data();
    void lineEndsBecomeLineFeeds();
    void encodingStays_data();
    void encodingStays();
    void jsonIsLaidOut_data();
    void jsonIsLaidOut();
    void byteOrderMarkOfJsonStays();
    void documentWithProblemsIsLaidOut();
    void whatTheLibraryWritesStays();
    void documentWithExplanationsStays();
    void spoiledLayoutIsRestored();
    void binaryFormsStay_data();
    void binaryFormsStay();
    void anythingButADocumentIsRefused_data();
    void anythingButADocumentIsRefused();
    void unusualBytesAreRefused();
    void deepNestingIsLaidOutWithinBounds();
    void manyCommentsOnALineAreLaidOut();
    void differentContentIsNoticed_data();
    void differentContentIsNoticed();
    void differentTextIsNoticed_data();
    void differentTextIsNoticed();
    void oddDocumentsKeepEverythingButTheirLayout();
};

namespace {

const QString name = QStringLiteral("d.xml");

constexpr char declaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

/// The result, or the text of the error.
QByteArray formattedOrError(const QByteArray &bytes, const QString &fileName = name)
{
    try {
        return formatted(bytes, fileName);
    } catch (const DocumentError &error) {
        return error.text().toUtf8();
    }
}

QByteArray jsonOf(const QByteArray &bytes)
{
    return Document::fromBytes(bytes, name).toBytes(Form::Json, name);
}

/// Markup and texts as a reader reports them, without blanks between markup.
QStringList contentOf(const QByteArray &xml)
{
    QXmlStreamReader reader(xml);
    reader.setNamespaceProcessing(false);
    QStringList content;
    QString text;
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::Characters) {
            text += reader.text();
            continue;
        }
        if (!text.trimmed().isEmpty())
            content += QStringLiteral("text ") + text;
        text.clear();
        QString item =
            QStringLiteral("%1 %2 %3 %4")
                .arg(int(token))
                .arg(reader.qualifiedName(), reader.processingInstructionTarget(), reader.processingInstructionData());
        if (token == QXmlStreamReader::Comment)
            item += reader.text();
        for (const QXmlStreamAttribute &attribute : reader.attributes())
            item += QStringLiteral(" %1=%2").arg(attribute.qualifiedName(), attribute.value());
        content += item;
    }
    return content;
}

} // namespace

// --- XML -------------------------------------------------------------------------------------------------------------

void FormatTest::xmlIsLaidOut_data()
{
    const Rows<QByteArray, QByteArray> row("before", "after");
    row("document on one line",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><TunerProperties Version=\"1.1\"><StartupModes>"
        "<StartupMode>DF</StartupMode></StartupModes><Component type=\"t\"><Node id=\"n\"/></Component>"
        "</TunerProperties>",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<TunerProperties Version=\"1.1\">\n"
        "  <StartupModes>\n"
        "    <StartupMode>DF</StartupMode>\n"
        "  </StartupModes>\n"
        "  <Component type=\"t\">\n"
        "    <Node id=\"n\"/>\n"
        "  </Component>\n"
        "</TunerProperties>\n");
    row("blanks in tags",
        "<TunerProperties\n\tVersion = '1.1'\n\n\ttype\t=\"SCP\" >\n<Component\ttype='t' ><Node id='n' /></Component\n>"
        "</TunerProperties >",
        "<TunerProperties Version=\"1.1\" type=\"SCP\">\n"
        "  <Component type=\"t\">\n"
        "    <Node id=\"n\"/>\n"
        "  </Component>\n"
        "</TunerProperties>\n");
    row("blanks in the declaration",
        "<?xml  version = '1.0'\n encoding='utf-8' standalone='yes' ?>\n<TunerProperties Version='1.1'/>",
        "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"yes\"?>\n<TunerProperties Version=\"1.1\"/>\n");
    row("no declaration is added", "\n\n <TunerProperties Version='1.1'/>\n\n\n",
        "<TunerProperties Version=\"1.1\"/>\n");
    row("quotes that the value has stay single", "<TunerProperties name='a\"b' baseresource='a&quot;b&apos;c'/>",
        "<TunerProperties name='a\"b' baseresource=\"a&quot;b&apos;c\"/>\n");
    row("values stay as they are spelled",
        "<TunerProperties quantity=' 007 ' hwProcessing='TRUE' name='&#65;&amp;\n &#x9;>'><BandwidthSelection>"
        "<MaxBandwidth> 12.50\n</MaxBandwidth></BandwidthSelection><BandwidthSelection><MaxBandwidth>0.2567"
        "</MaxBandwidth></BandwidthSelection></TunerProperties>",
        "<TunerProperties quantity=\" 007 \" hwProcessing=\"TRUE\" name=\"&#65;&amp;\n &#x9;>\">\n"
        "  <BandwidthSelection>\n"
        "    <MaxBandwidth> 12.50\n</MaxBandwidth>\n"
        "  </BandwidthSelection>\n"
        "  <BandwidthSelection>\n"
        "    <MaxBandwidth>0.2567</MaxBandwidth>\n"
        "  </BandwidthSelection>\n"
        "</TunerProperties>\n");
    row("order, version and what the model does not have stay",
        "<TunerProperties v:b='1' Version='9.0' xmlns:v='urn:v' a='2'><v:Unknown c='3'><x/> <y>z</y></v:Unknown>"
        "<Component name='c' type='t'/></TunerProperties>",
        "<TunerProperties v:b=\"1\" Version=\"9.0\" xmlns:v=\"urn:v\" a=\"2\">\n"
        "  <v:Unknown c=\"3\">\n"
        "    <x/>\n"
        "    <y>z</y>\n"
        "  </v:Unknown>\n"
        "  <Component name=\"c\" type=\"t\"/>\n"
        "</TunerProperties>\n");
    row("empty elements stay as they are spelled",
        "<TunerProperties><name/><Component></Component><Component/><Component>\n  </Component></TunerProperties>",
        "<TunerProperties>\n  <name/>\n  <Component></Component>\n  <Component/>\n  <Component></Component>\n"
        "</TunerProperties>\n");
    row("comments before and after the root", "<!--1--><!--2-->\n<TunerProperties/><!--3-->\n\n<!--4-->",
        "<!--1-->\n<!--2-->\n<TunerProperties/> <!--3-->\n\n<!--4-->\n");
    row("comments on lines of their own",
        "<TunerProperties><!--first-->\t<Component><!--in an object-->\n\n</Component>\n<!--several\n "
        "lines--><Component/>"
        "<!--before--><Component/>\n\t<!--last--></TunerProperties>",
        "<TunerProperties>\n"
        "  <!--first-->\n"
        "  <Component> <!--in an object-->\n"
        "  </Component>\n"
        "  <!--several\n lines-->\n"
        "  <Component/>\n"
        "  <!--before-->\n"
        "  <Component/>\n"
        "  <!--last-->\n"
        "</TunerProperties>\n");
    row("comments at the end of a line",
        "<TunerProperties><!--start-->\n<Component/>   <!--empty-->  \n<Component><Node/></Component><!--1--> "
        "<!--2-->\t\r\n"
        "<name>n</name><!--text\n--><?p?>\n<!--own--> <!--own-->\n</TunerProperties><!--end-->",
        "<TunerProperties> <!--start-->\n"
        "  <Component/> <!--empty-->\n"
        "  <Component>\n"
        "    <Node/>\n"
        "  </Component> <!--1--> <!--2-->\n"
        "  <name>n</name> <!--text\n--> <?p?>\n"
        "  <!--own-->\n"
        "  <!--own-->\n"
        "</TunerProperties> <!--end-->\n");
    row("processing instructions",
        "<?xml version='1.0'?><?xml-stylesheet  href='a' ?><TunerProperties><?p  <a> ?><Component/></TunerProperties>"
        "\n<?q?>",
        "<?xml version=\"1.0\"?>\n<?xml-stylesheet  href='a' ?>\n<TunerProperties>\n  <?p  <a> ?>\n  <Component/>\n"
        "</TunerProperties>\n<?q?>\n");
    row("document type", "<!--1--><!DOCTYPE  TunerProperties SYSTEM 'a>b' >\n\n <!--2-->\n\n<TunerProperties/>",
        "<!--1-->\n<!DOCTYPE  TunerProperties SYSTEM 'a>b' >\n\n <!--2-->\n\n<TunerProperties/>\n");
    row("one empty line stays between elements",
        "<?xml version='1.0'?>\n\n\n<TunerProperties>\n\n<Component/>\n \n\t\n<!--c-->\n\n\n\n<Component/> <!--t-->\n\n"
        "<Component/>\n\n</TunerProperties>\n\n",
        "<?xml version=\"1.0\"?>\n\n<TunerProperties>\n  <Component/>\n\n  <!--c-->\n\n  <Component/> <!--t-->\n\n"
        "  <Component/>\n</TunerProperties>\n");
    row("markup in comments and instructions",
        "<TunerProperties><!-- <Component> --><?p <!-- ?><Component/><!----></TunerProperties>",
        "<TunerProperties>\n  <!-- <Component> -->\n  <?p <!-- ?>\n  <Component/>\n  <!---->\n</TunerProperties>\n");
    row("markup in attributes",
        "<TunerProperties name='/>' baseresource=\"'>\"><Component type='>'/></TunerProperties>",
        "<TunerProperties name=\"/>\" baseresource=\"'>\">\n  <Component type=\">\"/>\n</TunerProperties>\n");
    row("prefixes of the model's elements",
        "<m:TunerProperties xmlns:m='u'><m:Component><m:Node>  </m:Node></m:Component></m:TunerProperties>",
        "<m:TunerProperties xmlns:m=\"u\">\n  <m:Component>\n    <m:Node></m:Node>\n  </m:Component>\n"
        "</m:TunerProperties>\n");
}

void FormatTest::xmlIsLaidOut()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QCOMPARE(formattedOrError(before), after);
    QCOMPARE(formattedOrError(after), after);
    QCOMPARE(jsonOf(after), jsonOf(before));
}

void FormatTest::contentThatMayBeTextStays_data()
{
    const Rows<QByteArray> row("element");
    row("text", "<name> a\n b </name>");
    row("blanks", "<name>\n  </name>");
    row("blanks and a comment", "<name> <!--c--> </name>");
    row("an element in a text of the model", "<name> <x/> </name>");
    row("the same with a prefix", "<p:name xmlns:p=\"u\"> <x/> </p:name>");
    row("CDATA section", "<name><![CDATA[ <a/> ]]></name>");
    row("blanks in a CDATA section", "<Vendor><![CDATA[ ]]> <x  a='1'/></Vendor>");
    row("reference", "<Vendor>&#32;<x  a='1'/> </Vendor>");
    row("text before elements", "<Vendor>a <x  a='1'/>\n <y > <z/> </y></Vendor>");
    row("text after elements", "<Vendor><x/> <y/>a</Vendor>");
    row("text in an object", "<Component> <Node/>a <!--c--> </Component>");
    row("blanks in an unknown element", "<Vendor> \n </Vendor>");
    row("blanks and a comment in an unknown element", "<Vendor> <!--c--></Vendor>");
    row("white space preserved", "<Vendor xml:space=\"preserve\"> <x  a='1'/> </Vendor>");
    row("white space preserved in an object", "<Component xml:space=\"preserve\"> <Node  id='1'/> </Component>");
    row("no-break space", "<Vendor>\xC2\xA0<x/></Vendor>");
}

void FormatTest::contentThatMayBeTextStays()
{
    QFETCH(QByteArray, element);
    const QByteArray after = "<TunerProperties>\n  " + element + "\n</TunerProperties>\n";
    QCOMPARE(formattedOrError("<TunerProperties>" + element + "</TunerProperties>"), after);
    QCOMPARE(formattedOrError(after), after);
}

void FormatTest::lineEndsBecomeLineFeeds_data()
{
    QTest::addColumn<QByteArray>("lineEnd");
    QTest::newRow("carriage return and line feed") << QByteArray("\r\n");
    QTest::newRow("carriage return") << QByteArray("\r");
    QTest::newRow("line feed") << QByteArray("\n");
}

/// Also in comments, where every reader of XML has line feeds; a text keeps what it has.
void FormatTest::lineEndsBecomeLineFeeds()
{
    QFETCH(QByteArray, lineEnd);
    QByteArray before = "<!--1|2|-->|<TunerProperties>|  <Component/>||<!--a||b-->|<?p a|b?>|  <name>a";
    before.replace("|", lineEnd);
    before += lineEnd + "b</name></TunerProperties>";
    const QByteArray after =
        "<!--1\n2\n-->\n<TunerProperties>\n  <Component/>\n\n  <!--a\n\nb-->\n  <?p a\nb?>\n  <name>a" + lineEnd
        + "b</name>\n</TunerProperties>\n";
    QCOMPARE(formattedOrError(before), after);
    QCOMPARE(formattedOrError(after), after);
    QCOMPARE(contentOf(after), contentOf(before));
}

void FormatTest::encodingStays_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QString>("mark");
    QTest::addColumn<QString>("declared");
    const QString mark = QChar(QChar::ByteOrderMark);
    QTest::newRow("UTF-8 with a mark") << QByteArray("UTF-8") << mark << QString();
    QTest::newRow("UTF-16, little-endian") << QByteArray("UTF-16LE") << mark << QStringLiteral("UTF-16");
    QTest::newRow("UTF-16, big-endian") << QByteArray("UTF-16BE") << mark << QStringLiteral("UTF-16");
    QTest::newRow("UTF-16 without a mark") << QByteArray("UTF-16LE") << QString() << QStringLiteral("UTF-16LE");
    QTest::newRow("UTF-32, little-endian") << QByteArray("UTF-32LE") << mark << QStringLiteral("UTF-32");
    QTest::newRow("UTF-32, big-endian") << QByteArray("UTF-32BE") << mark << QStringLiteral("UTF-32");
    QTest::newRow("UTF-32 without a mark") << QByteArray("UTF-32BE") << QString() << QStringLiteral("UTF-32BE");
    QTest::newRow("ISO 8859-1") << QByteArray("ISO-8859-1") << QString() << QStringLiteral("ISO-8859-1");
    QTest::newRow("Windows-1252") << QByteArray("windows-1252") << QString() << QStringLiteral("windows-1252");
}

void FormatTest::encodingStays()
{
    QFETCH(QByteArray, codec);
    QFETCH(QString, mark);
    QFETCH(QString, declared);
    const QString encoding =
        declared.isNull() ? QString() : QStringLiteral("<?xml version=\"1.0\" encoding=\"%1\"?>\n").arg(declared);
    const auto document = [&](const QString &text) { return encoded(codec, mark + encoding + text); };
    const QByteArray before =
        document(QStringLiteral("<TunerProperties name='\u00E4'><!-- \u00F6 --><Component/></TunerProperties>"));
    const QByteArray after = document(
        QStringLiteral("<TunerProperties name=\"\u00E4\">\n  <!-- \u00F6 -->\n  <Component/>\n</TunerProperties>\n"));
    QCOMPARE(formattedOrError(before).toHex(' '), after.toHex(' '));
    QCOMPARE(formattedOrError(after).toHex(' '), after.toHex(' '));
}

// --- JSON ------------------------------------------------------------------------------------------------------------

void FormatTest::jsonIsLaidOut_data()
{
    const Rows<QByteArray, QByteArray> row("before", "after");
    row("document on one line",
        R"({"TunerProperties":{"Version":"1.1","name":"n","Component":[{"type":"t","name":"c","Node":[{"id":"n"}]}]}})",
        R"({
  "TunerProperties": {
    "Version": "1.1",
    "name": "n",
    "Component": [
      {
        "type": "t",
        "name": "c",
        "Node": [
          {"id": "n"}
        ]
      }
    ]
  }
}
)");
    row("blanks and line ends of every kind", "\t{\r\n\"TunerProperties\" :\r{ \"Version\" : \"1.1\" }\n}\n\n",
        "{\"TunerProperties\": {\"Version\": \"1.1\"}}\n");
    row("order and spelling stay",
        R"({"$schema":"s","TunerProperties":{"quantity":-0,"Version":"1.1","n\u0061me":"\u0041\/\" b",
"BandwidthSelection":[{"MaxBandwidth":12.50},{"MaxBandwidth":-0.0E+1}],"unset":{}}})",
        R"({
  "$schema": "s",
  "TunerProperties": {
    "quantity": -0,
    "Version": "1.1",
    "n\u0061me": "\u0041\/\" b",
    "BandwidthSelection": [
      {"MaxBandwidth": 12.50},
      {"MaxBandwidth": -0.0E+1}
    ],
    "unset": {}
  }
}
)");
}

void FormatTest::jsonIsLaidOut()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QCOMPARE(formattedOrError(before), after);
    QCOMPARE(formattedOrError(after), after);
    QCOMPARE(jsonOf(after), jsonOf(before));
}

void FormatTest::byteOrderMarkOfJsonStays()
{
    QCOMPARE(formattedOrError("\xEF\xBB\xBF{\"TunerProperties\":{}}"),
             QByteArray("\xEF\xBB\xBF{\"TunerProperties\": {}}\n"));
}

// --- Documents -------------------------------------------------------------------------------------------------------

void FormatTest::documentWithProblemsIsLaidOut()
{
    QCOMPARE(formattedOrError("<TunerProperties quantity='abc' type='None'><HRPANSupported/><Component/>"
                              "</TunerProperties>"),
             QByteArray("<TunerProperties quantity=\"abc\" type=\"None\">\n  <HRPANSupported/>\n  <Component/>\n"
                        "</TunerProperties>\n"));
}

void FormatTest::whatTheLibraryWritesStays()
{
    RandomChanges random(1);
    TunerProperties document;
    int written = 0;
    for (int i = 0; i < 2000; ++i) {
        random.change(document);
        for (const Form form : {Form::Xml, Form::Json}) {
            try {
                const QByteArray bytes = Document(document, form).toBytes(form, name);
                QCOMPARE(formattedOrError(bytes), bytes);
                ++written;
            } catch (const DocumentError &) { // the form cannot hold it
            } catch (const ReportException &) {
            }
        }
    }
    QVERIFY2(written > 2000, qPrintable(QString::number(written)));
}

void FormatTest::documentWithExplanationsStays()
{
    const TunerProperties document = NewDocument::minimal({{QStringLiteral("type"), QStringLiteral("SCP")}});
    const QByteArray xml = Document(document).toBytes(Form::Xml, name);
    const QByteArray explained = NewDocument::explained(xml, document);
    QVERIFY(explained.contains("<!--"));
    QCOMPARE(formattedOrError(explained), explained);
}

namespace {

/// The document that the library has written with other blanks between elements and in tags, and with other quotes.
QByteArray spoiled(const QByteArray &xml, Random &random)
{
    const auto blanks = [&] { return random.oneOf({" ", "\n", "\t", "\r\n", "   ", " \n"}); };
    const auto spoiledTag = [&](QByteArray tag) {
        if (tag.startsWith("<?"))
            return tag;
        static const QRegularExpression attribute(QStringLiteral("( )([^ =]+)=\"([^\"]*)\""));
        QString text = QString::fromUtf8(tag);
        auto match = attribute.match(text);
        while (match.hasMatch()) {
            const QLatin1Char quote(match.captured(3).contains(QLatin1Char('\'')) || random.oneIn(2) ? '"' : '\'');
            const QString written = QLatin1String(blanks()) + match.captured(2)
                + QLatin1String(random.oneIn(2) ? "=" : " =\n") + quote + match.captured(3) + quote;
            text.replace(match.capturedStart(), match.capturedLength(), written);
            match = attribute.match(text, match.capturedStart() + written.size());
        }
        tag = text.toUtf8();
        if (random.oneIn(2))
            tag.insert(tag.size() - (tag.endsWith("/>") ? 2 : 1), blanks());
        return tag;
    };
    QByteArray result;
    bool isAfterStart = false;
    for (int at = 0; at < xml.size();) {
        const int begin = xml.indexOf('<', at);
        if (begin < 0)
            break;
        const int end = xml.indexOf('>', begin) + 1;
        const bool isEnd = xml.at(begin + 1) == '/';
        const bool isText = isAfterStart && isEnd;
        if (isText)
            result += xml.mid(at, begin - at);
        else if (at > 0)
            result += random.oneIn(3) ? "" : blanks();
        result += spoiledTag(xml.mid(begin, end - begin));
        isAfterStart = !isEnd && xml.at(end - 2) != '/' && xml.at(end - 2) != '?';
        at = end;
    }
    return result;
}

} // namespace

void FormatTest::spoiledLayoutIsRestored()
{
    int restored = 0;
    for (quint32 seed = 0; seed < 300; ++seed) {
        RandomChanges changes(seed);
        Random random(seed);
        TunerProperties document;
        for (int i = 0; i < 60; ++i)
            changes.change(document);
        document.SetValidate(false);
        try {
            const QByteArray xml = Document(document).toBytes(Form::Xml, name);
            const QByteArray other = spoiled(xml, random);
            if (other != xml)
                ++restored;
            QCOMPARE(formattedOrError(other), xml);
        } catch (const DocumentError &) { // XML has no place for a character
        }
    }
    QVERIFY2(restored > 100, qPrintable(QString::number(restored)));
}

void FormatTest::binaryFormsStay_data()
{
    QTest::addColumn<QString>("form");
    for (const char *form : {"tagged", "compressed", "snapshot"})
        QTest::newRow(form) << QString::fromLatin1(form);
}

void FormatTest::binaryFormsStay()
{
    QFETCH(QString, form);
    LoadOptions options;
    options.setForm(Forms::named(form));
    const Document document(NewDocument::minimal({{QStringLiteral("type"), QStringLiteral("SCP")}}), *options.form());
    const QByteArray bytes = document.toBytes(*options.form(), name);
    QVERIFY(!hasLayout(*options.form()));
    QCOMPARE(formatted(bytes, name, options), bytes);
}

void FormatTest::anythingButADocumentIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("XML that is not well-formed") << QByteArray("<TunerProperties><Component></TunerProperties>")
                                                 << QByteArray("d.xml:1:46: Opening and ending tag mismatch.");
    QTest::newRow("truncated XML") << QByteArray("<TunerProperties>\n <Component/>")
                                   << QByteArray("d.xml:2:13: Premature end of document.");
    QTest::newRow("another document") << QByteArray(
        "<Receiver/>") << QByteArray("d.xml:1:11: the root element is 'Receiver', not 'TunerProperties'");
    QTest::newRow("JSON that is not a document")
        << QByteArray("{\"TunerProperties\":{\"quantity\":\"x\"}}") << QByteArray("d.xml:1:32: quantity: ");
    QTest::newRow("truncated JSON") << QByteArray("{\"TunerProperties\":{") << QByteArray("d.xml:1:21: ");
    QTest::newRow("nothing known") << QByteArray("\x01\x02\x03") << QByteArray("d.xml");
    QTest::newRow("nothing") << QByteArray() << QByteArray("d.xml");
}

void FormatTest::anythingButADocumentIsRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, error);
    const QByteArray result = formattedOrError(bytes);
    QVERIFY2(result.startsWith(error), result.constData());
}

/// An encoding that is declared far from the beginning is not found, so the bytes seem to be wrong.
void FormatTest::unusualBytesAreRefused()
{
    const QByteArray xml = "<?xml version=\"1.0\" " + QByteArray(200, ' ')
        + "encoding=\"ISO-8859-1\"?><TunerProperties Version='1.1' name='\xE4'/>";
    QCOMPARE(formattedOrError(xml),
             QByteArray("d.xml: cannot format the document: its bytes are not the usual ones for its text in the "
                        "encoding UTF-8"));
}

// --- Hostile documents -----------------------------------------------------------------------------------------------

void FormatTest::deepNestingIsLaidOutWithinBounds()
{
    const auto nested = [](int levels, const QByteArray &content) {
        return "<TunerProperties>" + QByteArray("<a>").repeated(levels) + content + QByteArray("</a>").repeated(levels)
            + "</TunerProperties>";
    };
    const QByteArray result = formattedOrError(nested(600, "<b/>"));
    QVERIFY(result.contains('\n' + QByteArray(2 * 601, ' ') + "<b/>\n"));
    QCOMPARE(formattedOrError(result), result);
    QCOMPARE(formattedOrError(nested(1000, {})),
             QByteArray("d.xml: cannot format the document: its elements are nested too deeply"));
    // 2 kB of indentation for every four bytes
    const QByteArray hostile = nested(900, QByteArray("<b/>").repeated(100000));
    QCOMPARE(
        formattedOrError(hostile),
        QByteArray("d.xml: cannot format the document: the indentation of its nested elements would make it longer "
                   "than ")
            + QByteArray::number(16 * hostile.size()) + " bytes");
}

/// Whether a comment ends its line is found once for all comments on the line.
void FormatTest::manyCommentsOnALineAreLaidOut()
{
    const int count = 100000;
    const QByteArray comments = QByteArray("<!---->").repeated(count);
    QCOMPARE(formattedOrError("<TunerProperties><Component/>" + comments + "\n</TunerProperties>"),
             "<TunerProperties>\n  <Component/>" + QByteArray(" <!---->").repeated(count) + "\n</TunerProperties>\n");
    QCOMPARE(formattedOrError("<TunerProperties><Component/>" + comments + "</TunerProperties>"),
             "<TunerProperties>\n  <Component/>" + QByteArray("\n  <!---->").repeated(count)
                 + "\n</TunerProperties>\n");
}

// --- What is compared before a result is returned --------------------------------------------------------------------

void FormatTest::differentContentIsNoticed_data()
{
    const Rows<QByteArray, QByteArray, QString> row("before", "after", "difference");
    row("value", "<TunerProperties quantity='1'/>", "<TunerProperties quantity='2'/>", "~ quantity: 1 -> 2");
    row("blanks in a text", "<TunerProperties name='a'/>", "<TunerProperties name='a '/>", "~ name: \"a\" -> \"a \"");
    row("problem", "<TunerProperties hwProcessing='false'/>", "<TunerProperties hwProcessing=''/>",
        "other problems are found");
}

void FormatTest::differentContentIsNoticed()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(QString, difference);
    const ReadContent first(before, name, {});
    QCOMPARE(first.differenceFrom(ReadContent(after, name, {})), difference);
    QCOMPARE(first.differenceFrom(ReadContent('\n' + before + '\n', name, {})), QString());
}

void FormatTest::differentTextIsNoticed_data()
{
    const Rows<QByteArray, QByteArray, bool> row("before", "after", "isSame");
    row("blanks", "<a  b='c'\t/>\r\n", "<a b='c'/>\n", true);
    row("quotes", "<a b='c'/>", "<a b=\"c\"/>", true);
    row("nothing but blanks", "", " \n", true);
    row("lost comment", "<a/><!--c-->", "<a/>", false);
    row("added text", "<a/>", "<a/>b", false);
    row("exchanged attributes", "<a b='' c=''/>", "<a c='' b=''/>", false);
}

void FormatTest::differentTextIsNoticed()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(bool, isSame);
    QCOMPARE(isSameWithoutLayout(before, after), isSame);
    QCOMPARE(isSameWithoutLayout(after, before), isSame);
}

void FormatTest::oddDocumentsKeepEverythingButTheirLayout()
{
    int laidOut = 0;
    int refused = 0;
    for (quint32 seed = 0; seed < 20000; ++seed) {
        Random random(seed);
        QByteArray xml = seed % 2 == 0 ? XmlSpellings::document(random) : XmlSpellings::plainDocument(random);
        if (seed % 3 == 0)
            xml = XmlSpellings::mutated(random, xml, XmlSpellings::plainDocument(random));
        try {
            Document::fromBytes(xml, name);
        } catch (const DocumentError &) {
            continue; // not a document
        }
        const QByteArray result = formattedOrError(xml);
        if (result.startsWith("d.xml: cannot format")) {
            QVERIFY2(result.endsWith("its elements are nested too deeply")
                         || result.endsWith("its bytes are not the usual ones for its text in the encoding US-ASCII"),
                     result.constData());
            ++refused;
            continue;
        }
        const QByteArray what = QByteArray::number(seed) + ": " + xml + "\n--- became ---\n" + result;
        QVERIFY2(contentOf(result) == contentOf(xml), what.constData());
        QVERIFY2(jsonOf(result) == jsonOf(xml), what.constData());
        QVERIFY2(formattedOrError(result) == result, what.constData());
        laidOut += result != xml;
    }
    QVERIFY2(laidOut > 700, qPrintable(QString::number(laidOut)));
    QVERIFY2(refused < 5, qPrintable(QString::number(refused)));
}

TEST_SUITE(FormatTest)
#include "tst_Format.moc"
