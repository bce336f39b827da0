// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "documents/json/JsonForm.h"
#include "documents/json/JsonNumbers.h"
#include "documents/json/JsonPlace.h"
#include "text/TextLocation.h"
#include "json/Json.h"

namespace TunerDocuments {
namespace JsonReading {

/// The beginning of a text, for messages.
QString beginning(const QByteArray &utf8);

/// What is said about a problem. The hint is the end of the message: "; did you mean 'Scan'?"; null if there is none.
struct Description
{
    // Not explicit: most problems have a message only.
    Description(QString text, QString refused = {}, QStringList accepted = {}, QString itsHint = {})
        : message(std::move(text)), value(std::move(refused)), choices(std::move(accepted)), hint(std::move(itsHint))
    {
    }

    QString message;
    QString value;
    QStringList choices;
    QString hint;
};

/// The problems of a text: they are counted, and described when it is read once more.
class Problems
{
public:
    explicit Problems(const QByteArray &text) : m_text(text), m_locator(text) { }

    qint64 count() const { return m_count; }
    bool isDescribing() const { return m_visitor; }

    /// Reads again, and calls the visitor with the first `most` problems.
    template <class Read>
    void describe(Read read, const JsonProblemVisitor &visitor, qint64 most)
    {
        m_visitor = &visitor;
        m_left = most;
        try {
            read();
        } catch (const AllDescribed &) {
            // Looking at the rest of the document would take as long as the first time.
        }
    }

    /// Adds a problem at that offset in the text. `describe` is called only if it is described.
    template <class Describe>
    void report(const Where &where, quint32 offset, Describe describe)
    {
        if (begin())
            add(where, offset, describe());
    }

    /// Adds the problem of a value: "'7' is not a string". `hint` returns what follows.
    template <class Hint>
    void refuse(const Where &where, const Json &json, const char *what, Hint hint)
    {
        report(where, json.textBegin(), [&] {
            const QString itsHint = hint();
            return Description{
                shown(json) + QLatin1Char(' ') + QLatin1String(what) + itsHint, plain(json), {}, itsHint};
        });
    }

    void refuse(const Where &where, const Json &json, const char *what)
    {
        refuse(where, json, what, [] { return QString(); });
    }

    template <class T>
    void refuseOutOfRange(const Where &where, const Json &json)
    {
        report(where, json.textBegin(), [&] {
            return Description{quoted(json) + QStringLiteral(" is out of range; expected ") + rangeOf<T>(),
                               plain(json)};
        });
    }

    /// The value as it is in the text, a number for example; the beginning of a long one.
    QString source(const Json &json) const;
    /// The content of a string, or any other value as it is in the text; shortened if it is long.
    QString plain(const Json &json) const;
    QString quoted(const Json &json) const;
    /// For a value of the wrong type: a string may look like one of the right type.
    QString shown(const Json &json) const;

private:
    struct AllDescribed
    {
    };

    /// Counts a problem. Returns whether it is described.
    bool begin();
    void add(const Where &where, quint32 offset, const Description &description);

    const QByteArray &m_text;
    TextLocator m_locator;
    qint64 m_count = 0;
    const JsonProblemVisitor *m_visitor = nullptr; // while problems are described
    qint64 m_left = 0; // to describe
};

} // namespace JsonReading
} // namespace TunerDocuments
