// SPDX-License-Identifier: MIT
#include <QMap>
#include <QTest>

#include <reportbase/XmlMarkup.h>

#include "GuardedBytes.h"
#include "framework/Random.h"

using REPORTGENERATOR::XmlMarkup;

/// Finds where the parts of a document are.
class XmlMarkupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elementsHaveTheirTagsAndContents();
    void emptyElementTagHasEmptyContentAtItsEnd();
    void elementsFormATree();
    void attributesAreInTheOrderOfTheDocument();
    void attributesAreFoundByTheirWholeName();
    void localNameHasNoPrefix();
    void commentsAreBetweenElements();
    void tagsInSectionsDoNotCount_data();
    void tagsInSectionsDoNotCount();
    void elementThatContainsItsNameIsMarked();
    void exactlyElementsThatContainTheirNameAreMarked_data();
    void exactlyElementsThatContainTheirNameAreMarked();
    void incompleteDocumentIsNotComplete_data();
    void incompleteDocumentIsNotComplete();
    void everyCutStaysWithinTheDocument();
    void elementsMayBeAThousandLevelsDeep();
    void replacedTextsMoveWhatFollows_data();
    void replacedTextsMoveWhatFollows();
};

namespace {

/// The elements as their names, start tags, contents and wholes.
QStringList described(const XmlMarkup &markup)
{
    QStringList result;
    for (const XmlMarkup::Element &element : markup.elements()) {
        result.append(QString(markup.bytes(element.name)) + QLatin1Char('|') + markup.bytes(element.startTag)
                      + QLatin1Char('|') + markup.bytes(element.content) + QLatin1Char('|')
                      + markup.bytes(element.whole()));
    }
    return result;
}

} // namespace

void XmlMarkupTest::elementsHaveTheirTagsAndContents()
{
    const XmlMarkup markup("<?xml version=\"1.0\"?>\n<a x = '>'>t<b\n>u</b\n></a>\n");
    QVERIFY(markup.isComplete());
    QCOMPARE(described(markup),
             (QStringList{QStringLiteral("a|<a x = '>'>|t<b\n>u</b\n>|<a x = '>'>t<b\n>u</b\n></a>"),
                          QStringLiteral("b|<b\n>|u|<b\n>u</b\n>")}));
}

void XmlMarkupTest::emptyElementTagHasEmptyContentAtItsEnd()
{
    const XmlMarkup markup("<a><b x='1'/></a>");
    const XmlMarkup::Element b = markup.elements().at(1);
    QVERIFY(b.isEmptyTag);
    QVERIFY(!markup.elements().at(0).isEmptyTag);
    QCOMPARE(b.startTag.end, 13);
    QCOMPARE(b.content.begin, 13);
    QCOMPARE(b.content.end, 13);
    QCOMPARE(b.end, 13);
}

void XmlMarkupTest::elementsFormATree()
{
    const XmlMarkup markup("<a><b><c/></b><d></d></a>");
    QVector<int> parents;
    QVector<int> next;
    for (const XmlMarkup::Element &element : markup.elements()) {
        parents.append(element.parent);
        next.append(element.next);
    }
    QCOMPARE(parents, (QVector<int>{-1, 0, 1, 0}));
    QCOMPARE(next, (QVector<int>{4, 3, 3, 4}));
}

void XmlMarkupTest::attributesAreInTheOrderOfTheDocument()
{
    const XmlMarkup markup("<a one='1' two=\"a'&lt;b\"><b three =\n'' /></a>");
    QStringList found;
    for (const XmlMarkup::Attribute &attribute : markup.attributes()) {
        found.append(QString(markup.bytes(attribute.name)) + QLatin1Char('|') + markup.bytes(attribute.value)
                     + QLatin1Char('|') + markup.bytes(attribute.whole()));
    }
    QCOMPARE(found,
             (QStringList{QStringLiteral("one|1|one='1'"), QStringLiteral("two|a'&lt;b|two=\"a'&lt;b\""),
                          QStringLiteral("three||three =\n''")}));
    QCOMPARE(markup.elements().at(0).firstAttribute, 0);
    QCOMPARE(markup.elements().at(0).attributeCount, 2);
    QCOMPARE(markup.elements().at(1).firstAttribute, 2);
    QCOMPARE(markup.elements().at(1).attributeCount, 1);
}

