// SPDX-License-Identifier: MIT
#include <commands/Commands.h>
#include <commands/HelpText.h>

#include "tools/Tool.h"

/// The descriptions from which help, manual page and completions are generated.
class ToolDescriptionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCommandIsDescribed_data();
    void everyCommandIsDescribed();
    void helpOfACommandFitsTheScreen_data() { everyCommandIsDescribed_data(); }
    void helpOfACommandFitsTheScreen();
    void optionTakesAValueInAllCommandsOrInNone();
    void optionNamesOfACommandAreUnique_data() { everyCommandIsDescribed_data(); }
    void optionNamesOfACommandAreUnique();
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
    const std::optional<Command> command = commandNamed(name);
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
        QVERIFY2(option.words.isEmpty() == (option.takes != Takes::Word && option.takes != Takes::Words),
                 qPrintable(option.typed()));
    }
}

void ToolDescriptionsTest::helpOfACommandFitsTheScreen()
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

// Otherwise the command after it could not be found.
void ToolDescriptionsTest::optionTakesAValueInAllCommandsOrInNone()
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

void ToolDescriptionsTest::optionNamesOfACommandAreUnique()
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
