// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Encodings.h"

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
    object.SetXmlString(xml, false);
    return object.GetErrorString();
}

/// Elements in each other, each with a namespace of its own. A reader that processes them looks through all of those
/// around it, at each of them: at this depth for many seconds.
QString nested(const QString &begin, const QString &end)
{
    constexpr int depth = 100000;
    QString xml = begin;
    for (int i = 0; i < depth; ++i)
        xml += QStringLiteral("<x xmlns:a='u'>");
    for (int i = 0; i < depth; ++i)
        xml += QStringLiteral("</x>");
    return xml + end;
}

} // namespace

/// What stands in elements that no class knows is of no interest, however it is nested.
class UnknownElementsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void prefixesNeedNoDeclarationInThem();
    void prefixesNeedADeclarationAroundThem();
    void prefixesNeedNoDeclarationBehindOneThatIsNestedInItsLike();
    void prefixesNeedNoDeclarationBehindOneInTheRoot();
    void aReaderIsLeftAsItWas();
    void theyMayBeNestedDeeply_data();
    void theyMayBeNestedDeeply();
    void endsThatPassForAnObjectsOwnLeaveNoNamespaces();
};

void UnknownElementsTest::prefixesNeedNoDeclarationInThem()
{
    ValueBoolean value;
    readXml(value, QStringLiteral("<ValueBoolean><x><p:y q:z='1'><p:z/></p:y></x><id>a<p:y/></id></ValueBoolean>"));
    QCOMPARE(value.Getid(), QStringLiteral("a"));
}

void UnknownElementsTest::prefixesNeedADeclarationAroundThem()
{
    const auto undeclared = [](int column) {
        return QStringLiteral("XML text:1:%1: Namespace prefix 'p' not declared").arg(column);
    };
    QCOMPARE(errorOf<ValueBoolean>(QStringLiteral("<ValueBoolean><p:x/></ValueBoolean>")), undeclared(20));
    QCOMPARE(errorOf<ValueBoolean>(QStringLiteral("<ValueBoolean><x/><p:x/></ValueBoolean>")), undeclared(24));
    QCOMPARE(errorOf<ValueBoolean>(QStringLiteral("<ValueBoolean><x></x><p:x/></ValueBoolean>")), undeclared(27));
    QCOMPARE(errorOf<ValueBoolean>(QStringLiteral("<ValueBoolean><id><x/></id><p:x/></ValueBoolean>")), undeclared(33));
}

void UnknownElementsTest::prefixesNeedNoDeclarationBehindOneThatIsNestedInItsLike()
{
    QCOMPARE(errorOf<Node>(QStringLiteral("<Node><x><x></x></x><p:y/></Node>")), QString());
    QCOMPARE(errorOf<Node>(QStringLiteral("<Node><ValueItem><x><x></x></x><p:y/></ValueItem><p:y/></Node>")),
             QStringLiteral("XML text:1:55: Namespace prefix 'p' not declared"));
}

void UnknownElementsTest::prefixesNeedNoDeclarationBehindOneInTheRoot()
{
    QCOMPARE(errorOf<TunerProperties>(QStringLiteral("<TunerProperties Version='1.1'><x/><p:y/></TunerProperties>")),
             QString());
    QCOMPARE(errorOf<TunerProperties>(QStringLiteral("<TunerProperties Version='1.0'><x/><p:y/></TunerProperties>")),
             QStringLiteral("XML text:1:41: Namespace prefix 'p' not declared"));
}

template <class Class>
bool namespacesAreProcessedBehind(const QString &element, bool namespacesBefore)
{
    QXmlStreamReader reader(QStringLiteral("<a>") + element + QStringLiteral("<p:b xmlns:p='urn:p'/></a>"));
    reader.setNamespaceProcessing(namespacesBefore);
    reader.readNextStartElement();
    reader.readNextStartElement();
    Class object;
    object.SetValidate(false);
    object.ProcessXml(reader);
    if (!reader.isEndElement() || !reader.readNextStartElement() || reader.name() != QLatin1String("b"))
        qFatal("the reader does not stand at the object's end");
    return reader.namespaceUri() == QLatin1String("urn:p");
}

void UnknownElementsTest::aReaderIsLeftAsItWas()
{
    for (const bool namespaces : {true, false}) {
        QCOMPARE(namespacesAreProcessedBehind<Node>(QStringLiteral("<Node><x/></Node>"), namespaces), namespaces);
        QCOMPARE(namespacesAreProcessedBehind<Node>(QStringLiteral("<Node><x><x/></x></Node>"), namespaces),
                 namespaces);
        QCOMPARE(namespacesAreProcessedBehind<Node>(QStringLiteral("<Node><id>a<x/></id></Node>"), namespaces),
                 namespaces);
        QCOMPARE(namespacesAreProcessedBehind<TunerProperties>(
                     QStringLiteral("<TunerProperties Version='1.1'><x/></TunerProperties>"), namespaces),
                 namespaces);
        QCOMPARE(
            namespacesAreProcessedBehind<Node>(
                QStringLiteral("<Node><ValueItem><ValueItem><ValueItem/></ValueItem></ValueItem></Node>"), namespaces),
            namespaces);
    }
}

void UnknownElementsTest::theyMayBeNestedDeeply_data()
{
    QTest::addColumn<bool>("isNode");
    QTest::addColumn<QString>("begin");
    QTest::addColumn<QString>("end");
    QTest::newRow("in an object") << true << "<Node>"
                                  << "</Node>";
    QTest::newRow("in an element of another name") << true << "<Node><y>"
                                                   << "</y></Node>";
    QTest::newRow("in the text of a member") << true << "<Node><id>"
                                             << "</id></Node>";
    QTest::newRow("in the root") << false << "<TunerProperties Version='1.1'>"
                                 << "</TunerProperties>";
    QTest::newRow("in an old root") << false << "<TunerProperties Version='1.0'>"
                                    << "</TunerProperties>";
    QTest::newRow("in a child") << true << "<Node><ValueItem>"
                                << "</ValueItem></Node>";
    QTest::newRow("behind an end of the object's name") << true << "<Node><Node><Node></Node>"
                                                        << "</Node></Node>";
}

void UnknownElementsTest::theyMayBeNestedDeeply()
{
    QFETCH(const bool, isNode);
    QFETCH(const QString, begin);
    QFETCH(const QString, end);
    QCOMPARE(isNode ? errorOf<Node>(nested(begin, end)) : errorOf<TunerProperties>(nested(begin, end)), QString());
}

void UnknownElementsTest::endsThatPassForAnObjectsOwnLeaveNoNamespaces()
{
    // Each item ends at the end of the third element of its name, and leaves two open.
    constexpr int count = 150000;
    const auto item = QStringLiteral("<ValueItem xmlns:a='u'><ValueItem><ValueItem></ValueItem>");
    const auto ends = QStringLiteral("</ValueItem></ValueItem>");
    QCOMPARE(errorOf<Node>(QStringLiteral("<Node>") + item.repeated(count) + ends.repeated(count)
                           + QStringLiteral("</Node>")),
             QString());
}

QTEST_GUILESS_MAIN(UnknownElementsTest)
#include "tst_UnknownElements.moc"