void XmlMarkupTest::attributesAreFoundByTheirWholeName()
{
    const XmlMarkup markup("<a p:id='1' id='2'><b idx='3'/></a>");
    QCOMPARE(markup.findAttribute(markup.elements().at(0), QLatin1String("id")), 1);
    QCOMPARE(markup.findAttribute(markup.elements().at(0), QLatin1String("p:id")), 0);
    QCOMPARE(markup.findAttribute(markup.elements().at(1), QLatin1String("id")), -1);
    QCOMPARE(markup.findAttribute(markup.elements().at(1), QLatin1String("idx")), 2);
}

void XmlMarkupTest::localNameHasNoPrefix()
{
    const XmlMarkup markup("<p:a><b/></p:a>");
    QCOMPARE(markup.bytes(markup.elements().at(0).name), QLatin1String("p:a"));
    QCOMPARE(markup.localName(markup.elements().at(0)), QLatin1String("a"));
    QCOMPARE(markup.localName(markup.elements().at(1)), QLatin1String("b"));
}

void XmlMarkupTest::commentsAreBetweenElements()
{
    const XmlMarkup markup("<!-- 1 --><a><!--2--><b/><!--<c>--></a><!---->");
    QStringList found;
    for (const XmlMarkup::Comment &comment : markup.comments())
        found.append(QStringLiteral("%1 in %2 before %3")
                         .arg(markup.bytes(comment.whole))
                         .arg(comment.parent)
                         .arg(comment.next));
    QCOMPARE(found,
             (QStringList{QStringLiteral("<!-- 1 --> in -1 before 0"), QStringLiteral("<!--2--> in 0 before 1"),
                          QStringLiteral("<!--<c>--> in 0 before 2"), QStringLiteral("<!----> in -1 before 2")}));
}

void XmlMarkupTest::tagsInSectionsDoNotCount_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::newRow("comment") << QByteArray("<a><!-- <b> </a> --></a>");
    QTest::newRow("comment that begins with the end of its mark") << QByteArray("<a><!---><b/>--></a>");
    QTest::newRow("the same in a document type") << QByteArray("<!DOCTYPE a [<!---> ]><b/> --> ]><a></a>");
    QTest::newRow("CDATA") << QByteArray("<a><![CDATA[<b></a>]] >]]></a>");
    QTest::newRow("processing instruction") << QByteArray("<?x <b> ?><a><?y </a> > ?></a>");
    QTest::newRow("attribute") << QByteArray("<a x='<b></a>'></a>");
    QTest::newRow("document type") << QByteArray("<!DOCTYPE a><a></a>");
    QTest::newRow("internal subset") << QByteArray(
        "<!DOCTYPE a SYSTEM \">\" [<!ENTITY e \"]>\"><!-- ]> --><?p ]> ?><!ELEMENT a ANY>] ><a></a>");
}

void XmlMarkupTest::tagsInSectionsDoNotCount()
{
    QFETCH(QByteArray, document);
    const XmlMarkup markup(document);
    QVERIFY(markup.isComplete());
    QCOMPARE(markup.elements().size(), 1);
    QCOMPARE(markup.bytes(markup.elements().at(0).name), QLatin1String("a"));
}

void XmlMarkupTest::elementThatContainsItsNameIsMarked()
{
    const XmlMarkup markup("<a><b><p:b/></b><c><d><q:c/></d></c><b/><e><f/></e></a>");
    QStringList marked;
    for (int i = 0; i < markup.elements().size(); ++i) {
        if (markup.elements().at(i).containsItsName)
            marked.append(QString::number(i));
    }
    QCOMPARE(marked, (QStringList{QStringLiteral("1"), QStringLiteral("3")}));
}

