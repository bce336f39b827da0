// SPDX-License-Identifier: MIT
#include <QXmlStreamReader>
#include <QtTest>

#include "GuardedBytes.h"
#include "framework/XmlSources.h"
#include "framework/XmlSubset.h"

using JobXml::XmlSubset::contains;

namespace {

QByteArray nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

QByteArray withAttributes(int count)
{
    QByteArray document = "<a";
    for (int i = 0; i < count; ++i)
        document += " a" + QByteArray::number(i) + "=''";
    return document + "/>";
}

} // namespace

/// Which documents are read in memory.
class XmlSubsetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documentIsInTheSubset_data();
    void documentIsInTheSubset();
    void documentIsNotInTheSubset_data();
    void documentIsNotInTheSubset();
    void everyCharacterIsJudgedAsByTheReader();
    void everySequenceOfTwoBytesIsJudgedAsByTheReader();
    void nulEndsNoDocument();
    void cutDocumentIsNotInTheSubset();
    void nothingAfterRawDataIsRead();

private:
    static void addRow(const char *name, const QByteArray &document) { QTest::newRow(name) << document; }
    /// A document with each piece as content of its root.
    static void addContent(const char *name, const QByteArray &content) { addRow(name, "<a>" + content + "</a>"); }
    static void addValue(const char *name, const QByteArray &value) { addRow(name, "<a b=\"" + value + "\"/>"); }
};

