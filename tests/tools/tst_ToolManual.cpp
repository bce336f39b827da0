// SPDX-License-Identifier: MIT
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <commands/Commands.h>
#include <commands/HelpText.h>
#include <tunerdocuments/Form.h>

#include "tools/Tool.h"

/// The manual page as formatted by roff.
class ToolManualTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void manualHasNoRoffWarnings_data();
    void manualHasNoRoffWarnings();
    void manualBeginsWithNameAndSynopsis();
    void manualHasTheUsualSections();
    void sectionsDescribeWhatTheirNamesSay();
    void examplesOfPathsLeadToValues();
    void manualContainsTheHelp_data();
    void manualContainsTheHelp();

private:
    QString m_page; // as people read it, but each paragraph on one line
};

namespace {

struct Formatted
{
    int status = -1;
    QByteArray page;
    QString messages;
};

Formatted formatted(const QStringList &options)
{
    QProcess process;
    process.start(QStringLiteral(GROFF_PROGRAM),
                  QStringList{QStringLiteral("-ww"), QStringLiteral("-man")} + options << QStringLiteral(MANUAL));
    Formatted result;
    if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit) {
        result.status = process.exitCode();
        result.page = process.readAllStandardOutput();
        result.messages = QString::fromUtf8(process.readAllStandardError());
    }
    return result;
}

QString withSingleBlanks(QString text)
{
    return text.replace(QRegularExpression(QStringLiteral(" +")), QStringLiteral(" "));
}

} // namespace

void ToolManualTest::initTestCase()
{
    const Formatted page = formatted(
        {QStringLiteral("-Tascii"), QStringLiteral("-P-cbou"), QStringLiteral("-rLL=900n"), QStringLiteral("-rHY=0")});
    QCOMPARE(page.status, 0);
    m_page = withSingleBlanks(QString::fromLatin1(page.page));
}

void ToolManualTest::manualHasNoRoffWarnings_data()
{
    QTest::addColumn<QString>("device");
    for (const char *device : {"-Tascii", "-Tutf8"})
        QTest::newRow(device) << QString::fromLatin1(device);
}

void ToolManualTest::manualHasNoRoffWarnings()
{
    QFETCH(QString, device);
    const Formatted page = formatted({device});
    QCOMPARE(page.messages, QString());
    QCOMPARE(page.status, 0);
    QVERIFY(page.page.contains("tunerproperties"));
}

void ToolManualTest::manualBeginsWithNameAndSynopsis()
{
    const QStringList lines = m_page.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.value(0), QStringLiteral("TUNERPROPERTIES(1) User Commands TUNERPROPERTIES(1)"));
    QCOMPARE(lines.value(1), QStringLiteral("NAME"));
    QCOMPARE(lines.value(2),
             QStringLiteral(" tunerproperties - show, validate, convert, compare and change descriptions of radio "
                            "tuners"));
    QCOMPARE(lines.value(3), QStringLiteral("SYNOPSIS"));
    QCOMPARE(lines.value(4), QStringLiteral(" tunerproperties COMMAND [OPTION...] [FILE...]"));
    QCOMPARE(lines.value(5), QStringLiteral(" tunerproperties FILE"));
    QCOMPARE(lines.last(), QStringLiteral("tunerproperties " TOOL_VERSION " " TOOL_DATE " TUNERPROPERTIES(1)"));
}

void ToolManualTest::manualHasTheUsualSections()
{
    QStringList sections;
    for (const QString &line : m_page.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        if (!line.startsWith(QLatin1Char(' ')) && !line.contains(QStringLiteral("TUNERPROPERTIES(1)")))
            sections.append(line);
    }
    QCOMPARE(sections,
             QStringList({QStringLiteral("NAME"), QStringLiteral("SYNOPSIS"), QStringLiteral("DESCRIPTION"),
                          QStringLiteral("OPTIONS"), QStringLiteral("COMMANDS"), QStringLiteral("PATHS"),
                          QStringLiteral("FORMS"), QStringLiteral("EXIT STATUS"), QStringLiteral("ENVIRONMENT"),
                          QStringLiteral("FILES"), QStringLiteral("SEE ALSO")}));
}

