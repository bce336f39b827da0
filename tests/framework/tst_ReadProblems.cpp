// SPDX-License-Identifier: MIT
#include <stdexcept>

#include <QTemporaryDir>
#include <QtTest>

#include <jobxml/QtTest.h>
#include <jobxml/TunerProperties.h>

#include "Encodings.h"
#include "HeapPeak.h"
#include "Skip.h"

using namespace JobXml;

namespace {

/// "LINE:COLUMN @OFFSET PATH MEMBER: MESSAGE" for each problem; what there is not is left out.
QStringList texts(const QVector<Problem> &problems)
{
    QStringList texts;
    for (const Problem &problem : problems) {
        QStringList parts;
        if (problem.line > 0)
            parts += QStringLiteral("%1:%2").arg(problem.line).arg(problem.column);
        if (problem.offset >= 0)
            parts += QStringLiteral("@%1").arg(problem.offset);
        if (!problem.path.isEmpty())
            parts += problem.path.join(QStringLiteral(" / "));
        if (!problem.member.isNull())
            parts += problem.member;
        texts += parts.join(QLatin1Char(' ')) + QStringLiteral(": ") + problem.message;
    }
    return texts;
}

QStringList problemsOf(const QString &xml, const ReadOptions &options = {})
{
    TunerProperties document;
    QVector<Problem> problems;
    const bool isGood = document.SetXmlString(xml, problems, options);
    return isGood == problems.isEmpty() ? texts(problems) : QStringList{QStringLiteral("the result is wrong")};
}

const QString good = QStringLiteral("<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\">\n"
                                    " <Component type=\"t\" name=\"c\" optional=\"true\">\n"
                                    "  <Node id=\"n\"><ValueItem><ValueBoolean id=\"v\" "
                                    "value=\"true\"/></ValueItem></Node>\n"
                                    " </Component>\n"
                                    "</TunerProperties>\n");

QString emptyBoolean(const char *member, const char *object)
{
    return QStringLiteral("Please set a value or a default for the boolean '%1' in '%2'.")
        .arg(QLatin1String(member), QLatin1String(object));
}

/// A document of a program that adds a rule of its own.
class Strict : public TunerProperties
{
protected:
    void ProcessXmlStartElement(QXmlStreamReader &reader) override
    {
        if (reader.name() == QLatin1String("HRPANSupported"))
            throw InvalidXmlException(QStringLiteral("HRPAN is not for us"));
        TunerProperties::ProcessXmlStartElement(reader);
    }
};

/// A document that stops validating when it has been read.
class Trusting : public TunerProperties
{
public:
    void ProcessXml(QXmlStreamReader &reader) override
    {
        TunerProperties::ProcessXml(reader);
        SetValidate(false);
    }
};

/// A document that reads another one.
class Including : public TunerProperties
{
protected:
    void ProcessXmlStartElement(QXmlStreamReader &) override
    {
        TunerProperties included;
        // A record with a negative length.
        static_cast<void>(included.SetBinaryRepresentation(QByteArray::fromHex("C10CBB5F000000082B262DC9FFFFFFFF")));
    }
};

} // namespace

class ReadProblemsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aGoodDocumentHasNoProblems();
    void everyRefusedValueHasItsPlaceAndPath();
    void aRefusedTextIsTheValueOfItsProblem();
    void theObjectIsThatOfReadingWithoutValidation();
    void theStrictReaderThrowsTheFirstProblemAtTheSamePlace();
    void linesEndInEveryWayAndColumnsAreUtf16();
    void problemsInOneLongLineHaveTheirColumns();
    void documentsOfTheReaderHaveThePlaceOfTheTag();
    void aDocumentThatIsNotWellFormedEndsWithItsFailure_data();
    void aDocumentThatIsNotWellFormedEndsWithItsFailure();
    void theValidateFlagNeitherMattersNorChanges();
    void theValidateFlagThatADerivedClassChangesIsRestored();
    void onlyUnreadableDocumentsAreProblemsWithoutValidation();
    void tooLargeDocumentsAreRefused();
    void filesThatCannotBeReadAreProblems();
    void anExceptionOfADerivedClassIsOneOfTheProblems();
    void exceptionsOfTheVisitorPassThrough_data();
    void exceptionsOfTheVisitorPassThrough();
    void functionsAndLambdasAreVisitors();
    void bracesAreTheUsualLimits();
    void problemsShareALongLabel();
    void aDocumentThatIsReadMeanwhileKeepsItsSource();

    void refusedRecordsHaveTheirOffsets();
    void aRefusedNameInARecordIsTheValueOfItsProblem();
    void aRecordWithAWrongLengthEndsTheReading();
    void compressedRepresentationsCanBeRefused();
    void representationsAreLimitedInSize();
};

