// SPDX-License-Identifier: MIT
#include "commands/CommandLine.h"

#include <QCommandLineParser>
#include <QRegularExpression>

#include "commands/Commands.h"
#include "commands/HelpText.h"
#include "commands/Options.h"
#include "commands/Suggestion.h"

namespace {

/// QCommandLineParser with our descriptions of options.
class Parser
{
public:
    void add(const QVector<Option> &options)
    {
        for (const Option &option : options) {
            if (m_names.contains(option.typed()))
                continue; // several commands have it
            m_names.append(option.typed());
            m_options.append(option);
            m_parser.addOption(QCommandLineOption(option.names, option.help, option.value));
        }
    }

    void parse(const QStringList &arguments) { m_understood = m_parser.parse(arguments); }

    bool isSet(const Option &option) const { return m_parser.isSet(option.names.first()); }

    QStringList positional() const { return m_parser.positionalArguments(); }

    QHash<QString, QString> values() const
    {
        QHash<QString, QString> result;
        for (const Option &option : m_options) {
            if (isSet(option))
                result.insert(option.names.first(), m_parser.value(option.names.first()));
        }
        return result;
    }

    /// What is wrong with the options, or a null string. `whose` is "'show'", or empty.
    QString mistake(const QString &whose) const
    {
        const QStringList unknown = m_parser.unknownOptionNames();
        if (!unknown.isEmpty()) {
            const Option typed{{unknown.first()}, {}, {}, Takes::Nothing, {}};
            const QString kind = whose.isEmpty() ? QStringLiteral("option") : QStringLiteral("option of ") + whose;
            return QLatin1Char('\'') + typed.typed() + QStringLiteral("' is no ") + kind
                + Suggestion::hint(typed.typed(), m_names);
        }
        if (!m_understood)
            return m_parser.errorText();
        for (const Option &option : m_options) {
            const QString value = m_parser.value(option.names.first());
            if (isSet(option) && !option.words.isEmpty() && !option.words.contains(value))
                return Suggestion::insteadOf(value, option.value.toLower(), option.words);
        }
        return QString();
    }

private:
    QCommandLineParser m_parser;
    QVector<Option> m_options;
    QStringList m_names;
    bool m_understood = false;
};

ExitStatus wrongUsage(const QString &text, const QString &command = {})
{
    Console::complain(text);
    const QString withCommand = command.isEmpty() ? QString() : QLatin1Char(' ') + command;
    Console::complain(QStringLiteral("try '%1%2 --help'").arg(HelpText::program(), withCommand));
    return ExitStatus::WrongUsage;
}

/// What is wrong with the arguments, or a null string.
QString mistake(const Command &command, const QStringList &arguments)
{
    if (arguments.size() < command.fewest || arguments.size() > command.most) {
        const QString usages = command.usages.join(QStringLiteral(" or "));
        return usages.isEmpty() ? QLatin1Char('\'') + command.name + QStringLiteral("' takes no arguments")
                                : QStringLiteral("the arguments of '%1' are %2").arg(command.name, usages);
    }
    if (!command.argumentsMayBeEmpty && arguments.contains(QString()))
        return QStringLiteral("the name of a file is empty");
    return QString();
}

/// The arguments as the parser understands them: a negative number, with nothing but options behind it, is none of its
/// options, but the last of what is none.
QStringList withNumberMarked(QStringList arguments)
{
    static const QRegularExpression negative(QStringLiteral("^-(?:[0-9.]|inf)"),
                                             QRegularExpression::CaseInsensitiveOption);
    const QString marker = QStringLiteral("--");
    if (arguments.contains(marker))
        return arguments;
    for (int i = arguments.size() - 1; i > 0 && arguments[i].startsWith(QLatin1Char('-')); --i) {
        if (negative.match(arguments[i]).hasMatch()) {
            const QString number = arguments.takeAt(i);
            return arguments << marker << number;
        }
    }
    return arguments;
}

ExitStatus runCommand(const Command &command, const QStringList &arguments)
{
    Parser parser;
    parser.add(HelpText::optionsOf(command));
    parser.parse(command.mayEndWithNumber ? withNumberMarked(arguments) : arguments);
    if (parser.isSet(Options::help())) {
        Console::write(HelpText::ofCommand(command).toUtf8());
        return ExitStatus::Ok;
    }
    QString wrong = parser.mistake(QLatin1Char('\'') + command.name + QLatin1Char('\''));
    const QStringList own = parser.positional().mid(1); // behind the name of the command
    if (wrong.isNull())
        wrong = mistake(command, own);
    if (!wrong.isNull())
        return wrongUsage(wrong, command.name);
    try {
        return command.run(Invocation(own, parser.values()));
    } catch (const WrongUsage &mistaken) {
        return wrongUsage(mistaken.text(), command.name);
    }
}

} // namespace

ExitStatus runCommandLine(const QStringList &arguments)
{
    // With a number among the arguments, options can be told only by who knows the command.
    if (const Command *const first = commandNamed(arguments.value(1)); first && first->mayEndWithNumber)
        return runCommand(*first, arguments);

    // The command is the first argument that is no option; finding it takes knowing which options have a value.
    Parser parser;
    parser.add(HelpText::generalOptions());
    for (const Command &command : allCommands())
        parser.add(command.options);
    parser.parse(arguments);
    if (parser.isSet(Options::version())) {
        Console::write(QStringLiteral("%1 " TOOL_VERSION "\n").arg(HelpText::program()).toUtf8());
        return ExitStatus::Ok;
    }
    if (const QStringList positional = parser.positional(); !positional.isEmpty()) {
        const QString &name = positional.first();
        const Command *command = commandNamed(name);
        return command ? runCommand(*command, arguments) : wrongUsage(unknownCommand(name));
    }
    if (parser.isSet(Options::help())) {
        Console::write(HelpText::ofProgram().toUtf8());
        return ExitStatus::Ok;
    }
    const QString wrong = parser.mistake({});
    return wrongUsage(wrong.isNull() ? QStringLiteral("a command is missing") : wrong);
}