void ToolManualTest::sectionsDescribeWhatTheirNamesSay()
{
    const auto section = [this](const QString &name) {
        const QString text = m_page.section(QLatin1Char('\n') + name + QLatin1Char('\n'), 1);
        return text.section(QRegularExpression(QStringLiteral("\n(?=[A-Z]{4})")), 0, 0);
    };
    const auto hasWords = [&](const QString &name, const QStringList &words) {
        const QString text = section(name);
        for (const QString &word : words)
            QVERIFY2(text.contains(word), qPrintable(name + QStringLiteral(": ") + word));
    };
    hasWords(QStringLiteral("PATHS"),
             {QStringLiteral("Component[type=Filter,name=Pre]/Node[id=gain]/ValueItem/value"),
              QStringLiteral("Node[id=gain][2]"), QStringLiteral("[*]"), QStringLiteral("double quotes")});
    hasWords(QStringLiteral("ENVIRONMENT"),
             {QStringLiteral("TMPDIR"), QStringLiteral("LC_ALL"), QStringLiteral("LANGUAGE"),
              QStringLiteral("NO_COLOR"), QStringLiteral("TERM")});
    hasWords(QStringLiteral("FILES"),
             {QStringLiteral("/share/tunerproperties/tuner-properties.xsd\n"),
              QStringLiteral("/share/tunerproperties/tuner-properties-author.xsd\n"),
              QStringLiteral("/share/tunerproperties/tuner-properties.schema.json\n"),
              QStringLiteral("/share/tunerproperties/model.json\n")});
    hasWords(QStringLiteral("SEE ALSO"), {QStringLiteral("xmllint(1)"), QStringLiteral("git(1)")});
}

void ToolManualTest::examplesOfPathsLeadToValues()
{
    Workshop shop;
    shop.write(QStringLiteral("a.xml"), R"(<TunerProperties Version="1.1" type="DF" baseresource="B">
        <Component type="Filter" name="Pre" displayName="P" optional="false">
          <Node id="gain"><ValueItem><ValueInt id="a" value="1"/></ValueItem></Node>
          <Node id="gain"><ValueItem><ValueInt id="a" value="2"/></ValueItem></Node>
        </Component></TunerProperties>)");
    const QString path = QStringLiteral("Component[type=Filter,name=Pre]/Node[id=gain][2]/ValueItem/value");
    QCOMPARE(shop.run({QStringLiteral("get"), QStringLiteral("a.xml"), path}).out, QStringLiteral("2\n"));
    const QString quoted = QStringLiteral("Component[name=\"Pre\"]/Node[1]/ValueItem[id=a]/value");
    QCOMPARE(shop.run({QStringLiteral("get"), QStringLiteral("a.xml"), quoted}).out, QStringLiteral("1\n"));
}

void ToolManualTest::manualContainsTheHelp_data()
{
    QTest::addColumn<QString>("name");
    for (const Command &command : allCommands())
        QTest::newRow(qPrintable(command.name)) << command.name;
}

void ToolManualTest::manualContainsTheHelp()
{
    QFETCH(QString, name);
    const Command command = *commandNamed(name);
    const QString own = m_page.section(QStringLiteral("\n ") + name + QLatin1Char('\n'), 1);
    QStringList expected = command.details + QStringList(command.summary);
    for (const Option &option : command.options)
        expected << option.help
                 << option.allTyped().join(QStringLiteral(", "))
                + (option.value.isEmpty() ? QString() : QLatin1Char(' ') + option.value);
    for (const QString &usage : command.usages)
        expected.append(QStringLiteral("tunerproperties %1 [OPTION...] %2").arg(name, usage).trimmed());
    for (const Example &example : command.examples)
        expected << QStringLiteral("tunerproperties ") + example.line << example.effect;
    for (const QString &text : qAsConst(expected))
        QVERIFY2(own.contains(withSingleBlanks(text)), qPrintable(text));
}

TEST_SUITE(ToolManualTest)
#include "tst_ToolManual.moc"