void ReadProblemsTest::aGoodDocumentHasNoProblems()
{
    TunerProperties document;
    QVector<Problem> problems(3);
    QVERIFY(document.SetXmlString(good, problems));
    QVERIFY(problems.isEmpty());
    QVERIFY(document.GetErrorString().isNull());
    TunerProperties expected;
    QVERIFY(expected.SetXmlString(good, true));
    QCOMPARE(document, expected);
}

void ReadProblemsTest::everyRefusedValueHasItsPlaceAndPath()
{
    const QString xml = QStringLiteral(
        "<TunerProperties Version=\"1.1\" type=\"X\" hwProcessing=''\n"
        "                 baseresource=\"b\">\n"
        " <StartupModes><StartupMode>Scan</StartupMode><StartupMode>Jump</StartupMode></StartupModes>\n"
        " <HRPANSupported></HRPANSupported>\n"
        " <Extra><Component type=\"t\" name=\"inside\" optional=\"0\"><Node id=\"n\"/></Component></Extra>\n"
        " <Component type=\"t\" name=\"c\" optional=\"\">\n"
        "  <Node id=\"n\"><ValueItem><ValueBoolean id=\"v\"><value/></ValueBoolean></ValueItem></Node>\n"
        "  <Node/>\n"
        " </Component>\n"
        "</TunerProperties>\n");
    QCOMPARE(
        problemsOf(xml),
        (QStringList{
            QStringLiteral("1:32 @31 type: enum is not valid (classname=TunerProperties,membername=m_type)"),
            QStringLiteral("1:41 @40 hwProcessing: ") + emptyBoolean("hwProcessing", "TunerProperties"),
            QStringLiteral("3:47 @137 StartupModes StartupMode: StartupModes: Tried to append not completely defined "
                           "or invalid item StartupMode."),
            QStringLiteral("4:2 @185 HRPANSupported: ") + emptyBoolean("HRPANSupported", "TunerProperties"),
            QStringLiteral("5:2 @220: Unknown Tag 'Extra' in 'TunerProperties'."),
            QStringLiteral("5:56 @274 Component \"inside\" Node: Component: Tried to append not completely defined or "
                           "invalid item Node."),
            QStringLiteral("6:31 @339 Component \"c\" optional: ") + emptyBoolean("optional", "Component"),
            QStringLiteral("7:48 @399 Component \"c\" / Node \"n\" / ValueItem 1 / ValueBoolean \"v\" value: ")
                + emptyBoolean("value", "ValueBoolean"),
            QStringLiteral("8:3 @444 Component \"c\" Node: Component: Tried to append not completely defined or "
                           "invalid item Node."),
            // The same objects, as the check finds them:
            QStringLiteral("StartupModes StartupMode: StartupModes: Please set StartupMode properly."),
            QStringLiteral("Component \"inside\" / Node \"n\" ValueItem: Node: Please set ValueItem properly."),
            QStringLiteral("Component \"c\" / Node 2 ValueItem: Node: Please set ValueItem properly."),
            QStringLiteral("Component \"c\" / Node 2 id: Node: Please set id properly."),
            QStringLiteral("type: TunerProperties: Please set type properly."),
        }));
}

namespace {

/// "MEMBER=VALUE" for each problem that has a value.
QStringList valuesOf(const QVector<Problem> &problems)
{
    QStringList values;
    for (const Problem &problem : problems) {
        if (!problem.value.isNull())
            values.append(problem.member + QLatin1Char('=') + problem.value);
    }
    return values;
}

} // namespace

