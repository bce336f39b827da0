// SPDX-License-Identifier: MIT
#include "Pages.h"

#include "commands/Commands.h"
#include "commands/HelpText.h"

namespace {

QString quoted(QString text)
{
    return QLatin1Char('\'') + text.replace(QLatin1Char('\''), QLatin1String("'\\''")) + QLatin1Char('\'');
}

QString escaped(QString text, const QString &characters)
{
    for (const QChar character : characters)
        text.replace(character, QLatin1Char('\\') + QString(character));
    return text;
}

QString action(Takes takes, const QStringList &words, const QString &withoutValues = {})
{
    switch (takes) {
    case Takes::Words:
        return QStringLiteral(" _sequence compadd - ") + words.join(QLatin1Char(' '));
    case Takes::Word:
        return QLatin1Char('(') + words.join(QLatin1Char(' ')) + QLatin1Char(')');
    case Takes::File:
        return QStringLiteral("_files");
    case Takes::Path:
        return QStringLiteral(" _%1_paths").arg(HelpText::program()); // the blank keeps arguments for compadd away
    case Takes::Assignment:
        return QStringLiteral(" _%1_paths %2").arg(HelpText::program(), withoutValues);
    case Takes::Folder:
        return QStringLiteral("_path_files -/"); // _files would offer files where no folder fits
    default:
        return QStringLiteral(" ");
    }
}

/// An argument of _arguments: "'(-q --quiet)'{-q,--quiet}'[...]'"
QString optionArgument(const Option &option)
{
    const bool hasValue = !option.value.isEmpty();
    QStringList typed;
    for (const QString &name : option.allTyped()) {
        const QString beforeValue = name.startsWith(QLatin1String("--")) ? QStringLiteral("=") : QStringLiteral("+");
        typed.append(hasValue ? name + beforeValue : name);
    }
    QString rest =
        QLatin1Char('[') + escaped(HelpText::firstSentence(option.help), QStringLiteral("\\[]:")) + QLatin1Char(']');
    if (hasValue)
        rest += QLatin1Char(':') + option.value.toLower() + QLatin1Char(':') + action(option.takes, option.words);
    if (typed.size() == 1)
        return quoted(typed.first() + rest);
    return QStringLiteral("'(%1)'{%2}%3")
        .arg(option.allTyped().join(QLatin1Char(' ')), typed.join(QLatin1Char(',')), quoted(rest));
}

QString caseOf(const Command &command)
{
    QString text = QStringLiteral("        %1)\n            _arguments -s -S").arg(command.name);
    const QString next = QStringLiteral(" \\\n                ");
    for (const Option &option : HelpText::optionsOf(command))
        text += next + optionArgument(option);
    if (command.takesPaths())
        text += next + quoted(QStringLiteral("1:file:_files"));
    if (command.maxArguments > 0)
        text += next
            + quoted(QStringLiteral("*:argument:")
                     + action(command.takes, command.words ? command.words() : QStringList(), command.withoutValues));
    return text + QStringLiteral("\n            ;;\n");
}

} // namespace

QString Pages::zshCompletion()
{
    QString descriptions;
    QString cases;
    for (const Command &command : allCommands()) {
        descriptions += QStringLiteral("            ")
            + quoted(command.name + QLatin1Char(':')
                     + escaped(HelpText::firstSentence(command.summary), QStringLiteral("\\:")))
            + QLatin1Char('\n');
        cases += caseOf(command);
    }
    QString general;
    for (const Option &option : HelpText::generalOptions())
        general += QStringLiteral("        ") + optionArgument(option) + QStringLiteral(" \\\n");
    return QStringLiteral(R"(#compdef %1
# Completions of zsh for %1, made from the descriptions of its commands.

# Completes a path in the file that is the first argument; for _%1_paths OPTION, assignments unless the option is
# typed. Nothing that was typed or found is evaluated.
_%1_paths()
{
    local file=${${(Q)line[1]}/#\~\//$HOME/}
    local typed=$compstate[quote]$PREFIX$compstate[quote]
    if [[ ! -f $file ]]; then
        _files
        return
    fi
    local -a found ends steps values
    [[ -z $1 ]] || (( $words[(I)$1] )) || values=(--assignments)
    found=("${(@f)$(command "$program" paths $values --complete "${(Q)typed}" -- "$file" 2>/dev/null </dev/null)}")
    ends=(${found:#*[/=]}) steps=(${(M)found:#*[/=]})
    compadd -a ends
    compadd -S '' -a steps
}

_%1()
{
    local program=${${(Q)words[1]}/#\~\//$HOME/}
    [[ ${program:t} == %1 ]] || program=%1
    local context state state_descr line
    typeset -A opt_args
    _arguments -C \
%2        '1: :->command' \
        '*:: :->arguments'
    case $state in
    command)
        local -a commands
        commands=(
%3        )
        _describe -t commands command commands
        ;;
    arguments)
        case $words[1] in
%4        esac
        ;;
    esac
}

_%1 "$@"
)")
        .arg(HelpText::program(), general, descriptions, cases);
}
