// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Encodings.h"
#include "ExceptionText.h"

#include <jobxml/Component.h>
#include <jobxml/Node.h>
#include <jobxml/TunerProperties.h>
#include <jobxml/ValueBoolean.h>

using namespace JobXml;

namespace {

/// The error of reading the document without validation, or null.
template <class Class>
QString errorOf(const QString &xml)
{
    Class object;
    return object.SetXmlString(xml, false) ? QString() : object.GetErrorString();
}

/// Reads an element by a program's own reader, and returns whether the reader processes the namespace of the next
/// element.
template <class Class>
bool namespacesAreProcessedAfter(const QString &element, bool validate = false)
{
    QXmlStreamReader reader(QStringLiteral("<a>") + element + QStringLiteral("<p:b xmlns:p='urn:p'/></a>"));
    reader.readNextStartElement();
    reader.readNextStartElement();
    Class object;
    object.SetValidate(validate);
    const QString thrown = thrownBy([&] { object.ProcessXml(reader); });
    if (thrown.isNull() == validate)
        qFatal("an exception is expected while validating, and no other");
    while (!reader.atEnd() && reader.name() != QLatin1String("b"))
        reader.readNext();
    return reader.namespaceUri() == QLatin1String("urn:p");
}

} // namespace

/// Elements are identified by their local names. Their namespaces are ignored and take no time.
class NamespacesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void prefixOfANameIsIgnored();
    void aPrefixOfTheRootHasToBeDeclared();
    void aPrefixInsideNeedNotBeDeclared();
    void programsReaderKeepsItsNamespaceProcessing();
    void programsReaderKeepsItsNamespaceProcessingWhenTheModelThrows();
    void readerWithoutNamespaceProcessingStaysWithoutIt();
    void deeplyNestedNamespacesAreNotProcessed_data();
    void deeplyNestedNamespacesAreNotProcessed();
};

void NamespacesTest::prefixOfANameIsIgnored()
{
    const QString bare = QStringLiteral("<ValueBoolean id=\"a\" value=\"true\"/>");
    for (const char *xml : {
             "<p:ValueBoolean xmlns:p='urn:p' id='a'><p:value>true</p:value></p:ValueBoolean>",
             "<ValueBoolean xmlns='urn:d'><q:id xmlns:q='urn:q'>a</q:id><value "
             "xmlns='urn:e'>true</value></ValueBoolean>",
             "<ValueBoolean xmlns:p='urn:p' id='a' p:id='b' p:value='false'><value>true</value></ValueBoolean>",
         }) {
        ValueBoolean value;
        readXml(value, QString::fromLatin1(xml));
        QCOMPARE(xmlOf(value), bare);
    }
}

void NamespacesTest::aPrefixOfTheRootHasToBeDeclared()
{
    const auto undeclared = QStringLiteral(": Namespace prefix 'p' not declared");
    QCOMPARE(errorOf<Node>(QStringLiteral("<p:Node/>")), QStringLiteral("XML text:1:9") + undeclared);
    QCOMPARE(errorOf<Node>(QStringLiteral("<Node p:id='a'></Node>")), QStringLiteral("XML text:1:15") + undeclared);
}

void NamespacesTest::aPrefixInsideNeedNotBeDeclared()
{
    QCOMPARE(errorOf<Node>(QStringLiteral("<Node><p:id p:x='1'>a</p:id><p:x><p:y/></p:x></Node>")), QString());
    QCOMPARE(errorOf<TunerProperties>(QStringLiteral("<TunerProperties Version='1.1'><p:x/></TunerProperties>")),
             QString());
    QCOMPARE(errorOf<Node>(QStringLiteral("<Node><Node><Node></Node><p:x/></Node></Node>")), QString());
}