void ReadProblemsTest::aRefusedTextIsTheValueOfItsProblem()
{
    const QString xml =
        QStringLiteral("<TunerProperties Version=\"1.1\" type=\"s&amp;p\" hwProcessing=\"\">"
                       "<StartupModes><StartupMode>Scna</StartupMode></StartupModes><x:Extra xmlns:x=\"y\"/>"
                       "<type><!-- --> SCP</type><Component/></TunerProperties>");
    // What the check finds has no value, and an incomplete item has none either.
    const QStringList expected = {QStringLiteral("type=s&p"), QStringLiteral("hwProcessing="),
                                  QStringLiteral("StartupMode=Scna"), QStringLiteral("=Extra"),
                                  QStringLiteral("type= SCP")};
    TunerProperties document;
    QVector<Problem> problems;
    QVERIFY(!document.SetXmlString(xml, problems));
    QCOMPARE(valuesOf(problems), expected);
    // A document of the reader.
    QVERIFY(!document.SetXmlDocument(QByteArray("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>") + xml.toLatin1(),
                                     QStringLiteral("d"), problems));
    QCOMPARE(valuesOf(problems), expected);
}

void ReadProblemsTest::aRefusedNameInARecordIsTheValueOfItsProblem()
{
    const QByteArray bytes = QByteArray::fromHex("C10CBB5F 00000037"
                                                 "A1F0EE2D 00000007 00000003 736370" // type "scp"
                                                 "2A68BEF4 00000020" // the modes
                                                 "627B74CE 00000018 00000002" // two
                                                 "00000008 00000004 53636E61" // "Scna"
                                                 "00000004 00000000"); // ""
    TunerProperties document;
    QVector<Problem> problems;
    QVERIFY(!document.SetBinaryRepresentation(bytes, problems));
    QCOMPARE(
        valuesOf(problems),
        (QStringList{QStringLiteral("type=scp"), QStringLiteral("StartupMode=Scna"), QStringLiteral("StartupMode=")}));
}

void ReadProblemsTest::theObjectIsThatOfReadingWithoutValidation()
{
    const QString xml =
        QStringLiteral("<TunerProperties Version=\"1.1\" type=\"X\"><Extra><MaxFFPDelay>7</MaxFFPDelay></Extra>"
                       "<Component optional=\"\"/></TunerProperties>");
    TunerProperties document;
    QVector<Problem> problems;
    QVERIFY(!document.SetXmlString(xml, problems));
    TunerProperties lenient;
    QVERIFY(lenient.SetXmlString(xml, false));
    QCOMPARE(hex(snapshotOf(document)), hex(snapshotOf(lenient)));
    QCOMPARE(document.GetMaxFFPDelay(), quint64(7));
    QVERIFY(document.GetComponent().at(0).IsoptionalSet());
}

void ReadProblemsTest::theStrictReaderThrowsTheFirstProblemAtTheSamePlace()
{
    const QString xml =
        QStringLiteral("<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\">\n"
                       "  <Component type=\"t\" name=\"c\" optional=\"1\">\n"
                       "\t<Node id=\"n\"><ValueItem>\u00E9<ValueBoolean id=\"v\" value=\"\"/></ValueItem></Node>\n"
                       "  </Component><More/></TunerProperties>");
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("document.xml")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write(xml.toUtf8()) > 0);
    file.close();

    TunerProperties document;
    QVector<Problem> problems;
    QVERIFY(!document.SetXmlString(xml, problems));
    QCOMPARE(problems.size(), 2);
    const Problem &first = problems.first();
    QCOMPARE(first.line, 3);
    QCOMPARE(first.column, 48);
    const auto check = [&](const ReportException &e, const QString &source) {
        QCOMPARE(e.GetMessageText(), emptyBoolean("value", "ValueBoolean"));
        QCOMPARE(first.message, e.GetMessageText());
        const REPORTGENERATOR::ErrorLocation where = e.GetLocation();
        QCOMPARE(where.source, source);
        QCOMPARE(where.line, first.line);
        QCOMPARE(where.column, first.column);
        QCOMPARE(where.offset, first.offset);
        QCOMPARE(where.offset, qint64(xml.toUtf8().indexOf("value=")));
        QCOMPARE(where.path, first.path);
        QCOMPARE(where.path.join(QLatin1Char('/')),
                 QStringLiteral("Component \"c\"/Node \"n\"/ValueItem 1/ValueBoolean \"v\""));
    };
    int thrown = 0;
    try {
        TunerProperties strict;
        static_cast<void>(strict.SetXmlString(xml, true));
    } catch (const InvalidXmlException &e) {
        ++thrown;
        check(e, QStringLiteral("XML text"));
    }
    try {
        TunerProperties strict;
        static_cast<void>(strict.LoadXml(file.fileName()));
    } catch (const InvalidXmlException &e) {
        ++thrown;
        check(e, file.fileName());
    }
    QCOMPARE(thrown, 2);
}

