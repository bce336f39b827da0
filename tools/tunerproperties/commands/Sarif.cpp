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

/// Adds the file to a location, and returns the object that may have a region as well.
Json &insertFile(Json &location, const FileName &file)
{
    Json &physical = location.insert("physicalLocation", Json::emptyObject());
    physical.insert("artifactLocation", Json::emptyObject()).insert("uri", referenceTo(file));
    return physical;
}

Json locationJson(const Finding &finding, const FileName &file)
{
    Json json = Json::emptyObject();
    Json &physical = insertFile(json, file);
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

QByteArray notification(const char *level, const QString &text, const FileName &file)
{
    Json json = Json::emptyObject();
    json.insert("level", level);
    json.insert("message", textObject(text));
    insertFile(json.insert("locations", Json::emptyList()).append(Json::emptyObject()), file);
    return JsonText::compact(json);
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

QByteArrayList notifications(const Outcome &outcome)
{
    QByteArrayList all;
    if (!outcome.error.isNull())
        all.append(notification("error", outcome.error, outcome.file));
    const auto count = [&](qint64 number, int listed, const QString &what) {
        if (number > listed)
            all.append(notification("warning", countText(number, listed, what) + howToListMore, outcome.file));
    };
    count(outcome.findings.count(), outcome.findings.listed().size(), QStringLiteral("problems"));
    count(outcome.findings.warningCount(), outcome.findings.warnings().size(), QStringLiteral("warnings"));
    return all;
}

QByteArray end(ExitStatus status, const QByteArrayList &notifications)
{
    const QByteArray successful = status == ExitStatus::FileFailure ? "false" : "true";
    return "\n],\"invocations\":[{\"executionSuccessful\":" + successful + ",\"toolExecutionNotifications\":["
        + notifications.join(',') + "]}]}]}\n";
}

} // namespace Sarif