void XmlSubsetTest::documentIsInTheSubset_data()
{
    QTest::addColumn<QByteArray>("document");

    // --- before and after the root ---
    addRow("an empty element", "<a/>");
    addRow("byte order mark", "\xEF\xBB\xBF<a/>");
    addRow("byte order mark and declaration", "\xEF\xBB\xBF<?xml version=\"1.0\"?><a/>");
    addRow("blanks around", "\r\n\t <a/>\n\r");
    addRow("declaration", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a/>");
    addRow("declaration in single quotes", "<?xml version='1.0' encoding='UTF-8'?><a/>");
    addRow("encoding in lower case", "<?xml version='1.0' encoding='utf-8'?><a/>");
    addRow("encoding in mixed case", "<?xml version='1.0' encoding='uTf-8'?><a/>");
    addRow("standalone", "<?xml version='1.0' encoding='UTF-8' standalone='yes'?><a/>");
    addRow("standalone without encoding", "<?xml version='1.0' standalone='no'?><a/>");
    addRow("blanks in the declaration", "<?xml\tversion =\n'1.0'\r\nencoding= \"UTF-8\"  standalone = 'no' ?><a/>");
    addRow("comment before and after", "<!-- b --><a/><!-- c -->");
    addRow("instruction before and after", "<?b?><a/><?c d?>");
    addRow("instruction that begins like a declaration", "<?xml-stylesheet href='a'?><a/>");
    addRow("instruction whose name begins like xml", "<?xmlx?><a/>");

    // --- tags ---
    addRow("blanks in tags", "<a  b = '1'\n\tc='2' ></a\n>");
    addRow("blanks before the end of an empty element", "<a b='1'\t/>");
    addRow("attributes in both quotes", "<a b='\"' c=\"'\"/>");
    addRow("an attribute with angle and slash", "<a b='/>' c='>'></a>");
    addRow("names with digits, dots and hyphens", "<a1.b-c_d _e='1' F.-='2'></a1.b-c_d>");
    addRow("names that begin like xml", "<xmla xml='1' XMLNS='2'/>");
    addRow("attribute and element of the same name", "<a a='1'><a a='2'/></a>");
    addRow("32 attributes", withAttributes(32));
    addRow("256 levels", nested(256));
    addRow("256 levels in an object", "<Node>" + nested(255) + "</Node>");
    addRow("a name of 1000 characters", '<' + QByteArray(1000, 'n') + "/>");

    // --- texts ---
    addContent("brackets", "]]");
    addContent("bracket and angle", "]>");
    addContent("brackets that end in a reference", "]]&gt;");
    addContent("a section with an end mark in pieces", "<![CDATA[]]]]><![CDATA[>]]>");
    addContent("brackets before a section", "]]<![CDATA[>]]>");
    addContent("brackets before a comment", "]]<!-- -->>");
    addContent("angle and quotes", ">\"'");
    addContent("an empty section", "<![CDATA[]]>");
    addContent("a section of brackets", "<![CDATA[]]]]]]>");
    addContent("a section with markup", "<![CDATA[<b>&c;<!--]]>");
    addContent("an empty comment", "<!---->");
    addContent("a comment with hyphens", "<!-- - - -->");
    addContent("a comment with markup", "<!--<b>&c;]]>-->");
    addContent("an instruction with question marks",
               "<?b ? ?c?"
               "?>");
    addContent("references", "&lt;&gt;&amp;&quot;&apos;");
    addContent("decimal references", "&#9;&#10;&#13;&#32;&#55295;&#57344;&#65533;&#65536;&#1114111;");
    addContent("hexadecimal references", "&#x9;&#xa;&#xD;&#x20;&#xD7FF;&#xe000;&#xFFFD;&#x10000;&#x10FFFF;");
    addContent("references with zeros", "&#0000000000000000000000065;&#x0000000000000000000000041;");
    addContent("controls", "\x7F\xC2\x80\xC2\x85\xC2\x9F");
    addContent("a byte order mark in the middle", "\xEF\xBB\xBF");
    addContent("first and last characters of each size",
               "\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
    addContent("characters that Unicode reserves", "\xEF\xB7\x90\xEF\xB7\xAF\xF0\x9F\xBF\xBE\xF0\x9F\xBF\xBF");
    addValue("line ends in an attribute", "\r\n\r\n\t");
    addValue("references in an attribute", "&#9;&#10;&#13;&lt;&quot;");
    addValue("angle and brackets in an attribute", "]]>");
}

void XmlSubsetTest::documentIsInTheSubset()
{
    QFETCH(QByteArray, document);
    QVERIFY(contains(document));
    QCOMPARE(XmlSources::difference(document, 1), QString());
}

void XmlSubsetTest::documentIsNotInTheSubset_data()
{
    QTest::addColumn<QByteArray>("document");

    // --- well-formed, but left to the reader ---
    addRow("document type", "<!DOCTYPE a><a/>");
    addRow("prefix", "<p:a xmlns:p='u'/>");
    addRow("prefixed attribute", "<a xml:space='preserve'/>");
    addRow("namespace", "<a xmlns='u'/>");
    addRow("33 attributes", withAttributes(33));
    addRow("257 levels", nested(257));
    addRow("257 levels of an empty element",
           QByteArray("<a>").repeated(256) + "<b/>" + QByteArray("</a>").repeated(256));
    addRow("a name of 1001 characters", '<' + QByteArray(1001, 'n') + "/>");
    addRow("an attribute with a name of 1001 characters", "<a " + QByteArray(1001, 'n') + "=''/>");
    addRow("an instruction with a name of 1001 characters", "<?" + QByteArray(1001, 'n') + "?><a/>");
    addRow("a name beyond ASCII", "<\xC3\xA4/>");
    addRow("a name that continues beyond ASCII", "<a\xC3\xA4/>");
    addRow("a colon in the name of an instruction", "<?b:c?><a/>");
    addRow("another encoding", "<?xml version='1.0' encoding='US-ASCII'?><a/>");
    addRow("another name of the encoding", "<?xml version='1.0' encoding='UTF8'?><a/>");
    addRow("UTF-16", QByteArray("\xFF\xFE<\0a\0/\0>\0", 10));
    addContent("what the reader refuses", "&#93;]>");
    addContent("what looks like it", "&amp;]>");

    // --- before and after the root ---
    addRow("nothing", "");
    addRow("blanks", " \n");
    addRow("only a byte order mark", "\xEF\xBB\xBF");
    addRow("two byte order marks", "\xEF\xBB\xBF\xEF\xBB\xBF<a/>");
    addRow("a cut byte order mark", "\xEF\xBB<a/>");
    addRow("a byte order mark after the root", "<a/>\xEF\xBB\xBF");
    addRow("only a declaration", "<?xml version='1.0'?>");
    addRow("version 1.1", "<?xml version='1.1'?><a/>");
    addRow("no version", "<?xml encoding='UTF-8'?><a/>");
    addRow("nothing in the declaration", "<?xml?><a/>");
    addRow("version after encoding", "<?xml encoding='UTF-8' version='1.0'?><a/>");
    addRow("encoding after standalone", "<?xml version='1.0' standalone='yes' encoding='UTF-8'?><a/>");
    addRow("version twice", "<?xml version='1.0' version='1.0'?><a/>");
    addRow("no blank in the declaration", "<?xml version='1.0'encoding='UTF-8'?><a/>");
    addRow("different quotes in the declaration", "<?xml version='1.0\"?><a/>");
    addRow("no quotes in the declaration", "<?xml version=1.0?><a/>");
    addRow("reference in the declaration", "<?xml version='1&#46;0'?><a/>");
    addRow("other value of standalone", "<?xml version='1.0' standalone='YES'?><a/>");
    addRow("attribute in the declaration", "<?xml version='1.0' a='b'?><a/>");
    addRow("declaration in upper case", "<?XML version='1.0'?><a/>");
    addRow("blank before the declaration", " <?xml version='1.0'?><a/>");
    addRow("comment before the declaration", "<!-- --><?xml version='1.0'?><a/>");
    addRow("declaration inside", "<a><?xml version='1.0'?></a>");
    addRow("declaration twice", "<?xml version='1.0'?><?xml version='1.0'?><a/>");
    addRow("text before the root", "b<a/>");
    addRow("text after the root", "<a/>b");
    addRow("section after the root", "<a/><![CDATA[]]>");
    addRow("reference after the root", "<a/>&#32;");
    addRow("two roots", "<a/><a/>");
    addRow("two roots, the first with an end tag", "<a></a><a/>");
    addRow("end tag after the root", "<a/></a>");

    // --- tags ---
    addRow("no end tag", "<a>");
    addRow("another end tag", "<a></b>");
    addRow("a longer end tag", "<a></aa>");
    addRow("a shorter end tag", "<aa></a>");
    addRow("end tags in the wrong order", "<a><b></a></b>");
    addRow("attribute in an end tag", "<a></a b='1'>");
    addRow("end tag of an empty element", "<a></a/>");
    addRow("blank before a name", "< a/>");
    addRow("blank before the name of an end tag", "<a></ a>");
    addRow("blank in the end of an empty element", "<a / >");
    addRow("no name", "<>");
    addRow("a name that begins with a digit", "<1/>");
    addRow("a name that begins with a hyphen", "<-a/>");
    addRow("a name that begins with a dot", "<.a/>");
    addRow("no blank between attributes", "<a b='1'c='2'/>");
    addRow("no blank before an attribute", "<a\"b='1'/>");
    addRow("the same attribute twice", "<a b='1' c='2' b='1'/>");
    addRow("attribute without value", "<a b/>");
    addRow("attribute without quotes", "<a b=1/>");
    addRow("attribute with different quotes", "<a b='1\"/>");
    addRow("attribute that is not closed", "<a b='1/>");
    addRow("two equals signs", "<a b=='1'/>");
    addValue("angle in an attribute", "<");
    addValue("ampersand in an attribute", "&");
    addValue("control in an attribute", "\x01");

    // --- texts ---
    addContent("end of a section in a text", "]]>");
    addContent("end of a section after brackets", "]]]>");
    addContent("ampersand", "&");
    addContent("ampersand and blank", "& ");
    addContent("unknown entity", "&nbsp;");
    addContent("entity in upper case", "&LT;");
    addContent("entity without end", "&lt");
    addContent("no entity", "&;");
    addContent("reference without digits", "&#;");
    addContent("hexadecimal reference without digits", "&#x;");
    addContent("hexadecimal reference in upper case", "&#X41;");
    addContent("letter in a decimal reference", "&#4A;");
    addContent("letter in a hexadecimal reference", "&#x4G;");
    addContent("blank in a reference", "&#65 ;");
    addContent("sign in a reference", "&#+65;");
    addContent("reference without end", "&#65");
    addContent("references to what XML cannot carry: 0", "&#0;");
    addContent("references to what XML cannot carry: 8", "&#8;");
    addContent("references to what XML cannot carry: 11", "&#11;");
    addContent("references to what XML cannot carry: 1F", "&#x1F;");
    addContent("references to what XML cannot carry: D800", "&#xD800;");
    addContent("references to what XML cannot carry: DFFF", "&#xDFFF;");
    addContent("references to what XML cannot carry: FFFE", "&#xFFFE;");
    addContent("references to what XML cannot carry: FFFF", "&#65535;");
    addContent("references to what XML cannot carry: 110000", "&#x110000;");
    addContent("reference to 65 beyond 32 bits", "&#4294967361;");
    addContent("reference to 65 beyond 64 bits", "&#18446744073709551681;");
    addContent("hyphens in a comment", "<!-- -- -->");
    addContent("a comment that ends with three hyphens", "<!-- --->");
    addContent("a comment of three hyphens", "<!--->");
    addContent("a comment that is not closed", "<!-- ");
    addContent("a section in lower case", "<![cdata[]]>");
    addContent("a section that is not closed", "<![CDATA[");
    addContent("a declaration of an element", "<!ELEMENT a EMPTY>");
    addContent("an instruction without name", "<? ?>");
    addContent("an instruction whose name begins with a digit", "<?1?>");
    addContent("an instruction without blank", "<?b\"?>");
    addContent("an instruction that is not closed", "<?b >");

    // --- bytes ---
    addContent("control", "\x01");
    addContent("control in a comment", "<!--\x1F-->");
    addContent("control in a section", "<![CDATA[\x0B]]>");
    addContent("control in an instruction", "<?b \x0C?>");
    addContent("continuation byte", "\x80");
    addContent("cut: two bytes", "\xC3");
    addContent("cut: three bytes", "\xE2\x82");
    addContent("cut: four bytes", "\xF0\x9F\x93");
    addContent("overlong: two bytes", "\xC0\xBC");
    addContent("overlong: two bytes, the last", "\xC1\xBF");
    addContent("overlong: three bytes", "\xE0\x9F\xBF");
    addContent("overlong: four bytes", "\xF0\x8F\xBF\xBF");
    addContent("half of a surrogate pair", "\xED\xA0\x80");
    addContent("surrogate pair in six bytes", "\xED\xA0\xBD\xED\xB3\xA1");
    addContent("U+FFFE", "\xEF\xBF\xBE");
    addContent("U+FFFF", "\xEF\xBF\xBF");
    addContent("U+FFFE in a comment", "<!--\xEF\xBF\xBE-->");
    addContent("beyond Unicode", "\xF4\x90\x80\x80");
    addContent("a first byte that UTF-8 does not have", "\xF8\x88\x80\x80\x80");
    addContent("byte FF", "\xFF");
}

void XmlSubsetTest::documentIsNotInTheSubset()
{
    QFETCH(QByteArray, document);
    QVERIFY(!contains(document));
}

/// In each place where characters may be, those of two and three bytes, and the first ones of four bytes.
void XmlSubsetTest::everyCharacterIsJudgedAsByTheReader()
{
    struct Place
    {
        QByteArray before;
        QByteArray after;
    };
    const Place places[] = {
        {"<a>", "</a>"}, {"<a b='", "'/>"}, {"<a><!--", "--></a>"}, {"<a><![CDATA[", "]]></a>"}, {"<?b ", "?><a/>"}};
    const auto isReadBy = [](const QByteArray &document) {
        QXmlStreamReader reader(document);
        while (!reader.atEnd())
            reader.readNext();
        return !reader.hasError();
    };
    for (const Place &place : places) {
        for (uint character = 1; character < 0x10800; ++character) {
            if (QChar::isSurrogate(character) || (character < 0x80 && QByteArray("<&'-]?").contains(char(character))))
                continue; // not characters, or markup
            const char32_t text[] = {'.', character};
            const QByteArray document = place.before + QString::fromUcs4(text, 2).toUtf8() + place.after;
            if (contains(document) != isReadBy(document))
                QFAIL(qPrintable(QStringLiteral("U+%1").arg(character, 0, 16)));
        }
    }
}

/// Whatever follows them. Of three bytes and more, the tables have the first and the last of each kind.
void XmlSubsetTest::everySequenceOfTwoBytesIsJudgedAsByTheReader()
{
    for (int first = 0x80; first < 0x100; ++first) {
        for (int second = 0x80; second < 0x100; ++second) {
            const QByteArray bytes = QByteArray(1, char(first)) + char(second);
            const bool isCharacter = first >= 0xC2 && first <= 0xDF && second <= 0xBF;
            QCOMPARE(contains("<a>" + bytes + "</a>"), isCharacter);
        }
    }
}

void XmlSubsetTest::nulEndsNoDocument()
{
    const QByteArray nul(1, '\0');
    for (const QByteArray &document : {"<a/>" + nul, "<a>" + nul + "</a>", "<a b='" + nul + "'/>", nul + "<a/>",
                                       "<a" + nul + "/>", "<!--" + nul + "--><a/>", "<a/>" + nul + "<b/>"})
        QVERIFY2(!contains(document), document.toHex().constData());
}

/// Nothing after the end of the bytes is read: the address sanitizer would notice.
void XmlSubsetTest::cutDocumentIsNotInTheSubset()
{
    const QByteArray document = "\xEF\xBB\xBF<?xml version='1.0' encoding=\"UTF-8\" standalone='yes' ?>\r\n"
                                "<!-- - --><?b c ?><a b = '&lt;\xE2\x82\xAC' c=\"&#x1F4E1;\">\xF0\x9F\x93\xA1]]&#13;"
                                "<![CDATA[]] >]]><d/><e></e >\xC3\xA4</a>";
    QVERIFY(contains(document));
    for (int size = 0; size < document.size(); ++size)
        QVERIFY2(!contains(QByteArray(document.constData(), size)), QByteArray::number(size).constData());
}

/// QByteArray::fromRawData() has no NUL after its bytes.
void XmlSubsetTest::nothingAfterRawDataIsRead()
{
    for (const QByteArray &document : {QByteArray("<a/>"), QByteArray("<a/> \n"), QByteArray("<a/><!-- b -->")}) {
        const GuardedBytes guarded(document);
        QVERIFY2(contains(guarded.last(document.size())), document.constData());
    }
    for (const QByteArray &cut : {QByteArray(), QByteArray("\xEF\xBB\xBF"), QByteArray("<?xml version='1.0' "),
                                  QByteArray("<a"), QByteArray("<a "), QByteArray("<a b"), QByteArray("<a b='&#1"),
                                  QByteArray("<a>\xE2\x82"), QByteArray("<a>]]"), QByteArray("<a>\xC3\xA4</")}) {
        const GuardedBytes guarded(cut);
        QVERIFY2(!contains(guarded.last(cut.size())), cut.constData());
    }
}

TEST_SUITE_WITHOUT_APPLICATION(XmlSubsetTest)
#include "tst_XmlSubset.moc"