void ReadProblemsTest::linesEndInEveryWayAndColumnsAreUtf16()
{
    // U+1F600 takes two units and four bytes, U+00E9 one and two.
    const QString xml = QStringLiteral("<TunerProperties Version=\"1.1\" name=\"\U0001F600\u00E9\" hwProcessing=\"\" "
                                       "type=\"SCP\"\r\n baseresource=\"b\">\r<A/>\n<B/>\r\r\n\n<C/>")
        + good.mid(good.indexOf(QLatin1String("\n <Component")) + 1);
    QCOMPARE(problemsOf(QChar(QChar::ByteOrderMark) + xml),
             (QStringList{
                 QStringLiteral("1:43 @48 hwProcessing: ") + emptyBoolean("hwProcessing", "TunerProperties"),
                 QStringLiteral("3:1 @95: Unknown Tag 'A' in 'TunerProperties'."),
                 QStringLiteral("4:1 @100: Unknown Tag 'B' in 'TunerProperties'."),
                 QStringLiteral("7:1 @108: Unknown Tag 'C' in 'TunerProperties'."),
             }));
}

void ReadProblemsTest::problemsInOneLongLineHaveTheirColumns()
{
    QString xml = good.left(good.indexOf(QLatin1String("\n <Component")));
    const int begin = xml.size();
    for (int i = 0; i < 1000; ++i)
        xml += QStringLiteral("<A/>\u00E9");
    xml += good.mid(good.indexOf(QLatin1String("<Component")));
    TunerProperties document;
    QVector<Problem> problems;
    QVERIFY(!document.SetXmlString(xml, problems));
    QCOMPARE(problems.size(), 1000);
    for (int i = 0; i < problems.size(); ++i) {
        QCOMPARE(problems.at(i).line, 1);
        QCOMPARE(problems.at(i).column, begin + 5 * i + 1);
    }
}

void ReadProblemsTest::documentsOfTheReaderHaveThePlaceOfTheTag()
{
    const QString xml = QStringLiteral("<!DOCTYPE TunerProperties>\n<TunerProperties Version=\"1.1\"\n type=\"SCP\" "
                                       "hwProcessing=\"\" baseresource=\"b\">\n  <Extra/>\n")
        + good.mid(good.indexOf(QLatin1String(" <Component")));
    QCOMPARE(problemsOf(xml),
             (QStringList{
                 QStringLiteral("3:45 hwProcessing: ") + emptyBoolean("hwProcessing", "TunerProperties"),
                 QStringLiteral("4:10: Unknown Tag 'Extra' in 'TunerProperties'."),
             }));
}

void ReadProblemsTest::aDocumentThatIsNotWellFormedEndsWithItsFailure_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QStringList>("problems");
    const auto row = [](const char *name, const QString &xml, const QStringList &problems) {
        QTest::newRow(name) << xml << problems;
    };
    row("nothing", QString(), {QStringLiteral("1:1: Premature end of document.")});
    row("another root", QStringLiteral("<Node/>"),
        {QStringLiteral("1:7: the root element is 'Node', not 'TunerProperties'")});
    row("problems before", QStringLiteral("<TunerProperties Version=\"1.1\">\n <A/>\n <B></C>\n</TunerProperties>"),
        {QStringLiteral("2:5: Unknown Tag 'A' in 'TunerProperties'."),
         QStringLiteral("3:4: Unknown Tag 'B' in 'TunerProperties'."),
         QStringLiteral("3:8: Opening and ending tag mismatch.")});
}

