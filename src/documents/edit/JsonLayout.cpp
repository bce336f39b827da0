// SPDX-License-Identifier: MIT
#include "documents/edit/JsonLayout.h"

#include <algorithm>

#include <QByteArrayList>

#include "documents/edit/JsonBlanks.h"
#include "text/Size.h"
#include "json/JsonText.h"

using REPORTGENERATOR::Size;

namespace TunerDocuments {

namespace {

constexpr int mostVisited = 1000; // values by which a layout is recognized; a document may have millions

bool isContainer(const Json &json)
{
    return (json.isList() || json.isObject()) && !json.isEmpty();
}

/// Calls the action with every value in a container.
template <class Action>
void forEachIn(const Json &container, Action &&action)
{
    if (container.isObject()) {
        for (const Json::Member &member : container.members())
            action(member.value);
    } else if (container.isList()) {
        for (const Json &item : container.items())
            action(item);
    }
}

bool holdsContainers(const Json &container)
{
    bool result = false;
    forEachIn(container, [&](const Json &value) { result = result || isContainer(value); });
    return result;
}

/// The texts of the values in a container, with their keys.
template <class Write>
QByteArrayList partsOf(const Json &container, const QByteArray &colon, Write &&write)
{
    QByteArrayList parts;
    if (container.isObject()) {
        for (const Json::Member &member : container.members())
            parts.append(JsonText::compact(member.key) + colon + write(member.value));
    } else {
        for (const Json &item : container.items())
            parts.append(write(item));
    }
    return parts;
}

QByteArray enclosed(const Json &container, const QByteArray &content)
{
    return container.isObject() ? '{' + content + '}' : '[' + content + ']';
}

QByteArray indentationIn(const QByteArray &blanks)
{
    return blanks.mid(blanks.lastIndexOf('\n') + 1);
}

/// With other steps than two blanks.
QByteArray indented(const QByteArray &pretty, const QByteArray &lineStart, const QByteArray &step)
{
    QByteArray result;
    const QList<QByteArray> lines = pretty.split('\n');
    for (const QByteArray &line : lines) {
        Size depth = 0;
        while (line.mid(2 * depth, 2) == "  ")
            ++depth;
        result += (result.isEmpty() ? QByteArray() : lineStart + step.repeated(depth)) + line.mid(2 * depth);
    }
    return result;
}

} // namespace

JsonLayout::JsonLayout(const QByteArray &text, const Json &whole, const Json &document)
    : m_text(text), m_documentBegin(int(document.textBegin())), m_step(stepIn(whole))
{
    int left = mostVisited;
    learn(m_habits, whole, left);
    if (m_step.isEmpty())
        m_step = "  ";
}

/// The outermost container on several lines shows it.
QByteArray JsonLayout::stepIn(const Json &json) const
{
    const Json *container = &json;
    while (isContainer(*container)) {
        const Json &first = container->isObject() ? container->members().front().value : container->items().front();
        const QByteArray inner = JsonBlanks::before(m_text, int(first.memberBegin()));
        const QByteArray outer = JsonBlanks::before(m_text, int(container->textEnd()) - 1);
        const QByteArray indentation = indentationIn(inner);
        if (inner.contains('\n') && outer.contains('\n') && indentation.startsWith(indentationIn(outer))
            && indentation.size() > indentationIn(outer).size())
            return indentation.mid(indentationIn(outer).size());
        const Json *next = nullptr;
        forEachIn(*container, [&](const Json &value) { next = !next && isContainer(value) ? &value : next; });
        if (!next)
            break;
        container = next;
    }
    return QByteArray();
}

void JsonLayout::learn(Habits &habits, const Json &json, int &left) const
{
    if (!isContainer(json) || habits.isComplete() || --left < 0)
        return;
    learnFrom(habits, json);
    forEachIn(json, [&](const Json &value) { learn(habits, value, left); });
}

void JsonLayout::learnFrom(Habits &habits, const Json &container) const
{
    std::optional<bool> &breaks = container.isObject() ? habits.breaksObjects : habits.breaksLists;
    const bool isDocument = int(container.textBegin()) <= m_documentBegin; // which takes several lines in any case
    if (!breaks && !isDocument && !holdsContainers(container)) {
        constexpr int longestLine = 80; // what is longer may be on several lines only for that reason
        const int size = int(container.textEnd() - container.textBegin());
        const bool isBroken = m_text.mid(int(container.textBegin()), size).contains('\n');
        if (!isBroken || JsonText::compact(container).size() <= longestLine)
            breaks = isBroken;
    }
    if (container.isObject() && !habits.colon) {
        const QByteArray colon = JsonBlanks::colonBefore(m_text, container.members().front().value);
        if (!colon.contains('\n'))
            habits.colon = colon;
    }
    int i = 0;
    forEachIn(container, [&](const Json &value) {
        if (i++ != 1 || habits.comma)
            return;
        const QByteArray blanks = JsonBlanks::before(m_text, int(value.memberBegin()));
        if (!blanks.contains('\n'))
            habits.comma = ',' + blanks;
    });
}

QByteArray JsonLayout::written(const Json &value, const QByteArray &lineStart, const Json *neighbor,
                               const Json &around) const
{
    if (!isContainer(value))
        return JsonText::compact(value);
    Habits habits;
    int left = mostVisited;
    if (neighbor)
        learn(habits, *neighbor, left);
    learn(habits, around, left);
    const auto complete = [](auto &habit, const auto &usual) { habit = habit ? habit : usual; };
    complete(habits.breaksObjects, m_habits.breaksObjects);
    complete(habits.breaksLists, m_habits.breaksLists);
    complete(habits.colon, m_habits.colon);
    complete(habits.comma, m_habits.comma);
    if (lineStart.isEmpty())
        return onOneLine(value, habits);
    if (habits.breaksObjects.value_or(false) || habits.breaksLists.value_or(false))
        return onLines(value, lineStart, habits);
    return indented(JsonText::pretty(value).trimmed(), lineStart, m_step);
}

QByteArray JsonLayout::onOneLine(const Json &value, const Habits &habits)
{
    if (!isContainer(value))
        return JsonText::compact(value);
    const QByteArray colon = habits.colon.value_or(":");
    const QByteArray comma = habits.comma.value_or(colon.endsWith(' ') ? ", " : ",");
    return enclosed(value,
                    partsOf(value, colon, [&](const Json &part) { return onOneLine(part, habits); }).join(comma));
}

/// An object or a list takes several lines if others do, if something in it does, or if it is too long for one.
QByteArray JsonLayout::onLines(const Json &value, const QByteArray &lineStart, const Habits &habits) const
{
    if (!isContainer(value))
        return JsonText::compact(value);
    const QByteArray inside = lineStart + m_step;
    const QByteArrayList parts =
        partsOf(value, habits.colon.value_or(": "), [&](const Json &part) { return onLines(part, inside, habits); });
    const bool isBroken = (value.isObject() ? habits.breaksObjects : habits.breaksLists).value_or(false)
        || std::any_of(parts.begin(), parts.end(), [](const QByteArray &part) { return part.contains('\n'); })
        || JsonText::pretty(value).trimmed().contains('\n');
    return isBroken ? enclosed(value, inside + parts.join(',' + inside) + lineStart) : onOneLine(value, habits);
}

} // namespace TunerDocuments