void XmlMarkupTest::exactlyElementsThatContainTheirNameAreMarked_data()
{
    QTest::addColumn<int>("names");
    QTest::addColumn<int>("deepest");
    QTest::newRow("two names") << 2 << 10;
    QTest::newRow("ten names") << 10 << 10;
    QTest::newRow("ten names at hundreds of levels") << 10 << 900;
    QTest::newRow("a thousand names at hundreds of levels") << 1000 << 900;
}

/// Each element is compared with all around it.
void XmlMarkupTest::exactlyElementsThatContainTheirNameAreMarked()
{
    QFETCH(int, names);
    QFETCH(int, deepest);
    Random random(1);
    QByteArray document;
    QList<QByteArray> open;
    for (int i = 0; i < 5000 || !open.isEmpty(); ++i) {
        if (!open.isEmpty() && (i > 5000 || open.size() == deepest || random.oneIn(3))) {
            document += "</" + open.takeLast() + '>';
            continue;
        }
        const QByteArray name = (random.oneIn(4) ? "p:n" : "n") + QByteArray::number(random.below(names));
        const bool isEmptyTag = !open.isEmpty() && random.oneIn(4);
        document += '<' + name + (isEmptyTag ? "/>" : ">");
        if (!isEmptyTag)
            open.append(name);
    }

    const XmlMarkup markup(document);
    QVector<bool> expected(markup.elements().size());
    for (const XmlMarkup::Element &element : markup.elements()) {
        for (int around = element.parent; around >= 0; around = markup.elements().at(around).parent) {
            if (markup.localName(markup.elements().at(around)) == markup.localName(element))
                expected[around] = true;
        }
    }
    QVERIFY(expected.contains(true) && expected.contains(false));
    QVector<bool> marked;
    for (const XmlMarkup::Element &element : markup.elements())
        marked.append(element.containsItsName);
    QCOMPARE(marked, expected);
}

void XmlMarkupTest::incompleteDocumentIsNotComplete_data()
{
    QTest::addColumn<QByteArray>("document");
    for (const char *document :
         {"", "text", "<a>", "<a", "<a x", "<a x=", "<a x='", "<a x='1'", "<a/", "</a>", "<a></a></a>", "<a><!-- </a>",
          "<a><![CDATA[ </a>", "<a><?x </a>", "<!DOCTYPE a [<a></a>", "<a x=1></a>"})
        QTest::newRow(document) << QByteArray(document);
}

void XmlMarkupTest::incompleteDocumentIsNotComplete()
{
    QFETCH(QByteArray, document);
    QVERIFY(!XmlMarkup(document).isComplete());
}

void XmlMarkupTest::everyCutStaysWithinTheDocument()
{
    const QByteArray whole = "<?xml version='1.0'?><!DOCTYPE a [<!ENTITY e ']'>]><a x=\"1\" y = '2'><!-- c --><b z=''>t"
                             "<![CDATA[d]]></b><?p i?><c/></a>";
    QVERIFY(XmlMarkup(whole).isComplete());
    for (int size = 0; size < whole.size(); ++size) {
        const GuardedBytes cut(whole.left(size));
        const XmlMarkup markup(cut.last(size));
        QVERIFY2(!markup.isComplete(), whole.left(size).constData());
        for (const XmlMarkup::Element &element : markup.elements()) {
            QVERIFY(0 <= element.startTag.begin && element.startTag.begin < element.name.begin);
            QVERIFY(element.name.end <= element.startTag.end && element.startTag.end <= element.content.begin);
            QVERIFY(element.content.begin <= element.content.end && element.content.end <= element.end);
            QVERIFY(element.end <= size);
            QVERIFY(element.next <= markup.elements().size());
        }
        for (const XmlMarkup::Attribute &attribute : markup.attributes())
            QVERIFY(attribute.name.begin <= attribute.name.end && attribute.whole().end <= size);
    }
}

void XmlMarkupTest::elementsMayBeAThousandLevelsDeep()
{
    const auto nested = [](int levels) {
        return QByteArray("<a>").repeated(levels) + QByteArray("</a>").repeated(levels);
    };
    QVERIFY(XmlMarkup(nested(1000)).isComplete());
    QVERIFY(!XmlMarkup(nested(1001)).isComplete());
}

