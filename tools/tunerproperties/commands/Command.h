// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <stdexcept>

#include <QByteArrayList>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include "console/Console.h"
#include "files/FileName.h"

/// What an argument or the value of an option accepts; the completions follow it.
enum class Takes {
    Nothing,
    Word, ///< one of the listed words
    Words, ///< one or more of them, separated by commas
    File,
    Folder,
    Path, ///< a file first, then paths in it
    Assignment, ///< a file first, then PATH=VALUE in it
    Anything,
};

/// An option, described once for the command line, the help, the man page and the completions.
struct Option
{
    QStringList names; ///< without dashes, the one-letter name first
    QString help; ///< complete sentences
    QString value; ///< placeholder of the value: FORM; empty if the option takes none
    Takes takes = Takes::Nothing;
    QStringList words; ///< the accepted words, if any; unless there may be several, others are an error at once
    QHash<QString, QString> meant = {}; ///< other words, in lower case, and the accepted words to suggest for them

    /// As it is typed: "--from".
    QString typed() const;
    QStringList allTyped() const; ///< "-q", "--quiet"
};

/// An example of a command and its effect, without "tunerproperties".
struct Example
{
    QString line; ///< as typed after the name of the program
    QString effect; ///< a complete sentence
};

/// The command line is wrong. The text says why.
class WrongUsage : public std::runtime_error
{
public:
    explicit WrongUsage(const QString &text);
    QString text() const { return QString::fromUtf8(what()); }
};

/// The arguments and options of a command as they were typed.
class Invocation
{
public:
    /// `values` has the first name of each option as its key.
    Invocation(QByteArrayList arguments, QHash<QString, QByteArray> values);

    int count() const { return int(m_arguments.size()); } ///< number of arguments
    FileName file(int index) const { return FileName(m_arguments.at(index)); }
    QVector<FileName> files() const; ///< all arguments
    QString text(int index) const; ///< throws WrongUsage for an argument that is not UTF-8

    bool isSet(const Option &option) const;
    QString value(const Option &option) const; ///< null if it is not set; throws WrongUsage if it is not UTF-8
    FileName fileValue(const Option &option) const; ///< none if it is not set

private:
    QByteArrayList m_arguments;
    QHash<QString, QByteArray> m_values;
};

/// A command, described once, like its options.
struct Command
{
    QString name;
    QStringList usages; ///< the arguments: "FILE"; the usual form first if there are several
    QString summary; ///< a sentence that fits on one line
    QStringList details; ///< paragraphs
    QVector<Option> options; ///< without --help, which every command has
    QVector<Example> examples; ///< at least one
    int minArguments = 1;
    int maxArguments = std::numeric_limits<int>::max();
    ExitStatus (*run)(const Invocation &) = nullptr; ///< may throw WrongUsage and FileFailure
    Takes takes = Takes::File; ///< for the arguments
    /// The accepted arguments, if any; a function, since they may be the names of all commands.
    QStringList (*words)() = nullptr;
    bool argumentsMayBeEmpty = false; ///< for arguments other than files
    bool mayEndWithNumber = false; ///< a number that begins with "-" is not an option
    QHash<QString, QString> meant = {}; ///< options of other commands, and what to suggest for them

    QString withoutValues; ///< the option, as typed, with which arguments are paths instead of assignments; may be null

    bool takesFiles() const { return takes == Takes::File || takesPaths(); }
    bool takesPaths() const { return takes == Takes::Path || takes == Takes::Assignment; }
};
