// SPDX-License-Identifier: MIT
#include <QSet>
#include <QtTest>

#include <tunerdocuments/Path.h>

#include "Documents.h"
#include "documents/RandomChanges.h"
#include "documents/html/Pages.h"

using JobXml::MemberView;
using JobXml::TunerProperties;

using namespace TunerDocuments;

/// The identifiers of components and nodes on a page, which links to it have.
class HtmlIdentifiersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void identifierOfEveryNodeIsItsPath();
    void identifiersHaveOnlyCharactersThatALinkKeeps();
    void identifierOfALongNameIsItsPosition();
};

void HtmlIdentifiersTest::identifierOfEveryNodeIsItsPath()
{
    for (int seed = 0; seed < 30; ++seed) {
        TunerProperties document = randomDocument(seed, 20);
        document.SetValidate(false);
        // The same identity twice, and a text that needs quotes.
        document.AppendComponent(aComponent(QStringLiteral("a b, \"c\"/[d] \u00e4 %41 \n"), 2));
        document.AppendComponent(aComponent(QStringLiteral("a b, \"c\"/[d] \u00e4 %41 \n"), 2));
        const PageTree page = pageOf(document);
        QStringList expected;
        JobXml::visit(document, [&](const MemberView &member) {
            if (member.GetName() != QLatin1String("Component"))
                return;
            const QStringList components = Paths::stepsTo(member);
            for (int i = 0; i < member.GetSize(); ++i) {
                expected.append(components[i]);
                JobXml::visit(member.GetChild(i), [&](const MemberView &nodes) {
                    if (nodes.GetName() != QLatin1String("Node"))
                        return;
                    for (const QString &step : Paths::stepsTo(nodes))
                        expected.append(components[i] + QLatin1Char('/') + step);
                });
            }
        });
        QStringList shown;
        for (const PageNode *item :
             page.root().all([](const PageNode &node) { return node.isOfClass("card") || node.isOfClass("node"); })) {
            shown.append(QString::fromUtf8(QByteArray::fromPercentEncoding(item->attribute("id").toLatin1())));
            QCOMPARE(Paths::find(document, shown.last()).path, shown.last());
        }
        QCOMPARE(shown, expected);
        QSet<QString> identifiers;
        for (const PageNode *item : page.root().all([](const PageNode &node) { return node.has("id"); })) {
            QVERIFY2(!identifiers.contains(item->attribute("id")), qPrintable(item->attribute("id")));
            identifiers.insert(item->attribute("id"));
        }
    }
}

void HtmlIdentifiersTest::identifiersHaveOnlyCharactersThatALinkKeeps()
{
    TunerProperties document = aDocument(1);
    document.GetComponent()[0].Setname(QStringLiteral("<a href='#'> \u00e4%20&\"\\"));
    const PageTree page = pageOf(document);
    QCOMPARE(only(ofClass(page, "card"))->attribute("id"),
             QStringLiteral("Component[type=Filter,name=%22%3Ca%20href%3D%27%23%27%3E%20%C3%A4%2520%26%5C%22%5C%5C%22]")
                 .replace(QStringLiteral("%3D"), QStringLiteral("=")));
}

void HtmlIdentifiersTest::identifierOfALongNameIsItsPosition()
{
    // Each character is nine in a link, and each node has the identifier of its component in its own.
    const auto identifiers = [](int length) {
        TunerProperties document = aDocument(1);
        document.GetComponent()[0].Setname(QString(length, QChar(0x6F22)));
        const PageTree page = pageOf(document);
        return QStringList{only(ofClass(page, "card"))->attribute("id"), only(ofClass(page, "node"))->attribute("id")};
    };
    const QString start = QStringLiteral("Component[type=Filter,name=");
    const QString name = QStringLiteral("%E6%BC%A2").repeated(41);
    QCOMPARE(identifiers(41),
             (QStringList{start + name + QLatin1Char(']'), start + name + QStringLiteral("]/Node[id=node0]")}));
    QCOMPARE(identifiers(42),
             (QStringList{QStringLiteral("Component[1]"), QStringLiteral("Component[1]/Node[id=node0]")}));
}

TEST_SUITE(HtmlIdentifiersTest)
#include "tst_HtmlIdentifiers.moc"
