// SPDX-License-Identifier: MIT
#include <QtTest>

#include "reportbase/XmlWatch.h"

using REPORTGENERATOR::XmlWatch;

namespace {

const auto tooMany = QStringLiteral("an element has more than 1024 attributes");
const auto wrongDeclaration = QStringLiteral("the XML declaration has to consist of version, encoding and standalone");
const auto internalSubset =
    QStringLiteral("the document type has an internal subset, by which a small document may become a large one");

const auto documentTypePlace = QStringLiteral("a document has one document type at most, before its root element");
const auto nameTooLong = QStringLiteral("a name has more than 4095 characters");

QByteArray equalSigns(int count)
{
    return QByteArray(count, '=');
}

QByteArray blanks(int count)
{
    return QByteArray(count, ' ');
}

struct Answer
{
    int readable = 0;
    QString refusal;
    bool operator==(const Answer &other) const { return readable == other.readable && refusal == other.refusal; }
};

/// The result for the document when it arrives in pieces of this size.
template <typename Character>
Answer watched(const Character *text, int size, int pieceSize)
{
    XmlWatch watch;
    int taken = 0;
    while (taken < size) {
        const int piece = std::min(pieceSize, size - taken);
        const int more = watch.readable(text + taken, piece);
        taken += more;
        if (more < piece && !watch.isRefused())
            return {-1, QStringLiteral("a piece ends without reason")};
        if (watch.isRefused())
            break;
    }
    return {taken, watch.refusal()};
}

/// How much of the document may be read, and why no more: the same for bytes and characters, in pieces of any size.
Answer watched(const QByteArray &document)
{
    const int size = document.size();
    const QString text = QString::fromLatin1(document.constData(), size);
    const Answer whole = watched(document.constData(), size, size);
    for (const int pieceSize : {1, 2, 3, 1000, 4095, 4096, 4097, size}) {
        if (!(watched(document.constData(), size, pieceSize) == whole)
            || !(watched(text.constData(), size, pieceSize) == whole))
            return {-1, QStringLiteral("pieces of %1 make a difference").arg(pieceSize)};
    }
    return whole;
}

} // namespace

#define COMPARE_READ(document)                                                                                         \
    do {                                                                                                               \
        const QByteArray bytes = (document);                                                                           \
        const Answer answer = watched(bytes);                                                                          \
        QCOMPARE(answer.refusal, QString());                                                                           \
        QCOMPARE(answer.readable, bytes.size());                                                                       \
    } while (false)

#define COMPARE_REFUSED(document, place, reason)                                                                       \
    do {                                                                                                               \
        const Answer answer = watched(document);                                                                       \
        QCOMPARE(answer.refusal, reason);                                                                              \
        QCOMPARE(answer.readable, place);                                                                              \
    } while (false)

/// An XML document is checked before the reader sees it: it ends before the 1,025th attribute of an element, and before
/// the declarations of a document type.
class XmlWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsReadableWhole();
    void anXmlDeclarationIsRead_data();
    void anXmlDeclarationIsRead();
    void anXmlDeclarationOfAnythingElseIsRefused_data();
    void anXmlDeclarationOfAnythingElseIsRefused();
    void anXmlDeclarationHas1024CharactersAtMost();
    void textThatBeginsLikeADeclarationIsNotADeclaration();
    void headEndsAfterTheDeclaration();
    void aTagMayHave1024Attributes();
    void nothingIsReadableAfterARefusal();
    void onlyTheTagThatIsReadCounts();
    void quotedCharactersAreNotCounted();
    void textAndEndTagsAreNotCounted();
    void commentsAreNotCounted();
    void sectionsOfCharactersAreNotCounted();
    void instructionsAreNotCounted();
    void tagsAfterOtherMarkupAreCounted_data();
    void tagsAfterOtherMarkupAreCounted();
    void tagsAfterAnyMixtureAreCounted();
    void tagEndsBeforeTheNext();
    void charactersBeyondLatin1AreNotSigns();
    void aDocumentTypeMayBeNamed();
    void aDocumentTypeIsReadUpToItsDeclarations();
    void aDocumentTypeIsFirst_data();
    void aDocumentTypeIsFirst();
    void namesHave4095CharactersAtMost_data();
    void namesHave4095CharactersAtMost();
    void otherRunsOfCharactersMayBeLonger_data();
    void otherRunsOfCharactersMayBeLonger();
    void charactersOfNamesAreCountedInUtf16();
};

