// SPDX-License-Identifier: MIT
#include "Pages.h"

#include "commands/Commands.h"
#include "commands/HelpText.h"

namespace {

QString typedNames(const QVector<Option> &options)
{
    QStringList result;
    for (const Option &option : options)
        result += option.allTyped();
    return result.join(QLatin1Char(' '));
}

/// The completions for an argument.
QString candidates(Takes takes, const QStringList &words)
{
    switch (takes) {
    case Takes::Word:
        return QStringLiteral("words='%1'").arg(words.join(QLatin1Char(' ')));
    case Takes::File:
        return QStringLiteral("kind=-f");
    case Takes::Folder:
        return QStringLiteral("kind=-d");
    default:
        return QStringLiteral("return");
    }
}

QString caseOf(const Command &command)
{
    const QVector<Option> options = HelpText::optionsOf(command);
    QString text = QStringLiteral("    %1)\n        case $before in\n").arg(command.name);
    for (const Option &option : options) {
        if (!option.value.isEmpty())
            text += QStringLiteral("        %1) %2 ;;\n")
                        .arg(option.allTyped().join(QStringLiteral(" | ")), candidates(option.takes, option.words));
    }
    return text
        + QStringLiteral("        *)\n"
                         "            if [[ $word == -* ]]; then\n"
                         "                words='%1'\n"
                         "            else\n"
                         "                %2\n"
                         "            fi\n"
                         "            ;;\n"
                         "        esac\n"
                         "        ;;\n")
              .arg(typedNames(options), candidates(command.takes, command.words ? command.words() : QStringList()));
}

/// The patterns of all options with a value, which the command does not follow at once.
QString optionsWithValue()
{
    QStringList names;
    for (const Command &command : allCommands()) {
        for (const Option &option : command.options) {
            if (!option.value.isEmpty())
                names += option.allTyped();
        }
    }
    names.removeDuplicates();
    return names.join(QStringLiteral(" | "));
}

} // namespace

QString Pages::bashCompletion()
{
    QString cases;
    for (const Command &command : allCommands())
        cases += caseOf(command);
    return QStringLiteral(R"(# Completions of bash for %1, made from the descriptions of its commands.

_%1()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command= i words= kind=
    # "--option=value" is three words, of which the last may be missing.
    if [[ $word == '=' ]]; then
        word=
    elif [[ $before == '=' ]]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        %2)
            ((++i))
            [[ ${COMP_WORDS[i]} != '=' ]] || ((++i))
            ;;
        -*) ;;
        *)
            command=${COMP_WORDS[i]}
            break
            ;;
        esac
    done
    case $command in
    '') words='%3 %4' ;;
%5    *) return ;;
    esac
    if [[ -n $kind ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen "$kind" -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    fi
}

complete -F _%1 %1
)")
        .arg(HelpText::program(), optionsWithValue(), commandNames().join(QLatin1Char(' ')),
             typedNames(HelpText::generalOptions()), cases);
}
