// SPDX-License-Identifier: MIT
#include <QtTest>

#include <jobxml/ValueBoolean.h>
#include <jobxml/ValueInt.h>

#include "framework/Utf8Input.h"
#include "framework/XmlSources.h"

using namespace JobXml;

namespace {

const XmlName a{u"a", "a"};
const XmlName b{u"b", "b"};
const XmlName value{u"value", "value"};

/// A text of a table, in ASCII or not.
struct Literal
{
    Literal(const char *ascii) : text(QString::fromLatin1(ascii)) { }
    Literal(const QString &unicode) : text(unicode) { }

    QString text;
};

/// The text of the root element.
QString textOf(const QByteArray &document)
{
    if (!XmlSubset::contains(document))
        return QStringLiteral("(not in the subset)");
    Utf8Input input(document);
    XmlText text;
    if (input.next() != XmlInput::Tag::Start || !input.readText(text))
        return QStringLiteral("(no text)");
    return input.next() == XmlInput::Tag::None ? text.toString() : QStringLiteral("(the root is not read to its end)");
}

/// The attribute b of the root element.
QString attributeOf(const QByteArray &document)
{
    if (!XmlSubset::contains(document))
        return QStringLiteral("(not in the subset)");
    Utf8Input input(document);
    XmlText text;
    if (input.next() != XmlInput::Tag::Start || !input.findAttribute(b, text))
        return QStringLiteral("(no attribute)");
    return text.toString();
}

/// The tags that are left, each as the name with '+' or '-' for a start or an end.
QStringList restOf(XmlInput &input)
{
    QStringList tags;
    for (XmlInput::Tag tag = input.next(); tag != XmlInput::Tag::None; tag = input.next())
        tags += QLatin1Char(tag == XmlInput::Tag::Start ? '+' : '-') + input.name();
    return tags;
}

/// Passes so many tags.
void pass(XmlInput &input, int tags)
{
    for (int i = 0; i < tags; ++i)
        input.next();
}

} // namespace

/// How documents are read in memory.
class Utf8InputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elementHasItsText_data();
    void elementHasItsText();
    void attributeHasItsValue_data();
    void attributeHasItsValue();
    void documentHasItsTags_data();
    void documentHasItsTags();
    void attributesAreFoundInAnyOrder();
    void attributesBelongToTheirTag();
    void textIsReadAfterAttributes();
    void readingContinuesAfterAText();
    void skippingEndsAtTheNextTagOfTheName_data();
    void skippingEndsAtTheNextTagOfTheName();
    void tagIsComparedWithTheWholeName();
    void textWithReferencesIsNotComparedAsItIs();
    void textWithoutCharactersIsEmptyButNotNull();
    void valuesAreReadFromReferencesAndSections();
};

void Utf8InputTest::elementHasItsText_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const QByteArray &content, const Literal &text) {
        QTest::newRow(name) << content << text.text;
    };
    row("nothing", "", "");
    row("ASCII", "b c", "b c");
    row("characters of two, three and four bytes", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x93\xA1",
        QStringLiteral("\u00E4\u20AC\U0001F4E1"));
    row("blanks stay", " \t\n ", " \t\n ");
    row("line ends become line feeds", "b\r\nc\rd\ne", "b\nc\nd\ne");
    row("two line ends", "\r\r\n", "\n\n");
    row("a line feed and a carriage return", "\n\r", "\n\n");
    row("references stay what they are", "&#13;&#10;&#xD;\r\n&#9;", "\r\n\r\n\t");
    row("a line end between references", "&#13;\n&#10;", "\r\n\n");
    row("a carriage return before a reference", "\r&#10;", "\n\n");
    row("entities", "&lt;&gt;&amp;&quot;&apos;", "<>&\"'");
    row("an entity of an entity", "&amp;lt;", "&lt;");
    row("references", "&#65;&#x42;&#0067;&#x00000044;", "ABCD");
    row("references beyond ASCII", "&#228;&#x20ac;&#x1F4E1;&#x10FFFF;",
        QStringLiteral("\u00E4\u20AC\U0001F4E1\U0010FFFF"));
    row("a reference to a byte order mark", "&#xFEFF;7", QStringLiteral("\uFEFF7"));
    row("byte order marks", "\xEF\xBB\xBF\xEF\xBB\xBF\x37", QStringLiteral("\uFEFF\uFEFF7"));
    row("byte order marks between references", "&lt;\xEF\xBB\xBF&gt;", QStringLiteral("<\uFEFF>"));
    row("brackets", "]]&gt;]]", "]]>]]");
    row("a section", "b<![CDATA[<c>&d;]]>e", "b<c>&d;e");
    row("an empty section", "<![CDATA[]]>", "");
    row("brackets in a section", "<![CDATA[]]]]]]>", "]]]]");
    row("sections in pieces", "<![CDATA[]]]]><![CDATA[>]]>", "]]>");
    row("line ends in a section", "<![CDATA[\r\n\r\n\r]]>\n", "\n\n\n\n");
    row("a line end across a section", "\r<![CDATA[\n]]>", "\n\n");
    row("a byte order mark at the start of a section", "<![CDATA[\xEF\xBB\xBF]]>", QStringLiteral("\uFEFF"));
    row("a comment", "b<!-- <c> -->d", "bd");
    row("an empty comment", "b<!---->d", "bd");
    row("an instruction", "b<?c >?>d", "bd");
    row("an instruction without content", "b<?c?>d", "bd");
    row("only a comment", "<!--b-->", "");
    row("an element inside", "b<c>d</c>e", "be");
    row("an empty element inside", "b<c d='>'/>e", "be");
    row("elements inside elements", "b<c>d<e>f</e>g<e/>h</c>i", "bi");
    row("an element of the same name inside", "b<a>c</a>d", "bd");
    row("a section in an element inside", "b<c><![CDATA[</c>]]></c>d", "bd");
    row("a comment in an element inside", "b<c><!--</c>--></c>d", "bd");
    row("what looks like an end in a comment", "b<!--</a>-->c", "bc");
    row("what looks like an end in a section", "b<![CDATA[</a>]]>c", "b</a>c");
}