void XmlWatchTest::nothingIsReadableWhole()
{
    XmlWatch watch;
    QCOMPARE(watch.readable("", 0), 0);
    QCOMPARE(watch.isRefused(), false);
    QCOMPARE(watch.refusal(), QString());
}

void XmlWatchTest::anXmlDeclarationIsRead_data()
{
    QTest::addColumn<QByteArray>("declaration");
    QTest::addColumn<QString>("encoding");
    const auto row = [](const char *declaration, const char *encoding) {
        QTest::newRow(declaration) << QByteArray(declaration) << QString::fromLatin1(encoding);
    };
    row("<?xml version='1.0'?>", "");
    row("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>", "UTF-8");
    row("<?xml version='1.0' encoding='ISO-8859-1' standalone='no'?>", "ISO-8859-1");
    row("<?xml version='1.0' standalone='encoding'?>", "");
    row("<?xml\tversion\r=\n'1.0' encoding = 'a\"b' \n?>", "a\"b");
    row("<?xml version='?' encoding='UTF-8'?>", "UTF-8"); // the reader will report it
    row("<?xml encoding=''?>", "");
    row("<?xml ?>", "");
}

void XmlWatchTest::anXmlDeclarationIsRead()
{
    QFETCH(const QByteArray, declaration);
    QFETCH(const QString, encoding);
    COMPARE_READ(declaration);
    COMPARE_READ(declaration + "<a" + equalSigns(1024));
    COMPARE_REFUSED(declaration + "<a" + equalSigns(1025), declaration.size() + 2 + 1024, tooMany);
    for (const QString &mark : {QString(), QString(QChar(QChar::ByteOrderMark))}) {
        const QString text = mark + QString::fromLatin1(declaration);
        XmlWatch watch;
        QCOMPARE(watch.readable(text.constData(), text.size()), text.size());
        QCOMPARE(watch.isHeadRead(), true);
        QCOMPARE(watch.declaredEncoding(), encoding);
    }
}

void XmlWatchTest::anXmlDeclarationOfAnythingElseIsRefused_data()
{
    QTest::addColumn<QByteArray>("declaration");
    QTest::addColumn<QByteArray>("following");
    for (const char *declaration : {
             "<?xml version='1.0' xmlns:a='u'?>",
             "<?xml version='1.0' encoding='UTF-8' encoding='UTF-7'?>",
             "<?xml version='1.0' xmlns='encoding=x' encoding='UTF-7'?>",
             "<?xml version='1.0' encoding='UTF&#45;7'?>",
             "<?xml version='1.0' encoding='UTF-8' x?>",
             "<?xml version='1.0' encoding='UTF-8' x=?>",
             "<?xml version='1.0' encoding=UTF-8?>",
             "<?xml version='1.0' encoding=xUTF-8x?>",
             "<?xml version='1.0' encoding?>",
             "<?xml version='1.0' xmlns='?>' encoding='UTF-7'?>",
             "<?xml version='1.0' xmlns=\"?>'\" encoding='UTF-7'?>",
             "<?xml version='1.0' \x01?>",
             "<?xml version='1.0' \xA0?>",
             "<?xml =?>",
         })
        QTest::newRow(declaration) << QByteArray(declaration) << QByteArray("<a/>");
    // If there is a tag, the declaration has no end.
    QTest::newRow("a tag") << QByteArray("<?xml version='1.0' <") << QByteArray("a/>");
    QTest::newRow("a tag in a value") << QByteArray("<?xml version='1.0' encoding='?>\n<") << QByteArray("a/>");
}

