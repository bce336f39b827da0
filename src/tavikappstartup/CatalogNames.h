// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

#include <QLocale>
#include <QString>
#include <QStringList>

/// In which order the catalogs of a folder are tried for the languages that QLocale::uiLanguages() lists. QTranslator's
/// own order differs between the versions of Qt: both list several names of the same language, "de-AT" and
/// "de-Latn-AT", and Qt 6 those that are hardly ever used first, so that it tries `de` before `de_AT`.
namespace CatalogNames {

/// Whether both names denote the same language, in the same script and country, as "de", "de-DE" and "de-Latn-DE".
inline bool denoteTheSame(const QString &one, const QString &other)
{
    const QLocale locale(one);
    return locale.language() != QLocale::C && locale == QLocale(other);
}

/// Sorts the names of each language: the shortest first, except that the first one stays if the user has chosen it,
/// which shows in a longer one after it.
inline QStringList sorted(QStringList languages)
{
    const auto isShorter = [](const QString &a, const QString &b) { return a.size() < b.size(); };
    for (auto first = languages.begin(); first != languages.end();) {
        const QString name = *first;
        const auto last =
            std::find_if(first, languages.end(), [&name](const QString &other) { return !denoteTheSame(name, other); });
        if (last == first) {
            ++first;
            continue;
        }
        const bool isChosen = std::max_element(first, last, isShorter) != first;
        std::sort(isChosen ? first + 1 : first, last, isShorter);
        first = last;
    }
    return languages;
}

/// The names without `.qm`: `<module>_de_AT`, then `<module>_de`, which is what is left of it, and so for each
/// language.
inline QStringList of(const QString &module, const QStringList &languages)
{
    QStringList names;
    for (QString language : sorted(languages)) {
        language.replace(QLatin1Char('-'), QLatin1Char('_'));
        for (const QString &spelling : {language, language.toLower()}) {
            for (QString name = spelling; !name.isEmpty(); name = name.section(QLatin1Char('_'), 0, -2))
                names.append(module + QLatin1Char('_') + name);
        }
    }
    names.removeDuplicates();
    return names;
}

} // namespace CatalogNames