void ReadProblemsTest::aDocumentThatIsNotWellFormedEndsWithItsFailure()
{
    QFETCH(QString, xml);
    QFETCH(QStringList, problems);
    QCOMPARE(problemsOf(xml), problems);
    TunerProperties document;
    QVector<Problem> found;
    QVERIFY(!document.SetXmlString(xml, found));
    QVERIFY(document.GetErrorString().startsWith(QStringLiteral("XML text:")));
    QVERIFY(document.GetErrorString().endsWith(found.last().message));
    QCOMPARE(document.GetErrorLocation().line, found.last().line);
    QCOMPARE(document.GetErrorLocation().column, found.last().column);
    QCOMPARE(document.GetErrorLocation().source, QStringLiteral("XML text"));
}

void ReadProblemsTest::theValidateFlagNeitherMattersNorChanges()
{
    const QString xml = QStringLiteral("<TunerProperties Version=\"1.1\"><Component/></TunerProperties>");
    for (const bool validate : {true, false}) {
        TunerProperties document;
        document.SetValidate(validate);
        QVector<Problem> problems;
        QVERIFY(!document.SetXmlString(xml, problems));
        QCOMPARE(
            texts(problems).first(),
            QStringLiteral("1:32 @31 Component: TunerProperties: Tried to append not completely defined or invalid "
                           "item Component."));
        QCOMPARE(document.GetValidate(), validate);
        QCOMPARE(document.GetComponent().at(0).GetValidate(), validate);
    }
}

void ReadProblemsTest::theValidateFlagThatADerivedClassChangesIsRestored()
{
    Trusting document;
    QVector<Problem> problems;
    QVERIFY(document.SetXmlString(good, problems));
    QVERIFY(document.GetValidate());
    QVERIFY(std::as_const(document).GetComponent().at(0).GetValidate());
    QVERIFY(std::as_const(document).GetComponent().at(0).GetNode().at(0).GetValidate());
}

void ReadProblemsTest::onlyUnreadableDocumentsAreProblemsWithoutValidation()
{
    ReadOptions options;
    options.setValidate(false);
    QCOMPARE(problemsOf(QStringLiteral("<TunerProperties Version=\"1.1\" type=\"X\"><A/></TunerProperties>"), options),
             QStringList());
    QCOMPARE(problemsOf(QStringLiteral("<TunerProperties type=\"X\"><A></TunerProperties>"), options),
             QStringList{QStringLiteral("1:47: Opening and ending tag mismatch.")});
}

void ReadProblemsTest::tooLargeDocumentsAreRefused()
{
    ReadOptions options;
    options.setMaxBytes(good.size() - 1);
    const QString refusal =
        QStringLiteral("the document has more than %1 bytes, the most that are accepted").arg(options.maxBytes());
    TunerProperties document;
    QVector<Problem> problems;
    QVERIFY(!document.SetXmlString(good, problems, options));
    QCOMPARE(texts(problems), QStringList{QStringLiteral(": ") + refusal});
    QCOMPARE(document.GetErrorString(), QStringLiteral("XML text: ") + refusal);
    QVERIFY(!document.AnyData());

    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document.xml"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(good.toUtf8()), qint64(good.size()));
    file.close();
    QVERIFY(!document.LoadXml(path, problems, options));
    QCOMPARE(texts(problems), QStringList{QStringLiteral(": ") + refusal});
    QCOMPARE(document.GetErrorString(), path + QStringLiteral(": ") + refusal);

    options.setMaxBytes(good.size());
    QVERIFY(document.LoadXml(path, problems, options));
    QVERIFY(document.SetXmlString(good, problems, options));
    // A character counts with the bytes of its UTF-8.
    QString wide = good;
    wide.replace(QLatin1String("\"n\""), QStringLiteral("\"\u20AC\""));
    QVERIFY(!document.SetXmlString(wide, problems, options));
}