void XmlWatchTest::anXmlDeclarationOfAnythingElseIsRefused()
{
    QFETCH(const QByteArray, declaration);
    QFETCH(const QByteArray, following);
    COMPARE_REFUSED(declaration, declaration.size(), wrongDeclaration);
    COMPARE_REFUSED(declaration + following, declaration.size(), wrongDeclaration);
}

void XmlWatchTest::anXmlDeclarationHas1024CharactersAtMost()
{
    const QByteArray begin = "<?xml version='1.0' encoding='"; // 30 characters
    COMPARE_READ(begin + QByteArray(1024 - 30 - 3, 'a') + "'?>");
    COMPARE_REFUSED(begin + QByteArray(1024 - 30 - 2, 'a') + "'?>", 1024, wrongDeclaration);
    COMPARE_REFUSED(begin + QByteArray(2000, 'a') + "'?>", 1024, wrongDeclaration);
    COMPARE_REFUSED(begin + blanks(2000) + "'?>", 1024, wrongDeclaration);
    // Blanks are not counted, and mean nothing.
    const QByteArray declaration = "<?xml" + blanks(2000) + "version='1.0'" + blanks(2000) + "encoding" + blanks(2000)
        + "=\n\t\r " + blanks(2000) + "'UTF-8'" + blanks(2000) + "?>";
    COMPARE_READ(declaration);
    COMPARE_REFUSED(declaration + "<a" + equalSigns(1025), declaration.size() + 2 + 1024, tooMany);
}

void XmlWatchTest::textThatBeginsLikeADeclarationIsNotADeclaration()
{
    for (const char *begin : {"", "<", "<?", "<?x", "<?xm", "<?xml", "<?xml-style x='1'", "<?XML ", "<?xmlx y='>'"}) {
        const QByteArray instruction = QByteArray(begin) + "<a" + equalSigns(1025) + "?>";
        if (instruction.startsWith("<?"))
            COMPARE_READ(instruction);
        else
            COMPARE_REFUSED(instruction, int(strlen(begin)) + 2 + 1024, tooMany);
    }
    COMPARE_READ(" <?xml x='<&'?>"); // the reader will report it
}

void XmlWatchTest::headEndsAfterTheDeclaration()
{
    const auto headOf = [](const char *document) {
        const QString text = QString::fromLatin1(document);
        XmlWatch watch;
        const int head = watch.readableHead(text.constData(), text.size());
        return QStringLiteral("%1 %2").arg(head).arg(watch.isHeadRead());
    };
    QCOMPARE(headOf("<?xml version='1.0'?><a/>"), QStringLiteral("21 1"));
    QCOMPARE(headOf("<?xml version='1.0'"), QStringLiteral("19 0"));
    QCOMPARE(headOf("<?xm"), QStringLiteral("4 0"));
    QCOMPARE(headOf("<a/>"), QStringLiteral("1 1"));
    QCOMPARE(headOf("a"), QStringLiteral("0 1"));
    QCOMPARE(headOf("<?xml x?><a/>"), QStringLiteral("9 0"));
}

void XmlWatchTest::aTagMayHave1024Attributes()
{
    COMPARE_READ("<a " + equalSigns(1024) + ">");
    COMPARE_REFUSED("<a " + equalSigns(1025) + ">", 3 + 1024, tooMany);
    COMPARE_REFUSED("<a " + equalSigns(9000) + ">", 3 + 1024, tooMany);
}

void XmlWatchTest::nothingIsReadableAfterARefusal()
{
    const QByteArray document = "<a " + equalSigns(5000) + "><b/>";
    XmlWatch watch;
    QCOMPARE(watch.readable(document.constData(), document.size()), 3 + 1024);
    QCOMPARE(watch.readable("<b/>", 4), 0);
}

void XmlWatchTest::onlyTheTagThatIsReadCounts()
{
    const QByteArray tag = "<a " + equalSigns(1000) + ">"; // 1004 characters
    COMPARE_READ(tag + tag + tag + tag + tag);
    COMPARE_REFUSED(tag + tag + tag + tag + tag + "<b" + equalSigns(1025), 5 * 1004 + 2 + 1024, tooMany);
    const QByteArray longTag = "<a " + equalSigns(1000) + blanks(5000) + ">";
    COMPARE_READ(longTag + longTag);
}

