// SPDX-License-Identifier: MIT
#include "documents/lint/Report.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "text/Printable.h"
#include "text/Suggestion.h"

namespace TunerDocuments {

QString quoted(const QString &text)
{
    constexpr int most = 60;
    if (text.size() <= most)
        return QLatin1Char('\'') + text + QLatin1Char('\'');
    const int size = text.at(most - 1).isHighSurrogate() ? most - 1 : most;
    return QLatin1Char('\'') + text.left(size) + QStringLiteral("...'");
}

namespace {

/// Throws std::invalid_argument if there is no rule of that name.
quint64 bitNamed(const QString &name)
{
    QStringList known;
    for (std::size_t i = 0; i < allRules().size(); ++i) {
        if (name == QLatin1String(allRules()[i].name))
            return bitOf(int(i));
        known.append(QString::fromLatin1(allRules()[i].name));
    }
    const QString text = QStringLiteral("unknown rule '%1'").arg(name) + Suggestion::hint(name, known);
    throw std::invalid_argument(Printable::withoutNull(text));
}

quint64 bitsOf(const QStringList &names)
{
    quint64 bits = 0;
    for (const QString &name : names)
        bits |= bitNamed(name);
    return bits;
}

} // namespace

void LineCounter::advanceTo(int offset)
{
    for (; m_at < offset; ++m_at) {
        const auto byte = uchar(m_utf8.at(m_at));
        const bool isLineEnd =
            byte == '\n' || (byte == '\r' && (m_at + 1 == m_utf8.size() || m_utf8.at(m_at + 1) != '\n'));
        if (isLineEnd) {
            ++m_line;
            m_column = 1;
        } else if (byte >= 0xF0) {
            m_column += 2; // a surrogate pair
        } else if (byte < 0x80 || byte >= 0xC0) {
            ++m_column;
        }
    }
}

Report::Report(const Document &document, const LintOptions &options)
    : m_tuner(document.tuner), m_most(std::max(options.most(), qint64(0))), m_errors(bitsOf(options.errors()))
{
    const quint64 disabled = bitsOf(options.disabled());
    for (std::size_t i = 0; i < allRules().size(); ++i)
        m_enabled |= bitOf(int(i)) & ~disabled;
}

void Report::keep(int rule, const TextPlace &place, const std::vector<LintStep> &steps, const LintStep *furtherStep,
                  QLatin1String member, Description &&description, int entry)
{
    Finding finding;
    finding.kind = Finding::Kind::Warning;
    finding.isError = (m_errors & bitOf(rule)) != 0;
    finding.rule = QString::fromLatin1(allRules()[std::size_t(rule)].name);
    for (const LintStep &step : steps)
        finding.steps.append({step.member, step.index});
    if (furtherStep)
        finding.steps.append({furtherStep->member, furtherStep->index});
    if (member.size() > 0)
        finding.member = member;
    if (!m_paths)
        m_paths = std::make_unique<Paths::Texts>(m_tuner);
    finding.path = m_paths->of(finding.steps);
    finding.message = std::move(description.message);
    finding.suggestion = std::move(description.suggestion);
    const bool isInJson = m_places && place.offset < 0;
    const int offset = isInJson ? m_places->find(finding.steps, finding.member, entry) : place.offset;
    m_kept.push_back({std::move(finding), offset, m_count});
    if (m_isHeap)
        std::push_heap(m_kept.begin() + std::ptrdiff_t(m_walk), m_kept.end());
}

bool Report::makeRoomAt(int offset)
{
    const auto begin = m_kept.begin() + std::ptrdiff_t(m_walk);
    if (offset < 0 || begin == m_kept.end())
        return false;
    if (!std::exchange(m_isHeap, true))
        std::make_heap(begin, m_kept.end());
    if (offset >= begin->offset)
        return false;
    std::pop_heap(begin, m_kept.end());
    m_kept.pop_back();
    return true;
}

void Report::visit(const FindingVisitor &visitor, const Locate &locate)
{
    if (locate)
        std::sort(m_kept.begin(), m_kept.end());
    if (qint64(m_kept.size()) > m_most)
        m_kept.resize(std::size_t(m_most));
    for (Kept &kept : m_kept) {
        if (locate && kept.offset >= 0) {
            const TextLocation location = locate(kept.offset);
            kept.finding.line = location.line;
            kept.finding.column = location.column;
        }
        visitor(kept.finding);
    }
}

} // namespace TunerDocuments