void Utf8InputTest::elementHasItsText()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, text);
    QCOMPARE(textOf("<a>" + content + "</a>"), text);
    QCOMPARE(textOf("<a b='>'>" + content + "</a >\n"), text);
    QCOMPARE(XmlSources::differenceOfSteps("<a>" + content + "</a>", 1), QString());
}

void Utf8InputTest::attributeHasItsValue_data()
{
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const QByteArray &tag, const Literal &text) {
        QTest::newRow(name) << tag << text.text;
    };
    row("nothing", "b=\"\"", "");
    row("single quotes", "b='c\"d'", "c\"d");
    row("double quotes", "b=\"c'd\"", "c'd");
    row("blanks around the equals sign", "b\t=\r\n'c'", "c");
    row("blanks stay", "b='  c  '", "  c  ");
    row("tabulators and line ends become blanks", "b='\tc\nd\r\ne\rf'", " c d e f");
    row("two line ends", "b='\r\r\n\n\r'", "    ");
    row("references stay what they are", "b='&#9;&#10;&#13;&#xD;&#xA;'", "\t\n\r\r\n");
    row("a carriage return before a reference", "b='\r&#10;'", " \n");
    row("entities", "b='&lt;&gt;&amp;&quot;&apos;'", "<>&\"'");
    row("a reference to a byte order mark", "b='&#xFEFF;7'", QStringLiteral("\uFEFF7"));
    row("a byte order mark", "b='\xEF\xBB\xBF\x37'", QStringLiteral("\uFEFF7"));
    row("angle and slash", "b='/>]]>'", "/>]]>");
    row("characters of two, three and four bytes", "b='\xC3\xA4\xE2\x82\xAC\xF0\x9F\x93\xA1'",
        QStringLiteral("\u00E4\u20AC\U0001F4E1"));
    row("among others", "ab='1' bb='2' b='3' B='4'", "3");
    row("a value like an attribute", "c=\" b='1'\" b='2'", "2");
    row("not there", "bb='2' a='b'", "(no attribute)");
}

void Utf8InputTest::attributeHasItsValue()
{
    QFETCH(QByteArray, tag);
    QFETCH(QString, text);
    for (const QByteArray &document : {"<a " + tag + "/>", "<a " + tag + "></a>", "<a\n" + tag + "\t/>"}) {
        QCOMPARE(attributeOf(document), text);
        QCOMPARE(XmlSources::differenceOfSteps(document, 1), QString());
    }
}

