// SPDX-License-Identifier: MIT
#include "commands/Options.h"

#include <algorithm>
#include <limits>

#include <QThread>

#include <tunerdocuments/Lint.h>

#include "text/Suggestion.h"
#include "text/WholeNumber.h"

using namespace TunerDocuments;

namespace Options {

namespace {

constexpr int usualExpansion = LoadOptions::UsualExpansion;
constexpr int mostExpansion = 1100; // beyond what zlib reaches; the library has the same limit

/// ".xml, .tpb, .tpz, .tps or .json"
QString suffixes()
{
    QStringList result;
    for (const QString &name : Forms::list())
        result.append(Forms::suffixOf(*Forms::named(name)));
    return Suggestion::listed(result);
}

/// The form of each suffix, with the dot and without it.
QHash<QString, QString> formsBySuffix()
{
    QHash<QString, QString> result;
    for (const QString &name : Forms::list()) {
        const QString suffix = Forms::suffixOf(*Forms::named(name));
        result.insert(suffix, name);
        result.insert(suffix.mid(1), name);
    }
    return result;
}

QStringList ruleNames()
{
    QStringList names;
    for (const LintRule &rule : lintRules())
        names.append(rule.name);
    return names;
}

} // namespace

const Option &help()
{
    static const Option option{
        {QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help."), {}, Takes::Nothing, {}};
    return option;
}

const Option &version()
{
    static const Option option{
        {QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the version."), {}, Takes::Nothing, {}};
    return option;
}

const Option &from()
{
    static const Option option{
        {QStringLiteral("from")},
        QStringLiteral("Form of the input: %1 (default: from the content or, for a snapshot, the suffix .tps).")
            .arg(Suggestion::listed(Forms::list())),
        QStringLiteral("FORM"),
        Takes::Word,
        Forms::list(),
        formsBySuffix()};
    return option;
}

const Option &to()
{
    static const Option option{
        {QStringLiteral("to")},
        QStringLiteral("Form of the output: %1 (default: from the suffix %2; XML on standard output).")
            .arg(Suggestion::listed(Forms::list()), suffixes()),
        QStringLiteral("FORM"),
        Takes::Word,
        Forms::list(),
        formsBySuffix()};
    return option;
}

const Option &jobs()
{
    static const Option option{
        {QStringLiteral("j"), QStringLiteral("jobs")},
        QStringLiteral("Process up to NUMBER files at once (default: the number of processors)."),
        QStringLiteral("NUMBER"),
        Takes::Anything,
        {}};
    return option;
}

const Option &quiet()
{
    static const Option option{
        {QStringLiteral("q"), QStringLiteral("quiet")},
        QStringLiteral(
            "Report only files that cannot be read or written. The exit status reports whether there were problems."),
        {},
        Takes::Nothing,
        {}};
    return option;
}

const Option &json()
{
    static const Option option{{QStringLiteral("json")},
                               QStringLiteral("Write a JSON object for each file to standard output, one per line."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

const Option &specialFiles()
{
    static const Option option{{QStringLiteral("special-files")},
                               QStringLiteral("Accept pipes and devices among several files. By default these must be "
                                              "regular files, since a pipe in a folder could block the others."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

const Option &maxProblems()
{
    static const Option option{
        {QStringLiteral("max-problems")},
        QStringLiteral("List at most NUMBER problems of a document (default: %1), and their total.")
            .arg(usualProblemCount),
        QStringLiteral("NUMBER"),
        Takes::Anything,
        {}};
    return option;
}

const Option &maxExpansion()
{
    static const Option option{
        {QStringLiteral("max-expansion")},
        QStringLiteral("Accept a compressed document that expands to at most TIMES its size (default: %1).")
            .arg(usualExpansion),
        QStringLiteral("TIMES"),
        Takes::Anything,
        {}};
    return option;
}

const Option &disable()
{
    static const Option option{
        {QStringLiteral("disable")},
        QStringLiteral("Do not apply these rules of 'lint'; separate several by commas. 'lint --rules' lists them."),
        QStringLiteral("RULE"),
        Takes::Words,
        ruleNames()};
    return option;
}

const Option &error()
{
    static const Option option{
        {QStringLiteral("error")},
        QStringLiteral("Report the findings of these rules as errors instead of warnings; separate several by commas."),
        QStringLiteral("RULE"),
        Takes::Words,
        ruleNames()};
    return option;
}

namespace {

/// The value of an option that takes a whole number from 1 to `most`; `usual` if it is not set.
int numberOf(const Invocation &invocation, const Option &option, int most, int usual)
{
    if (!invocation.isSet(option))
        return usual;
    const QString text = invocation.value(option);
    const int number = WholeNumber::read<int>(text).value_or(0);
    if (number < 1 || number > most)
        throw WrongUsage(
            QStringLiteral("%1 must be a number from 1 to %2, not '%3'").arg(option.typed()).arg(most).arg(text));
    return number;
}

} // namespace

LoadOptions loading(const Invocation &invocation, const Option &formOption)
{
    return LoadOptions()
        .setForm(form(invocation, formOption))
        .setMaxExpansion(numberOf(invocation, maxExpansion(), mostExpansion, usualExpansion))
        .setMaxProblems(problemCount(invocation));
}

namespace {

/// The rules that the value of an option names.
QStringList rules(const Invocation &invocation, const Option &option)
{
    QStringList names = invocation.value(option).split(QLatin1Char(','), Qt::SkipEmptyParts);
    if (invocation.isSet(option) && names.isEmpty())
        throw WrongUsage(QStringLiteral("the value of %1 is empty").arg(option.typed()));
    for (const QString &name : qAsConst(names)) {
        if (option.words.contains(name))
            continue;
        const QString hint = Suggestion::hint(name, option.words);
        throw WrongUsage(QStringLiteral("unknown rule '%1'%2")
                             .arg(name, hint.isNull() ? QStringLiteral("; 'lint --rules' lists the rules") : hint));
    }
    return names;
}

} // namespace

LintOptions linting(const Invocation &invocation)
{
    return LintOptions().setDisabled(rules(invocation, disable())).setErrors(rules(invocation, error()));
}

QString expansionNote(const QByteArray &bytes, const QString &fileName)
{
    const int expansion = Forms::expansionOf(bytes, bytes.size());
    if (expansion <= usualExpansion)
        return QString();
    return fileName
        + QStringLiteral(": expands to more than %1 times its size; use %2 %3 to read it")
              .arg(usualExpansion)
              .arg(maxExpansion().typed())
              .arg(expansion);
}

int problemCount(const Invocation &invocation)
{
    return numberOf(invocation, maxProblems(), std::numeric_limits<int>::max(), usualProblemCount);
}

std::optional<Form> form(const Invocation &invocation, const Option &option)
{
    return Forms::named(invocation.value(option));
}

FileKinds fileKinds(const Invocation &invocation, int count)
{
    return count < 2 || invocation.isSet(specialFiles()) ? FileKinds::All : FileKinds::RegularOnly;
}

BatchSettings batch(const Invocation &invocation)
{
    constexpr int mostJobs = 256;
    BatchSettings settings;
    // Finding the number of processors takes longer than reading a small file.
    settings.jobs = numberOf(invocation, jobs(), mostJobs, invocation.count() > 1 ? QThread::idealThreadCount() : 1);
    settings.quiet = invocation.isSet(quiet());
    settings.json = invocation.isSet(json());
    settings.problemLimit = problemCount(invocation);
    if (settings.quiet && settings.json)
        throw WrongUsage(QStringLiteral("--quiet and --json cannot be combined"));
    return settings;
}

void checkStandardInput(const QVector<FileName> &inputs)
{
    const auto isStandardStream = [](const FileName &name) { return name.isStandardStream(); };
    if (std::count_if(inputs.begin(), inputs.end(), isStandardStream) > 1)
        throw WrongUsage(QStringLiteral("standard input can be read only once"));
}

} // namespace Options
