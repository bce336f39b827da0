// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Encoded.h"
#include "Note.h"

namespace {

/// ` a0='0' a1='1' ...`
QString attributes(int count, const char *value = "")
{
    QString text;
    for (int i = 0; i < count; ++i)
        text += QStringLiteral(" a%1='").arg(i) + QLatin1String(value) + QLatin1Char('\'');
    return text;
}

QString noteWith(const QString &attributesOfTheText)
{
    return QStringLiteral("<Note title='t'><text") + attributesOfTheText + QStringLiteral(">x</text></Note>");
}

/// The error of reading the document, or null; the same for a text and a file, except for the source.
QString errorOf(const QString &xml, Note &note)
{
    QTemporaryFile file;
    if (!file.open() || file.write(xml.toUtf8()) < 0 || !file.seek(0))
        qFatal("cannot write a temporary file");
    Note fromFile;
    const bool isLoaded = fromFile.LoadXml(&file);
    if (note.SetXmlString(xml, true) != isLoaded)
        return QStringLiteral("text and file are not read alike");
    return note.GetErrorString();
}

QString errorOf(const QString &xml)
{
    Note note;
    return errorOf(xml, note);
}

const auto tooMany = QStringLiteral("an element has more than 1024 attributes");
const auto internalSubset =
    QStringLiteral("the document type has an internal subset, by which a small document may become a large one");

} // namespace

/// Content that is refused, because a reader would take hours or gigabytes for it.
class IRGObjectXmlLimitsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aThousandAttributesAreRead();
    void oneAttributeTooManyIsRefusedAtItsPlace();
    void attributesThatBeginAnywhereAreCounted();
    void theContentBeforeTooManyAttributesIsRead();
    void textThatLooksLikeAnAttributeIsNotCounted();
    void manyElementsMayHaveAttributes();
    void attributesAreCountedInAnyEncoding();
    void aFileWithTooManyAttributesIsRefused();
    void documentTypeIsSkipped();
    void aDocumentTypeWithDeclarationsIsRefusedBeforeTheyAreRead();
    void anEntityThatADocumentTypeElsewhereMayDeclareIsRefused();
    void errorBeforeALimitIsReported();
    void aQuoteInACommentHidesNothing();
};

void IRGObjectXmlLimitsTest::aThousandAttributesAreRead()
{
    Note note;
    QCOMPARE(errorOf(noteWith(attributes(1024)), note), QString());
    QCOMPARE(note.text, QStringLiteral("x"));
}

void IRGObjectXmlLimitsTest::oneAttributeTooManyIsRefusedAtItsPlace()
{
    // "<Note title='t'>" takes 16 columns, "<text" 5, the attributes 10 * 6 + 90 * 7 + 900 * 8 + 24 * 9 = 8106, and "
    // a1024" 6: the reader receives nothing from the '=' on, and is at the last character that it has received.
    QCOMPARE(errorOf(noteWith(attributes(1025))), QStringLiteral("XML text:1:8133: ") + tooMany);
    QCOMPARE(errorOf(QStringLiteral("<!-- -->\n\n") + noteWith(attributes(1025))),
             QStringLiteral("XML text:3:8133: ") + tooMany);
}

void IRGObjectXmlLimitsTest::attributesThatBeginAnywhereAreCounted()
{
    // Documents are checked in pieces: the tag begins at every position of one.
    const QString enough = noteWith(attributes(1024));
    const QString tooManyOfThem = noteWith(attributes(1025));
    for (int before = 0; before < 4200; before += 41) {
        const QString comment = QStringLiteral("<!--") + QString(before, QLatin1Char(' ')) + QStringLiteral("-->");
        Note note;
        QVERIFY2(!note.SetXmlString(comment + tooManyOfThem, true), qPrintable(QString::number(before)));
        QVERIFY(note.GetErrorString().endsWith(tooMany));
        QVERIFY(note.SetXmlString(comment + enough, true));
    }
}

void IRGObjectXmlLimitsTest::theContentBeforeTooManyAttributesIsRead()
{
    Note note;
    QVERIFY(
        !errorOf(QStringLiteral("<Note title='t'><text>x</text><y") + attributes(2000) + QStringLiteral("/></Note>"),
                 note)
             .isNull());
    QCOMPARE(note.title, QStringLiteral("t"));
    QCOMPARE(note.text, QStringLiteral("x"));
}

void IRGObjectXmlLimitsTest::textThatLooksLikeAnAttributeIsNotCounted()
{
    const QString equalSigns(5000, QLatin1Char('='));
    QCOMPARE(errorOf(QStringLiteral("<Note title='") + equalSigns + QStringLiteral("\">'><text>x</text></Note>")),
             QString());
    QCOMPARE(errorOf(QStringLiteral("<Note title=\"") + equalSigns + QStringLiteral("'>\"><text>x</text></Note>")),
             QString());
    QCOMPARE(errorOf(QStringLiteral("<Note><text>") + equalSigns + QStringLiteral("</text></Note>")), QString());
    QCOMPARE(errorOf(QStringLiteral("<Note><!--") + equalSigns + QStringLiteral("--><text>x</text></Note>")),
             QString());
    QCOMPARE(errorOf(QStringLiteral("<Note><?p ") + equalSigns + QStringLiteral("?><text>x</text></Note>")), QString());
    QCOMPARE(errorOf(QStringLiteral("<Note><text><![CDATA[") + equalSigns + QStringLiteral("]]></text></Note>")),
             QString());
    QCOMPARE(errorOf(QStringLiteral("<Note></Note") + QString(5000, QLatin1Char(' ')) + QStringLiteral("><!--")
                     + equalSigns + QStringLiteral("-->")),
             QString());
}

