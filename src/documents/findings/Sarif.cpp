// SPDX-License-Identifier: MIT
#include <tunerdocuments/Sarif.h>

#include <utility>

#include <QByteArrayList>

#include <tunerdocuments/Lint.h>

#include "json/JsonText.h"

namespace TunerDocuments::Sarif {

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

/// Adds the file to a location, and returns the object that may have a region as well.
Json &insertFile(Json &location, const QByteArray &uri)
{
    Json &physical = location.insert("physicalLocation", Json::emptyObject());
    physical.insert("artifactLocation", Json::emptyObject()).insert("uri", uri);
    return physical;
}

Json locationJson(const Finding &finding, const QByteArray &uri)
{
    Json json = Json::emptyObject();
    Json &physical = insertFile(json, uri);
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

Json resultJson(const Finding &finding, const QByteArray &uri)
{
    Json json = Json::emptyObject();
    json.insert("ruleId", finding.rule.isNull() ? QByteArray(problemRule) : finding.rule.toUtf8());
    json.insert("ruleIndex", indexOf(finding));
    json.insert("level", finding.level().toUtf8());
    json.insert("message", textObject(finding.explained()));
    json.insert("locations", Json::emptyList()).append(locationJson(finding, uri));
    return json;
}

} // namespace

class Q_DECL_HIDDEN Part::Private : public QSharedData
{
public:
    void addNotification(const QString &level, const QString &text);

    QByteArray uri;
    QByteArray results; // with commas in between
    QByteArrayList notifications;
    bool isFailure = false;
};

void Part::Private::addNotification(const QString &level, const QString &text)
{
    Json json = Json::emptyObject();
    json.insert("level", level.toUtf8());
    json.insert("message", textObject(text));
    insertFile(json.insert("locations", Json::emptyList()).append(Json::emptyObject()), uri);
    notifications.append(JsonText::compact(json));
}

Part::Part(const QByteArray &fileName) : d(new Private)
{
    d->uri = fileName.toPercentEncoding("/");
    if (d->uri.startsWith('/'))
        d->uri.prepend("file://");
}

Part::Part(const Part &) = default;
Part::Part(Part &&) noexcept = default;
Part &Part::operator=(const Part &) = default;
Part &Part::operator=(Part &&) noexcept = default;
Part::~Part() = default;

Part Part::at(const QUrl &url)
{
    Part part{QByteArray()};
    part.d->uri = url.toEncoded();
    return part;
}

void Part::add(const Finding &finding)
{
    QByteArray &results = d->results;
    results += (results.isEmpty() ? "\n" : ",\n") + JsonText::compact(resultJson(finding, d->uri));
}

void Part::add(const Findings &findings, const QString &hint)
{
    const auto addAll = [&](const QVector<Finding> &listed, qint64 count, const QString &what) {
        for (const Finding &finding : listed)
            add(finding);
        if (count > listed.size())
            d->addNotification(QStringLiteral("warning"), countText(count, int(listed.size()), what) + hint);
    };
    addAll(findings.listed(), findings.count(), QStringLiteral("problems"));
    addAll(findings.warnings(), findings.warningCount(), QStringLiteral("warnings"));
}

void Part::addFailure(const QString &why)
{
    d->addNotification(QStringLiteral("error"), why);
    d->isFailure = true;
}

qint64 Part::size() const
{
    qint64 sum = d->results.size();
    for (const QByteArray &text : d->notifications)
        sum += text.size();
    return sum;
}

class Q_DECL_HIDDEN Writer::Private
{
public:
    explicit Private(const std::function<void(const QByteArray &)> &write) : m_write(write) { }

    void begin(const QString &program, const QString &version) const
    {
        Json driver = Json::emptyObject();
        driver.insert("name", program.toUtf8());
        driver.insert("version", version.toUtf8());
        driver.insert("rules", rulesJson());
        m_write("{\"$schema\":\"https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/"
                "sarif-schema-2.1.0.json\","
                "\"version\":\"2.1.0\",\"runs\":[{\"tool\":{\"driver\":"
                + JsonText::compact(driver) + "},\"columnKind\":\"utf16CodeUnits\",\"results\":[");
    }

    void add(const Part &part)
    {
        if (!part.d->results.isEmpty())
            m_write(std::exchange(m_hasResults, true) ? ',' + part.d->results : part.d->results);
        m_notifications += part.d->notifications;
        m_isSuccessful = m_isSuccessful && !part.d->isFailure;
    }

    void end() const
    {
        const QByteArray successful = m_isSuccessful ? "true" : "false";
        m_write("\n],\"invocations\":[{\"executionSuccessful\":" + successful + ",\"toolExecutionNotifications\":["
                + m_notifications.join(',') + "]}]}]}\n");
    }

private:
    const std::function<void(const QByteArray &)> m_write;
    QByteArrayList m_notifications;
    bool m_hasResults = false;
    bool m_isSuccessful = true;
};

Writer::Writer(const QString &program, const QString &version, const std::function<void(const QByteArray &)> &write)
    : d(std::make_unique<Private>(write))
{
    d->begin(program, version);
}

Writer::~Writer() = default;

void Writer::add(const Part &part)
{
    d->add(part);
}

void Writer::finish()
{
    d->end();
}

} // namespace TunerDocuments::Sarif
