// SPDX-License-Identifier: MIT
#include <tunerdocuments/Form.h>

#include "Pages.h"
#include "commands/Commands.h"
#include "commands/HelpText.h"

namespace {

/// The text with everything escaped that roff interprets.
QString plain(const QString &text)
{
    QString result;
    for (const QChar character : text) {
        switch (character.unicode()) {
        case '\\':
            result += QLatin1String("\\e");
            break;
        case '-':
            result += QLatin1String("\\-");
            break;
        case '\'':
            result += QLatin1String("\\(aq");
            break;
        case '`':
            result += QLatin1String("\\(ga");
            break;
        case '^':
            result += QLatin1String("\\(ha");
            break;
        case '~':
            result += QLatin1String("\\(ti");
            break;
        default:
            result += character;
        }
    }
    return result.startsWith(QLatin1Char('.')) ? QStringLiteral("\\&") + result : result;
}

QString bold(const QString &text)
{
    return QStringLiteral("\\fB") + plain(text) + QStringLiteral("\\fR");
}

QString italic(const QString &text)
{
    return QStringLiteral("\\fI") + plain(text) + QStringLiteral("\\fR");
}

/// "--to FORM FILE...": placeholders are in capitals.
QString usage(const QString &text)
{
    QStringList words;
    for (const QString &word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const bool isLiteral = word.startsWith(QLatin1Char('-')) || word == word.toLower();
        words.append(isLiteral ? bold(word) : italic(word));
    }
    return words.join(QLatin1Char(' '));
}

/// Lines, each of which ends.
class Roff
{
public:
    void request(const char *name, const QString &argument = {})
    {
        m_text += QLatin1Char('.') + QString::fromLatin1(name)
            + (argument.isEmpty() ? QString() : QLatin1Char(' ') + argument) + QLatin1Char('\n');
    }
    void line(const QString &roff) { m_text += roff + QLatin1Char('\n'); }
    void paragraph(const QString &text)
    {
        request("PP");
        line(plain(text));
    }
    void item(const QString &name, const QString &text)
    {
        request("TP");
        line(name);
        line(plain(text));
    }
    QString text() const { return m_text; }

private:
    QString m_text;
};

QString optionName(const Option &option)
{
    QStringList names;
    for (const QString &name : option.allTyped())
        names.append(bold(name));
    const QString value = option.value.isEmpty() ? QString() : QLatin1Char(' ') + italic(option.value);
    return names.join(QStringLiteral(", ")) + value;
}

void add(Roff &page, const Command &command)
{
    page.request("SS", plain(command.name));
    const QString start = bold(HelpText::program() + QLatin1Char(' ') + command.name) + QStringLiteral(" [")
        + italic(QStringLiteral("OPTION...")) + QLatin1Char(']');
    QStringList ways;
    for (const QString &each : command.usages)
        ways.append(each.isEmpty() ? start : start + QLatin1Char(' ') + usage(each));
    page.line(ways.isEmpty() ? start : ways.join(QStringLiteral("\n.br\n")));
    page.paragraph(command.summary);
    for (const QString &details : command.details)
        page.paragraph(details);
    for (const Option &option : command.options)
        page.item(optionName(option), option.help);
    page.paragraph(command.examples.size() > 1 ? QStringLiteral("Examples:") : QStringLiteral("Example:"));
    for (const Example &example : command.examples)
        page.item(bold(HelpText::program() + QLatin1Char(' ') + example.line), example.effect);
}

QStringList aboutPaths()
{
    return {
        QStringLiteral("A path leads from the document to a member; its steps are the names of members, separated by "
                       "/: Component[type=Filter,name=Pre]/Node[id=gain]/ValueItem/value. A list with one item needs "
                       "no selection, and the kind of value in a ValueItem no step of its own."),
        QStringLiteral("In brackets, an item of a list is selected by the members that identify it, by its position, "
                       "counted from 1, or by both: Node[id=gain][2] is the second of those. Identifying members "
                       "still select the item after others were added, removed or moved."),
        QStringLiteral("Texts that contain one of []=,/\"'\\ or begin or end with a blank are put into double quotes, "
                       "with \\ before a quote or a backslash. 'tunerproperties paths' prints all paths of a "
                       "document in this notation, and messages use it as well."),
        QStringLiteral("In a pattern, [*] selects every item of a list, and * every member that is set.")};
}

void addEnvironment(Roff &page)
{
    page.item(bold(QStringLiteral("TMPDIR")),
              QStringLiteral("Where data from a pipe are stored while the program reads them (default: /tmp)."));
    page.item(bold(QStringLiteral("LC_ALL")) + QStringLiteral(", ") + bold(QStringLiteral("LC_MESSAGES"))
                  + QStringLiteral(", ") + bold(QStringLiteral("LANGUAGE")) + QStringLiteral(", ")
                  + bold(QStringLiteral("LANG")),
              QStringLiteral("The language of the system's own reasons in messages, such as \"Permission denied\". "
                             "Everything else is English, and all output is UTF-8."));
    page.item(bold(QStringLiteral("NO_COLOR")), QStringLiteral("If it is not empty, diff uses no colors."));
    page.item(bold(QStringLiteral("TERM")),
              QStringLiteral("If it is dumb, diff uses no colors; if it is dumb or not set, no progress is shown."));
}

void addFiles(Roff &page, const QString &folder)
{
    const auto add = [&](const char *name, const QString &meaning) {
        page.item(italic(folder + QLatin1Char('/') + QLatin1String(name)), meaning);
    };
    add("tuner-properties.xsd", QStringLiteral("The XML Schema of documents as this program writes them."));
    add("tuner-properties-author.xsd",
        QStringLiteral("The XML Schema for documents that are written by hand, with descriptions for editors."));
    add("tuner-properties.schema.json", QStringLiteral("The JSON Schema of documents."));
    add("model.json", QStringLiteral("All classes and members, for programs that generate code."));
}

/// "Show this." as manual pages begin: "show this".
QString asName(QString sentence)
{
    sentence.replace(0, 1, sentence.at(0).toLower());
    return sentence.chopped(1);
}

} // namespace