void Utf8InputTest::documentHasItsTags_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QStringList>("tags");

    const auto row = [](const char *name, const QByteArray &document, const char *tags) {
        QTest::newRow(name) << document << QString::fromLatin1(tags).split(QLatin1Char(' '));
    };
    row("an empty element", "<a/>", "+a -a");
    row("an element without content", "<a></a>", "+a -a");
    row("byte order mark and declaration", "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<a/>", "+a -a");
    row("nested elements", "<a>b<c d='e'>f</c><g/></a>", "+a +c -c +g -g -a");
    row("blanks in tags", "<a\n><b\t/></a >", "+a +b -b -a");
    row("angles in attributes", "<a b='>' c=\"/>\"><d e='/'/></a>", "+a +d -d -a");
    row("a slash at the end of an attribute", "<a b='/'></a>", "+a -a");
    row("tags in sections, comments and instructions",
        "<!--<b>--><?b <b>?><a><![CDATA[<b>]]><!--<b/>--><?b </b>?></a><!--<b>--><?b <b>?>", "+a -a");
    row("a comment that ends with a section's end", "<a><!-- ]]> --><b/></a>", "+a +b -b -a");
    row("a section that ends like a comment", "<a><![CDATA[ -->]]><b/></a>", "+a +b -b -a");
    row("comments and sections without content", "<a><!----><![CDATA[]]><?p?><b/></a>", "+a +b -b -a");
    row("names with digits, dots and hyphens", "<a1.b-c><_/></a1.b-c>", "+a1.b-c +_ -_ -a1.b-c");
}

void Utf8InputTest::documentHasItsTags()
{
    QFETCH(QByteArray, document);
    QFETCH(QStringList, tags);
    QVERIFY(XmlSubset::contains(document));
    Utf8Input input(document);
    QCOMPARE(restOf(input), tags);
    QCOMPARE(XmlSources::differenceOfSteps(document, 1), QString());
}

void Utf8InputTest::attributesAreFoundInAnyOrder()
{
    const QByteArray document = "<x a='1' value='2' b='3'/>";
    Utf8Input input(document);
    pass(input, 1);
    XmlText text;
    for (int i = 0; i < 2; ++i) {
        QVERIFY(input.findAttribute(b, text));
        QCOMPARE(text.toString(), QStringLiteral("3"));
        QVERIFY(input.findAttribute(b, text));
        QCOMPARE(text.toString(), QStringLiteral("3"));
        QVERIFY(!input.findAttribute({u"x", "x"}, text));
        QVERIFY(!input.findAttribute({u"valu", "valu"}, text));
        QVERIFY(input.findAttribute(value, text));
        QCOMPARE(text.toString(), QStringLiteral("2"));
        QVERIFY(input.findAttribute(a, text));
        QCOMPARE(text.toString(), QStringLiteral("1"));
    }
    QCOMPARE(restOf(input), QStringList({QStringLiteral("-x")}));
}

void Utf8InputTest::attributesBelongToTheirTag()
{
    const QByteArray document = "<x a='1'><y b='2'/><z/></x>";
    Utf8Input input(document);
    XmlText text;
    pass(input, 2);
    QVERIFY(!input.findAttribute(a, text));
    QVERIFY(input.findAttribute(b, text));
    pass(input, 2);
    QCOMPARE(input.name(), QStringLiteral("z"));
    QVERIFY(!input.findAttribute(b, text));
    QCOMPARE(restOf(input), QStringList({QStringLiteral("-z"), QStringLiteral("-x")}));
}

void Utf8InputTest::textIsReadAfterAttributes()
{
    const QByteArray document = "<x a='/'><y a='>' >1</y ><y a='/'/><y/></x>";
    Utf8Input input(document);
    XmlText text;
    pass(input, 2);
    QVERIFY(input.findAttribute(a, text));
    QVERIFY(input.readText(text));
    QCOMPARE(text.toString(), QStringLiteral("1"));
    pass(input, 1);
    QVERIFY(input.findAttribute(a, text));
    QVERIFY(input.readText(text));
    QCOMPARE(text.toString(), QString(QLatin1String("")));
    pass(input, 1);
    QVERIFY(!input.findAttribute(a, text));
    QVERIFY(input.readText(text));
    QCOMPARE(restOf(input), QStringList({QStringLiteral("-x")}));
}

void Utf8InputTest::readingContinuesAfterAText()
{
    const QByteArray document = "<x><a>1<!-- --></a>2<b>3<y><y/></y></b><value/></x>";
    Utf8Input input(document);
    XmlText text;
    pass(input, 2);
    QVERIFY(input.readText(text));
    QCOMPARE(text.toString(), QStringLiteral("1"));
    QCOMPARE(input.next(), XmlInput::Tag::Start);
    QVERIFY(input.isNamed(b));
    QVERIFY(input.readText(text));
    QCOMPARE(text.toString(), QStringLiteral("3"));
    QCOMPARE(input.next(), XmlInput::Tag::Start);
    QVERIFY(input.isNamed(value));
    QCOMPARE(restOf(input), QStringList({QStringLiteral("-value"), QStringLiteral("-x")}));
}

