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
QString candidates(Takes takes, const QStringList &words, const QString &withoutValues = {})
{
    switch (takes) {
    case Takes::Word:
        return QStringLiteral("words='%1'").arg(words.join(QLatin1Char(' ')));
    case Takes::Words: // those that are typed are kept only if they may be words: compgen evaluates its list
        return QStringLiteral("words='%1'\n"
                              "            [[ $word != *,* || $word == *[!a-z,-]* ]] ||\n"
                              "                words=\"${word%,*},${words// / ${word%,*},}\"\n"
                              "           ")
            .arg(words.join(QLatin1Char(' ')));
    case Takes::File:
        return QStringLiteral("kind=-f");
    case Takes::Folder:
        return QStringLiteral("kind=-d");
    case Takes::Path:
        return QStringLiteral("_%1_paths \"$2\" && return\n                kind=-f").arg(HelpText::program());
    case Takes::Assignment:
        return QStringLiteral("[[ \" ${COMP_WORDS[*]} \" == *' %2 '* ]] || values=--assignments\n"
                              "                _%1_paths \"$2\" $values && return\n                kind=-f")
            .arg(HelpText::program(), withoutValues);
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
              .arg(typedNames(options),
                   candidates(command.takes, command.words ? command.words() : QStringList(), command.withoutValues));
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

# Reads a line that need not be complete, and evaluates nothing: `typed` becomes its words without quotes, of which the
# last may be empty, and `quote` the quote that is open at its end.
_%1_read()
{
    local line=$1 word= begun= character i
    typed=() quote=
    for ((i = 0; i < ${#line}; ++i)); do
        character=${line:i:1}
        if [[ $character == '\' && $quote != "'" ]]; then
            ((++i))
            [[ -z $quote || ${line:i:1} == [\\\"\$\`] ]] || word+='\'
            word+=${line:i:1} begun=1
        elif [[ $character == "$quote" ]]; then
            quote=
        elif [[ -z $quote && $character == [\'\"] ]]; then
            quote=$character begun=1
        elif [[ -z $quote && $character == [[:space:]] ]]; then
            [[ -z $begun ]] || typed+=("$word")
            word= begun=
        else
            word+=$character begun=1
        fi
    done
    typed+=("$word")
}

# The first argument of the command that is neither an option nor the value of one, before the last word of `typed`.
_%1_first_file()
{
    local i hasCommand=
    for ((i = 1; i < ${#typed[@]} - 1; ++i)); do
        case ${typed[i]} in
        %2) ((++i)) ;;
        --)
            ((++i))
            break
            ;;
        -?*) ;;
        *)
            [[ -z $hasCommand ]] || break
            hasCommand=1
            ;;
        esac
    done
    ((i < ${#typed[@]} - 1)) && file=${typed[i]/#~\//$HOME/}
}

# Completes a path in the file that has been typed: _%1_paths REPLACED [OPTION...]. The shell replaces the end
# of the word only, in the quotes that are open before it, so results are quoted for these.
_%1_paths()
{
    local replaced=$1 line=${COMP_LINE:0:COMP_POINT} typed quote file program beginning found quoting
    shift
    [[ $line == *"$replaced" ]] || return
    _%1_read "$line"
    _%1_first_file && [[ -f $file ]] || return
    program=${typed[0]/#~\//$HOME/}
    [[ ${program##*/} == %1 ]] || program=%1
    beginning=${typed[${#typed[@]} - 1]}
    _%1_read "${line%"$replaced"}"
    mapfile -t found < <(command "$program" paths "$@" --complete "$beginning" -- "$file" 2>/dev/null </dev/null)
    COMPREPLY=()
    ((${#found[@]} > 0)) || return 0
    ((${#found[@]} > 1)) || [[ $found != *[/=] ]] || compopt -o nospace 2>/dev/null
    case $quote in
    \') quoting="s/'/'\\\\''/g" ;;
    \") quoting='s/[\\"$`]/\\&/g; s/!/"'\''!'\''"/g' ;;
    *) quoting='s/[][\\ !"#$&'\''()*,;<>?^`{|}~]/\\&/g' ;;
    esac
    mapfile -t COMPREPLY < <(printf '%s\n' "${found[@]#"${typed[${#typed[@]} - 1]}"}" | sed "$quoting")
}

_%1()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command= i words= kind= values=
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
