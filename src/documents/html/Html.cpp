// SPDX-License-Identifier: MIT
#include <tunerdocuments/Html.h>

#include <QCryptographicHash>
#include <QFile>

#include <tunerdocuments/Lint.h>

#include "documents/html/Content.h"

// Q_INIT_RESOURCE must be outside of any namespace. It links the resources of a static library.
static void initResources()
{
    Q_INIT_RESOURCE(html);
}

namespace TunerDocuments {

namespace {

QString resource(const char *name)
{
    initResources();
    QFile file(QStringLiteral(":/html/") + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the resource %s is missing", name);
    return QString::fromUtf8(file.readAll());
}

/// For HTML, the marks of the CDATA section are comments of the language; XML removes them.
QString guarded(const QString &code)
{
    return QStringLiteral("/*<![CDATA[*/\n") + code + QStringLiteral("/*]]>*/");
}

QString sourceHash(const QString &code)
{
    const QByteArray hash = QCryptographicHash::hash(code.toUtf8(), QCryptographicHash::Sha256);
    return QStringLiteral("'sha256-%1'").arg(QString::fromLatin1(hash.toBase64()));
}

void showHead(Markup &out, const QString &title, const QString &style, const QString &script)
{
    const Tag head(out, "head");
    out.voidElement("meta", {{"charset", "utf-8"}});
    // If the escaping of texts ever failed, the browser would still run and load only what is written here.
    out.voidElement(
        "meta",
        {{"http-equiv", "Content-Security-Policy"},
         {"content",
          QStringLiteral("default-src 'none'; style-src %1; script-src %2; base-uri 'none'; form-action 'none'")
              .arg(sourceHash(style), sourceHash(script))}});
    out.voidElement("meta", {{"name", "viewport"}, {"content", "width=device-width, initial-scale=1"}});
    out.voidElement("meta", {{"name", "color-scheme"}, {"content", "light dark"}});
    out.voidElement("meta", {{"name", "referrer"}, {"content", "no-referrer"}});
    out.element("title", {}, title);
    out.source("style", style);
}

void showBar(Markup &out, bool hasCards)
{
    const auto button = [&](const char *id, const char *text) {
        out.element("button", {{"type", "button"}, {"id", id}}, text);
    };
    const Tag bar(out, "div", {{"class", "bar"}, {"id", "bar"}, {"hidden", "hidden"}});
    const Tag tools(out, "div", {{"class", "tools"}, {"role", "search"}});
    if (hasCards) {
        out.voidElement("input",
                        {{"type", "search"},
                         {"id", "search"},
                         {"aria-label", "Search components, nodes and values"},
                         {"aria-keyshortcuts", "/"},
                         {"title", "/ searches, Enter goes on, arrows move, Escape ends"},
                         {"placeholder", "Search components, nodes, values \u2026 ( / )"},
                         {"autocomplete", "off"},
                         {"spellcheck", "false"}});
        out.element("output", {{"id", "found"}, {"for", "search"}, {"aria-live", "polite"}});
        button("open", "Open all");
        button("close", "Close all");
    }
    const auto toggle = [&](const char *id, const char *text) {
        out.element("button", {{"type", "button"}, {"id", id}, {"role", "switch"}, {"aria-checked", "false"}}, text);
    };
    if (hasCards)
        toggle("exact", "Exact numbers");
    toggle("theme", "Dark");
}

/// The list of all problems precedes the objects, and links to the problems that are shown there. So the content is
/// composed once without being kept, as far as there are problems.
void findShownProblems(const JobXml::TunerProperties &document, Problems &problems, const QString &source)
{
    if (!problems.areInObjects())
        return;
    Markup nowhere;
    Content content(document, problems, source, nowhere);
    content.showHeaderFindings();
    content.showOverview();
    content.showCards();
}

} // namespace

void html(const JobXml::TunerProperties &document, const Findings &findings, const QString &source,
          const std::function<void(const QByteArray &)> &write)
{
    Problems problems(findings);
    findShownProblems(document, problems, source);
    Markup out(write);
    Content content(document, problems, source, out);
    const QString style = guarded(resource("page.css"));
    const QString script = guarded(resource("page.js"));
    out.line("<!DOCTYPE html>");
    {
        const Tag page(out, "html", {{"xmlns", "http://www.w3.org/1999/xhtml"}, {"lang", "en"}});
        showHead(out, content.title(), style, script);
        const Tag body(out, "body");
        showBar(out, content.hasCards());
        {
            const Tag whole(out, "div", {{"class", "page"}});
            if (content.hasCards()) // the script fills it
                out.element("nav", {{"id", "outline"}, {"aria-label", "Outline"}, {"hidden", "hidden"}});
            content.showHeader();
            {
                const Tag main(out, "main");
                problems.showAll(out);
                content.showHeaderFindings();
                content.showOverview();
                content.showCards();
            }
            const Tag footer(out, "footer");
            out.element("p", {},
                        QStringLiteral("Made by tunerproperties %1. Nothing on this page changes the document.")
                            .arg(QStringLiteral(LIBRARY_VERSION)));
        }
        out.source("script", script);
    }
    out.line("");
    out.flush();
}

void html(const JobXml::TunerProperties &document, const QString &source,
          const std::function<void(const QByteArray &)> &write)
{
    constexpr int most = 100;
    Findings findings(most);
    document.VisitProblems([&](const JobXml::Problem &problem) { findings.add(problem); });
    findings.describePaths(document);
    lint(Document(document), QByteArray(), findings);
    html(document, findings, source, write);
}

} // namespace TunerDocuments
