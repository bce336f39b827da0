// SPDX-License-Identifier: MIT
#include "tools/Tool.h"

/// Commands that process several files at once: what the jobs share is only read, as a thread sanitizer can see.
class ToolThreadsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void manyJobsReportAsOne_data();
    void manyJobsReportAsOne();
};

namespace {

/// Starts the command in a folder of its own, for files with every result.
Run runFor(QStringList arguments, const char *jobs)
{
    Workshop workshop;
    arguments.append(line("--jobs") << QString::fromLatin1(jobs));
    for (int i = 0; i < 60; ++i) {
        const QString name = QStringLiteral("%1.xml").arg(i);
        const QByteArray xml(smallXml);
        workshop.write(name,
                       i % 4 == 0       ? QByteArray(xml).replace(" type=\"SCP\"", "")
                           : i % 4 == 1 ? QByteArray(xml).replace("id=\"n\"", "id=\"n\"  unknown=\"1\"")
                           : i % 4 == 2 ? xml.left(100)
                                        : xml);
        arguments.append(name);
    }
    return workshop.run(arguments);
}

} // namespace

void ToolThreadsTest::manyJobsReportAsOne_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("end");
    const auto add = [](const char *arguments, const char *end) {
        QTest::newRow(arguments) << line(arguments) << QString::fromLatin1(end);
    };
    add("validate", "tunerproperties: 60 files: 30 valid, 15 with problems, 15 unreadable; 'lint' has 15 warnings\n");
    add("validate --strict", "tunerproperties: 60 files: 15 valid, 30 with problems, 15 unreadable\n");
    add("validate --strict --error unknown-attribute",
        "tunerproperties: 60 files: 15 valid, 30 with problems, 15 unreadable\n");
    add("validate --json",
        "{\"file\":\"59.xml\",\"status\":\"valid\",\"problems\":[],\"problemCount\":0,\"warnings\":0,\"error\":null}"
        "\n");
    add("lint --json",
        "{\"file\":\"59.xml\",\"status\":\"clean\",\"findings\":[],\"problemCount\":0,\"warningCount\":0,\"error\":"
        "null}\n");
    add("lint --format sarif", "tunerproperties: 58.xml:3:1: Premature end of document.\n");
    add("lint", "tunerproperties: 60 files: 15 clean, 30 with findings, 15 unreadable\n");
    add("convert --to tagged --out-dir out",
        "tunerproperties: 60 files: 30 converted, 15 with problems, 15 unreadable\n");
    add("convert --to json --out-dir out --exact",
        "tunerproperties: 60 files: 15 converted, 30 with problems, 15 unreadable\n");
    add("fmt --check", "tunerproperties: 60 files: 30 unchanged, 15 unformatted, 15 unreadable\n");
    add("fmt", "tunerproperties: 60 files: 30 unchanged, 15 formatted, 15 unreadable\n");
}

void ToolThreadsTest::manyJobsReportAsOne()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, end);
    const Run one = runFor(arguments, "1");
    QVERIFY2(one.all().endsWith(end), qPrintable(one.all().right(200)));
    const Run many = runFor(arguments, "8");
    QCOMPARE(many.err, one.err);
    QCOMPARE(many.out, one.out);
    QCOMPARE(many.status, one.status);
}

TEST_SUITE(ToolThreadsTest)
#include "tst_ToolThreads.moc"