void XmlWatchTest::quotedCharactersAreNotCounted()
{
    COMPARE_READ("<a b='" + equalSigns(5000) + "'>");
    COMPARE_READ("<a b=\"" + equalSigns(5000) + "'>" + equalSigns(5000) + "\">");
    COMPARE_READ("<a b='" + equalSigns(5000) + "\">" + equalSigns(5000) + "'>");
    // the first '=' is before the quotes
    COMPARE_READ("<a b='>'" + equalSigns(1023));
    COMPARE_REFUSED("<a b='>'" + equalSigns(1024), 8 + 1023, tooMany);
    COMPARE_READ("<a b='' c=\">\"" + equalSigns(1022));
    COMPARE_REFUSED("<a b='' c=\">\"" + equalSigns(1023), 13 + 1022, tooMany);
}

void XmlWatchTest::textAndEndTagsAreNotCounted()
{
    COMPARE_READ(equalSigns(5000));
    COMPARE_READ("<a>" + equalSigns(5000));
    COMPARE_READ("<a>\"" + equalSigns(5000) + "</a>");
    COMPARE_READ("</a" + equalSigns(5000));
}

void XmlWatchTest::commentsAreNotCounted()
{
    COMPARE_READ("<!--" + equalSigns(5000) + "-->");
    COMPARE_READ("<!-- <a" + equalSigns(5000) + "-->");
    COMPARE_READ("<!-- -> > <a" + equalSigns(5000) + "-->");
    COMPARE_READ("<!--> <a" + equalSigns(5000) + "-->");
    COMPARE_READ("<!---> <a" + equalSigns(5000) + "-->");
}

void XmlWatchTest::sectionsOfCharactersAreNotCounted()
{
    COMPARE_READ("<![CDATA[<a" + equalSigns(5000) + "]]>");
    COMPARE_READ("<![CDATA[ ]> ]] > > <a" + equalSigns(5000) + "]]>");
}

void XmlWatchTest::instructionsAreNotCounted()
{
    COMPARE_READ("<?p <a" + equalSigns(5000) + "?>");
    COMPARE_READ("<?p > ? > <a" + equalSigns(5000) + "?>");
    COMPARE_READ("<?> <a" + equalSigns(5000) + "?>");
}

void XmlWatchTest::tagsAfterOtherMarkupAreCounted_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::newRow("text") << QByteArray("a \" b ' c > d = e");
    QTest::newRow("a tag with quotes") << QByteArray("<a b='\"' c=\"'\"/>");
    QTest::newRow("a long tag with quotes") << "<a b='\"' c=\"'\"" + blanks(5000) + "/>";
    QTest::newRow("an end tag") << QByteArray("</a>");
    QTest::newRow("a comment with a tag and a quote") << QByteArray("<!-- <a \" -->");
    QTest::newRow("a comment of nothing") << QByteArray("<!---->");
    QTest::newRow("a comment that ends with more") << QByteArray("<!-- --->");
    QTest::newRow("a long comment") << "<!-- <a \"" + blanks(5000) + "-->";
    QTest::newRow("CDATA with a tag and a quote") << QByteArray("<![CDATA[<a ']]>");
    QTest::newRow("CDATA that ends with more") << QByteArray("<![CDATA[<a ']]]]>");
    QTest::newRow("CDATA of nothing") << QByteArray("<![CDATA[]]>");
    QTest::newRow("an instruction with a tag and a quote") << QByteArray("<?p <a ' ?>");
    QTest::newRow("an instruction that ends with more") << QByteArray("<?p ?\?>");
}

void XmlWatchTest::tagsAfterOtherMarkupAreCounted()
{
    QFETCH(const QByteArray, before);
    COMPARE_READ(before + "<a" + equalSigns(1024) + ">");
    COMPARE_REFUSED(before + "<a" + equalSigns(1025) + ">", before.size() + 2 + 1024, tooMany);
    COMPARE_REFUSED(before + before + "<a" + equalSigns(1025) + ">", 2 * before.size() + 2 + 1024, tooMany);
}

