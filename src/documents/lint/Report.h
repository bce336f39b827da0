// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QVector>

#include <tunerdocuments/Finding.h>
#include <tunerdocuments/Lint.h>
#include <tunerdocuments/Path.h>

#include "documents/lint/JsonPlaces.h"
#include "documents/lint/Rules.h"
#include "text/TextLocation.h"

namespace TunerDocuments {

/// A step to the object that is being examined. The name belongs to the model.
struct LintStep
{
    QLatin1String member;
    int index; ///< -1 if the member is not a list
};

/// Lines and columns of places in XML, in ascending order. A carriage return ends a line as well, in contrast to
/// TextLocator.
class LineCounter
{
public:
    /// A byte order mark does not count.
    explicit LineCounter(const QByteArray &utf8) : m_utf8(utf8), m_at(utf8.startsWith("\xEF\xBB\xBF") ? 3 : 0) { }

    TextLocation at(int offset)
    {
        advanceTo(offset);
        return {m_line, m_column};
    }

private:
    void advanceTo(int offset);

    const QByteArray &m_utf8;
    int m_at;
    int m_line = 1;
    int m_column = 1;
};

/// What a rule writes about a finding.
struct Description
{
    QString message;
    QString suggestion{}; ///< null if there is none
};

/// The beginning of a text, in quotes: messages do not depend on the size of the document.
QString quoted(const QString &text);

/// Where a finding is in the text; nowhere without one.
struct TextPlace
{
    int offset = -1; ///< in bytes
    int element = -1; ///< the element concerned, whose comments may disable the rule
};

/// Line and column of a place. Called for places in ascending order.
using Locate = std::function<TextLocation(int offset)>;

/// The findings: the first ones, and the number of all. Only the first ones are described, since a document made for
/// that may have one for every few bytes.
class Report
{
public:
    Report(const Document &document, const LintOptions &options);

    /// The rules that the options enable.
    quint64 enabled() const { return m_enabled; }

    /// The rules that comments disable for each element; empty if they disable none.
    void setDisabledInElements(std::vector<quint64> rules) { m_disabledInElements = std::move(rules); }

    /// Where findings without a place are in JSON.
    void setPlaces(const JsonPlaces &places) { m_places = &places; }

    /// How many findings are described from now on. Findings of two walks are merged, so that each has the full number.
    void beginWalk()
    {
        m_left = m_most;
        m_walk = m_kept.size();
        m_isHeap = false;
    }

    /// Counts a finding, and describes it if it is one of the first. `furtherStep`, from the object at the steps to the
    /// one concerned, may be null. `entry` is that of a list of names.
    template <class Describe>
    void add(int rule, const TextPlace &place, const std::vector<LintStep> &steps, const LintStep *furtherStep,
             QLatin1String member, const Describe &describe, int entry = JsonPlaces::none)
    {
        if (!m_disabledInElements.empty() && place.element >= 0
            && (m_disabledInElements[std::size_t(place.element)] & bitOf(rule)) != 0)
            return;
        ++m_count;
        if (m_left > 0)
            --m_left;
        else if (!makeRoomAt(place.offset))
            return;
        keep(rule, place, steps, furtherStep, member, describe(), entry);
    }

    qint64 count() const { return m_count; }

    /// Calls the visitor with the first findings. If they can be located, they are sorted by place, and have line and
    /// column.
    void visit(const FindingVisitor &visitor, const Locate &locate = {});

private:
    struct Kept
    {
        Finding finding;
        int offset;
        qint64 number; ///< in the order in which they were found

        bool operator<(const Kept &other) const
        {
            return offset != other.offset ? offset < other.offset : number < other.number;
        }
    };

    /// Forgets the last finding of the walk in the order of the text, if it is after this offset: walks find some
    /// things late. Since they find most in order, that is rare, and only a few findings are described for nothing.
    bool makeRoomAt(int offset);

    void keep(int rule, const TextPlace &place, const std::vector<LintStep> &steps, const LintStep *furtherStep,
              QLatin1String member, Description &&description, int entry);

    const JobXml::TunerProperties &m_tuner;
    const qint64 m_most;
    quint64 m_enabled = 0;
    quint64 m_errors = 0;
    std::vector<quint64> m_disabledInElements;
    const JsonPlaces *m_places = nullptr;
    qint64 m_count = 0;
    qint64 m_left = 0;
    std::vector<Kept> m_kept;
    std::size_t m_walk = 0; // where the findings of the present walk begin
    bool m_isHeap = false; // whether these have been made a heap, from which the last one in the text is taken
    std::unique_ptr<Paths::Texts> m_paths;
};

} // namespace TunerDocuments
