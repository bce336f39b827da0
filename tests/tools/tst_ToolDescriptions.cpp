// SPDX-License-Identifier: MIT
#include <commands/Commands.h>
#include <commands/HelpText.h>

#include "tools/Tool.h"

/// What help, manual page and completions are made from.
class ToolDescriptionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCommandIsDescribed_data();
    void everyCommandIsDescribed();
    void theHelpOfACommandFitsTheScreen_data() { everyCommandIsDescribed_data(); }
    void theHelpOfACommandFitsTheScreen();
    void anOptionTakesAValueInAllCommandsOrInNone();
    void noNameStandsForTwoOptionsOfACommand_data() { everyCommandIsDescribed_data(); }
    void noNameStandsForTwoOptionsOfACommand();
};

void ToolDescriptionsTest::everyCommandIsDescribed_data()
{
    QTest::addColumn<QString>("name");
    for (const Command &command : allCommands())
        QTest::newRow(qPrintable(command.name)) << command.name;
}

void ToolDescriptionsTest::everyCommandIsDescribed()
{
    QFETCH(QString, name);
    const Command *command = commandNamed(name);
    QVERIFY(command && command->run);
    QVERIFY2(command->summary.endsWith(QLatin1Char('.')), qPrintable(command->summary));
    QVERIFY(!command->examples.isEmpty());
    for (const Example &example : command->examples) {
        QVERIFY2(example.line.startsWith(name + QLatin1Char(' ')) || example.line == name, qPrintable(example.line));
        QVERIFY2(example.effect.endsWith(QLatin1Char('.')), qPrintable(example.effect));
    }
    for (const Option &option : command->options) {
        QVERIFY(!option.names.isEmpty());
        QVERIFY2(option.help.endsWith(QLatin1Char('.')), qPrintable(option.typed()));
        QVERIFY2(option.value.isEmpty() == (option.takes == Takes::Nothing), qPrintable(option.typed()));
        QVERIFY2(option.words.isEmpty() == (option.takes != Takes::Word), qPrintable(option.typed()));
    }
}

void ToolDescriptionsTest::theHelpOfACommandFitsTheScreen()
{
    QFETCH(QString, name);
    const Run run = Workshop().run({QStringLiteral("help"), name});
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    const QString example = QStringLiteral("  tunerproperties "); // which is not broken
    for (const QString &each : run.out.split(QLatin1Char('\n')))
        QVERIFY2(each.size() <= 80 || each.startsWith(example), qPrintable(each));
    QCOMPARE(Workshop().run({name, QStringLiteral("--help")}).out, run.out);
}

// Otherwise the command could not be found behind it.
void ToolDescriptionsTest::anOptionTakesAValueInAllCommandsOrInNone()
{
    QHash<QString, bool> takesValue;
    for (const Command &command : allCommands()) {
        for (const Option &option : HelpText::optionsOf(command)) {
            const bool itDoes = !option.value.isEmpty();
            for (const QString &name : option.names)
                QVERIFY2(takesValue.value(name, itDoes) == itDoes, qPrintable(name));
            for (const QString &name : option.names)
                takesValue.insert(name, itDoes);
        }
    }
    QVERIFY(takesValue.value(QStringLiteral("from")));
    QVERIFY(!takesValue.value(QStringLiteral("help"), true));
}

void ToolDescriptionsTest::noNameStandsForTwoOptionsOfACommand()
{
    QFETCH(QString, name);
    QStringList names;
    for (const Option &option : HelpText::optionsOf(*commandNamed(name)))
        names += option.names;
    QCOMPARE(names.removeDuplicates(), 0);
    QVERIFY(names.contains(QStringLiteral("help")));
}

TEST_SUITE(ToolDescriptionsTest)
#include "tst_ToolDescriptions.moc"
