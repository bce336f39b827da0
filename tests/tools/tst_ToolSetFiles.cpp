// SPDX-License-Identifier: MIT
#include "tools/MemberTest.h"

/// What happens to the file when values are changed.
class ToolSetFilesTest : public MemberTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { beginTest(); }

    void onlyTheValueChangesInXml();
    void missingTextsStayMissingInXml();
    void severalValuesAreChangedAtOnce();
    void oneWrongValueOfSeveralChangesNothing();
    void dryRunShowsTheDifferencesAndWritesNothing();
    void unchangedFileIsNotWritten();
    void failedWritingKeepsTheFile();
};

void ToolSetFilesTest::onlyTheValueChangesInXml()
{
    QFile example(QStringLiteral(EXAMPLES_DIR "/receiver.xml"));
    QVERIFY(example.open(QIODevice::ReadOnly));
    const QByteArray xml = example.readAll()
                               .replace("<MaxBandwidth>600</MaxBandwidth>", "<MaxBandwidth>2400.123456</MaxBandwidth>")
                               .replace("hwProcessing=\"false\"", "hwProcessing=\"false\" owner=\"us\"")
                               .replace("Version=\"1.1\"", "Version=\"1.2\"");
    m_workshop->write(QStringLiteral("r.xml"), xml);
    const Run run = m_workshop->run(line("set r.xml quantity 3"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("r.xml")), QByteArray(xml).replace("quantity=\"2\"", "quantity=\"3\""));
}

void ToolSetFilesTest::missingTextsStayMissingInXml()
{
    const QByteArray xml = QByteArray(smallXml).replace(" id=\"n\"", "").replace("value=\"7\"", "value=\"abc\"");
    m_workshop->write(QStringLiteral("small.xml"), xml);
    QCOMPARE(m_workshop->run(line("set small.xml quantity 3")).status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("small.xml")),
             QByteArray(xml).replace("baseresource=\"b\"", "baseresource=\"b\" quantity=\"3\""));
    QCOMPARE(m_workshop->run(line("validate small.xml")).status, 1);
}

void ToolSetFilesTest::severalValuesAreChangedAtOnce()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const Run run = m_workshop->run({QStringLiteral("set"), QStringLiteral("small.xml"), QStringLiteral("quantity=3"),
                                     QStringLiteral("Component[name=c]/Node[id=\"n\"]/ValueItem/value=8"),
                                     QStringLiteral("name=a=b"), QStringLiteral("baseresource=")});
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(
        m_workshop->read(QStringLiteral("small.xml")),
        QByteArray(smallXml)
            .replace("type=\"SCP\" baseresource=\"b\"", "name=\"a=b\" type=\"SCP\" baseresource=\"\" quantity=\"3\"")
            .replace("value=\"7\"", "value=\"8\""));
}

void ToolSetFilesTest::oneWrongValueOfSeveralChangesNothing()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const Run run = m_workshop->run(line("set small.xml quantity=3 type=Reciever"));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: small.xml: type: unknown type 'Reciever'; did you mean 'Receiver'?\n"));
    QCOMPARE(run.status, 1);
    QCOMPARE(m_workshop->read(QStringLiteral("small.xml")), QByteArray(smallXml));
}

void ToolSetFilesTest::dryRunShowsTheDifferencesAndWritesNothing()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const Run run = m_workshop->run(line("set --dry-run small.xml quantity=3 name=new"));
    QCOMPARE(run.out, QStringLiteral("~ name: (not set) -> \"new\"\n~ quantity: 1 (not set) -> 3\n"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("small.xml")), QByteArray(smallXml));
}

void ToolSetFilesTest::unchangedFileIsNotWritten()
{
    // Its layout would change otherwise.
    QCOMPARE(m_workshop->run(line("set f.json quantity -2")).status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("f.json")), QByteArray(document));
}

void ToolSetFilesTest::failedWritingKeepsTheFile()
{
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const Run run = m_workshop->run(
        {QStringLiteral("set"), QStringLiteral("small.xml"), QStringLiteral("name"), QStringLiteral("a\x01z")});
    QVERIFY(run.err.startsWith(QStringLiteral("tunerproperties: small.xml: ")));
    QCOMPARE(run.status, 1);
    QCOMPARE(m_workshop->read(QStringLiteral("small.xml")), QByteArray(smallXml));
    QCOMPARE(m_workshop->files(), QStringList({QStringLiteral("f.json"), QStringLiteral("small.xml")}));
}

TEST_SUITE(ToolSetFilesTest)
#include "tst_ToolSetFiles.moc"
