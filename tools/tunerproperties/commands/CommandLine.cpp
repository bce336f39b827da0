// SPDX-License-Identifier: MIT
#include "commands/CommandLine.h"

#include <algorithm>

#include <QRegularExpression>

#include "commands/Commands.h"
#include "commands/HelpText.h"
#include "commands/Options.h"
#include "files/FileSystem.h"
#include "text/Suggestion.h"

namespace {

const char *const endOfOptions = "--";

bool looksLikeOption(const QByteArray &argument)
{
    return argument.size() > 1 && argument.startsWith('-');
}

/// An option as it was typed: "--to", "--to=xml", "-j", "-j4".
struct TypedOption
{
    QString name; ///< including dashes
    std::optional<QByteArray> value; ///< the rest of the same argument
};

TypedOption typedOption(const QByteArray &argument)
{
    const bool isLong = argument.startsWith("--");
    const auto end = isLong ? argument.indexOf('=') : 2;
    if (end < 0 || end >= argument.size())
        return {QString::fromLatin1(argument), {}};
    return {QString::fromLatin1(argument.left(end)), argument.mid(isLong || argument[end] == '=' ? end + 1 : end)};
}

const Option *optionNamed(const QVector<Option> &options, const QString &typed)
{
    const auto found = std::find_if(options.begin(), options.end(),
                                    [&](const Option &option) { return option.allTyped().contains(typed); });
    return found == options.end() ? nullptr : &*found;
}

/// A hint for an argument that may have been meant as the name of a file.
QString fileHint(const QByteArray &argument)
{
    const QString shown = FileName(argument).shown();
    return QStringLiteral("; for a file of that name, write './") + shown + QStringLiteral("' or put '--' before it");
}

/// The arguments of a command, separated into options and the rest.
struct Parsed
{
    QByteArrayList arguments;
    QHash<QString, QByteArray> values; ///< the key is the first name of the option
    QByteArray helpOrVersion; ///< as typed; null if it was not used

    bool isSet(const Option &option) const { return values.contains(option.names.first()); }
};

class Parser
{
public:
    /// With a command, an unknown option may be meant as the name of a file.
    explicit Parser(QVector<Option> options, const Command *command = nullptr)
        : m_options(std::move(options)), m_command(command)
    {
    }

    /// Throws WrongUsage.
    Parsed parse(const QByteArrayList &arguments)
    {
        for (int i = 0; i < arguments.size(); ++i) {
            const QByteArray &argument = arguments[i];
            if (argument == endOfOptions) {
                m_parsed.arguments += arguments.mid(i + 1);
                break;
            }
            if (!looksLikeOption(argument) || isNumber(argument))
                m_parsed.arguments.append(argument);
            else if (takeOption(argument, arguments.mid(i + 1, 1)))
                ++i;
        }
        return m_parsed;
    }

private:
    bool isNumber(const QByteArray &argument) const
    {
        static const QRegularExpression negative(QStringLiteral("^-(?:[0-9.]|inf)"),
                                                 QRegularExpression::CaseInsensitiveOption);
        return m_command && m_command->mayEndWithNumber && negative.match(QString::fromLatin1(argument)).hasMatch();
    }

    /// Returns whether the next argument is the value of the option.
    bool takeOption(const QByteArray &argument, const QByteArrayList &next)
    {
        const TypedOption typed = typedOption(argument);
        const Option *const option = optionNamed(m_options, typed.name);
        const bool isCluster = option && option->value.isEmpty() && !argument.startsWith("--") && typed.value;
        if (!option || isCluster)
            throw WrongUsage(unknownOption(argument, typed.name));
        if (option->value.isEmpty()) {
            if (typed.value)
                throw WrongUsage(QStringLiteral("option '") + typed.name + QStringLiteral("' takes no value")
                                 + fileHint(argument));
            m_parsed.values.insert(option->names.first(), {});
            if (isHelpOrVersion(*option))
                m_parsed.helpOrVersion = argument;
            return false;
        }
        if (m_parsed.isSet(*option))
            throw WrongUsage(QStringLiteral("option '") + typed.name + QStringLiteral("' can be used only once")
                             + fileHint(argument));
        if (!typed.value && next.isEmpty())
            throw WrongUsage(QStringLiteral("option '%1' requires a value: %2").arg(typed.name, option->value));
        m_parsed.values.insert(option->names.first(), typed.value ? *typed.value : next.first());
        return !typed.value;
    }

    static bool isHelpOrVersion(const Option &option)
    {
        return option.names == Options::help().names || option.names == Options::version().names;
    }

    QString unknownOption(const QByteArray &argument, const QString &name) const
    {
        QStringList known; // without a command, the options of commands would not help
        for (const Option &option : m_command ? m_options : HelpText::generalOptions())
            known.append(option.typed());
        const bool mayBeFile = argument.contains('.') || argument.contains('=');
        QString suggestion = mayBeFile ? QString() : Suggestion::hint(name, known);
        if (m_command && m_command->meant.contains(name))
            suggestion = Suggestion::hintAt(m_command->meant.value(name));
        return QStringLiteral("unknown option '") + FileName(argument).shown() + QLatin1Char('\'')
            + (suggestion.isNull() && m_command ? fileHint(argument) : suggestion);
    }

