// SPDX-License-Identifier: MIT
#include <algorithm>
#include <limits>
#include <new>

#include <QCommandLineParser>
#include <QCoreApplication>

#include <jobxml/TunerProperties.h>

#include "Console.h"
#include "Forms.h"
#include "Input.h"
#include "Output.h"
#include "Show.h"
#include "Validate.h"

using JobXml::TunerProperties;

namespace {

/// What the command line asks for.
struct Request
{
    QStringList files;
    std::optional<Form> from;
    std::optional<Form> to;
    bool validate = true;
};

/// A document and where it comes from, read as it stands.
struct Loaded
{
    Loaded(const QString &name, std::optional<Form> from) : input(name), form(from ? *from : Forms::recognise(input))
    {
        document.SetValidate(false);
        Forms::load(document, input, form);
    }

    QStringList problems() { return findProblems(document, input, form); }

    Input input;
    Form form;
    TunerProperties document;
};

ExitStatus runShow(const Request &request)
{
    const Loaded loaded(request.files.first(), request.from);
    Console::write(show(loaded.document).toUtf8());
    return ExitStatus::Ok;
}

ExitStatus runValidate(const Request &request)
{
    ExitStatus worst = ExitStatus::Ok;
    for (const QString &name : request.files) {
        ExitStatus status = ExitStatus::Ok;
        QStringList problems;
        try {
            problems = Loaded(name, request.from).problems();
            status = problems.isEmpty() ? ExitStatus::Ok : ExitStatus::Problems;
        } catch (const FileFailure &failure) {
            Console::complain(failure.text());
            status = ExitStatus::FileFailure;
        }
        for (const QString &problem : qAsConst(problems))
            Console::write(Console::onOneLine(problem).toUtf8() + '\n');
        worst = std::max(worst, status);
    }
    return worst;
}

ExitStatus runConvert(const Request &request)
{
    Loaded loaded(request.files.first(), request.from);
    if (request.validate) {
        const QStringList problems = loaded.problems();
        for (const QString &problem : problems)
            Console::complain(problem);
        if (!problems.isEmpty())
            return ExitStatus::Problems;
    }
    loaded.document.SetValidate(request.validate);
    const QString &name = request.files.last();
    Output::writeWhole(name, Forms::compose(loaded.document, *request.to, name));
    return ExitStatus::Ok;
}

struct Command
{
    QString name;
    QString arguments;
    QString description;
    int fewest;
    int most;
    bool writes;
    ExitStatus (*run)(const Request &);
};

QVector<Command> commands()
{
    return {
        {QStringLiteral("show"), QStringLiteral("FILE"), QStringLiteral("Shows all that a document holds, as a tree."),
         1, 1, false, runShow},
        {QStringLiteral("validate"), QStringLiteral("FILE..."),
         QStringLiteral("Tells every problem of the documents, a line each, and nothing if there is none."), 1,
         std::numeric_limits<int>::max(), false, runValidate},
        {QStringLiteral("convert"), QStringLiteral("IN OUT"),
         QStringLiteral("Writes a document in another form. Writes nothing if the document does not validate."), 2, 2,
         true, runConvert},
    };
}

struct Options
{
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Shows this help.")};
    QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Shows the version.")};
    QCommandLineOption from{QStringLiteral("from"),
                            QStringLiteral("What the input is: %1. Only a snapshot whose name does not end in .tps "
                                           "cannot be recognised.")
                                .arg(Forms::names()),
                            QStringLiteral("form")};
    QCommandLineOption to{QStringLiteral("to"),
                          QStringLiteral("What to write: %1. Without it the name of the output says: .xml, .tpb, "
                                         ".tpz or .tps; standard output is XML.")
                              .arg(Forms::names()),
                          QStringLiteral("form")};
    QCommandLineOption noValidate{QStringLiteral("no-validate"),
                                  QStringLiteral("Writes the document as it stands, whatever its problems are.")};
};

ExitStatus wrongUsage(const QString &text, const QString &command = {})
{
    Console::complain(text);
    const QString program = QCoreApplication::applicationName();
    const QString withCommand = command.isEmpty() ? program : program + QLatin1Char(' ') + command;
    Console::complain(QStringLiteral("try '%1 --help'").arg(withCommand));
    return ExitStatus::WrongUsage;
}

/// Reads the command's own command line; what is wrong with it, or a null string.
QString fill(Request &request, const Command &command, const QCommandLineParser &parser, const Options &options)
{
    request.files = parser.positionalArguments().mid(1);
    if (request.files.size() < command.fewest || request.files.size() > command.most)
        return QStringLiteral("the arguments of '%1' are %2").arg(command.name, command.arguments);
    if (request.files.contains(QString()))
        return QStringLiteral("the name of a file is empty");

    const auto formOf = [&](const QCommandLineOption &option, std::optional<Form> &form) {
        const QString name = parser.value(option);
        form = Forms::named(name);
        return form || !parser.isSet(option)
            ? QString()
            : QStringLiteral("'%1' is no form; the forms are %2").arg(name, Forms::names());
    };
    QString wrongFrom = formOf(options.from, request.from);
    if (!wrongFrom.isNull() || !command.writes)
        return wrongFrom;

    QString wrongTo = formOf(options.to, request.to);
    if (!wrongTo.isNull())
        return wrongTo;
    request.validate = !parser.isSet(options.noValidate);
    const QString &name = request.files.last();
    if (!request.to)
        request.to = name == Console::streamName() ? Form::Xml : Forms::bySuffix(name);
    return request.to ? QString()
                      : QStringLiteral("the name of '%1' does not tell the form to write; use --to").arg(name);
}

ExitStatus runCommand(const Command &command, const QStringList &arguments, const Options &options)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(command.description);
    parser.addOptions({options.help, options.from});
    if (command.writes)
        parser.addOptions({options.to, options.noValidate});
    parser.addPositionalArgument(command.arguments, QStringLiteral("Files; - is standard input or output."),
                                 command.name + QLatin1Char(' ') + command.arguments);
    const bool understood = parser.parse(arguments);
    if (parser.isSet(options.help)) {
        Console::write(parser.helpText().toUtf8());
        return ExitStatus::Ok;
    }
    if (!understood)
        return wrongUsage(parser.errorText(), command.name);
    Request request;
    const QString wrong = fill(request, command, parser, options);
    return wrong.isNull() ? command.run(request) : wrongUsage(wrong, command.name);
}

