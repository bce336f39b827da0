// SPDX-License-Identifier: MIT
#include "commands/ChangedFile.h"

#include <algorithm>
#include <limits>

#include <QCryptographicHash>
#include <QHash>
#include <QSet>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Path.h>

#include "commands/Options.h"
#include "files/Output.h"

using namespace TunerDocuments;

using namespace JobXml;

namespace {

/// Prints the first lines, and the number of all.
void printAll(const QString &file, const QStringList &lines, qint64 count)
{
    for (const QString &text : lines)
        Console::printError(file + QStringLiteral(": ") + text);
    if (count > lines.size())
        Console::printError(file + QStringLiteral(": ") + countText(count, lines.size()));
}

/// A problem for counting. It is a digest, since a document may have a problem for every few bytes.
QByteArray digestOf(const Problem &problem, const QStringList &place)
{
    const QString text = problem.message + QLatin1Char('/') + place.join(QLatin1Char('/'));
    return QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256);
}

/// Which problem it is, wherever the changes have moved its object.
QByteArray kindOf(const Problem &problem)
{
    QStringList members;
    for (const Step &step : problem.steps)
        members.append(step.member);
    return digestOf(problem, members);
}

/// The problem at its place, unless its object has another name or position now.
QByteArray placeOf(const Problem &problem)
{
    return digestOf(problem, problem.path);
}

bool areDifferent(const TunerProperties &first, const TunerProperties &second)
{
    bool isAny = false;
    findDifferences(first, second, [&](const Difference &) { isAny = true; });
    return isAny;
}

/// Prints the values that read back as others.
void reportInexactValues(const TunerProperties &changed, const QByteArray &bytes, Form form, const QString &file)
{
    QStringList lines;
    qint64 count = 0;
    try {
        const Document written = Document::fromBytes(bytes, {}, {form, std::numeric_limits<int>::max()});
        findDifferences(changed, written.tuner, [&](const Difference &difference) {
            if (++count <= Options::usualProblemCount)
                lines.append(QStringLiteral("this form cannot store the document exactly: ") + difference.text());
        });
    } catch (const FileFailure &failure) {
        Console::printError(QStringLiteral("what was written cannot be read back: ") + failure.text());
    }
    printAll(file, lines, count);
}

} // namespace

const Option &ChangedFile::noValidate()
{
    static const Option option{{QStringLiteral("no-validate")},
                               QStringLiteral("Write the document even if the changes cause new problems."),
                               {},
                               Takes::Nothing,
                               {}};
    return option;
}

ChangedFile::ChangedFile(const FileName &name, const Invocation &invocation)
    : m_mayHaveProblems(invocation.isSet(noValidate())),
      m_file(
          name, Options::loading(invocation), m_mayHaveProblems ? ProblemVisitor() : [this](const Problem &problem) {
              if (problem.line == 0 || m_keptItems.contain(problem))
                  return;
              const Finding finding = findingOf(problem);
              if (m_lost.size() < Options::usualProblemCount)
                  m_lost.append(QStringLiteral("line %1, column %2: %3")
                                    .arg(finding.line)
                                    .arg(finding.column)
                                    .arg(finding.explained()));
              ++m_lostCount;
          })
{
}

bool ChangedFile::isWritten(const TunerProperties &changed, Form form) const
{
    return form != m_file.document.form || areDifferent(tuner(), changed);
}

bool ChangedFile::reportLostContent(const TunerProperties &changed, const FileName &target) const
{
    if (m_lostCount == 0 || !isWritten(changed, formFor(target)))
        return false;
    printAll(shownName(), m_lost, m_lostCount);
    return true;
}

bool ChangedFile::reportNewProblems(const TunerProperties &changed) const
{
    if (m_mayHaveProblems)
        return false;
    QHash<QByteArray, int> further; // of each kind
    QSet<QByteArray> known;
    changed.VisitProblems([&](const Problem &problem) {
        if (!problem.xmlOnly) // the writer reports these, if the form is XML
            ++further[kindOf(problem)];
    });
    tuner().VisitProblems([&](const Problem &problem) {
        --further[kindOf(problem)];
        known.insert(placeOf(problem));
    });
    qint64 count = 0;
    for (const int number : qAsConst(further))
        count += std::max(number, 0);
    QStringList lines;
    Paths::Texts paths(changed);
    changed.VisitProblems([&](const Problem &problem) {
        const auto left = further.find(kindOf(problem));
        if (problem.xmlOnly || left == further.end() || *left <= 0 || known.contains(placeOf(problem))
            || lines.size() == Options::usualProblemCount)
            return;
        --*left;
        const Finding finding = findingOf(problem);
        const QString path = paths.of(finding.steps);
        lines.append((path.isEmpty() ? path : path + QStringLiteral(": ")) + finding.message);
    });
    printAll(shownName(), lines, count);
    return count > 0;
}

Form ChangedFile::formFor(const FileName &target) const
{
    if (target.isEmpty() || target.isStandardStream())
        return m_file.document.form;
    return Forms::bySuffix(QString::fromLatin1(target.bytes())).value_or(m_file.document.form);
}

/// The one place where the bytes of a changed file come from.
QByteArray ChangedFile::bytesOf(const TunerProperties &changed, Form form, const QString &name)
{
    Document document(changed, form);
    bool hasProblems = false;
    changed.VisitProblems([&](const Problem &) { hasProblems = true; });
    document.tuner.SetValidate(!hasProblems && changed.HasData());
    QByteArray bytes = document.toBytes(form, name);
    const QString note = Options::expansionNote(bytes, name);
    if (!note.isNull())
        Console::printError(note);
    reportInexactValues(changed, bytes, form, name);
    return bytes;
}

void ChangedFile::write(const TunerProperties &changed, const FileName &target)
{
    const bool isInPlace = target.isEmpty();
    const bool isStream = isInPlace && m_file.input.name().isStandardStream();
    const Form form = formFor(target);
    const bool isVerbatim = !isWritten(changed, form);
    if (isVerbatim && isInPlace && !isStream)
        return;
    const QByteArray bytes =
        isVerbatim ? m_file.input.bytes() : bytesOf(changed, form, isInPlace ? shownName() : target.shown());
    if (isInPlace)
        Output::replace(m_file.input, bytes);
    else
        Output::writeWhole(target, bytes);
}
