// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <limits>
#include <memory>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Export.h>
#include <tunerdocuments/Finding.h>

namespace TunerDocuments {

/// A rule of lint(). What later versions know about it, functions of this class will return.
struct TUNERDOCUMENTS_EXPORT LintRule
{
    QString name{}; ///< "value-out-of-range"
    QString finds{}; ///< what it finds, as a complete sentence
    QString why{}; ///< why that deserves a warning, as complete sentences

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
};

/// All rules, by subject.
TUNERDOCUMENTS_EXPORT const QVector<LintRule> &lintRules();

/// What lint() looks for:
///
///     lint(document, visitor, LintOptions().setDisabled({QStringLiteral("value-out-of-range")}).setMost(100));
///
/// Copies share their content. Later versions may add options, with defaults that change nothing.
class TUNERDOCUMENTS_EXPORT LintOptions
{
public:
    LintOptions() noexcept; ///< The defaults: all rules and all findings.

    /// Only the rules about what reading XML loses or replaces without a problem: unknown attributes and elements,
    /// values that later ones replace, texts and elements where readers ignore them, and what is not a number, not a
    /// boolean or out of the range of its type.
    static LintOptions lostByReading();

    /// The names of rules that are not applied.
    QStringList disabled() const;
    LintOptions &setDisabled(const QStringList &rules); ///< Sets these rules.

    /// The names of rules whose findings are errors (Finding::isError).
    QStringList errors() const;
    LintOptions &setErrors(const QStringList &rules); ///< Sets these rules.

    /// How many findings the visitor receives at most. The others are only counted, which takes much less time.
    qint64 most() const noexcept;
    LintOptions &setMost(qint64 findings); ///< Sets how many.

private:
    struct Values;
    Q_DECL_HIDDEN const Values &values() const;
    Q_DECL_HIDDEN Values &change();

    std::shared_ptr<Values> m_values; // null: the defaults
};

using FindingVisitor = std::function<void(const Finding &)>;

/// Looks for what is valid, and still probably not what the author of a document meant: values beyond their limits,
/// names that are used twice, data that writing would lose. Calls the visitor with the first of these warnings and
/// returns the number of all. Takes time in proportion to the size of the document, whatever is in it, and does not
/// change it. What the check of the model finds (JobXml::DataObject::VisitProblems()) is not repeated.
///
/// Every finding has the steps to the object concerned, and its path.
///
/// Throws std::invalid_argument if the options name an unknown rule.
TUNERDOCUMENTS_EXPORT qint64 lint(const Document &document, const FindingVisitor &visitor,
                                  const LintOptions &options = {});

/// The same for a document together with the text from which it was read and to which it still corresponds. If that is
/// XML,
///  - rules about the text apply as well: what readers silently convert, replace or skip;
///  - findings have the line and column of the attribute or element concerned, and are passed in that order;
///  - a comment `<!-- tunerproperties-lint-disable RULE... -->` directly before an element disables these rules for the
///    element and everything in it. Only blanks and other comments may be in between.
///
/// If it is JSON, findings have the line and column of the value concerned, or of the object if that does not have it,
/// counted as those of errors in JSON, and are passed in that order. A version that resets the document is a finding as
/// in XML. Nothing else in the text is examined, since the reader of JSON refuses what it would have to convert or
/// skip, apart from digits that a number cannot keep.
///
/// Texts of other forms have no effect.
TUNERDOCUMENTS_EXPORT qint64 lint(const Document &document, const QByteArray &text, const FindingVisitor &visitor,
                                  const LintOptions &options = {});

/// The same for findings that are kept together with problems: adds the first warnings to `findings`, as many as it
/// keeps, and the number of all. Problems that have only a path receive line and column as well. `text` may be null.
TUNERDOCUMENTS_EXPORT void lint(const Document &document, const QByteArray &text, Findings &findings,
                                const LintOptions &options = {});

} // namespace TunerDocuments

Q_DECLARE_TYPEINFO(TunerDocuments::LintRule, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(TunerDocuments::LintOptions, Q_MOVABLE_TYPE);