QString Pages::manual(const Installation &installation)
{
    Roff page;
    const QString program = HelpText::program();
    page.request("TH",
                 QStringLiteral("%1 1 %2 \"%3 %4\" \"User Commands\"")
                     .arg(program.toUpper(), installation.date, program, installation.version));
    page.request("SH", QStringLiteral("NAME"));
    page.line(plain(program) + QStringLiteral(" \\- ") + plain(asName(HelpText::purpose())));
    page.request("SH", QStringLiteral("SYNOPSIS"));
    const QStringList forms = HelpText::usages();
    for (int i = 0; i < forms.size(); ++i) {
        if (i > 0)
            page.request("br");
        page.line(bold(program) + QLatin1Char(' ') + usage(forms[i]));
    }
    page.request("SH", QStringLiteral("DESCRIPTION"));
    page.line(plain(HelpText::purpose()));
    for (const QString &note : HelpText::generalNotes())
        page.paragraph(note);
    page.request("SH", QStringLiteral("OPTIONS"));
    for (const Option &option : HelpText::generalOptions())
        page.item(optionName(option), option.help);
    page.paragraph(QStringLiteral("Each command also has the option --help."));
    page.request("SH", QStringLiteral("COMMANDS"));
    for (const Command &command : allCommands())
        add(page, command);
    page.request("SH", QStringLiteral("PATHS"));
    for (const QString &paragraph : aboutPaths())
        page.paragraph(paragraph);
    page.request("SH", QStringLiteral("FORMS"));
    for (const QString &form : TunerDocuments::Forms::list())
        page.item(
            bold(form),
            QStringLiteral("Suffix: %1.").arg(TunerDocuments::Forms::suffixOf(*TunerDocuments::Forms::named(form))));
    page.request("SH", QStringLiteral("EXIT STATUS"));
    for (const HelpText::Status &status : HelpText::statuses())
        page.item(bold(QString::number(int(status.status))), status.meaning);
    page.request("SH", QStringLiteral("ENVIRONMENT"));
    addEnvironment(page);
    page.request("SH", QStringLiteral("FILES"));
    addFiles(page, installation.dataFolder);
    page.request("SH", QStringLiteral("SEE ALSO"));
    page.line(QStringLiteral("\\fBxmllint\\fR(1), \\fBgit\\fR(1), \\fBgitattributes\\fR(5)"));
    return page.text();
}