void NamespacesTest::programsReaderKeepsItsNamespaceProcessing()
{
    for (const char *node : {"<Node/>", "<Node><x/></Node>", "<Node><x><x/></x></Node>", "<Node><id>a<x/></id></Node>",
                             "<Node><ValueItem><ValueItem><ValueItem/></ValueItem></ValueItem></Node>",
                             "<Node><Node><Node></Node></Node></Node>"})
        QVERIFY2(namespacesAreProcessedAfter<Node>(QString::fromLatin1(node)), node);
    for (const char *root : {"<TunerProperties Version='1.1'><x/></TunerProperties>",
                             "<TunerProperties Version='1.1'><TunerProperties/></TunerProperties>",
                             "<TunerProperties Version='1.0'><TunerProperties><TunerProperties/></TunerProperties>"
                             "</TunerProperties>"})
        QVERIFY2(namespacesAreProcessedAfter<TunerProperties>(QString::fromLatin1(root)), root);
}

void NamespacesTest::programsReaderKeepsItsNamespaceProcessingWhenTheModelThrows()
{
    QVERIFY(namespacesAreProcessedAfter<Node>(
        QStringLiteral("<Node><x><x/><ValueItem><ValueBoolean value=''/></ValueItem></x></Node>"), true));
    QVERIFY(namespacesAreProcessedAfter<TunerProperties>(
        QStringLiteral("<TunerProperties Version='1.1'><x/></TunerProperties>"), true));
}

void NamespacesTest::readerWithoutNamespaceProcessingStaysWithoutIt()
{
    QXmlStreamReader reader(QStringLiteral("<Node><id>a</id><x/></Node>"));
    reader.setNamespaceProcessing(false);
    QVERIFY(reader.readNextStartElement());
    Node node;
    node.ProcessXml(reader);
    QCOMPARE(node.Getid(), QStringLiteral("a"));
    QCOMPARE(reader.namespaceProcessing(), false);
}

void NamespacesTest::deeplyNestedNamespacesAreNotProcessed_data()
{
    QTest::addColumn<QString>("begin");
    QTest::addColumn<QString>("nested"); // without its end
    QTest::addColumn<QString>("ends");
    QTest::addColumn<QString>("end");
    const auto row = [](const char *name, const char *begin, const char *nested, const char *ends, const char *end) {
        QTest::newRow(name) << QString::fromLatin1(begin) << QString::fromLatin1(nested) << QString::fromLatin1(ends)
                            << QString::fromLatin1(end);
    };
    row("in an object", "<Component>", "<x xmlns:a='u'>", "</x>", "</Component>");
    row("in an element of another name", "<Component><y>", "<x xmlns:a='u'>", "</x>", "</y></Component>");
    row("in the text of a member", "<Component><name>", "<x xmlns:a='u'>", "</x>", "</name></Component>");
    row("in a child", "<Component><Node>", "<x xmlns:a='u'>", "</x>", "</Node></Component>");
    row("after an end of the object's name", "<Component><Component><Component></Component>", "<x xmlns:a='u'>", "</x>",
        "</Component></Component>");
    row("after ends of items' names", "<Component>", "<Node xmlns:a='u'><Node><Node></Node>", "</Node></Node>",
        "</Component>");
    row("after ends of items' names that items left", "<Component>",
        "<Node xmlns:a='u'><ValueItem><Node><Node><ValueItem><ValueItem></ValueItem></ValueItem></Node>",
        "</Node></ValueItem></Node>", "</Component>");
}

void NamespacesTest::deeplyNestedNamespacesAreNotProcessed()
{
    QFETCH(const QString, begin);
    QFETCH(const QString, nested);
    QFETCH(const QString, ends);
    QFETCH(const QString, end);
    // An undeclared prefix, and the time, show that they are not processed.
    const auto document = [&](int depth) {
        return begin + nested.repeated(depth) + QStringLiteral("<p:z/>") + ends.repeated(depth) + end;
    };
    for (const int depth : {0, 1, 2, 3, 50000})
        QCOMPARE(errorOf<Component>(document(depth)), QString());
}

TEST_SUITE(NamespacesTest)
#include "tst_Namespaces.moc"
