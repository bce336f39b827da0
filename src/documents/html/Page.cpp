// SPDX-License-Identifier: MIT
#include "documents/html/Page.h"

#include <QCryptographicHash>

#include "documents/resources/Resource.h"

namespace TunerDocuments {

namespace {

QString textOf(const char *name)
{
    return QString::fromUtf8(resource(name));
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

} // namespace

void Page::show(Markup &out, const std::function<void()> &header, const std::function<void()> &content) const
{
    const QString style = guarded(textOf("page.css"));
    const QString script = guarded(textOf("page.js"));
    out.line("<!DOCTYPE html>");
    {
        const Tag page(out, "html", {{"xmlns", "http://www.w3.org/1999/xhtml"}, {"lang", "en"}});
        showHead(out, title, style, script);
        const Tag body(out, "body");
        showBar(out, hasCards);
        {
            const Tag whole(out, "div", {{"class", "page"}});
            if (hasCards) // the script fills it
                out.element("nav", {{"id", "outline"}, {"aria-label", "Outline"}, {"hidden", "hidden"}});
            header();
            {
                const Tag main(out, "main");
                content();
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

} // namespace TunerDocuments
