// SPDX-License-Identifier: MIT
#include "documents/lint/TextRules.h"

#include <tunerdocuments/Value.h>

#include "documents/values/Decimal.h"
#include "text/Suggestion.h"
#include "text/WholeNumber.h"

using JobXml::MemberKind;

namespace TunerDocuments {
namespace TextRules {

namespace {

bool isWhole(MemberKind kind)
{
    return kind == MemberKind::Int || kind == MemberKind::Int64 || kind == MemberKind::UInt64;
}

/// A number as the model reads it.
struct Read
{
    Read(const QString &text, MemberKind kind)
    {
        switch (kind) {
        case MemberKind::Int:
            as = QString::number(whole<int>(text));
            break;
        case MemberKind::UInt64: {
            const auto number = whole<qint64>(text);
            isExact = isExact && number >= 0;
            as = QString::number(quint64(number));
            break;
        }
        case MemberKind::Float: {
            const float number = text.toFloat(&isExact);
            as = ValueText::exactly(number);
            rounded = QString::number(double(number), 'f', decimals);
            break;
        }
        case MemberKind::Double: {
            const double number = text.toDouble(&isExact);
            as = ValueText::exactly(number);
            rounded = QString::number(number, 'f', decimals);
            break;
        }
        default:
            as = QString::number(whole<qint64>(text));
            break;
        }
    }

    template <class Integer>
    Integer whole(const QString &text)
    {
        const auto number = WholeNumber::read<Integer>(text);
        isExact = number.has_value();
        return number.value_or(0);
    }

    static constexpr int decimals = 2; // of XML and records