void ReadProblemsTest::filesThatCannotBeReadAreProblems()
{
    TunerProperties document;
    QVector<Problem> problems;
    QVERIFY(!document.LoadXml(QStringLiteral("/nowhere/document.xml"), problems));
    QCOMPARE(problems.size(), 1);
    QCOMPARE(document.GetErrorString(), QStringLiteral("/nowhere/document.xml: ") + problems.first().message);
    QVERIFY(!document.LoadXml(nullptr, [&](const Problem &problem) { problems.append(problem); }));
    QCOMPARE(problems.last().message, document.GetErrorString());
}

void ReadProblemsTest::anExceptionOfADerivedClassIsOneOfTheProblems()
{
    const QString xml = QStringLiteral("<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\">\n"
                                       " <A/>\n"
                                       " <HRPANSupported>true</HRPANSupported>\n"
                                       " <B/>\n")
        + good.mid(good.indexOf(QLatin1String(" <Component")));
    Strict document;
    QVector<Problem> problems;
    QVERIFY(!document.SetXmlString(xml, problems));
    QCOMPARE(texts(problems),
             (QStringList{
                 QStringLiteral("2:5: Unknown Tag 'A' in 'TunerProperties'."),
                 QStringLiteral("3:17: HRPAN is not for us"),
                 QStringLiteral("4:5: Unknown Tag 'B' in 'TunerProperties'."),
             }));
    QCOMPARE(document.GetComponent().size(), 1);
}

void ReadProblemsTest::exceptionsOfTheVisitorPassThrough_data()
{
    QTest::addColumn<QString>("xml");
    QTest::newRow("a refused value") << QStringLiteral("<TunerProperties Version=\"1.1\"><A/></TunerProperties>");
    QTest::newRow("not well-formed") << QStringLiteral("<TunerProperties");
    QTest::newRow("the check") << QStringLiteral("<TunerProperties/>");
}

void ReadProblemsTest::exceptionsOfTheVisitorPassThrough()
{
    QFETCH(QString, xml);
    TunerProperties document;
    document.SetValidate(false);
    int calls = 0;
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, document.SetXmlString(xml, [&](const Problem &) {
        ++calls;
        throw std::runtime_error("enough");
    }));
    QVERIFY_THROWS_EXCEPTION(RGException, document.SetXmlString(xml, [&](const Problem &) {
        ++calls;
        throw RGException(QStringLiteral("enough"));
    }));
    QCOMPARE(calls, 2);
    QVERIFY(!document.GetValidate());
}

namespace {

int visited = 0;

void visitProblem(const Problem &)
{
    ++visited;
}

} // namespace

void ReadProblemsTest::functionsAndLambdasAreVisitors()
{
    const QString xml = QStringLiteral("<TunerProperties Version=\"1.1\"><A/></TunerProperties>");
    TunerProperties document;
    QVERIFY(!document.SetXmlString(xml, visitProblem));
    const int problems = visited;
    QVERIFY(problems > 0);
    QVERIFY(!document.SetXmlString(xml, [](const Problem &) { ++visited; }));
    QCOMPARE(visited, 2 * problems);
    const ProblemVisitor visitor = visitProblem;
    QVERIFY(!document.SetXmlString(xml, visitor));
    QCOMPARE(visited, 3 * problems);
    const QByteArray damaged = QByteArray::fromHex("C10CBB5F00");
    QVERIFY(!document.SetBinaryRepresentation(damaged, visitProblem));
    QCOMPARE(visited, 3 * problems + 1);
}

void ReadProblemsTest::bracesAreTheUsualLimits()
{
    TunerProperties document;
    const QByteArray records = QByteArray::fromHex("C10CBB5F00000000");
    QVERIFY(document.SetBinaryRepresentation(records, {}));

    QTemporaryFile file;
    QVERIFY(file.open());
    QCOMPARE(file.write(records), qint64(records.size()));
    QVERIFY(file.flush());
    QVERIFY(document.LoadBinary(file.fileName(), {}));
    QVERIFY(file.seek(0));
    QVERIFY(document.LoadBinary(&file, {}));
}

