// SPDX-License-Identifier: MIT
#include "Members.h"
#include "Rules.h"

using namespace JobXml;

namespace {

/// One text member of one class, in each encoding.
struct TextMember
{
    QString name;
    quint32 tag;
    std::function<QString(const QString &text)> throughXml;
    std::function<QString(const QString &text)> throughRecord;
    std::function<QString(const QString &text)> throughSnapshot;
    std::function<QString(const QByteArray &record)> fromRecord; ///< read while validating; null if it is not set
};

template <class Object, class Getter>
TextMember textMember(quint32 tag, const char *name, const Accessors<Object, QString, Getter> &member)
{
    const auto with = [=](const QString &text) {
        auto object = withoutValidation<Object>(); // the other members are not set
        (object.*member.set)(text);
        return object;
    };
    return {Object::GetStaticObjectName() + QLatin1Char('.') + QLatin1String(name),
            tag,
            [=](const QString &text) {
                Object read;
                readXml(read, xmlOf(with(text)));
                return (read.*member.get)();
            },
            [=](const QString &text) {
                Object read;
                readRecord(read, recordOf(with(text)));
                return (read.*member.get)();
            },
            [=](const QString &text) {
                Object read;
                readSnapshot(read, snapshotOf(with(text)) + '\0'); // a byte for the switch, which always reads one
                return (read.*member.get)();
            },
            [=](const QByteArray &record) {
                Object read;
                readRecord(read, record);
                return (read.*member.isSet)() ? (read.*member.get)() : QString();
            }};
}

/// A text member has the same tag in every class.
quint32 tagOf(const QByteArray &member)
{
    static const QMap<QByteArray, quint32> tags{
        {"id", 0x2B262DC9}, {"name", 0xCB4CF645}, {"text", 0xA323E10D}, {"value", 0xCEFF51BA}};
    if (!tags.contains(member))
        qFatal("no tag is stated for a text member with the name %s", member.constData());
    return tags.value(member);
}

/// Collects the text members of a class.
struct Collector
{
    template <class Object>
    void operator()(const Members::Value<Object, QString> &member)
    {
        all += textMember(tagOf(member.name), member.name,
                          accessors(member.get, member.set, member.isSet, member.reset, member.getDefault));
    }
    template <class Other>
    void operator()(const Other &)
    {
    }

    QVector<TextMember> all;
};

/// The text members of everything that a ValueItem may contain.
const QVector<TextMember> &textMembers()
{
    static const QVector<TextMember> members = [] {
        Collector collector;
        const auto collect = [&](auto tag) { Members::forEach<typename decltype(tag)::Class>(collector); };
        Kinds::forEach(collect);
        collect(ClassTag<SelectionItem>());
        collect(ClassTag<StringItem>());
        return collector.all;
    }();
    return members;
}

} // namespace

/// Texts of any content are read back as they were written.
class TextMembersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oddTextsHaveTheseBytes_data();
    void oddTextsHaveTheseBytes();
    void oddTextsSurviveInEveryMember_data() { oddTextsHaveTheseBytes_data(); }
    void oddTextsSurviveInEveryMember();
    void escapedCharactersAreReadBackInEveryMember();
    void aNullTextInARecordComesBackEmptyAndNotNullInEveryMember();
    void aNullTextInASnapshotStaysNullInEveryMember();
    void longTextsSurvive();
    void theseAreTheMembers();
};

void TextMembersTest::oddTextsHaveTheseBytes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("utf8");
    QTest::addColumn<QByteArray>("utf16");
    QTest::addColumn<bool>("inXml");

    const auto row = [](const char *name, const QString &text, const char *utf8, const char *utf16, bool inXml = true) {
        QTest::newRow(name) << text << bytes(utf8) << bytes(utf16) << inXml;
    };
    row("empty", QStringLiteral(""), "", "");
    row("NUL in the middle", QString(QStringLiteral("a") + QChar(0) + QLatin1Char('b')), "61 00 62",
        "00 61 00 00 00 62", false);
    row("NUL at the start", QString(QChar(0) + QStringLiteral("a")), "00 61", "00 00 00 61", false);
    row("NUL at the end", QString(QStringLiteral("a") + QChar(0)), "61 00", "00 61 00 00", false);
    row("NUL alone", QString(QChar(0)), "00", "00 00", false);
    row("byte order mark at the start", QStringLiteral("\uFEFFa"), "EF BB BF 61", "FE FF 00 61");
    row("byte order mark at the end", QStringLiteral("a\uFEFF"), "61 EF BB BF", "00 61 FE FF");
    row("byte order mark alone", QStringLiteral("\uFEFF"), "EF BB BF", "FE FF");
    row("two byte order marks", QStringLiteral("\uFEFF\uFEFFa"), "EF BB BF EF BB BF 61", "FE FF FE FF 00 61");
    row("swapped byte order mark", QStringLiteral("\uFFFEa"), "EF BF BE 61", "FF FE 00 61", false);
    row("two bytes", QStringLiteral("\u00E4"), "C3 A4", "00 E4");
    row("three bytes", QStringLiteral("\u20AC"), "E2 82 AC", "20 AC");
    row("four bytes", QStringLiteral("\U0001F4E1x"), "F0 9F 93 A1 78", "D8 3D DC E1 00 78");
    row("the last one", QStringLiteral("\U0010FFFD"), "F4 8F BF BD", "DB FF DF FD");
    row("combined", QStringLiteral("a\u0308"), "61 CC 88", "00 61 03 08"); // stays apart
    row("replacement", QStringLiteral("\uFFFD"), "EF BF BD", "FF FD");
}