    QVector<Option> m_options;
    const Command *m_command;
    Parsed m_parsed;
};

ExitStatus wrongUsage(const QString &text, const QString &command = {})
{
    Console::printError(text);
    const QString withCommand = command.isEmpty() ? QString() : QLatin1Char(' ') + command;
    Console::printError(QStringLiteral("try '%1%2 --help'").arg(HelpText::program(), withCommand));
    return ExitStatus::WrongUsage;
}

ExitStatus showVersion()
{
    Console::write(QStringLiteral("%1 " TOOL_VERSION "\n").arg(HelpText::program()).toUtf8());
    return ExitStatus::Ok;
}

void checkValues(const QVector<Option> &options, const Invocation &invocation)
{
    for (const Option &option : options) {
        if (!invocation.isSet(option) || option.takes != Takes::Word)
            continue;
        const QString value = invocation.value(option);
        if (option.words.contains(value))
            continue;
        const QString kind = option.value.toLower();
        const QString meant = option.meant.value(value.toLower());
        throw WrongUsage(meant.isNull() ? Suggestion::unknownWord(value, kind, option.words)
                                        : QStringLiteral("unknown %1 '").arg(kind) + value + QLatin1Char('\'')
                                 + Suggestion::hintAt(meant));
    }
}

void checkArguments(const Command &command, const QByteArrayList &arguments)
{
    if (arguments.size() < command.minArguments || arguments.size() > command.maxArguments) {
        const QString usages = command.usages.join(QStringLiteral(" or "));
        throw WrongUsage(usages.isEmpty() ? QLatin1Char('\'') + command.name + QStringLiteral("' takes no arguments")
                                          : QStringLiteral("'%1' expects %2").arg(command.name, usages));
    }
    if (!command.argumentsMayBeEmpty && arguments.contains(QByteArray()))
        throw WrongUsage(QStringLiteral("a file name is empty"));
}

/// A command that needs a document cannot do anything without one.
ExitStatus reportInvalid(const TunerDocuments::InvalidContent &content, const Command &command)
{
    const bool canListMore = std::any_of(command.options.begin(), command.options.end(), [](const Option &option) {
        return option.names == Options::maxProblems().names;
    });
    Console::printErrors(content.problems().lines(content.name(), canListMore ? QString(howToListMore) : QString()));
    return ExitStatus::Problems;
}

ExitStatus runCommand(const Command &command, const QByteArrayList &arguments)
{
    const QVector<Option> options = HelpText::optionsOf(command) + QVector<Option>{Options::version()};
    try {
        const Parsed parsed = Parser(options, &command).parse(arguments);
        if (!parsed.helpOrVersion.isNull()) {
            // The argument may be a file that a pattern of the shell has matched; a script would take status 0 for "all
            // are valid".
            if (command.takesFiles() && !parsed.arguments.isEmpty())
                throw WrongUsage(QStringLiteral("option '") + QString::fromLatin1(parsed.helpOrVersion)
                                 + QStringLiteral("' cannot be combined with files") + fileHint(parsed.helpOrVersion));
            if (parsed.isSet(Options::version()))
                return showVersion();
            Console::write(HelpText::ofCommand(command).toUtf8());
            return ExitStatus::Ok;
        }
        const Invocation invocation(parsed.arguments, parsed.values);
        checkValues(options, invocation);
        checkArguments(command, parsed.arguments);
        try {
            return command.run(invocation);
        } catch (const TunerDocuments::InvalidContent &content) {
            return reportInvalid(content, command);
        } catch (const TunerDocuments::UnstorableContent &content) {
            Console::printError(content.text());
            return ExitStatus::Problems;
        }
    } catch (const WrongUsage &mistaken) {
        return wrongUsage(mistaken.text(), command.name);
    }
}

QVector<Option> optionsOfAllCommands()
{
    QVector<Option> options;
    for (const Command &command : allCommands())
        options += command.options;
    return options;
}

ExitStatus runWithoutCommand(const QByteArrayList &arguments)
{
    try {
        const Parsed parsed = Parser(HelpText::generalOptions() + optionsOfAllCommands()).parse(arguments);
        if (parsed.isSet(Options::version()))
            return showVersion();
        if (parsed.isSet(Options::help())) {
            Console::write(HelpText::ofProgram().toUtf8());
            return ExitStatus::Ok;
        }
    } catch (const WrongUsage &mistaken) {
        return wrongUsage(mistaken.text());
    }
    return wrongUsage(QStringLiteral("a command is missing"));
}

/// The index of the command: the first argument that is neither an option nor the value of one, or the end. Options
/// with a value may precede it.
int indexOfCommand(const QByteArrayList &arguments)
{
    if (!arguments.isEmpty() && !looksLikeOption(arguments.first()))
        return 0;
    const QVector<Option> options = optionsOfAllCommands();
    for (int i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == endOfOptions)
            return i + 1;
        if (!looksLikeOption(arguments[i]))
            return i;
        const TypedOption typed = typedOption(arguments[i]);
        const Option *const option = optionNamed(options, typed.name);
        if (option && !option->value.isEmpty() && !typed.value)
            ++i;
    }
    return int(arguments.size());
}

bool looksLikeFile(const FileName &name)
{
    return name.bytes().contains('.') || name.bytes().contains('/');
}

} // namespace

ExitStatus runCommandLine(const QByteArrayList &arguments)
{
    const int index = indexOfCommand(arguments);
    if (index >= arguments.size())
        return runWithoutCommand(arguments);
    const FileName word(arguments[index]);
    const std::optional<Command> command = commandNamed(word.shown());
    if (!command && (word.isStandardStream() || FileSystem::exists(word)))
        return runCommand(showCommand(), arguments);
    if (!command)
        return wrongUsage(looksLikeFile(word) ? QStringLiteral("unknown command '") + word.shown()
                                  + QStringLiteral("', and no file has that name")
                                              : unknownCommand(word.shown()));
    QByteArrayList others = arguments;
    others.removeAt(index);
    return runCommand(*command, others);
}