void ReadProblemsTest::problemsShareALongLabel()
{
    if (!Heap::isWatched)
        SKIP("a sanitizer keeps freed memory");
    constexpr int items = 1000;
    constexpr int nameSize = 100000;
    QString xml = QStringLiteral("<TunerProperties Version=\"1.1\"><Component type=\"t\" name=\"%1\">")
                      .arg(QString(nameSize, QLatin1Char('n')));
    for (int i = 0; i < items; ++i)
        xml += QStringLiteral("<Node id=\"i\"><ValueItem><ValueBoolean id=\"v\" value=\"\"/></ValueItem></Node>");
    xml += QStringLiteral("</Component></TunerProperties>");
    TunerProperties document;
    QVector<Problem> problems;
    const HeapPeak peak;
    QVERIFY(!document.SetXmlString(xml, problems));
    QVERIFY(problems.size() > items);
    // A copy for each problem would take 200 MB.
    QVERIFY2(peak.bytes() < 20'000'000, QByteArray::number(peak.bytes()).constData());
}

void ReadProblemsTest::aDocumentThatIsReadMeanwhileKeepsItsSource()
{
    try {
        Including document;
        static_cast<void>(document.SetXmlString(QStringLiteral("<TunerProperties><Include/></TunerProperties>"), true));
        QFAIL("the included document is accepted");
    } catch (const ReportException &e) {
        QCOMPARE(e.GetLocation().source, QStringLiteral("binary data"));
    }
}

// --- Records
// -----------------------------------------------------------------------------------------------------------

void ReadProblemsTest::refusedRecordsHaveTheirOffsets()
{
    TunerProperties source;
    QVERIFY(source.SetXmlString(good, true));
    source.SetValidate(false);
    source.Settype(TunerProperties::type::Invalid);
    source.GetComponent()[0].AppendNode(Node());
    source.GetStartupModes().AppendStartupMode(StartupModes::StartupMode::Scan);
    source.GetStartupModes().AppendStartupMode(StartupModes::StartupMode::Invalid);
    const QByteArray representation = source.GetBinaryRepresentationAsQByteArray();

    const auto offsetOf = [&](const char *hexOfTag) { return representation.indexOf(QByteArray::fromHex(hexOfTag)); };
    const int type = offsetOf("A1F0EE2D");
    // The record of the modes has tag, length, count, and the first entry of 4 + 4 + 4 bytes.
    const int secondMode = offsetOf("627B74CE") + 4 + 4 + 4 + 4 + 4 + 4;
    // The last item: its length, a null id and a list without values.
    const int secondNode = representation.size() - 4 - 12 - 12;
    const QString refusal = QStringLiteral("%1: Tried to append not completely defined or invalid item %2.");
    for (const bool inFile : {false, true}) {
        TunerProperties document;
        QVector<Problem> problems;
        if (inFile) {
            QTemporaryDir folder;
            QFile file(folder.filePath(QStringLiteral("document.tpb")));
            QVERIFY(file.open(QIODevice::WriteOnly));
            QCOMPARE(file.write(representation), qint64(representation.size()));
            file.close();
            QVERIFY(!document.LoadBinary(file.fileName(), problems));
        } else {
            QVERIFY(!document.SetBinaryRepresentation(representation, problems));
        }
        QStringList found = texts(problems);
        QCOMPARE(
            found.mid(0, 3),
            (QStringList{
                QStringLiteral("@%1 type: enum is not valid (classname=TunerProperties,membername=m_type)").arg(type),
                QStringLiteral("@%1 StartupModes StartupMode: ").arg(secondMode)
                    + refusal.arg(QLatin1String("StartupModes"), QLatin1String("StartupMode")),
                QStringLiteral("@%1 Component \"c\" Node: ").arg(secondNode)
                    + refusal.arg(QLatin1String("Component"), QLatin1String("Node")),
            }));
        QCOMPARE(found.mid(3),
                 (QStringList{
                     QStringLiteral("StartupModes StartupMode: StartupModes: Please set StartupMode properly."),
                     QStringLiteral("Component \"c\" / Node 2 ValueItem: Node: Please set ValueItem properly."),
                     QStringLiteral("type: TunerProperties: Please set type properly."),
                 }));
        TunerProperties lenient;
        lenient.SetValidate(false);
        QVERIFY(lenient.SetBinaryRepresentation(representation));
        QCOMPARE(hex(snapshotOf(document)), hex(snapshotOf(lenient)));
    }
}

