// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QByteArray>

#include "json/Json.h"

namespace TunerDocuments {

/// How a JSON text is laid out, so that new parts of it look like the others.
class JsonLayout
{
public:
    /// `document` is the object of the document in the whole JSON. The text must outlive this object.
    JsonLayout(const QByteArray &text, const Json &whole, const Json &document);

    /// By which content is indented further than what it is in.
    const QByteArray &step() const { return m_step; }

    /// Whether objects of plain values take several lines.
    bool breaksObjects() const { return m_habits.breaksObjects.value_or(false); }

    /// A value as it is laid out where lines begin with `lineStart`, a line end and blanks; on one line if that is
    /// empty. `neighbor` and what is around it show more than the rest of the document.
    QByteArray written(const Json &value, const QByteArray &lineStart, const Json *neighbor, const Json &around) const;

private:
    /// What is known of a text.
    struct Habits
    {
        std::optional<bool> breaksObjects{}; ///< of plain values
        std::optional<bool> breaksLists{}; ///< of plain values
        std::optional<QByteArray> colon{}; ///< with the blanks around it
        std::optional<QByteArray> comma{}; ///< with the blanks after it, on one line

        bool isComplete() const { return breaksObjects && breaksLists && colon && comma; }
    };

    void learn(Habits &habits, const Json &json, int &left) const;
    void learnFrom(Habits &habits, const Json &container) const;
    QByteArray stepIn(const Json &json) const;
    static QByteArray onOneLine(const Json &value, const Habits &habits);
    QByteArray onLines(const Json &value, const QByteArray &lineStart, const Habits &habits) const;

    const QByteArray &m_text;
    int m_documentBegin;
    QByteArray m_step;
    Habits m_habits;
};

} // namespace TunerDocuments
