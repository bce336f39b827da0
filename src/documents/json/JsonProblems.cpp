// SPDX-License-Identifier: MIT
#include "documents/json/JsonProblems.h"

#include <algorithm>

namespace TunerDocuments {
namespace JsonReading {

namespace {

constexpr int mostShown = 400; // bytes of a text, of which a message shows less

} // namespace

QString beginning(const QByteArray &utf8)
{
    return JsonText::toString(utf8.left(mostShown));
}

bool Problems::begin()
{
    if (!isDescribing()) {
        ++m_count;
        return false;
    }
    if (m_left == 0)
        throw AllDescribed();
    --m_left;
    return true;
}

void Problems::add(const Where &where, quint32 offset, const Description &description)
{
    JsonProblem problem;
    problem.message = description.message;
    problem.value = description.value;
    problem.choices = description.choices;
    problem.suggestion = description.hint.isNull() ? QString() : description.hint.mid(int(qstrlen("; ")));
    const TextLocation location = m_locator.at(int(offset));
    problem.line = location.line;
    problem.column = location.column;
    problem.steps = where.place.steps();
    problem.member = QString(where.member);
    problem.path = where.place.pathTo(problem.member);
    (*m_visitor)(problem);
}

QString Problems::source(const Json &json) const
{
    const int size = std::min(int(json.textEnd() - json.textBegin()), mostShown);
    return JsonText::toString(m_text.mid(int(json.textBegin()), size)).simplified();
}

QString Problems::plain(const Json &json) const
{
    return JsonText::shortened(json.isText() ? beginning(json.text()) : source(json));
}

QString Problems::quoted(const Json &json) const
{
    return QLatin1Char('\'') + plain(json) + QLatin1Char('\'');
}

QString Problems::shown(const Json &json) const
{
    return json.isText() ? QStringLiteral("the string ") + quoted(json) : quoted(json);
}

} // namespace JsonReading
} // namespace TunerDocuments
