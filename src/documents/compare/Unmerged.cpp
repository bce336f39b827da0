// SPDX-License-Identifier: MIT
#include <tunerdocuments/Merge.h>

#include <algorithm>
#include <memory>
#include <tuple>

#include <QHash>

#include <reportbase/XmlMarkup.h>

#include <tunerdocuments/Path.h>

#include "documents/compare/Counterparts.h"
#include "documents/findings/ModelMember.h"
#include "documents/lint/LostTexts.h"
#include "documents/lint/Report.h"
#include "documents/xml/EncodedText.h"
#include "documents/xml/UnreadParts.h"
#include "documents/xml/XmlPlaces.h"

using namespace JobXml;
using REPORTGENERATOR::XmlMarkup;

namespace TunerDocuments {

namespace {

/// A place in the text whose content the document does not have.
struct Lost
{
    Finding finding;
    QString text; ///< the content, for comparisons
};

/// Content as it is compared: another layout does not matter.
QString comparable(const QByteArray &utf8)
{
    return QString::fromUtf8(utf8).simplified();
}

/// A document with the markup of its text. Documents in other forms than XML have nothing that is lost.
class Source
{
public:
    explicit Source(const MergeInput &input) : m_input(input)
    {
        if (input.document.form != Form::Xml || input.bytes.isEmpty())
            return;
        m_markup = std::make_unique<XmlMarkup>(EncodedText(input.bytes).utf8());
    }

    const TunerProperties &tuner() const { return m_input.document.tuner; }

    /// In the order of the text.
    QVector<Lost> losses() const
    {
        QVector<Lost> result;
        if (!m_markup)
            return result;
        addRefused(result);
        addConverted(result);
        addUnread(result);
        const auto place = [](const Lost &lost) { return std::make_tuple(lost.finding.line, lost.finding.column); };
        std::stable_sort(result.begin(), result.end(),
                         [&](const Lost &one, const Lost &other) { return place(one) < place(other); });
        // An attribute with a prefix may be found by a rule as well, which describes it better and comes first.
        result.erase(std::unique(result.begin(), result.end(),
                                 [&](const Lost &one, const Lost &other) { return place(one) == place(other); }),
                     result.end());
        return result;
    }

    QVector<Lost> comments() const
    {
        QVector<Lost> result;
        if (!m_markup)
            return result;
        LineCounter counter(m_markup->document());
        for (const XmlMarkup::Comment &comment : m_markup->comments()) {
            Lost lost;
            lost.text = comparable(bytes(comment.whole));
            lost.finding.kind = Finding::Kind::Warning;
            lost.finding.message = QStringLiteral("the comment is not merged");
            locate(lost.finding, counter.at(comment.whole.begin));
            result.append(lost);
        }
        return result;
    }

private:
    /// Names and booleans that the reader refuses while it validates.
    void addRefused(QVector<Lost> &losses) const
    {
        LoadOptions options;
        options.setForm(Form::Xml);
        Document::fromBytes(m_input.bytes, QString(), options, [&](const Problem &problem) {
            if (problem.line <= 0 || isAboutKeptItem(problem))
                return;
            Finding finding = findingOf(problem);
            finding.steps = problem.steps;
            losses.append({finding, problem.message + QLatin1Char('\n') + problem.value});
        });
    }

    void addConverted(QVector<Lost> &losses) const
    {
        const bool isOlder = tuner().GetInitialVersionLoaded().toFloat() < tuner().GetVersion().toFloat();
        visitLostTexts(m_input.document, *m_markup, [&](const Finding &finding, int offset) {
            QString text = finding.message;
            if (const XmlMarkup::Attribute *const attribute = attributeAt(offset)) {
                text = comparable(bytes(attribute->whole()));
            } else if (finding.rule == QLatin1String("unknown-element") && finding.steps.isEmpty() && !isOlder) {
                text = comparable(bytes(elementAt(offset)->startTag)); // what is in it is read
            } else if (!finding.rule.endsWith(QLatin1String("-version"))) {
                text = comparable(bytes(elementAt(offset)->whole()));
            }
            losses.append({finding, text});
        });
    }

