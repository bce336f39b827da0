// SPDX-License-Identifier: MIT
#include "batch/Batch.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <new>
#include <numeric>
#include <optional>

#include <tunerdocuments/Json.h>

#include "batch/InOrder.h"
#include "batch/OutcomeJson.h"
#include "batch/Progress.h"
#include "console/Interruption.h"
#include "text/Printable.h"

namespace {

constexpr int statusCount = int(FileStatus::Unwritable) + 1;
using Counts = std::array<int, statusCount>; // by status

} // namespace

/// The number of files of each status so far, including those whose results are not written yet.
class Batch::Tally
{
public:
    void add(FileStatus status, qint64 warnings = 0)
    {
        const std::lock_guard lock(m_mutex);
        ++m_counts[std::size_t(status)];
        m_warnings += warnings;
    }

    /// Those that are only counted.
    qint64 warnings() const
    {
        const std::lock_guard lock(m_mutex);
        return m_warnings;
    }

    /// By status.
    Counts counts() const
    {
        const std::lock_guard lock(m_mutex);
        return m_counts;
    }

    int done() const
    {
        const Counts all = counts();
        return std::accumulate(all.begin(), all.end(), 0);
    }

private:
    mutable std::mutex m_mutex;
    Counts m_counts = {};
    qint64 m_warnings = 0;
};

/// The text about one file, ready for output. It is smaller than the findings, which can be discarded.
struct Batch::Result
{
    FileStatus status;
    QByteArray lines{};
    QStringList errors{};
    std::optional<TunerDocuments::Sarif::Part> sarif{};

    static std::int64_t size(const Result &result)
    {
        constexpr std::int64_t characterSize = 2;
        std::int64_t sum = result.lines.size() + (result.sarif ? result.sarif->size() : 0);
        for (const QString &text : result.errors)
            sum += characterSize * text.size();
        return sum;
    }
};

namespace {

Json lossJson(const TunerDocuments::Loss &loss)
{
    Json json = Json::emptyObject();
    json.insert("path", loss.path.toUtf8());
    json.insert("before", loss.before.toUtf8());
    json.insert("after", loss.after.toUtf8());
    return json;
}

/// "FILE: PATH: 0.2567 becomes 0.26" for each loss that is kept, and a last line with the total if there are more.
QStringList lossLines(const Outcome &outcome)
{
    const QString file = outcome.output.shown() + QStringLiteral(": ");
    QStringList lines;
    for (const TunerDocuments::Loss &loss : outcome.losses)
        lines.append(file + loss.text());
    if (outcome.lossCount > lines.size())
        lines.append(
            file + QStringLiteral("%1 losses; only the first %2 are listed").arg(outcome.lossCount).arg(lines.size()));
    return lines;
}

TunerDocuments::Sarif::Part sarifOf(const Outcome &outcome)
{
    TunerDocuments::Sarif::Part part(outcome.file.bytes());
    if (!outcome.error.isNull())
        part.addFailure(outcome.error);
    part.add(outcome.findings, howToListMore);
    return part;
}

QString statusWord(FileStatus status, const Batch &batch)
{
    switch (status) {
    case FileStatus::Done:
        return batch.doneStatus;
    case FileStatus::Changed:
        return batch.changedStatus;
    case FileStatus::Problems:
        return batch.foundStatus;
    case FileStatus::Unreadable:
        return QStringLiteral("unreadable");
    case FileStatus::Unwritable:
        break;
    }
    return QStringLiteral("unwritable");
}

ExitStatus exitStatus(FileStatus status, const Batch &batch)
{
    switch (status) {
    case FileStatus::Done:
        return ExitStatus::Ok;
    case FileStatus::Changed:
        return batch.changedExit;
    case FileStatus::Problems:
        return ExitStatus::Problems;
    default:
        return ExitStatus::FileFailure;
    }
}

} // namespace

JsonLine Batch::json(const Outcome &outcome) const
{
    JsonLine line;
    OutcomeJson::addName(line, "file", outcome.file);
    if (!outcome.output.isEmpty())
        OutcomeJson::addName(line, "output", outcome.output);
    line.add("status", statusWord(outcome.status, *this).toUtf8());
    return line;
}

QByteArray Batch::lineOf(const Outcome &outcome) const
{
    JsonLine line = json(outcome);
    QByteArrayList problems;
    for (const TunerDocuments::Finding &finding : outcome.findings.listed())
        problems.append(problemToJson(finding));
    line.addList("problems", problems);
    line.add("problemCount", outcome.findings.count());
    if (!outcome.output.isEmpty()) {
        Json losses = Json::emptyList();
        for (const TunerDocuments::Loss &loss : outcome.losses)
            losses.append(lossJson(loss));
        line.add("losses", losses);
        line.add("lossCount", outcome.lossCount);
    }
    if (outcome.warningCount >= 0)
        line.add("warnings", outcome.warningCount);
    if (listsWarnings) {
        line.add("warnings", outcome.findings.warningCount());
        OutcomeJson::addFindings(line, outcome.findings.warnings());
    }
    OutcomeJson::addError(line, outcome.error);
    return line.text();
}

