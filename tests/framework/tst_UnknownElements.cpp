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
    void prefixesNeedNoDeclarationOnceOneIsNestedInItsLike();
    void prefixesNeedNoDeclarationOnceTheRootHoldsOne();
    void aReaderThatProcessesNoNamespacesIsLeftAsItIs();
    void theyMayBeNestedDeeply_data();
    void theyMayBeNestedDeeply();
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

void UnknownElementsTest::prefixesNeedNoDeclarationOnceOneIsNestedInItsLike()
{
    QCOMPARE(errorOf<ValueBoolean>(QStringLiteral("<ValueBoolean><x><x></x></x><p:y/></ValueBoolean>")), QString());
}

void UnknownElementsTest::prefixesNeedNoDeclarationOnceTheRootHoldsOne()
{
    QCOMPARE(errorOf<TunerProperties>(QStringLiteral("<TunerProperties Version='1.1'><x/><p:y/></TunerProperties>")),
             QString());
    QCOMPARE(errorOf<TunerProperties>(QStringLiteral("<TunerProperties Version='1.0'><x/><p:y/></TunerProperties>")),
             QStringLiteral("XML text:1:41: Namespace prefix 'p' not declared"));
}

void UnknownElementsTest::aReaderThatProcessesNoNamespacesIsLeftAsItIs()
{
    for (const bool namespaces : {false, true}) {
        QXmlStreamReader reader(QStringLiteral("<ValueBoolean><x/><id>a</id><y></y></ValueBoolean>"));
        reader.setNamespaceProcessing(namespaces);
        QVERIFY(reader.readNextStartElement());
        ValueBoolean value;
        value.ProcessXml(reader);
        QCOMPARE(value.Getid(), QStringLiteral("a"));
        QCOMPARE(reader.namespaceProcessing(), namespaces);
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

QTEST_GUILESS_MAIN(UnknownElementsTest)
#include "tst_UnknownElements.moc"
