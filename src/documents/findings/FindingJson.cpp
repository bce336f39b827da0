// SPDX-License-Identifier: MIT
#include <tunerdocuments/Json.h>

#include <tunerdocuments/Finding.h>

#include "json/JsonText.h"

namespace TunerDocuments {

namespace {

Json textOrNull(const QString &text)
{
    return text.isNull() ? Json() : Json(text.toUtf8());
}

Json namesOrNull(const QStringList &names)
{
    if (names.isEmpty())
        return {};
    Json list = Json::emptyList();
    for (const QString &name : names)
        list.append(name.toUtf8());
    return list;
}

/// What problems and warnings have in common.
Json composed(const Finding &finding, const QString &path)
{
    const auto ifLocated = [&](int number) { return finding.hasLocation() ? Json(number) : Json(); };
    Json json = Json::emptyObject();
    json.insert("path", textOrNull(path));
    json.insert("line", ifLocated(finding.line));
    json.insert("column", ifLocated(finding.column));
    json.insert("message", finding.message.toUtf8());
    json.insert("value", textOrNull(finding.value));
    json.insert("choices", namesOrNull(finding.choices));
    json.insert("suggestion", textOrNull(finding.suggestion));
    return json;
}

} // namespace

QByteArray toJson(const Finding &finding)
{
    const bool isWarning = finding.kind == Finding::Kind::Warning;
    Json json = composed(finding, isWarning ? finding.place() : finding.path);
    json.insert("rule", textOrNull(finding.rule));
    json.insert("level", finding.level().toUtf8());
    return JsonText::compact(json);
}

QByteArray problemToJson(const Finding &problem)
{
    return JsonText::compact(composed(problem, problem.path));
}

} // namespace TunerDocuments