void XmlWatchTest::tagsAfterAnyMixtureAreCounted()
{
    const QByteArrayList fragments{
        "<a>",
        "</a>",
        "<a b='>'/>",
        "<a b=\"'\" c='\"'>",
        "text \" ' > - ? ] =",
        "<!-- <a b=\" - > -->",
        "<!---->",
        "<?p <a b=' ?>",
        "<?p?>",
        "<![CDATA[<a b=' ] > ]] ]]>",
        "<![CDATA[]]>",
        blanks(3000),
        "<a" + blanks(4090) + ">",
        "<!--" + blanks(4090) + "-->",
    };
    QRandomGenerator random(1);
    for (int i = 0; i < 300; ++i) {
        QByteArray before;
        for (int count = random.bounded(12); count >= 0; --count)
            before += fragments[random.bounded(fragments.size())];
        const int pieceSize = random.bounded(1, 6000);
        for (const int count : {1024, 1025}) {
            const QByteArray document = before + "<b" + equalSigns(count) + ">";
            const Answer answer = watched(document.constData(), document.size(), pieceSize);
            QVERIFY2(answer.readable == (count == 1024 ? document.size() : before.size() + 2 + 1024),
                     before.constData());
        }
    }
}

void XmlWatchTest::tagEndsBeforeTheNext()
{
    // not a document, but the watch comes before the reader, which will report that
    const QByteArray tag = "<a '" + equalSigns(600) + blanks(5000);
    COMPARE_READ(tag + tag + tag);
    COMPARE_REFUSED(tag + "<" + equalSigns(1026), tag.size() + 2 + 1024, tooMany);
}

void XmlWatchTest::charactersBeyondLatin1AreNotSigns()
{
    // U+013D and U+3D00: one byte of each is that of '='
    for (const ushort code : {ushort(0x013D), ushort(0x3D00)}) {
        const QString text = QStringLiteral("<a ") + (QChar(code) + QStringLiteral(" ")).repeated(5000);
        XmlWatch watch;
        QCOMPARE(watch.readable(text.constData(), text.size()), text.size());
    }
}

void XmlWatchTest::aDocumentTypeMayBeNamed()
{
    COMPARE_READ("<!DOCTYPE a><a>[</a>");
    COMPARE_READ("<!DOCTYPE a SYSTEM 'b[c'><a>[</a>");
    COMPARE_READ("<!DOCTYPE a PUBLIC \"b[c\" 'd[<e'><a>[</a>");
    COMPARE_READ("<?xml version='1.0'?><!-- <b> --><?p <b>?><!DOCTYPE a PUBLIC \"x'>\" 'y\">'><a" + equalSigns(1024));
}

void XmlWatchTest::aDocumentTypeIsReadUpToItsDeclarations()
{
    COMPARE_REFUSED("<!DOCTYPE a []>", 12, internalSubset);
    COMPARE_REFUSED("<!DOCTYPE a SYSTEM 'b' [<!ENTITY c 'd'>]>", 23, internalSubset);
}

void XmlWatchTest::aDocumentTypeIsFirst_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::newRow("element") << QByteArray("<a/>");
    QTest::newRow("long element") << "<a" + blanks(5000) + "/>";
    QTest::newRow("start tag") << QByteArray("<a>");
    QTest::newRow("document type") << QByteArray("<!DOCTYPE a>");
    QTest::newRow("document type and comment") << QByteArray("<!DOCTYPE a SYSTEM '>'><!---->");
}

void XmlWatchTest::aDocumentTypeIsFirst()
{
    QFETCH(const QByteArray, before);
    COMPARE_REFUSED(before + "<!DOCTYPE a><a/>", before.size() + 2, documentTypePlace);
    COMPARE_REFUSED(before + " <!x", before.size() + 3, documentTypePlace);
    COMPARE_READ(before + "<!-- <!DOCTYPE a> --><![CDATA[<!DOCTYPE a>]]><?p <!DOCTYPE a>?>");
}

