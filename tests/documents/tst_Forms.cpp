// SPDX-License-Identifier: MIT
#include <QTest>

#include <tunerdocuments/Form.h>

#include "Rows.h"

using namespace TunerDocuments;

/// Names, suffixes and first bytes of the forms.
class FormsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formsHaveNamesAndSuffixes();
    void suffixDeterminesTheForm();
    void contentDeterminesTheForm_data();
    void contentDeterminesTheForm();
    void expansionIsDeclaredByTheFirstTwelveBytes_data();
    void expansionIsDeclaredByTheFirstTwelveBytes();
};

namespace {

const QString none = QStringLiteral("none");

QString nameOf(std::optional<Form> form)
{
    return form ? Forms::nameOf(*form) : none;
}

} // namespace

void FormsTest::formsHaveNamesAndSuffixes()
{
    QCOMPARE(Forms::list(),
             (QStringList{QStringLiteral("xml"), QStringLiteral("tagged"), QStringLiteral("compressed"),
                          QStringLiteral("snapshot"), QStringLiteral("json")}));
    QStringList suffixes;
    for (const Form form : {Form::Xml, Form::Tagged, Form::Compressed, Form::Snapshot, Form::Json}) {
        suffixes.append(Forms::suffixOf(form));
        QCOMPARE(Forms::nameOf(form), Forms::list()[int(form)]);
        QVERIFY(Forms::named(Forms::nameOf(form)) == form);
    }
    QCOMPARE(suffixes,
             (QStringList{QStringLiteral(".xml"), QStringLiteral(".tpb"), QStringLiteral(".tpz"),
                          QStringLiteral(".tps"), QStringLiteral(".json")}));
    QVERIFY(!Forms::named(QStringLiteral("XML")));
    QVERIFY(!Forms::named(QString()));
}

void FormsTest::suffixDeterminesTheForm()
{
    QCOMPARE(nameOf(Forms::bySuffix(QStringLiteral("a.xml"))), QStringLiteral("xml"));
    QCOMPARE(nameOf(Forms::bySuffix(QStringLiteral("folder.xml/a.b.TPZ"))), QStringLiteral("compressed"));
    QCOMPARE(nameOf(Forms::bySuffix(QStringLiteral(".tps"))), QStringLiteral("snapshot"));
    for (const char *name : {"", "xml", "a.xml~", "a.xml.bak", "folder.xml/a"})
        QCOMPARE(nameOf(Forms::bySuffix(QString::fromLatin1(name))), none);
}

void FormsTest::contentDeterminesTheForm_data()
{
    const Rows<QByteArray, QString> row("beginning", "form");
    const QByteArray mark = "\xEF\xBB\xBF";
    row("an element", "<TunerProperties", "xml");
    row("a declaration after blank lines", "\n\r\n\t <?xml", "xml");
    row("a byte order mark", mark + "<x", "xml");
    row("UTF-16, little-endian", QByteArray::fromHex("FFFE 3C00"), "xml");
    row("UTF-16, big-endian", QByteArray::fromHex("FEFF 003C"), "xml");
    row("the only character of a tag", "<", "none");
    row("a snapshot that begins as XML does", QByteArray::fromHex("3C00 00000006"), "none");
    row("an object", "{\"TunerProperties\"", "json");
    row("an empty object", " {\n}", "json");
    row("a byte order mark before an object", mark + "{}", "json");
    row("the only character of an object", "{", "none");
    row("a snapshot that begins as JSON does", QByteArray::fromHex("7B00 00000006"), "none");
    row("a list", "[]", "none");
    row("the identifier of the class", QByteArray::fromHex("C10CBB5F"), "tagged");
    row("the mark of compression", QByteArray::fromHex("52475A31"), "compressed");
    row("a truncated word", QByteArray::fromHex("C10CBB"), "none");
    row("the identifier of another class", QByteArray::fromHex("C8FC2661"), "none");
    row("nothing", "", "none");
}

void FormsTest::contentDeterminesTheForm()
{
    QFETCH(QByteArray, beginning);
    QFETCH(QString, form);
    QCOMPARE(nameOf(Forms::byContent(beginning)), form);
}

void FormsTest::expansionIsDeclaredByTheFirstTwelveBytes_data()
{
    QTest::addColumn<QByteArray>("beginning");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<int>("times");
    const auto row = [](const char *name, const char *hex, qint64 size, int times) {
        QTest::newRow(name) << QByteArray::fromHex(hex) << size << times;
    };
    row("twice", "52475A31 00000008 00000020", 16, 2);
    row("one byte more than twice", "52475A31 00000008 00000021", 16, 3);
    row("less", "52475A31 00000008 00000001", 16, 1);
    row("nothing", "52475A31 00000008 00000000", 16, 0);
    row("the most", "52475A31 00000008 FFFFFFFF", 16, 268435456);
    row("eleven bytes", "52475A31 00000008 000000", 11, 0);
    row("records", "C10CBB5F 00000008 FFFFFFFF", 16, 0);
}

void FormsTest::expansionIsDeclaredByTheFirstTwelveBytes()
{
    QFETCH(QByteArray, beginning);
    QFETCH(qint64, size);
    QFETCH(int, times);
    QCOMPARE(Forms::expansionOf(beginning, size), times);
}

TEST_SUITE(FormsTest)
#include "tst_Forms.moc"