    void addUnread(QVector<Lost> &losses) const
    {
        if (!XmlPlaces(*m_markup, tuner()).refusal().isNull())
            return; // rules have found the elements that are not in their places
        QVector<UnreadPart> parts;
        UnreadParts(*m_markup, tuner()).visit({}, [&](const UnreadPart &part) {
            if (part.kind == UnreadPart::Content || part.kind == UnreadPart::EarlierValue)
                parts.append(part);
        });
        std::stable_sort(parts.begin(), parts.end(),
                         [](const UnreadPart &one, const UnreadPart &other) { return one.offset < other.offset; });
        LineCounter counter(m_markup->document());
        for (const UnreadPart &part : qAsConst(parts)) {
            Finding finding;
            finding.steps = part.steps;
            finding.member = part.member;
            finding.message = part.problem;
            locate(finding, counter.at(part.offset));
            losses.append({finding, comparable(part.text)});
        }
    }

    static void locate(Finding &finding, const TextLocation &location)
    {
        finding.line = location.line;
        finding.column = location.column;
    }

    QByteArray bytes(const XmlMarkup::Span &span) const { return m_markup->document().mid(span.begin, span.size()); }

    /// Null if none begins there.
    const XmlMarkup::Attribute *attributeAt(int offset) const
    {
        const auto &all = m_markup->attributes();
        const auto found =
            std::lower_bound(all.begin(), all.end(), offset,
                             [](const XmlMarkup::Attribute &one, int at) { return one.name.begin < at; });
        return found != all.end() && found->name.begin == offset ? &*found : nullptr;
    }

    const XmlMarkup::Element *elementAt(int offset) const
    {
        const auto &all = m_markup->elements();
        return &*std::lower_bound(all.begin(), all.end(), offset,
                                  [](const XmlMarkup::Element &one, int at) { return one.startTag.begin < at; });
    }

    const MergeInput &m_input;
    std::unique_ptr<XmlMarkup> m_markup; // null for other forms
};

/// What is lost, and where.
QString keyOf(const Lost &lost, const QVector<Step> &steps)
{
    QString key;
    for (const Step &step : steps)
        key += step.member + QLatin1Char('/') + QString::number(step.index) + QLatin1Char('/');
    const Finding &finding = lost.finding;
    return key + finding.member + QLatin1Char('/') + finding.rule + QLatin1Char('/') + lost.text;
}

/// Removes what another document has at the counterparts of the places.
void removeLossesOf(const Source &other, const Source &theirs, QVector<Lost> &losses)
{
    QHash<QString, int> known;
    const QVector<Lost> ofOther = other.losses();
    for (const Lost &lost : ofOther)
        ++known[keyOf(lost, lost.finding.steps)];
    Counterparts counterparts(theirs.tuner(), other.tuner());
    const auto isKnown = [&](const Lost &lost) {
        const auto steps = counterparts.find(lost.finding.steps);
        const auto found = steps ? known.find(keyOf(lost, *steps)) : known.end();
        return found != known.end() && (*found)-- > 0;
    };
    losses.erase(std::remove_if(losses.begin(), losses.end(), isKnown), losses.end());
}

QHash<QString, int> countsOf(const QVector<Lost> &comments)
{
    QHash<QString, int> counts;
    for (const Lost &comment : comments)
        ++counts[comment.text];
    return counts;
}

} // namespace

UnmergedContent unmergedContent(const MergeInput &base, const MergeInput &ours, const MergeInput &theirs)
{
    UnmergedContent result;
    if (theirs.bytes == base.bytes || theirs.bytes == ours.bytes)
        return result;
    const Source source(theirs);
    QVector<Lost> losses = source.losses();
    QVector<Lost> comments = source.comments();
    if (losses.isEmpty() && comments.isEmpty())
        return result;
    const Source inBase(base);
    const Source inOurs(ours);
    if (!losses.isEmpty())
        removeLossesOf(inBase, source, losses);
    if (!losses.isEmpty())
        removeLossesOf(inOurs, source, losses);
    Paths::Texts paths(source.tuner());
    for (Lost &lost : losses) {
        lost.finding.path = paths.of(lost.finding.steps);
        result.losses.append(lost.finding);
    }
    QHash<QString, int> known = countsOf(inBase.comments());
    const QHash<QString, int> knownInOurs = countsOf(inOurs.comments());
    for (auto comment = knownInOurs.begin(); comment != knownInOurs.end(); ++comment)
        known[comment.key()] = std::max(known.value(comment.key()), comment.value());
    for (const Lost &comment : qAsConst(comments)) {
        if (known[comment.text]-- <= 0)
            result.comments.append(comment.finding);
    }
    return result;
}

} // namespace TunerDocuments