void XmlWatchTest::namesHave4095CharactersAtMost_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<int>("partBefore"); // how much of the name precedes the place
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<int>("partAfter");
    const auto row = [](const char *name, const QByteArray &before, const char *after, int partBefore = 0,
                        int partAfter = 0) {
        QTest::newRow(name) << before << partBefore << QByteArray(after) << partAfter;
    };
    row("start tag", "<", "/>");
    row("prefix", "<", ":b/>", 0, 2);
    row("name after a prefix", "<a:", "/>", 2);
    row("end tag", "<a></", ">");
    row("name with a NUL", QByteArray("<a\0", 3), "/>", 2); // which does not end it in the reader
    row("attribute", "<a b='' ", "=''/>");
    row("attribute of a long tag", "<a b='" + blanks(5000) + "' ", "=''/>");
    row("instruction", "<?", " b?>");
    row("document type", "<!DOCTYPE ", " SYSTEM 'b'>");
    row("reference", "<a>&", ";</a>");
    row("reference after another one", "<a>&amp;&", ";</a>");
    row("reference in an attribute", "<a b='&", ";'/>");
    row("reference in an attribute after another one", "<a b='&lt;&", ";'/>");
}

void XmlWatchTest::namesHave4095CharactersAtMost()
{
    QFETCH(const QByteArray, before);
    QFETCH(const int, partBefore);
    QFETCH(const QByteArray, after);
    QFETCH(const int, partAfter);
    const QByteArray longest(4095 - partBefore - partAfter, 'n');
    COMPARE_READ(before + longest + after);
    COMPARE_REFUSED(before + longest + 'n' + after, before.size() - partBefore + 4095, nameTooLong);
}

void XmlWatchTest::otherRunsOfCharactersMayBeLonger_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("text") << QByteArray("<a>") << QByteArray("</a>");
    QTest::newRow("value") << QByteArray("<a b='") << QByteArray("'/>");
    QTest::newRow("value after a reference") << QByteArray("<a b='&lt;") << QByteArray("'/>");
    QTest::newRow("text after a reference") << QByteArray("<a>&lt;") << QByteArray("</a>");
    QTest::newRow("comment") << QByteArray("<!--") << QByteArray("-->");
    QTest::newRow("CDATA") << QByteArray("<a><![CDATA[") << QByteArray("]]></a>");
    QTest::newRow("content of an instruction") << QByteArray("<?p ") << QByteArray("?>");
    QTest::newRow("identifier of a document type") << QByteArray("<!DOCTYPE a SYSTEM '") << QByteArray("'>");
}

void XmlWatchTest::otherRunsOfCharactersMayBeLonger()
{
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, after);
    COMPARE_READ(before + QByteArray(9000, 'n') + after);
}

void XmlWatchTest::charactersOfNamesAreCountedInUtf16()
{
    const auto isRefused = [](const QString &character, int count) {
        const QString text = QStringLiteral("<") + character.repeated(count) + QStringLiteral("/>");
        const QByteArray bytes = text.toUtf8();
        XmlWatch ofText;
        ofText.readable(text.constData(), text.size());
        XmlWatch ofBytes;
        ofBytes.readable(bytes.constData(), bytes.size());
        return QStringLiteral("%1 %2").arg(ofText.isRefused()).arg(ofBytes.isRefused());
    };
    for (const QString &character : {QStringLiteral("\u00E4"), QStringLiteral("\u20AC")}) {
        QCOMPARE(isRefused(character, 4095), QStringLiteral("0 0"));
        QCOMPARE(isRefused(character, 4096), QStringLiteral("1 1"));
    }
    QCOMPARE(isRefused(QStringLiteral("\U0001F600"), 2047), QStringLiteral("0 0"));
    QCOMPARE(isRefused(QStringLiteral("\U0001F600"), 2048), QStringLiteral("1 1"));
}

TEST_SUITE(XmlWatchTest)
#include "tst_XmlWatch.moc"
