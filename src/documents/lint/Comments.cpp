// SPDX-License-Identifier: MIT
#include "documents/lint/Comments.h"

#include <utility>
#include <vector>

#include <QStringList>

#include "documents/lint/LintedText.h"

using REPORTGENERATOR::XmlMarkup;

namespace TunerDocuments {

namespace {

constexpr char disableMark[] = "tunerproperties-lint-disable";

/// The comments that disable rules.
class Comments
{
public:
    Comments(const XmlMarkup &markup, Report &report) : m_markup(markup), m_report(report) { }

    /// Returns whether they disable any rule.
    bool apply()
    {
        if (!m_markup.document().contains(disableMark))
            return false;
        findElements();
        std::vector<quint64> disabled(std::size_t(m_markup.elements().size()), 0);
        quint64 all = 0;
        forEach([&](int, int element, const QStringList &names) {
            for (const QString &name : names) {
                const quint64 rule = bitNamed(name);
                all |= rule;
                if (element >= 0)
                    disabled[std::size_t(element)] |= rule;
            }
        });
        for (std::size_t i = 0; i < disabled.size(); ++i) {
            const int parent = m_markup.elements().at(int(i)).parent;
            if (parent >= 0)
                disabled[i] |= disabled[std::size_t(parent)];
        }
        m_report.setDisabledInElements(std::move(disabled));
        reportUseless();
        return all != 0;
    }

private:
    /// Finds the element directly after each comment, from the last one backward: comments may be in a row.
    void findElements()
    {
        const auto &comments = m_markup.comments();
        m_elements.assign(std::size_t(comments.size()), -1);
        for (int i = int(comments.size()) - 1; i >= 0; --i) {
            const int next = afterBlanks(comments.at(i).whole.end);
            const int element = comments.at(i).next;
            if (i + 1 < comments.size() && comments.at(i + 1).whole.begin == next)
                m_elements[std::size_t(i)] = m_elements[std::size_t(i) + 1];
            else if (element < m_markup.elements().size() && m_markup.elements().at(element).startTag.begin == next)
                m_elements[std::size_t(i)] = element;
        }
    }

    int afterBlanks(int at) const
    {
        const QByteArray &text = m_markup.document();
        while (at < text.size() && QByteArray(" \t\r\n").contains(text.at(at)))
            ++at;
        return at;
    }

    /// Calls `action(comment, element, names)` for each comment that is meant to disable rules.
    template <class Action>
    void forEach(const Action &action) const
    {
        for (int i = 0; i < m_markup.comments().size(); ++i) {
            const QLatin1String utf8 = m_markup.bytes(m_markup.comments().at(i).whole);
            const QString text = QString::fromUtf8(utf8.data(), utf8.size());
            const QString content = text.mid(4, text.size() - 7).trimmed();
            if (!content.startsWith(QLatin1String(disableMark)))
                continue;
            const QString names = content.mid(int(qstrlen(disableMark))).replace(QLatin1Char(','), QLatin1Char(' '));
            action(i, m_elements[std::size_t(i)], names.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts));
        }
    }

    /// 0 for an unknown rule.
    static quint64 bitNamed(const QString &name)
    {
        for (std::size_t i = 0; i < allRules().size(); ++i) {
            if (name == QLatin1String(allRules()[i].name))
                return bitOf(int(i));
        }
        return 0;
    }

    void reportUseless()
    {
        forEach([&](int comment, int element, const QStringList &names) {
            if (element < 0)
                warn(comment, QString());
            else if (names.isEmpty())
                warn(comment, QStringLiteral(""));
            else {
                for (const QString &name : names) {
                    if (bitNamed(name) == 0)
                        warn(comment, name);
                }
            }
        });
    }

    void warn(int index, const QString &word)
    {
        const XmlMarkup::Comment &comment = m_markup.comments().at(index);
        const std::vector<LintStep> noSteps;
        LintedText linted(noSteps, {comment.whole.begin, comment.parent}, m_report);
        linted.text = word;
        for (const Rule &rule : allRules())
            linted.known.append(QString::fromLatin1(rule.name));
        linted.check(TextSubject::Comment);
    }

    const XmlMarkup &m_markup;
    Report &m_report;
    std::vector<int> m_elements; // by comment; -1 if there is none directly after it
};

} // namespace

bool applyComments(const XmlMarkup &markup, Report &report)
{
    return Comments(markup, report).apply();
}

} // namespace TunerDocuments
