// SPDX-License-Identifier: MIT
#include <QCryptographicHash>
#include <QRegularExpression>
#include <QtTest>

#include "Documents.h"
#include "documents/RandomChanges.h"
#include "documents/html/Pages.h"

using JobXml::TunerProperties;

using namespace TunerDocuments;

/// The markup of a page: what it contains besides the document, and how texts are escaped.
class HtmlMarkupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreNeverMarkup();
    void invisibleCharactersAreShownAsSigns();
    void pageLoadsNothingFromElsewhere();
    void policyAllowsOnlyTheSourcesOfThePage();
    void everyColorForBothThemesFollowsOneForOlderBrowsers();
};

void HtmlMarkupTest::textsAreNeverMarkup()
{
    const QString hostile = QStringLiteral("</title></style><script>alert(1)</script>\"'><img onerror=x> &amp; ]]>");
    TunerProperties document = aDocument();
    document.Setname(hostile);
    const QByteArray page = html(document, {}, hostile);
    QVERIFY(!page.contains("<img"));
    QCOMPARE(page.count("<script"), 1);
    QCOMPARE(page.count("</script"), 1);
    QCOMPARE(page.count("<style"), 1);
    QVERIFY(page.contains("<title>&lt;/title&gt;&lt;/style&gt;&lt;script&gt;alert(1)&lt;/script&gt;&quot;&#39;&gt;"
                          "&lt;img onerror=x&gt; &amp;amp; ]]&gt;</title>"));
    const PageTree tree(page);
    QCOMPARE(only(tree.root().allTagged("h1"))->values(), QStringList{hostile});
    QCOMPARE(only(tree.root().allTagged("title"))->wholeText(), hostile);
}

void HtmlMarkupTest::invisibleCharactersAreShownAsSigns()
{
    TunerProperties document = aDocument();
    QString text = QStringLiteral("a\nb\tc\rd");
    for (const QChar sign : {QChar(0), QChar(0x1B), QChar(0x85), QChar(0x2028), QChar(0x202E), QChar(0x2066),
                             QChar(0xD800), QChar(0xFFFE)})
        text += sign;
    text += QStringLiteral("\U0001FFFE\U0001F600\u05D0\u200F");
    document.Setname(text);
    const QByteArray page = html(document, {}, QStringLiteral("file.xml"));
    QVERIFY(page.contains("<bdi>a<span class=\"sign\" title=\"U+000A\">\\n</span><br/>"
                          "b<span class=\"sign\" title=\"U+0009\">\\t</span>"
                          "c<span class=\"sign\" title=\"U+000D\">\\r</span>"
                          "d<span class=\"sign\" title=\"U+0000\">U+0000</span>"
                          "<span class=\"sign\" title=\"U+001B\">U+001B</span>"
                          "<span class=\"sign\" title=\"U+0085\">U+0085</span>"
                          "<span class=\"sign\" title=\"U+2028\">U+2028</span>"
                          "<span class=\"sign\" title=\"U+202E\">U+202E</span>"
                          "<span class=\"sign\" title=\"U+2066\">U+2066</span>"
                          "<span class=\"sign\" title=\"U+D800\">U+D800</span>"
                          "<span class=\"sign\" title=\"U+FFFE\">U+FFFE</span>"
                          "<span class=\"sign\" title=\"U+1FFFE\">U+1FFFE</span>"
                          "\xF0\x9F\x98\x80\xD7\x90\xE2\x80\x8F</bdi>"));
    QVERIFY(page.contains("<title>a\\nb\\tc\\rdU+0000U+001BU+0085U+2028U+202EU+2066U+D800U+FFFEU+1FFFE"));
}

void HtmlMarkupTest::pageLoadsNothingFromElsewhere()
{
    const QString page = QString::fromUtf8(html(randomDocument(7), {}, QStringLiteral("file.xml")));
    const QRegularExpression foreign(QStringLiteral(
        "(src|srcset|data|poster|action|formaction|ping)=\"|href=\"[^#]|url\\(|@import|<link|<base|<iframe"
        "|<object|<embed|\\bfetch\\(|XMLHttpRequest|WebSocket|importScripts|import\\("));
    const auto match = foreign.match(page);
    QVERIFY2(!match.hasMatch(), qPrintable(page.mid(match.capturedStart() - 50, 100)));
    QCOMPARE(page.count(QStringLiteral("://")), 1);
    QVERIFY(page.contains(QStringLiteral("xmlns=\"http://www.w3.org/1999/xhtml\"")));
}

void HtmlMarkupTest::policyAllowsOnlyTheSourcesOfThePage()
{
    const QByteArray page = html(aDocument(), {}, QStringLiteral("file.xml"));
    const auto hashOf = [&](const QByteArray &tag) {
        const int start = page.indexOf('<' + tag + '>') + tag.size() + 2;
        const QByteArray content = page.mid(start, page.indexOf("</" + tag + '>') - start);
        return QCryptographicHash::hash(content, QCryptographicHash::Sha256).toBase64();
    };
    QVERIFY(page.contains("<meta http-equiv=\"Content-Security-Policy\" content=\"default-src &#39;none&#39;; "
                          "style-src &#39;sha256-"
                          + hashOf("style") + "&#39;; script-src &#39;sha256-" + hashOf("script")
                          + "&#39;; base-uri &#39;none&#39;; form-action &#39;none&#39;\"/>"));
    const PageTree tree(page);
    for (const PageNode *node : tree.root().all([](const PageNode &) { return true; })) {
        for (auto attribute = node->attributes.begin(); attribute != node->attributes.end(); ++attribute)
            QVERIFY2(attribute.key() != QLatin1String("style") && !attribute.key().startsWith(QLatin1String("on")),
                     qPrintable(attribute.key()));
    }
}

void HtmlMarkupTest::everyColorForBothThemesFollowsOneForOlderBrowsers()
{
    const QString page = QString::fromUtf8(html(aDocument(), {}, QStringLiteral("file.xml")));
    // A custom property takes any value, so the colors of both themes are where only browsers read that know them.
    const int query = page.indexOf(QStringLiteral("@supports (color: light-dark(#000000, #ffffff)) {"));
    QVERIFY(query > 0);
    const int end = page.indexOf(QStringLiteral("\n}\n"), query);
    const QRegularExpression both(QStringLiteral("(--[a-z-]+): light-dark\\((#[0-9a-f]{6}), #[0-9a-f]{6}\\);"));
    int count = 0;
    for (auto match = both.globalMatch(page); match.hasNext(); ++count) {
        const auto color = match.next();
        QVERIFY(color.capturedStart() > query && color.capturedEnd() < end);
        const int plain = page.indexOf(color.captured(1) + QStringLiteral(": ") + color.captured(2) + QLatin1Char(';'));
        QVERIFY2(plain > 0 && plain < query, qPrintable(color.captured(1)));
    }
    QCOMPARE(count + 1, page.left(page.indexOf(QStringLiteral("</style>"))).count(QStringLiteral("light-dark(#")));
    QVERIFY(count >= 15);
}

TEST_SUITE(HtmlMarkupTest)
#include "tst_HtmlMarkup.moc"