void IRGObjectXmlLimitsTest::manyElementsMayHaveAttributes()
{
    QString elements;
    for (int i = 0; i < 6; ++i)
        elements += QStringLiteral("<y") + attributes(1000, "<>=\"").replace(QLatin1Char('<'), QLatin1String("&lt;"))
            + QStringLiteral("/>");
    QCOMPARE(errorOf(QStringLiteral("<Note>") + elements + QStringLiteral("<text>x</text></Note>")), QString());
}

void IRGObjectXmlLimitsTest::attributesAreCountedInAnyEncoding()
{
    for (const char *encoding : {"UTF-8", "UTF-16LE", "UTF-16BE", "ISO-8859-1"}) {
        for (const int count : {1024, 1025}) {
            QTemporaryFile file;
            QVERIFY(file.open());
            file.write(encoded(encoding,
                               QStringLiteral("<?xml version='1.0' encoding='") + QLatin1String(encoding)
                                   + QStringLiteral("'?>") + noteWith(attributes(count))));
            file.seek(0);
            Note note;
            QCOMPARE(note.LoadXml(&file), count == 1024);
            QCOMPARE(note.GetErrorString().endsWith(tooMany), count == 1025);
        }
    }
}

void IRGObjectXmlLimitsTest::aFileWithTooManyAttributesIsRefused()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(noteWith(attributes(1025)).toUtf8());
    file.close();
    Note note;
    QVERIFY(!note.LoadXml(file.fileName()));
    QCOMPARE(note.GetErrorString(), file.fileName() + QStringLiteral(":1:8133: ") + tooMany);
}

void IRGObjectXmlLimitsTest::documentTypeIsSkipped()
{
    QCOMPARE(errorOf(QStringLiteral("<!DOCTYPE Note><Note/>")), QString());
    QCOMPARE(errorOf(QStringLiteral("<!DOCTYPE Note SYSTEM 'note.dtd'><Note/>")), QString());
}

void IRGObjectXmlLimitsTest::aDocumentTypeWithDeclarationsIsRefusedBeforeTheyAreRead()
{
    QCOMPARE(errorOf(QStringLiteral("<!DOCTYPE Note [<!ENTITY e 'x'>]><Note><text>&e;</text></Note>")),
             QStringLiteral("XML text:1:15: ") + internalSubset);
    QCOMPARE(
        errorOf(QStringLiteral("<!DOCTYPE Note\nSYSTEM 'a[1].dtd' [\n<!ATTLIST Note title CDATA 'x'>\n]>\n<Note/>")),
        QStringLiteral("XML text:2:18: ") + internalSubset);
    // A reader would be busy with them for minutes.
    QString declarations;
    for (int i = 0; i < 100000; ++i)
        declarations += QStringLiteral("<!ATTLIST a b%1 ID ''>").arg(i);
    QCOMPARE(errorOf(QStringLiteral("<!DOCTYPE Note [") + declarations + QStringLiteral("]><Note/>")),
             QStringLiteral("XML text:1:15: ") + internalSubset);
}

void IRGObjectXmlLimitsTest::anEntityThatADocumentTypeElsewhereMayDeclareIsRefused()
{
    Note note;
    QCOMPARE(errorOf(QStringLiteral("<!DOCTYPE Note SYSTEM 'x'><Note title='t'><text>a&e;b</text></Note>"), note),
             QStringLiteral("XML text:1:52: Entity 'e' not declared."));
    QCOMPARE(note.title, QStringLiteral("t"));
    QCOMPARE(errorOf(QStringLiteral("<!DOCTYPE Note SYSTEM 'x'><Note title='a&e;b'/>")),
             QStringLiteral("XML text:1:43: Entity 'e' not declared."));
    QCOMPARE(errorOf(QStringLiteral("<Note title='a&e;b'/>")),
             QStringLiteral("XML text:1:17: Entity 'e' not declared."));
}

void IRGObjectXmlLimitsTest::errorBeforeALimitIsReported()
{
    QCOMPARE(errorOf(QStringLiteral("<Note><text></Note><y") + attributes(1025) + QStringLiteral("/>")),
             QStringLiteral("XML text:1:19: Opening and ending tag mismatch."));
    QCOMPARE(errorOf(QStringLiteral("<Other><y") + attributes(1025) + QStringLiteral("/></Other>")),
             QStringLiteral("XML text:1:7: the root element is 'Other', not 'Note'"));
}

void IRGObjectXmlLimitsTest::aQuoteInACommentHidesNothing()
{
    QCOMPARE(errorOf(QStringLiteral("<!-- <a \" ") + QString(5000, QLatin1Char(' ')) + QStringLiteral("-->")
                     + noteWith(attributes(1025))),
             QStringLiteral("XML text:1:13146: ") + tooMany); // 5,013 columns further than without it
    QCOMPARE(errorOf(QStringLiteral("<!-- <a \" ") + QString(5000, QLatin1Char(' ')) + QStringLiteral("-->")
                     + noteWith(attributes(1024))),
             QString());
}

TEST_SUITE(IRGObjectXmlLimitsTest)
#include "tst_IRGObjectXmlLimits.moc"
