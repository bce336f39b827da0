// SPDX-License-Identifier: MIT
#include "commands/Sarif.h"

#include <tunerdocuments/Lint.h>

#include "batch/OutcomeJson.h"
#include "commands/HelpText.h"
#include "json/JsonText.h"

using namespace TunerDocuments;

namespace Sarif {

namespace {

/// Problems have no rule of their own: the model reports them.
const char *const problemRule = "invalid-document";

Json textObject(const QString &text)
{
    Json json = Json::emptyObject();
    json.insert("text", text.toUtf8());
    return json;
}

Json ruleJson(const QString &id, const QString &finds, const QString &why, const char *level)
{
    Json json = Json::emptyObject();
    json.insert("id", id.toUtf8());
    json.insert("shortDescription", textObject(finds));
    json.insert("fullDescription", textObject(finds + QLatin1Char(' ') + why));
    json.insert("help", textObject(why));
    json.insert("defaultConfiguration", Json::emptyObject()).insert("level", level);
    return json;
}

Json rulesJson()
{
    Json rules = Json::emptyList();
    rules.append(ruleJson(QString::fromLatin1(problemRule), QStringLiteral("The document is invalid."),
                          QStringLiteral("Readers and writers that validate refuse it."), "error"));
    for (const LintRule &rule : lintRules())
        rules.append(ruleJson(rule.name, rule.finds, rule.why, "warning"));
    return rules;
}

/// The index of a rule in rulesJson().
int indexOf(const Finding &finding)
{
    for (int i = 0; i < lintRules().size(); ++i) {
        if (lintRules().at(i).name == finding.rule)
            return i + 1;
    }
    return 0;
}

/// The file as a reference, relative to where the program was started unless the name is absolute.
QByteArray referenceTo(const FileName &name)
{
    const QByteArray encoded = name.bytes().toPercentEncoding("/");
    return encoded.startsWith('/') ? "file://" + encoded : encoded;
}

Json locationJson(const Finding &finding, const FileName &file)
{
    Json json = Json::emptyObject();
    Json &physical = json.insert("physicalLocation", Json::emptyObject());
    physical.insert("artifactLocation", Json::emptyObject()).insert("uri", referenceTo(file));
    if (finding.hasLocation()) {
        Json &region = physical.insert("region", Json::emptyObject());
        region.insert("startLine", finding.line);
        region.insert("startColumn", finding.column);
    }
    const QString place = finding.place();
    if (!place.isEmpty()) {
        Json logical = Json::emptyObject();
        logical.insert("fullyQualifiedName", place.toUtf8());
        logical.insert("kind", finding.member.isNull() ? "object" : "member");
        json.insert("logicalLocations", Json::emptyList()).append(std::move(logical));
    }
    return json;
}

Json resultJson(const Finding &finding, const FileName &file)
{
    Json json = Json::emptyObject();
    json.insert("ruleId", finding.rule.isNull() ? QByteArray(problemRule) : finding.rule.toUtf8());
    json.insert("ruleIndex", indexOf(finding));
    json.insert("level", OutcomeJson::levelOf(finding));
    json.insert("message", textObject(finding.explained()));
    json.insert("locations", Json::emptyList()).append(locationJson(finding, file));
    return json;
}

} // namespace

QByteArray begin()
{
    Json driver = Json::emptyObject();
    driver.insert("name", HelpText::program().toUtf8());
    driver.insert("version", TOOL_VERSION);
    driver.insert("rules", rulesJson());
    return "{\"$schema\":\"https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/"
           "sarif-schema-2.1.0.json\","
           "\"version\":\"2.1.0\",\"runs\":[{\"tool\":{\"driver\":"
        + JsonText::compact(driver) + "},\"columnKind\":\"utf16CodeUnits\",\"results\":[";
}

QByteArray results(const Outcome &outcome)
{
    QByteArrayList all;
    for (const QVector<Finding> &findings : {outcome.findings.listed(), outcome.findings.warnings()}) {
        for (const Finding &finding : findings)
            all.append('\n' + JsonText::compact(resultJson(finding, outcome.file)));
    }
    return all.join(',');
}

QByteArray end(const QStringList &errors)
{
    Json invocation = Json::emptyObject();
    invocation.insert("executionSuccessful", errors.isEmpty());
    Json &notifications = invocation.insert("toolExecutionNotifications", Json::emptyList());
    for (const QString &error : errors) {
        Json &notification = notifications.append(Json::emptyObject());
        notification.insert("level", "error");
        notification.insert("message", textObject(error));
    }
    return "\n],\"invocations\":[" + JsonText::compact(invocation) + "]}]}\n";
}

} // namespace Sarif