ExitStatus Batch::run(const QVector<FileName> &files)
{
    const int count = int(files.size());
    Tally tally;
    std::optional<Interruption::Report> report;
    if (count > 1)
        report.emplace([&] {
            const QString done = QStringLiteral("interrupted after %1 of %2 files").arg(tally.done()).arg(count);
            return m_settings.quiet ? QString() : done + summary(tally);
        });
    ExitStatus worst = ExitStatus::Ok;
    {
        Progress progress(m_settings.quiet ? 0 : count);
        const auto showProgress = [&] { progress.update(tally.done()); };
        const auto result = [&](int index) { return resultOf(workOn(files.at(index), index, tally)); };
        const auto use = [&](const Result &done) {
            write(done);
            worst = std::max(worst, exitStatus(done.status, *this));
            showProgress();
        };
        if (count == 1) // not worth a thread, and without a bar
            use(result(0));
        else
            InOrder<Result>::run(count, m_settings.jobs, result, use, showProgress, Result::size);
    }
    if (count > 1 && !m_settings.quiet && !m_settings.json)
        Console::printError(QStringLiteral("%1 files").arg(count) + summary(tally));
    return worst;
}

QString Batch::warningNote(qint64 count)
{
    if (count <= 0)
        return QString();
    return count == 1 ? QStringLiteral("'lint' has 1 warning") : QStringLiteral("'lint' has %1 warnings").arg(count);
}

Outcome Batch::workOn(const FileName &file, int index, Tally &tally) const
{
    bool isCounted = false;
    Outcome outcome;
    const auto failed = [&](const QString &error) {
        outcome = {};
        outcome.status = FileStatus::Unreadable;
        outcome.error = error;
    };
    try {
        outcome = work(index, [&](FileStatus status) {
            tally.add(status);
            isCounted = true;
        });
    } catch (const TunerDocuments::InvalidContent &content) {
        outcome = {};
        outcome.status = FileStatus::Problems;
        outcome.findings = content.problems();
    } catch (const TunerDocuments::UnstorableContent &content) {
        failed(content.text());
        outcome.status = FileStatus::Problems;
    } catch (const FileFailure &failure) {
        failed(failure.text());
    } catch (const std::bad_alloc &) {
        failed(file.shown() + QStringLiteral(": out of memory"));
    } catch (const std::exception &e) {
        failed(file.shown() + QStringLiteral(": ") + QString::fromUtf8(e.what()));
    }
    outcome.file = file;
    outcome.output = outputs.value(index);
    if (!isCounted)
        tally.add(outcome.status, std::max(outcome.warningCount, qint64(0)));
    return outcome;
}

Batch::Result Batch::resultOf(const Outcome &outcome) const
{
    Result result{outcome.status};
    if (!m_settings.quiet && !outcome.note.isNull())
        result.errors.append(outcome.note);
    if (!m_settings.quiet && !m_settings.json)
        result.errors += lossLines(outcome);
    if (sarif) {
        result.sarif = sarifOf(outcome);
        if (!outcome.error.isNull())
            result.errors.append(outcome.error);
        return result;
    }
    if (m_settings.json) {
        result.lines = compose ? compose(outcome) : lineOf(outcome) + '\n';
        return result;
    }
    if (!m_settings.quiet && outcome.status == FileStatus::Changed)
        result.lines += outcome.file.shown().toUtf8() + '\n';
    if (!m_settings.quiet && problemsToStandardOutput) {
        for (const QString &line : outcome.findings.lines(outcome.file.shown(), howToListMore))
            result.lines += Printable::onOneLine(line).toUtf8() + '\n';
    } else if (!m_settings.quiet) {
        result.errors += outcome.findings.lines(outcome.file.shown(), howToListMore);
    }
    const bool isProblem = outcome.status == FileStatus::Problems;
    if (!outcome.error.isNull() && !(m_settings.quiet && isProblem))
        result.errors.append(outcome.error);
    return result;
}

void Batch::write(const Result &result) const
{
    if (result.sarif)
        sarif->add(*result.sarif);
    else if (!result.lines.isEmpty())
        Console::write(result.lines);
    Console::printErrors(result.errors);
}

/// ": 1 valid, 2 with problems; 'lint' has 3 warnings", or an empty text if no file is done.
QString Batch::summary(const Tally &tally) const
{
    const Counts counts = tally.counts();
    const std::array<QString, statusCount> words = {doneStatus, changedStatus, QStringLiteral("with ") + foundStatus,
                                                    QStringLiteral("unreadable"), QStringLiteral("unwritable")};
    QStringList parts;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        if (counts[i] > 0)
            parts.append(QStringLiteral("%1 %2").arg(counts[i]).arg(words[i]));
    }
    const QString warnings = warningNote(tally.warnings());
    return (parts.isEmpty() ? QString() : QStringLiteral(": ") + parts.join(QStringLiteral(", ")))
        + (warnings.isNull() ? QString() : QStringLiteral("; ") + warnings);
}