/// The second tag, <y>, is skipped.
void Utf8InputTest::skippingEndsAtTheNextTagOfTheName_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QStringList>("rest");

    const auto row = [](const char *name, const QByteArray &document, const char *rest) {
        QTest::newRow(name) << document << QString::fromLatin1(rest).split(QLatin1Char(' '));
    };
    row("an empty element", "<x><y a='/>'/><z/></x>", "+z -z -x");
    row("a text", "<x><y>1</y><z/></x>", "+z -z -x");
    row("other elements", "<x><y><z/><z>1</z></y></x>", "-x");
    row("the same name inside", "<x><y><y>1</y><z/></y></x>", "-y +z -z -y -x");
    row("the same name inside, empty", "<x><y><y/><z/></y></x>", "-y +z -z -y -x");
    row("the same name deeper inside", "<x><y><z><y/></z></y></x>", "-y -z -y -x");
    row("the name in comments and sections", "<x><y><!--</y>--><![CDATA[</y>]]><?y </y>?></y><z/></x>", "+z -z -x");
    row("longer names", "<x><y><yy/></y><z/></x>", "+z -z -x");
}

void Utf8InputTest::skippingEndsAtTheNextTagOfTheName()
{
    QFETCH(QByteArray, document);
    QFETCH(QStringList, rest);
    QVERIFY(XmlSubset::contains(document));
    Utf8Input input(document);
    pass(input, 2);
    QCOMPARE(input.name(), QStringLiteral("y"));
    input.skipToSameName();
    QCOMPARE(restOf(input), rest);
}

void Utf8InputTest::tagIsComparedWithTheWholeName()
{
    const QByteArray document = "<value></value>";
    Utf8Input input(document);
    for (int i = 0; i < 2; ++i) {
        pass(input, 1);
        QVERIFY(input.isNamed(value));
        QVERIFY(!input.isNamed({u"valu", "valu"}));
        QVERIFY(!input.isNamed({u"values", "values"}));
        QVERIFY(!input.isNamed({u"Value", "Value"}));
        QVERIFY(!input.isNamed({u"", ""}));
    }
}

void Utf8InputTest::textWithReferencesIsNotComparedAsItIs()
{
    const QByteArray document = "<x><a>true</a><a>&#116;rue</a><a>tru</a></x>";
    Utf8Input input(document);
    pass(input, 1);
    XmlText text;
    QVector<bool> isTrue;
    while (input.next() == XmlInput::Tag::Start && input.readText(text))
        isTrue += text.is(QLatin1String("true"));
    QCOMPARE(isTrue, QVector<bool>({true, false, false}));
}

void Utf8InputTest::textWithoutCharactersIsEmptyButNotNull()
{
    const QByteArray document = "<x b=''><a/><a></a><a><!-- --></a><a><![CDATA[]]></a><a><y>1</y></a></x>";
    Utf8Input input(document);
    pass(input, 1);
    XmlText text;
    QVERIFY(input.findAttribute(b, text));
    int texts = 0;
    do {
        ++texts;
        QVERIFY(text.isEmpty());
        QVERIFY(text.toString().isEmpty());
        QVERIFY(!text.toString().isNull());
        QVERIFY(text.is(QLatin1String("")));
    } while (input.next() == XmlInput::Tag::Start && input.readText(text));
    QCOMPARE(texts, 6);
}

void Utf8InputTest::valuesAreReadFromReferencesAndSections()
{
    ValueInt number;
    QVERIFY(number.SetXmlString(QStringLiteral("<ValueInt id='&#105;d'><value>&#45;<![CDATA[4]]><!---->2</value>"
                                               "</ValueInt>"),
                                true));
    QCOMPARE(number.Getid(), QStringLiteral("id"));
    QCOMPARE(number.Getvalue(), -42);
    ValueBoolean boolean;
    QVERIFY(boolean.SetXmlString(QStringLiteral("<ValueBoolean id='' value='&#116;rue'/>"), true));
    QVERIFY(boolean.Getvalue());
    QVERIFY(boolean.SetXmlString(QStringLiteral("<ValueBoolean id='' value='f&#97;lse'/>"), true));
    QVERIFY(!boolean.Getvalue());
}

TEST_SUITE_WITHOUT_APPLICATION(Utf8InputTest)
#include "tst_Utf8Input.moc"