void ReadProblemsTest::aRecordWithAWrongLengthEndsTheReading()
{
    TunerProperties source;
    QVERIFY(source.SetXmlString(good, true));
    QByteArray representation = source.GetBinaryRepresentationAsQByteArray();
    const int boolean = representation.indexOf(QByteArray::fromHex("E8182C83"));
    QVERIFY(boolean > 0);
    char &lastOfLength = representation.data()[boolean + 7]; // of the ValueBoolean
    ++lastOfLength;
    TunerProperties document;
    QVector<Problem> problems;
    QVERIFY(!document.SetBinaryRepresentation(representation, problems));
    const QString message = QStringLiteral("ValueBoolean::SetBinary(...): Length error occurred during processing of "
                                           "binary representation");
    const int value = boolean + 8 + 4 + 4 + 4 + 1; // after the record of the id, which has one character
    QCOMPARE(
        texts(problems),
        QStringList{QStringLiteral("@%1 Component \"c\" / Node \"n\" / ValueItem 1 / ValueBoolean \"v\": ").arg(value)
                    + message});
    QCOMPARE(problems.first().steps.size(), 4);
    QVERIFY(document.GetErrorString().isNull());
    try {
        TunerProperties strict;
        static_cast<void>(strict.SetBinaryRepresentation(representation));
        QFAIL("the wrong length is accepted");
    } catch (const BinaryParsingException &e) {
        QCOMPARE(e.GetMessageText(), message);
        QCOMPARE(e.GetLocation().offset, qint64(value));
        QCOMPARE(e.GetLocation().path, problems.first().path);
        QCOMPARE(e.GetLocation().source, QStringLiteral("binary data"));
    }
}

void ReadProblemsTest::compressedRepresentationsCanBeRefused()
{
    TunerProperties source;
    QVERIFY(source.SetXmlString(good, true));
    const QByteArray compressed = source.GetCompressedBinaryRepresentationAsQByteArray(-1);
    TunerProperties document;
    QVector<Problem> problems;
    ReadOptions options;
    QVERIFY(document.SetBinaryRepresentation(compressed, problems, options));
    options.setAllowCompressed(false);
    QVERIFY(!document.SetBinaryRepresentation(compressed, problems, options));
    QCOMPARE(
        texts(problems),
        QStringList{QStringLiteral(": the representation is compressed, but only uncompressed ones are accepted")});
}

void ReadProblemsTest::representationsAreLimitedInSize()
{
    TunerProperties source;
    QVERIFY(source.SetXmlString(good, true));
    const QByteArray plain = source.GetBinaryRepresentationAsQByteArray();
    const QByteArray compressed = source.GetCompressedBinaryRepresentationAsQByteArray(-1);
    QVERIFY(compressed.size() < plain.size());
    TunerProperties document;
    QVector<Problem> problems;
    ReadOptions options;
    options.setMaxBytes(plain.size());
    QVERIFY(document.SetBinaryRepresentation(plain, problems, options));
    QVERIFY(document.SetBinaryRepresentation(compressed, problems, options));
    options.setMaxBytes(plain.size() - 1);
    QVERIFY(!document.SetBinaryRepresentation(plain, problems, options));
    QCOMPARE(texts(problems),
             QStringList{QStringLiteral(": the representation takes %1 bytes, but no more than %2 are accepted")
                             .arg(plain.size())
                             .arg(options.maxBytes())});
    QVERIFY(!document.SetBinaryRepresentation(compressed, problems, options));
    QCOMPARE(problems.size(), 1);
}

TEST_SUITE(ReadProblemsTest)
#include "tst_ReadProblems.moc"
