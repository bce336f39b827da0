// SPDX-License-Identifier: MIT
//
// The examples of the library for documents: the manual shows the marked parts, and the tests check their results.

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Document.h>
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Editor.h>
#include <tunerdocuments/Finding.h>
#include <tunerdocuments/Form.h>
#include <tunerdocuments/Format.h>
#include <tunerdocuments/Html.h>
#include <tunerdocuments/Json.h>
#include <tunerdocuments/Lint.h>
#include <tunerdocuments/NewDocument.h>
#include <tunerdocuments/Path.h>
#include <tunerdocuments/Sarif.h>
#include <tunerdocuments/Schema.h>
#include <tunerdocuments/Tree.h>
#include <tunerdocuments/Value.h>

using namespace TunerDocuments;

namespace {

//! [Document]
/// Reads a document in any form and saves it as XML. Returns a null string, or what went wrong.
QString toXml(const QString &from, const QString &to)
{
    try {
        const Document document = Document::load(from); // XML, records, snapshot or JSON
        document.save(to, Form::Xml); // the whole new file, or the old one as it was
        return QString();
    } catch (const DocumentError &error) {
        return error.text(); // "receiver.json:12:7: ..."
    }
}
//! [Document]

//! [Findings]
/// The problems of a document, one per line; at most a hundred of them, and how many there are.
QStringList problemsOf(const QString &path)
{
    Findings findings(100);
    const Document document = Document::load(path, {}, findings.collector());
    findings.describePaths(document.tuner);
    return findings.lines(path); // "receiver.xml:12:7: ..." or "receiver.xml: Component[2]: ..."
}
//! [Findings]

//! [lint]
/// What a reviewer should look at in an XML document, one finding per line, without rounded numbers.
QStringList warningsAbout(const QByteArray &xml, const QString &name)
{
    QStringList lines;
    LintOptions options;
    options.setDisabled({QStringLiteral("lost-decimals")});
    const Document document = Document::fromBytes(xml, name);
    lint(
        document, xml, [&](const Finding &finding) { lines.append(finding.text(name)); }, options);
    return lines; // "receiver.xml:12:44: Component[...]/...: value 50 is above max 40; ... [value-out-of-range]"
}
//! [lint]

//! [Editor]
/// Changes two values of a document in memory. In XML and JSON, everything else keeps its bytes, comments included.
QByteArray withGain(const QByteArray &bytes, const QString &gain)
{
    const QString name = QStringLiteral("receiver.xml"); // in messages
    Editor editor(Document::fromBytes(bytes, name), bytes, name);
    editor.set(QStringLiteral("Component[name=front end]/Node[id=gain]/ValueItem/value"), gain);
    editor.set(QStringLiteral("quantity"), QStringLiteral("2"));
    return editor.toBytes();
}
//! [Editor]

//! [rearranging]
/// Replaces the bandwidths of a document by one.
QByteArray withOneBandwidth(const QByteArray &bytes, const QString &name)
{
    Editor editor(Document::fromBytes(bytes, name), bytes, name);
    editor.remove({QStringLiteral("BandwidthSelection")});
    editor.add(QStringLiteral("BandwidthSelection[Name=Wide]"), "{\"MaxBandwidth\": 20000}");
    return editor.toBytes();
}
//! [rearranging]

//! [newProblems]
/// Removes what fits the pattern, unless the document then has problems that it did not have: these are the result.
QStringList removeFrom(QByteArray &bytes, const QString &name, const QString &pattern)
{
    Editor editor(Document::fromBytes(bytes, name), bytes, name);
    editor.remove({pattern});
    const Findings problems = editor.newProblems(100); // as newProblems() of the document before and after
    if (problems.isEmpty())
        bytes = editor.toBytes();
    return problems.lines(name);
}
//! [newProblems]

//! [formatted]
/// Whether a document has the layout in which the library writes documents. Throws DocumentError if it cannot be read.
bool hasCanonicalLayout(const QByteArray &bytes, const QString &name)
{
    return formatted(bytes, name) == bytes;
}
//! [formatted]

//! [assignmentIn]
/// Makes changes that a user has typed: "Component[name=front end]/optional=true".
void change(Editor &editor, const QStringList &lines)
{
    for (const QString &line : lines) {
        const std::optional<Paths::Assignment> assignment = Paths::assignmentIn(line);
        if (!assignment)
            throw PathFailure(QStringLiteral("'%1' has no value").arg(line));
        editor.set(assignment->path, assignment->value);
    }
}
//! [assignmentIn]

//! [onOneLine]
/// A table of what a pattern matches: a path and its value on each line, with a tab in between; objects are JSON.
QByteArray tableOf(const Document &document, const QString &pattern)
{
    QByteArray table;
    for (const Paths::Target &target : Paths::findAll(document.tuner, Path::parse(pattern))) {
        const QByteArray value = target.holdsObjects()
            ? toJson(target, QStringLiteral("table"), JsonLayout::OneLine)
            : TypedValue::onOneLine(TypedValue::print(target.member.GetValue())).toUtf8();
        table += TypedValue::onOneLine(target.path).toUtf8() + '\t' + value + '\n';
    }
    return table;
}
//! [onOneLine]

QString example(const char *name)
{
    return QStringLiteral(EXAMPLES_DIR "/") + QLatin1String(name);
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s", qPrintable(file.errorString()));
    return file.readAll();
}

//! [Writer]
/// Writes the problems of documents and the warnings about them in SARIF, piece by piece.
void report(const QStringList &paths, QIODevice &output)
{
    Sarif::Writer writer(QStringLiteral("checker"), QStringLiteral("2.4"),
                         [&](const QByteArray &piece) { output.write(piece); });
    for (const QString &path : paths) {
        Sarif::Part part(QFile::encodeName(path));
        try {
            Findings findings(100);
            const QByteArray bytes = bytesOf(path);
            const Document document = Document::fromBytes(bytes, path, {}, findings.collector());
            findings.describePaths(document.tuner);
            lint(document, bytes, findings);
            part.add(findings);
        } catch (const InvalidContent &content) { // JSON that is not a document
            part.add(content.problems());
        } catch (const DocumentError &error) {
            part.addFailure(error.text());
        }
        writer.add(part);
    }
    writer.finish();
}
//! [Writer]

} // namespace