ExitStatus run(const QStringList &arguments)
{
    Options options;
    // The command is the first argument that is no option; finding it takes knowing which options have a value.
    QCommandLineParser parser;
    parser.addOptions({options.help, options.version});
    for (QCommandLineOption option : {options.from, options.to, options.noValidate}) {
        option.setFlags(QCommandLineOption::HiddenFromHelp);
        parser.addOption(option);
    }
    QString description = QStringLiteral("Shows, validates and converts descriptions of radio tuners.\n\nCommands:");
    for (const Command &command : commands()) {
        const QString usage = command.name + QLatin1Char(' ') + command.arguments;
        description += QStringLiteral("\n  %1%2").arg(usage, -18).arg(command.description);
    }
    parser.setApplicationDescription(description);
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("A file, or - for standard input or output."),
                                 QStringLiteral("COMMAND FILE..."));
    const bool understood = parser.parse(arguments);
    if (parser.isSet(options.version)) {
        Console::write(QStringLiteral("%1 %2\n")
                           .arg(QCoreApplication::applicationName(), QCoreApplication::applicationVersion())
                           .toUtf8());
        return ExitStatus::Ok;
    }
    if (const QStringList positional = parser.positionalArguments(); !positional.isEmpty()) {
        for (const Command &command : commands()) {
            if (command.name == positional.first())
                return runCommand(command, arguments, options);
        }
        return wrongUsage(QStringLiteral("'%1' is no command").arg(positional.first()));
    }
    if (parser.isSet(options.help)) {
        Console::write(parser.helpText().toUtf8());
        return ExitStatus::Ok;
    }
    return wrongUsage(understood ? QStringLiteral("a command is missing") : parser.errorText());
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tunerproperties"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TOOL_VERSION));
    try {
        return int(run(QCoreApplication::arguments()));
    } catch (const std::bad_alloc &) {
        Console::complain(QStringLiteral("the memory does not suffice"));
    } catch (const std::exception &e) {
        Console::complain(QString::fromUtf8(e.what()));
    }
    return int(ExitStatus::FileFailure);
}