namespace {

/// All places, and what else is known of the document.
QStringList everything(const XmlMarkup &markup)
{
    const auto text = [](const XmlMarkup::Span &span) { return QStringLiteral("%1-%2").arg(span.begin).arg(span.end); };
    QStringList result{QString::fromUtf8(markup.document()),
                       markup.isComplete() ? QStringLiteral("complete") : QString()};
    for (const XmlMarkup::Element &element : markup.elements()) {
        result.append(QStringLiteral("element %1 %2 %3 to %4, ")
                          .arg(text(element.name), text(element.startTag), text(element.content))
                          .arg(element.end)
                      + QStringLiteral("parent %1, next %2, attributes %3+%4, empty %5, contains %6")
                            .arg(element.parent)
                            .arg(element.next)
                            .arg(element.firstAttribute)
                            .arg(element.attributeCount)
                            .arg(element.isEmptyTag)
                            .arg(element.containsItsName));
    }
    for (const XmlMarkup::Attribute &attribute : markup.attributes())
        result.append(QStringLiteral("attribute %1=%2").arg(text(attribute.name), text(attribute.value)));
    for (const XmlMarkup::Comment &comment : markup.comments())
        result.append(QStringLiteral("comment %1 in %2 before %3")
                          .arg(text(comment.whole))
                          .arg(comment.parent)
                          .arg(comment.next));
    return result;
}

} // namespace

void XmlMarkupTest::replacedTextsMoveWhatFollows_data()
{
    QTest::addColumn<QByteArray>("after"); // of this document, in which capital letters are replaced:
    const char before[] = "<!-- 1 --><a x='A' y=\"BB\"><b>CCC<c/>D</b><!-- 2 --><b z='E'/>F</a><!-- 3 -->";
    const auto add = [&](const char *name, const QMap<char, QByteArray> &texts) {
        QByteArray after;
        for (const char *at = before; *at != '\0'; ++at) {
            if (*at < 'A' || *at > 'Z')
                after += *at;
            else if (at[-1] != *at)
                after += texts.value(*at, QByteArray(*at == 'C' ? 3 : *at == 'B' ? 2 : 1, *at));
        }
        QTest::newRow(name) << after;
    };
    add("nothing", {});
    add("the first attribute", {{'A', "123"}});
    add("an attribute that becomes empty", {{'B', ""}});
    add("a text before a child", {{'C', "1"}});
    add("a text after a child", {{'D', "12345"}});
    add("the last text", {{'F', ""}});
    add("another text of the same size", {{'C', "123"}});
    add("some", {{'B', "1"}, {'D', "1234567"}, {'E', ""}});
    add("all", {{'A', ""}, {'B', "123"}, {'C', ""}, {'D', "123456"}, {'E', "12"}, {'F', ""}});
}

void XmlMarkupTest::replacedTextsMoveWhatFollows()
{
    QFETCH(QByteArray, after);
    const QByteArray before = "<!-- 1 --><a x='A' y=\"BB\"><b>CCC<c/>D</b><!-- 2 --><b z='E'/>F</a><!-- 3 -->";
    QVector<XmlMarkup::TextPart> parts;
    int at = 0; // in the document afterwards
    for (int begin = 0; begin < before.size(); ++begin, ++at) {
        const char letter = before.at(begin);
        if (letter < 'A' || letter > 'Z')
            continue;
        const int end = before.lastIndexOf(letter) + 1;
        const int size = after.indexOf(before.at(end), at) - at;
        if (after.mid(at, size) != before.mid(begin, end - begin))
            parts.append({{begin, end}, size});
        begin = end - 1;
        at += size - 1;
    }
    XmlMarkup markup(before);
    markup.replaceTexts(after, parts);
    QCOMPARE(everything(markup), everything(XmlMarkup(after)));
}

TEST_SUITE(XmlMarkupTest)
#include "tst_XmlMarkup.moc"