class DocumentSnippets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anyFormIsConvertedToXml();
    void anErrorHasItsTextAndTheNameOfTheDocument();
    void contentThatTheFormCannotHoldIsAnErrorOfItsOwn();
    void valuesAreChangedInPlace();
    void itemsAreReplacedInPlace();
    void changesThatCauseProblemsAreRefused();
    void typedAssignmentsAreMade();
    void layoutIsThatOfTheLibrary();
    void problemsHavePathsOrPlaces();
    void formIsThatOfTheContentOrTheName();
    void memberIsFoundAndChangedByItsPath();
    void textsBecomeValuesOfAMember();
    void differencesAreListed();
    void partOfADocumentIsJson();
    void problemIsJson();
    void placesOfAPatternAreATable();
    void findingsAreSarif();
    void treeIsPassedLineByLine();
    void pageIsWrittenPieceByPiece();
    void differencesAreAPage();
    void warningsHaveTheirPlaces();
    void newDocumentExplainsItsMembers();
    void membersHaveTheDocumentationOfTheSchema();

private:
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    QTemporaryDir m_folder;
};

void DocumentSnippets::anyFormIsConvertedToXml()
{
    const Document scp = Document::load(example("scp.xml"));
    for (const Form form : {Form::Tagged, Form::Compressed, Form::Snapshot, Form::Json}) {
        const QString from = m_folder.filePath(QStringLiteral("scp") + Forms::suffixOf(form));
        scp.save(from, form);
        QCOMPARE(toXml(from, path("again.xml")), QString());
        QCOMPARE(bytesOf(path("again.xml")), scp.toBytes(Form::Xml, QString()));
    }
}

void DocumentSnippets::contentThatTheFormCannotHoldIsAnErrorOfItsOwn()
{
    QString why;
    Document document;
    document.tuner.SetValidate(false);
    document.tuner.Setname(QStringLiteral("bell \a"));
    //! [UnstorableContent]
    try {
        document.save(QStringLiteral("receiver.xml"), Form::Xml);
    } catch (const UnstorableContent &content) {
        why = content.text(); // a control character, which XML cannot carry: store it as JSON
    } catch (const DocumentError &error) {
        why = error.text(); // the disk is full
    }
    //! [UnstorableContent]
    QCOMPARE(why,
             QStringLiteral("receiver.xml: a text in or just above line 2 of the document contains a character that "
                            "XML cannot carry (a control character, U+FFFE, U+FFFF or half a surrogate pair)"));
}

void DocumentSnippets::anErrorHasItsTextAndTheNameOfTheDocument()
{
    const QByteArray received = "<TunerProperties>";
    QString why;
    //! [DocumentError]
    try {
        const Document document = Document::fromBytes(received, QStringLiteral("message 7"));
    } catch (const DocumentError &error) {
        why = error.text(); // "message 7:1:17: Premature end of document."
    }
    //! [DocumentError]
    QCOMPARE(why, QStringLiteral("message 7:1:17: Premature end of document."));
}

