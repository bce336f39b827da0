// SPDX-License-Identifier: MIT
#include <QTest>

#include <reportbase/XmlMarkup.h>

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
    void incompleteDocumentIsNotComplete_data();
    void incompleteDocumentIsNotComplete();
    void everyCutStaysWithinTheDocument();
    void elementsMayBeAThousandLevelsDeep();
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
        const QByteArray cut(whole.constData(), size); // its own memory
        const XmlMarkup markup(cut);
        QVERIFY2(!markup.isComplete(), cut.constData());
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

TEST_SUITE(XmlMarkupTest)
#include "tst_XmlMarkup.moc"
