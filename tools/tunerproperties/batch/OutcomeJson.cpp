// SPDX-License-Identifier: MIT
#include "batch/OutcomeJson.h"

#include "text/Printable.h"

using TunerDocuments::Finding;

namespace OutcomeJson {

void insertName(Json &json, const QByteArray &key, const FileName &name)
{
    const auto text = Printable::decoded(name.bytes());
    json.insert(key, (text ? *text : name.shown()).toUtf8());
    if (!text)
        json.insert(key + "Bytes", name.bytes().toHex());
}

Json textOrNull(const QString &text)
{
    return text.isNull() ? Json() : Json(text.toUtf8());
}

namespace {

void insertLocation(Json &json, const Finding &finding)
{
    json.insert("line", finding.hasLocation() ? Json(finding.line) : Json());
    json.insert("column", finding.hasLocation() ? Json(finding.column) : Json());
    json.insert("message", finding.message.toUtf8());
}

/// What the document has, what is accepted instead, and what was probably meant.
void insertExplanation(Json &json, const Finding &finding)
{
    json.insert("value", textOrNull(finding.value));
    Json &choices = json.insert("choices", finding.choices.isEmpty() ? Json() : Json::emptyList());
    for (const QString &choice : finding.choices)
        choices.append(choice.toUtf8());
    json.insert("suggestion", textOrNull(finding.suggestion));
}

} // namespace

Json problem(const Finding &finding)
{
    Json json = Json::emptyObject();
    json.insert("path", textOrNull(finding.path));
    insertLocation(json, finding);
    insertExplanation(json, finding);
    return json;
}

Json finding(const Finding &finding)
{
    const bool isWarning = finding.kind == Finding::Kind::Warning;
    Json json = Json::emptyObject();
    json.insert("path", textOrNull(isWarning ? finding.place() : finding.path));
    insertLocation(json, finding);
    insertExplanation(json, finding);
    json.insert("rule", textOrNull(finding.rule));
    json.insert("level", levelOf(finding));
    return json;
}

const char *levelOf(const Finding &finding)
{
    return finding.kind == Finding::Kind::Problem || finding.isError ? "error" : "warning";
}

} // namespace OutcomeJson