void DocumentSnippets::itemsAreReplacedInPlace()
{
    const QByteArray xml = "<TunerProperties Version=\"1.1\">\n  <!-- kHz -->\n"
                           "  <BandwidthSelection><Name>a</Name></BandwidthSelection>\n"
                           "  <BandwidthSelection><Name>b</Name></BandwidthSelection>\n</TunerProperties>\n";
    QCOMPARE(withOneBandwidth(xml, QStringLiteral("d.xml")),
             QByteArray("<TunerProperties Version=\"1.1\">\n  <!-- kHz -->\n  <BandwidthSelection>\n"
                        "    <Name>Wide</Name>\n    <MaxBandwidth>20000</MaxBandwidth>\n  </BandwidthSelection>\n"
                        "</TunerProperties>\n"));
}

void DocumentSnippets::changesThatCauseProblemsAreRefused()
{
    const QString name = QStringLiteral("scp.xml");
    const QByteArray before = bytesOf(example("scp.xml"));
    QByteArray bytes = before;
    QCOMPARE(removeFrom(bytes, name, QStringLiteral("Component[name=agc]/Node[*]")),
             QStringList{QStringLiteral("scp.xml: Component[type=GainControl,name=agc]: Component: "
                                        "Please set Node properly.")});
    QCOMPARE(bytes, before);
    QCOMPARE(removeFrom(bytes, name, QStringLiteral("Component[name=agc]")), QStringList());
    QVERIFY(before.contains("<name>agc</name>"));
    QVERIFY(!bytes.contains("<name>agc</name>"));
}

void DocumentSnippets::typedAssignmentsAreMade()
{
    const QString name = QStringLiteral("scp.xml");
    const QByteArray bytes = bytesOf(example("scp.xml"));
    Editor editor(Document::fromBytes(bytes, name), bytes, name);
    change(editor, {QStringLiteral("Component[name=agc]/optional=true"), QStringLiteral("quantity=2")});
    QVERIFY(editor.document().tuner.GetComponent().at(1).Getoptional());
    QCOMPARE(editor.document().tuner.Getquantity(), 2);
    QVERIFY_THROWS_EXCEPTION(PathFailure, change(editor, {QStringLiteral("quantity")}));
}

void DocumentSnippets::layoutIsThatOfTheLibrary()
{
    const QString name = QStringLiteral("scp.xml");
    const Document scp = Document::load(example("scp.xml"));
    QVERIFY(hasCanonicalLayout(scp.toBytes(Form::Xml, name), name));
    QVERIFY(!hasCanonicalLayout(bytesOf(example("scp.xml")), name));
    QVERIFY_THROWS_EXCEPTION(DocumentError, hasCanonicalLayout("<TunerProperties>", name));
}