    bool isExact = false; ///< whether it is in range, and a number at all
    QString as; ///< what is read
    QString rounded{}; ///< what is written for that, if it differs
};

const char *rangeOf(MemberKind kind)
{
    switch (kind) {
    case MemberKind::Int:
        return "-2147483648 to 2147483647";
    case MemberKind::UInt64:
        return "0 to 9223372036854775807";
    case MemberKind::Float:
        return "-3.4e38 to 3.4e38";
    case MemberKind::Double:
        return "-1.7e308 to 1.7e308";
    default:
        return "-9223372036854775808 to 9223372036854775807";
    }
}

/// With a point instead of a comma; null if there is no comma, or if it may be one between thousands.
QString withPoint(const QString &text)
{
    const auto comma = text.indexOf(QLatin1Char(','));
    constexpr int group = 3;
    const bool isClear = comma >= 0 && text.size() - comma - 1 != group;
    return isClear ? QString(text).replace(comma, 1, QLatin1Char('.')) : QString();
}

/// The number that a text was probably meant to be, as a type is written; null if that is not clear.
QString probableNumber(const QString &text, MemberKind kind)
{
    const QString trimmed = text.trimmed();
    const QString pointed = withPoint(trimmed);
    const QString number = isWhole(kind) ? Decimal(pointed.isNull() ? trimmed : pointed).inDigits() : pointed;
    return Read(number, kind).isExact ? number : QString();
}

} // namespace

void notANumber(const LintedText &value)
{
    const Read read(value.text, value.kind);
    const Decimal written(value.text.trimmed());
    if (read.isExact || (isWhole(value.kind) ? written.isWhole() : written.isNumber()))
        return;
    value.warn([&]() -> Description {
        const bool isFraction = isWhole(value.kind) && written.isNumber();
        const QString probable = probableNumber(value.text, value.kind);
        return {QStringLiteral("%1 of %2 is not a %3; it is read as %4")
                    .arg(quoted(value.text), value.name,
                         isFraction ? QStringLiteral("whole number") : QStringLiteral("number"), read.as),
                probable.isNull() ? QString() : QStringLiteral("did you mean %1?").arg(probable)};
    });
}

void numberOutOfRange(const LintedText &value)
{
    const Read read(value.text, value.kind);
    const Decimal written(value.text.trimmed());
    if (read.isExact || !(isWhole(value.kind) ? written.isWhole() : written.isNumber()))
        return;
    value.warn([&]() -> Description {
        return {
            QStringLiteral("%1 of %2 is out of range; it is read as %3").arg(quoted(value.text), value.name, read.as),
            QStringLiteral("use a number from %1").arg(QLatin1String(rangeOf(value.kind)))};
    });
}

void lostDecimals(const LintedText &value)
{
    const Read read(value.text, value.kind);
    const Decimal written(value.text.trimmed());
    if (isWhole(value.kind) || !read.isExact || !written.isNumber() || written.isAsLargeAs(Decimal(read.rounded)))
        return;
    value.warn([&]() -> Description {
        const QString message = QStringLiteral("%1 of %2 has more %3; it is written as %4")
                                    .arg(quoted(value.text), value.name,
                                         written.decimals() > Read::decimals ? QStringLiteral("than two decimals")
                                                                             : QStringLiteral("digits than its type"),
                                         read.rounded);
        if (written.decimals() > Read::decimals)
            return {message, QStringLiteral("keep it in JSON, or round it")};
        const QString zeros = QStringLiteral(".00");
        return {message,
                QStringLiteral("use ")
                    + (read.rounded.endsWith(zeros) ? read.rounded.chopped(zeros.size()) : read.rounded)};
    });
}

void notABoolean(const LintedText &value)
{
    const QString lower = value.text.toLower();
    for (const char *word : {"", "true", "false", "0", "1"}) { // the model reports the empty one
        if (lower == QLatin1String(word))
            return;
    }
    value.warn([&]() -> Description {
        const QString word = lower.trimmed();
        const bool isFalse = QStringList{QStringLiteral("false"), QStringLiteral("no"), QStringLiteral("off"),
                                         QStringLiteral("0"),     QStringLiteral("f"),  QStringLiteral("n")}
                                 .contains(word);
        const bool isTrue = QStringList{QStringLiteral("true"), QStringLiteral("yes"), QStringLiteral("on"),
                                        QStringLiteral("1"),    QStringLiteral("t"),   QStringLiteral("y")}
                                .contains(word);
        return {QStringLiteral("%1 of %2 is not a boolean; it is read as true").arg(quoted(value.text), value.name),
                isFalse      ? QStringLiteral("use 'false'")
                    : isTrue ? QStringLiteral("use 'true'")
                             : QStringLiteral("use 'true' or 'false'")};
    });
}

namespace {

/// "did you mean 'gain'?", or the words that are known.
QString suggestion(const QString &word, const QStringList &known)
{
    const QString nearest = Suggestion::nearest(word, known);
    if (!nearest.isNull())
        return QStringLiteral("did you mean '%1'?").arg(nearest);
    return known.isEmpty() ? QString() : QStringLiteral("expected ") + Suggestion::listed(known);
}

} // namespace

void unknownAttribute(const LintedText &attribute)
{
    attribute.warn([&]() -> Description {
        const QString local = attribute.name.section(QLatin1Char(':'), -1);
        return {QStringLiteral("unknown attribute %1 of %2; it is ignored")
                    .arg(quoted(attribute.name), attribute.className),
                attribute.isElement ? QStringLiteral("write '%1' as an element").arg(local)
                                    : suggestion(local, attribute.known)};
    });
}

void unknownElement(const LintedText &element)
{
    element.warn([&]() -> Description {
        return {QStringLiteral("unknown element %1 in %2; ").arg(quoted(element.name), element.className)
                    + (element.isSkipped
                           ? QStringLiteral("it is skipped")
                           : QStringLiteral("what is in it counts as if it were in %1").arg(element.className)),
                suggestion(element.name, element.known)};
    });
}

namespace {

QString removeOne()
{
    return QStringLiteral("remove one of them");
}

QString removeIt()
{
    return QStringLiteral("remove it, or make it a comment");
}

} // namespace

void repeatedMember(const LintedText &value)
{
    value.warn([&]() -> Description {
        return {QStringLiteral("%1 of %2 has no effect, since %3 follows")
                    .arg(quoted(value.text), value.name, quoted(value.following)),
                removeOne()};
    });
}

void repeatedAlternative(const LintedText &alternative)
{
    alternative.warn([&]() -> Description {
        return {QStringLiteral("%1 has no effect, since another %1 follows").arg(alternative.name), removeOne()};
    });
}

void strayText(const LintedText &text)
{
    text.warn([&]() -> Description {
        return {QStringLiteral("the text %1 in %2 is ignored").arg(quoted(text.text), text.className), removeIt()};
    });
}

void elementInValue(const LintedText &element)
{
    element.warn([&]() -> Description {
        return {QStringLiteral("the element %1 in %2 is skipped").arg(quoted(element.text), element.name), removeIt()};
    });
}

void unknownVersion(const LintedText &version)
{
    if (!(version.text.toFloat() > version.presentVersion.toFloat()))
        return;
    version.warn([&]() -> Description {
        return {
            QStringLiteral("version %1 is unknown; the newest is %2").arg(quoted(version.text), version.presentVersion),
            QStringLiteral("use '%1'").arg(version.presentVersion)};
    });
}

void resetByVersion(const LintedText &version)
{
    if (!(version.text.toFloat() < version.presentVersion.toFloat()))
        return;
    version.warn([&]() -> Description {
        const QString suggestion = (version.form == Form::Json ? QStringLiteral("use \"Version\": \"%1\"")
                                                               : QStringLiteral("use Version=\"%1\""))
                                       .arg(version.presentVersion);
        if (version.text.isNull())
            return {QStringLiteral("the version is missing; readers reset the document to its defaults"), suggestion};
        return {QStringLiteral("version %1 is older than %2; readers reset the document to its defaults")
                    .arg(quoted(version.text), version.presentVersion),
                suggestion};
    });
}

void uselessComment(const LintedText &comment)
{
    comment.warn([&]() -> Description {
        if (comment.text.isNull())
            return {QStringLiteral("the comment disables nothing, since it is not directly before an element"),
                    QStringLiteral("put it before the element concerned")};
        if (comment.text.isEmpty())
            return {QStringLiteral("the comment disables nothing, since it names no rule"),
                    QStringLiteral("add the name of a rule")};
        const QString nearest = Suggestion::nearest(comment.text, comment.known);
        return {QStringLiteral("unknown rule %1").arg(quoted(comment.text)),
                nearest.isNull() ? QStringLiteral("'lint --rules' lists the rules")
                                 : QStringLiteral("did you mean '%1'?").arg(nearest)};
    });
}

} // namespace TextRules
} // namespace TunerDocuments
