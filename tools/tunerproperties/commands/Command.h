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
#include "text/FileName.h"

/// What may stand for an argument or the value of an option; completions go by it.
enum class Takes {
    Nothing,
    Word, ///< one of the words that are listed
    File,
    Folder,
    Anything,
};

/// An option, described once: the command line, the help, the man page and the completions go by this.
struct Option
{
    QStringList names; ///< without dashes, the short one of one letter first
    QString help; ///< whole sentences
    QString value; ///< what stands for the value in the help: FORM; empty if the option takes none
    Takes takes = Takes::Nothing;
    QStringList words; ///< if it takes one of those; another is refused before the command runs

    /// As one types it: "--from".
    QString typed() const;
    QStringList allTyped() const; ///< "-q", "--quiet"
};

/// How a command is used, and what that does. "tunerproperties" is left out.
struct Example
{
    QString line; ///< as one types it behind the program's name
    QString effect; ///< a whole sentence
};

/// The command line is not one that the command understands. The text tells why.
class WrongUsage : public std::runtime_error
{
public:
    explicit WrongUsage(const QString &text);
    QString text() const { return QString::fromUtf8(what()); }
};

/// What was typed behind the command.
class Invocation
{
public:
    /// Values go by the first name of their option.
    Invocation(QByteArrayList arguments, QHash<QString, QByteArray> values);

    int count() const { return m_arguments.size(); } ///< of the arguments
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
    QStringList usages; ///< its arguments: "FILE", or several ways, the usual one first
    QString summary; ///< a sentence that fits a line
    QStringList details; ///< paragraphs
    QVector<Option> options; ///< its own; --help goes without saying
    QVector<Example> examples; ///< at least one
    int fewest = 1; ///< arguments
    int most = std::numeric_limits<int>::max();
    ExitStatus (*run)(const Invocation &) = nullptr; ///< may throw WrongUsage and FileFailure
    Takes takes = Takes::File; ///< for an argument
    QStringList (*words)() = nullptr; ///< if arguments are one of those; asked for when all commands are known
    bool argumentsMayBeEmpty = false; ///< those that are no files
    bool mayEndWithNumber = false; ///< which is no option, even if it begins with "-"
};