void DocumentSnippets::problemsHavePathsOrPlaces()
{
    QFile file(path("broken.xml"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QByteArray xml = bytesOf(example("scp.xml"));
    xml.replace("type=\"SCP\"", "type=\"SCP\" hwProcessing=\"\"").replace("name=\"demodulator\"", "");
    QVERIFY(file.write(xml) == xml.size());
    file.close();
    QCOMPARE(problemsOf(file.fileName()),
             (QStringList{file.fileName()
                              + QStringLiteral(":6:43: Please set a value or a default for the boolean 'hwProcessing' "
                                               "in 'TunerProperties'. '' is neither true nor false"),
                          file.fileName() + QStringLiteral(": Component[1]: Component: Please set name properly.")}));
}

void DocumentSnippets::formIsThatOfTheContentOrTheName()
{
    const QByteArray beginning = R"({"TunerProperties": {)";
    const QString name = QStringLiteral("a.tps");
    //! [byContent]
    std::optional<Form> form = Forms::byContent(beginning);
    if (!form) // perhaps a snapshot, which has no mark
        form = Forms::bySuffix(name);
    const QString shown = form ? Forms::nameOf(*form) : QStringLiteral("unknown");
    //! [byContent]
    QCOMPARE(shown, QStringLiteral("json"));
    QVERIFY(!Forms::byContent(QByteArray(4, '\0')));
    QVERIFY(Forms::bySuffix(name) == Form::Snapshot);
}

void DocumentSnippets::memberIsFoundAndChangedByItsPath()
{
    Document document = Document::load(example("scp.xml"));
    QString before;
    //! [find]
    const QString path = QStringLiteral("Component[name=agc]/Node[id=timeConstant]/ValueItem[1]/value");
    const Paths::Target target = Paths::find(document.tuner, path); // throws PathFailure if there is none
    before = TypedValue::print(target.member.GetValue()); // "0.25"

    const QVariant value = TypedValue::parse(target.member, QStringLiteral("0.5")); // throws TypedValue::Mismatch
    bool isStored = false;
    Paths::edit(document.tuner, target, [&](JobXml::MemberEditor &member) { isStored = member.SetValue(value); });
    //! [find]
    QCOMPARE(before, QStringLiteral("0.25"));
    QVERIFY(isStored);
    QCOMPARE(target.path,
             QStringLiteral("Component[type=GainControl,name=agc]/Node[id=timeConstant]/ValueItem[id=timeConstant]/"
                            "ValueNumericFloat/value"));
    const Paths::Target again = Paths::find(document.tuner, path);
    QCOMPARE(TypedValue::print(again.member.GetValue()), QStringLiteral("0.5"));
}

void DocumentSnippets::textsBecomeValuesOfAMember()
{
    const Document document = Document::load(example("scp.xml"));
    const Paths::Target target = Paths::find(document.tuner, QStringLiteral("quantity"));
    const QString text = QStringLiteral("many");
    QString why;
    //! [parse]
    try {
        const QVariant value = TypedValue::parse(target.member, text);
    } catch (const TypedValue::Mismatch &mismatch) {
        why = mismatch.text(); // "'many' is not a whole number"
    }
    //! [parse]
    QCOMPARE(why, QStringLiteral("'many' is not a whole number"));
    QCOMPARE(TypedValue::parse(target.member, QStringLiteral("3")).toInt(), 3);
}

void DocumentSnippets::differencesAreListed()
{
    const Document before = Document::load(example("scp.xml"));
    Document after = before;
    after.tuner.SetparentBaseResource(QStringLiteral("RX-1"));
    QStringList lines;
    //! [Difference]
    for (const Difference &difference : findDifferences(before.tuner, after.tuner))
        lines.append(difference.text()); // "~ quantity: 1 -> 2"
    //! [Difference]
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines[0].contains(QLatin1String("RX-1")), qPrintable(lines[0]));
    QVERIFY(findDifferences(before.tuner, before.tuner).isEmpty());
}

void DocumentSnippets::partOfADocumentIsJson()
{
    const Document document = Document::load(example("scp.xml"));
    const JobXml::Component &component = document.tuner.GetComponent().at(1);
    //! [toJson]
    const QByteArray json = toJson(component, QStringLiteral("agc")); // {"type": "GainControl", "name": "agc", ...
    //! [toJson]
    QVERIFY2(json.startsWith("{\n  \"type\": \"GainControl\",\n  \"name\": \"agc\","), json.constData());
}

void DocumentSnippets::problemIsJson()
{
    Findings findings;
    Document::fromBytes(bytesOf(example("scp.xml")).replace("type=\"SCP\"", "type=\"SCP\" hwProcessing=\"\""),
                        QStringLiteral("scp.xml"), {}, findings.collector());
    QByteArrayList lines;
    //! [problemToJson]
    for (const Finding &problem : findings.listed())
        lines.append(problemToJson(problem)); // {"path":null,"line":6,"column":43,"message":"Please set a value ...
    //! [problemToJson]
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines[0].startsWith(R"({"path":null,"line":6,"column":43,"message":"Please set a value )"),
             lines[0].constData());
}

void DocumentSnippets::placesOfAPatternAreATable()
{
    Document scp = Document::load(example("scp.xml"));
    QCOMPARE(tableOf(scp, QStringLiteral("Component[*]/name")),
             QByteArray("Component[type=Demodulator,name=demodulator]/name\tdemodulator\n"
                        "Component[type=GainControl,name=agc]/name\tagc\n"
                        "Component[type=AudioOutput,name=audio]/name\taudio\n"));
    scp.tuner.SetStartupModes(JobXml::StartupModes());
    scp.tuner.Setname(QStringLiteral("two\nlines"));
    QCOMPARE(tableOf(scp, QStringLiteral("name")), QByteArray("name\ttwo\\nlines\n"));
    QCOMPARE(tableOf(scp, QStringLiteral("StartupModes")), QByteArray("StartupModes\t{}\n"));
}

void DocumentSnippets::findingsAreSarif()
{
    QBuffer sarif;
    QVERIFY(sarif.open(QIODevice::WriteOnly));
    report({example("ffp.xml"), example("scp.xml")}, sarif);
    QCOMPARE(sarif.data().count("\"ruleId\":"), 1);
    QVERIFY(sarif.data().contains("/ffp.xml\"},\"region\":{\"startLine\":105,\"startColumn\":45}"));
    QVERIFY(sarif.data().endsWith("\"executionSuccessful\":true,\"toolExecutionNotifications\":[]}]}]}\n"));
}

