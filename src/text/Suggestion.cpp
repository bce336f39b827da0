// SPDX-License-Identifier: MIT
#include "text/Suggestion.h"

#include <algorithm>

#include <QVector>

namespace Suggestion {

namespace {

/// The number of letters to insert, remove, replace or swap.
int distance(const QString &from, const QString &to)
{
    QVector<int> beforeLast;
    QVector<int> last(to.size() + 1);
    for (int j = 0; j <= to.size(); ++j)
        last[j] = j;
    for (int i = 1; i <= from.size(); ++i) {
        QVector<int> current(to.size() + 1);
        current[0] = i;
        for (int j = 1; j <= to.size(); ++j) {
            const int replaced = last[j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
            current[j] = std::min({last[j] + 1, current[j - 1] + 1, replaced});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1])
                current[j] = std::min(current[j], beforeLast[j - 2] + 1);
        }
        beforeLast = std::exchange(last, current);
    }
    return last[to.size()];
}

} // namespace

QString nearest(const QString &word, const QStringList &known)
{
    const QString lower = word.left(64).toLower(); // no known word is longer, and the time is quadratic
    QString best;
    int leastDistance = std::max(1, int(lower.size()) / 3) + 1;
    for (const QString &candidate : known) {
        const int itsDistance = distance(lower, candidate.toLower());
        if (itsDistance < leastDistance) {
            leastDistance = itsDistance;
            best = candidate;
        }
    }
    if (!best.isNull() || lower.size() < 2)
        return best;
    const auto beginning = std::find_if(known.begin(), known.end(), [&](const QString &candidate) {
        return candidate.startsWith(lower, Qt::CaseInsensitive);
    });
    return beginning == known.end() ? QString() : *beginning;
}

QString hint(const QString &word, const QStringList &known)
{
    const QString meant = nearest(word, known);
    return meant.isNull() ? QString() : hintAt(meant);
}

QString hintAt(const QString &meant)
{
    return QStringLiteral("; did you mean '") + meant + QStringLiteral("'?");
}

QString unknownWord(const QString &word, const QString &kind, const QStringList &known)
{
    const QString meant = hint(word, known);
    return QStringLiteral("unknown ") + kind + QStringLiteral(" '") + word + QLatin1Char('\'')
        + (meant.isNull() ? QStringLiteral("; expected ") + listed(known) : meant);
}

QString unknownWordAmong(const QString &word, const QString &kind, const QStringList &known)
{
    return QStringLiteral("unknown ") + kind + QStringLiteral(" '") + word + QStringLiteral("'; expected ")
        + listed(known) + hint(word, known);
}

QString listed(const QStringList &words)
{
    if (words.size() < 2)
        return words.join(QString());
    return QStringList(words.mid(0, words.size() - 1)).join(QStringLiteral(", ")) + QStringLiteral(" or ")
        + words.last();
}

} // namespace Suggestion