void TextMembersTest::theseAreTheMembers()
{
    QStringList names;
    for (const TextMember &member : textMembers())
        names += member.name;
    for (const char *name :
         {"ValueBoolean.id", "ValueFloat.id", "ValueInt.id", "ValueInt64.id", "ValueNumericFloat.id",
          "ValueNumericInt.id", "ValueNumericInt64.id", "ValueSelection.id", "ValueSelection.text", "ValueString.id",
          "ValueString.value", "ValueStringList.id", "ValueStringList.value", "SelectionItem.name", "StringItem.value"})
        QVERIFY2(names.removeOne(QLatin1String(name)), name);
}

void TextMembersTest::oddTextsHaveTheseBytes()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, utf8);
    QFETCH(QByteArray, utf16);
    StringItem item;
    item.Setvalue(text);
    const QByteArray record = recordWithText(0xCEFF51BA, utf8);
    QByteArray size;
    QDataStream(&size, QIODevice::WriteOnly) << qint32(utf16.size());
    const QByteArray snapshot = '\1' + size + utf16;
    hasRecord(item, record.toHex().constData());
    hasSnapshot(item, snapshot.toHex().constData());
    StringItem fromRecord;
    readRecord(fromRecord, record);
    StringItem fromSnapshot;
    readSnapshot(fromSnapshot, snapshot);
    for (const StringItem *read : {&fromRecord, &fromSnapshot}) {
        QCOMPARE(read->Getvalue(), text);
        QCOMPARE(read->Getvalue().size(), text.size());
        QVERIFY(!read->Getvalue().isNull());
    }
}

void TextMembersTest::oddTextsSurviveInEveryMember()
{
    QFETCH(QString, text);
    QFETCH(bool, inXml);
    for (const TextMember &member : textMembers()) {
        QVERIFY2(member.throughRecord(text) == text, qPrintable(member.name));
        QVERIFY2(!member.throughRecord(text).isNull(), qPrintable(member.name));
        QVERIFY2(member.throughSnapshot(text) == text, qPrintable(member.name));
        QVERIFY2(!inXml || member.throughXml(text) == text, qPrintable(member.name));
    }
}

void TextMembersTest::escapedCharactersAreReadBackInEveryMember()
{
    for (const QString &text : {QStringLiteral("<a b=\"c\">&amp;'</a>"), QStringLiteral(" \t\n x \r"),
                                QStringLiteral("]]>"), QStringLiteral("%1 %2 %L1"), QStringLiteral("  ")}) {
        for (const TextMember &member : textMembers())
            QVERIFY2(member.throughXml(text) == text, qPrintable(member.name));
    }
}

void TextMembersTest::aNullTextInARecordComesBackEmptyAndNotNullInEveryMember()
{
    for (const TextMember &member : textMembers()) {
        for (const QByteArray &utf8 : {QByteArray(), QByteArray("")}) {
            const QString read = member.fromRecord(recordWithText(member.tag, utf8));
            QVERIFY2(read.isEmpty(), qPrintable(member.name));
            QVERIFY2(!read.isNull(), qPrintable(member.name));
        }
        QVERIFY2(member.throughRecord(QString()).isEmpty(), qPrintable(member.name));
        QVERIFY2(!member.throughRecord(QString()).isNull(), qPrintable(member.name));
    }
    QCOMPARE(hex(recordWithText(0xCEFF51BA, QByteArray())), hex("00 00 00 0C CE FF 51 BA 00 00 00 04 FF FF FF FF"));
    QCOMPARE(hex(recordWithText(0xCEFF51BA, QByteArray(""))), hex("00 00 00 0C CE FF 51 BA 00 00 00 04 00 00 00 00"));
}

void TextMembersTest::aNullTextInASnapshotStaysNullInEveryMember()
{
    for (const TextMember &member : textMembers())
        QVERIFY2(member.throughSnapshot(QString()).isNull(), qPrintable(member.name));
}

void TextMembersTest::longTextsSurvive()
{
    const QString text = QStringLiteral("\U0001F4E1\u00E4z").repeated(50000);
    for (const TextMember &member : textMembers()) {
        QVERIFY2(member.throughRecord(text) == text, qPrintable(member.name));
        QVERIFY2(member.throughSnapshot(text) == text, qPrintable(member.name));
        QVERIFY2(member.throughXml(text) == text, qPrintable(member.name));
    }
}

TEST_SUITE(TextMembersTest)
#include "tst_TextMembers.moc"