void DocumentSnippets::treeIsPassedLineByLine()
{
    const Document document = Document::load(example("scp.xml"));
    QStringList tree;
    //! [show]
    show(document.tuner, [&](const QString &line) { tree.append(line); });
    //! [show]
    QCOMPARE(tree[0], QStringLiteral("TunerProperties"));
    QCOMPARE(tree[1], QStringLiteral("  Version: \"1.1\""));
}

void DocumentSnippets::pageIsWrittenPieceByPiece()
{
    const QByteArray xml = bytesOf(example("ffp.xml"));
    QFile page(path("ffp.html"));
    QVERIFY(page.open(QIODevice::WriteOnly));
    bool isWritten = true;
    //! [html]
    Findings findings(100);
    const Document document = Document::fromBytes(xml, QStringLiteral("ffp.xml"), {}, findings.collector());
    findings.describePaths(document.tuner);
    lint(document, xml, findings);
    html(document.tuner, findings, QStringLiteral("ffp.xml"),
         [&](const QByteArray &piece) { isWritten = isWritten && page.write(piece) == piece.size(); });
    //! [html]
    page.close();
    QVERIFY(isWritten);
    QVERIFY(bytesOf(page.fileName()).contains("<h2>No problems, 1 warning</h2>"));
    QVERIFY(bytesOf(page.fileName()).trimmed().endsWith("</html>"));
}

void DocumentSnippets::differencesAreAPage()
{
    const Document before = Document::load(example("scp.xml"));
    Document after = before;
    after.tuner.SetparentBaseResource(QStringLiteral("RX-1"));
    QByteArray page;
    //! [htmlOfDifferences]
    const qint64 count = htmlOfDifferences(before.tuner, QStringLiteral("old.xml"), after.tuner,
                                           QStringLiteral("new.xml"), [&](const QByteArray &piece) { page += piece; });
    //! [htmlOfDifferences]
    QCOMPARE(count, qint64(1));
    QVERIFY(page.contains("<title>Differences of old.xml and new.xml</title>"));
    QVERIFY(page.contains("<td class=\"after\"><bdi>RX-1</bdi></td>"));
}

void DocumentSnippets::warningsHaveTheirPlaces()
{
    const QString file = example("ffp.xml");
    const QStringList lines = warningsAbout(bytesOf(file), QStringLiteral("ffp.xml"));
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines[0].startsWith(QLatin1String("ffp.xml:105:45: Component[")), qPrintable(lines[0]));
    QVERIFY2(lines[0].endsWith(QLatin1String("[not-a-boolean]")), qPrintable(lines[0]));
}

void DocumentSnippets::newDocumentExplainsItsMembers()
{
    //! [minimal]
    Document document(NewDocument::minimal({{QStringLiteral("type"), QStringLiteral("Receiver")}}));
    const QByteArray xml = document.toBytes(Form::Xml, QStringLiteral("new.xml"));
    const QByteArray explained = NewDocument::explained(xml, document.tuner); // with a comment for every member
    //! [minimal]
    QVERIFY(xml.contains(" type=\"Receiver\""));
    QVERIFY(explained.contains("<!--"));
    const Document again = Document::fromBytes(explained, QStringLiteral("new.xml"));
    QVERIFY(again.tuner == document.tuner);
}

void DocumentSnippets::membersHaveTheDocumentationOfTheSchema()
{
    //! [Annotations]
    const Schema::Annotations annotations;
    const QString about = annotations.ofMember(QStringLiteral("Component"), QStringLiteral("optional")).text;
    //! [Annotations]
    QVERIFY(Schema::text().contains(about.left(20).toUtf8()));
    QVERIFY(!about.isEmpty());
}

void DocumentSnippets::valuesAreChangedInPlace()
{
    const QByteArray xml = "<TunerProperties Version='1.1' quantity='1'>\n  <Component name='front end'><!-- IF -->\n"
                           "    <Node id='gain'><ValueItem><ValueInt id='g' value='5'/></ValueItem></Node>\n"
                           "  </Component>\n</TunerProperties>";
    QCOMPARE(withGain(xml, QStringLiteral("7")),
             QByteArray(xml).replace("value='5'", "value='7'").replace("quantity='1'", "quantity='2'"));
}

TEST_SUITE(DocumentSnippets)
#include "tst_Documents.moc"
