// SPDX-License-Identifier: MIT
#include "tools/Tool.h"

#include <algorithm>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QDataStream>
#include <QtEndian>

#include <jobxml/TunerProperties.h>

using JobXml::TunerProperties;

class ToolConvertTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void everyFormIsWritten_data();
    void everyFormIsWritten();
    void theCompressedFormHoldsTheTaggedOne();
    void suffixDeterminesTheForm();
    void optionOverridesTheSuffix();
    void everyFormIsConvertedToEveryOther_data();
    void everyFormIsConvertedToEveryOther();
    void outputEqualsThatOfTheLibrary_data();
    void outputEqualsThatOfTheLibrary();
    void examplesReadBackByteForByte_data();
    void examplesReadBackByteForByte();
    void snapshotKeepsExactNumbers();

    void invalidDocumentsAreNotConverted_data();
    void invalidDocumentsAreNotConverted();
    void noValidateWritesInvalidDocuments();
    void valuesThatTheFormCannotHoldAreListed();
    void exactConversionRefusesLosses();
    void exactConversionRefusesWhatReadingXmlLoses();
    void exactConversionRefusesWhatReadersSkip();
    void exactConversionAcceptsWhatACommentAccepts();
    void fileCanBeConvertedInPlace();
    void failedConversionInPlaceKeepsTheFile();
    void outputReplacesALongerFile();
    void conversionLeavesNoOtherFiles();
    void linkStaysAndItsTargetIsWritten();
    void deviceIsWrittenAndNotReplaced();
    void outputThatCannotBeWrittenIsAnError_data();
    void outputThatCannotBeWrittenIsAnError();
    void specialFilesAreNotReplaced();
    void textThatXmlCannotRepresentIsAnError();
    void outputThatNeedsMaxExpansionIsNoted_data();
    void outputThatNeedsMaxExpansionIsNoted();
    void quietConversionNotesNothing();

private:
    void writeRegularDocument();

    std::unique_ptr<Workshop> m_workshop;
};

namespace {

QByteArray withoutTypes(QByteArray xml)
{
    return xml.replace(" type=\"SCP\"", "").replace(" type=\"t\"", "");
}

const char *const twoProblems = "tunerproperties: in.xml: Component[1]: Component: Please set type properly.\n"
                                "tunerproperties: in.xml: TunerProperties: Please set type properly. Expected MCP, "
                                "SCP, FFP, Receiver or DirectionFinder\n";

} // namespace

void ToolConvertTest::init()
{
    m_workshop = std::make_unique<Workshop>();
}

void ToolConvertTest::cleanup()
{
    m_workshop.reset();
}

void ToolConvertTest::everyFormIsWritten_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("xml") << QStringLiteral("xml") << QByteArray(smallXml);
    QTest::newRow("tagged") << QStringLiteral("tagged") << QByteArray::fromHex(smallTaggedHex);
    QTest::newRow("snapshot") << QStringLiteral("snapshot") << QByteArray::fromHex(smallSnapshotHex);
}

void ToolConvertTest::everyFormIsWritten()
{
    QFETCH(QString, form);
    QFETCH(QByteArray, expected);
    const Run toOutput = m_workshop->run(line("convert - - --to") << form, smallXml);
    QCOMPARE(toOutput.bytes.toHex(' '), expected.toHex(' '));
    QCOMPARE(toOutput.err, QString());
    QCOMPARE(toOutput.status, 0);

    const Run toFile = m_workshop->run(line("convert - out --to") << form, smallXml);
    QCOMPARE(m_workshop->read(QStringLiteral("out")).toHex(' '), expected.toHex(' '));
    QCOMPARE(toFile.out, QString());
    QCOMPARE(toFile.err, QString());
    QCOMPARE(toFile.status, 0);
}

void ToolConvertTest::theCompressedFormHoldsTheTaggedOne()
{
    const QByteArray bytes = m_workshop->run(line("convert - - --to compressed"), smallXml).bytes;
    QDataStream stream(bytes);
    quint32 word = 0;
    qint32 length = 0;
    stream >> word >> length;
    QVERIFY(word != 0xC10CBB5F);
    QCOMPARE(length, bytes.size() - 8);
    QCOMPARE(qUncompress(bytes.mid(8)), QByteArray::fromHex(smallTaggedHex));
}

void ToolConvertTest::suffixDeterminesTheForm()
{
    for (const char *name : {"a.xml", "a.tpb", "a.tpz", "a.tps", "A.TPS"})
        QCOMPARE(m_workshop->run(line("convert -") << QString::fromUtf8(name), smallXml).status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), QByteArray(smallXml));
    QCOMPARE(m_workshop->read(QStringLiteral("a.tpb")), QByteArray::fromHex(smallTaggedHex));
    QCOMPARE(m_workshop->read(QStringLiteral("a.tpz")),
             m_workshop->run(line("convert - - --to compressed"), smallXml).bytes);
    QCOMPARE(m_workshop->read(QStringLiteral("a.tps")), QByteArray::fromHex(smallSnapshotHex));
    QCOMPARE(m_workshop->read(QStringLiteral("A.TPS")), QByteArray::fromHex(smallSnapshotHex));
    QCOMPARE(m_workshop->run(line("convert - -"), smallXml).bytes, QByteArray(smallXml));
}

void ToolConvertTest::optionOverridesTheSuffix()
{
    QCOMPARE(m_workshop->run(line("convert - a.xml --to tagged"), smallXml).status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), QByteArray::fromHex(smallTaggedHex));
}

void ToolConvertTest::everyFormIsConvertedToEveryOther_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    const QStringList suffixes = {QStringLiteral("xml"), QStringLiteral("tpb"), QStringLiteral("tpz"),
                                  QStringLiteral("tps")};
    for (const QString &from : suffixes) {
        for (const QString &to : suffixes)
            QTest::newRow(qPrintable(from + QStringLiteral(" to ") + to)) << from << to;
    }
}

void ToolConvertTest::everyFormIsConvertedToEveryOther()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    const auto file = [](const char *name, const QString &suffix) {
        return QString::fromUtf8(name) + QLatin1Char('.') + suffix;
    };
    const QString direct = file("direct", to);
    QCOMPARE(m_workshop->run({QStringLiteral("convert"), QStringLiteral("-"), direct}, smallXml).status, 0);
    QCOMPARE(m_workshop->run({QStringLiteral("convert"), QStringLiteral("-"), file("in", from)}, smallXml).status, 0);
    const Run run = m_workshop->run({QStringLiteral("convert"), file("in", from), file("out", to)});
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(m_workshop->read(file("out", to)), m_workshop->read(direct));
}

void ToolConvertTest::outputEqualsThatOfTheLibrary_data()
{
    QTest::addColumn<QString>("path");
    for (const QString &name : exampleNames())
        QTest::newRow(qPrintable(name)) << examplePath(name);
}

void ToolConvertTest::outputEqualsThatOfTheLibrary()
{
    QFETCH(QString, path);
    TunerProperties document;
    QVERIFY(document.LoadXml(path));
    QByteArray snapshot;
    QDataStream stream(&snapshot, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    document.GetVersionSpecificBinaryWithoutValidation(stream);

    const auto written = [&](const char *name) {
        const QString file = QString::fromUtf8(name);
        const Run run = m_workshop->run({QStringLiteral("convert"), path, file});
        return run.status == 0 && run.err.isEmpty() ? m_workshop->read(file) : run.err.toUtf8();
    };
    QCOMPARE(written("a.xml"), document.GetXmlString().toUtf8());
    QCOMPARE(written("a.tpb"), document.GetBinaryRepresentationAsQByteArray());
    QCOMPARE(written("a.tpz"), document.GetCompressedBinaryRepresentationAsQByteArray(-1));
    QCOMPARE(written("a.tps"), snapshot);
}

void ToolConvertTest::examplesReadBackByteForByte_data()
{
    outputEqualsThatOfTheLibrary_data();
}

void ToolConvertTest::examplesReadBackByteForByte()
{
    QFETCH(QString, path);
    const auto convert = [&](const QString &in, const char *out) {
        return m_workshop->run({QStringLiteral("convert"), in, QString::fromUtf8(out)}).status;
    };
    QCOMPARE(convert(path, "direct.xml"), 0);
    QCOMPARE(convert(path, "a.tpb"), 0);
    QCOMPARE(convert(QStringLiteral("a.tpb"), "a.tps"), 0);
    QCOMPARE(convert(QStringLiteral("a.tps"), "a.tpz"), 0);
    QCOMPARE(convert(QStringLiteral("a.tpz"), "a.xml"), 0);
    QVERIFY(m_workshop->read(QStringLiteral("direct.xml")).size() > 1000);
    QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), m_workshop->read(QStringLiteral("direct.xml")));
}

void ToolConvertTest::snapshotKeepsExactNumbers()
{
    QByteArray xml = smallXml;
    xml.replace("<ValueInt id=\"i\" value=\"7\"/>", "<ValueFloat id=\"i\" value=\"0.125\"/>");
    const auto value = [&](const char *suffix) {
        const QString file = QStringLiteral("a") + QString::fromUtf8(suffix);
        m_workshop->run({QStringLiteral("convert"), QStringLiteral("-"), file}, xml);
        return m_workshop->run({QStringLiteral("show"), file}).out.section(QLatin1String(", value "), 1);
    };
    QCOMPARE(value(".tps"), QStringLiteral("0.125\n"));
    QCOMPARE(value(".tpb"), QStringLiteral("0.13\n"));
    QCOMPARE(value(".xml"), QStringLiteral("0.13\n"));
}

void ToolConvertTest::invalidDocumentsAreNotConverted_data()
{
    QTest::addColumn<QString>("out");
    for (const char *name : {"out.xml", "out.tpb", "out.tpz", "out.tps", "-"})
        QTest::newRow(name) << QString::fromUtf8(name);
}

void ToolConvertTest::invalidDocumentsAreNotConverted()
{
    QFETCH(QString, out);
    m_workshop->write(QStringLiteral("in.xml"), withoutTypes(smallXml));
    const QStringList before = m_workshop->files();
    const QStringList arguments = {QStringLiteral("convert"), QStringLiteral("in.xml"), out};
    const Run run = m_workshop->run(arguments);
    QCOMPARE(run.err, QString::fromUtf8(twoProblems));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 1);
    QCOMPARE(m_workshop->files(), before);

    if (out == QLatin1String("-"))
        return;
    m_workshop->write(out, "the old file");
    QCOMPARE(m_workshop->run(arguments).status, 1);
    QCOMPARE(m_workshop->read(out), QByteArray("the old file"));
}

void ToolConvertTest::valuesThatTheFormCannotHoldAreListed()
{
    m_workshop->write(
        QStringLiteral("in.xml"),
        QByteArray(smallXml).replace("ValueInt", "ValueFloat").replace("value=\"7\"", "value=\"0.2567\""));
    const QString value = QStringLiteral("Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/ValueFloat/value");
    const Run run = m_workshop->run(line("convert in.xml out.tpb"));
    QCOMPARE(run.err, QStringLiteral("tunerproperties: out.tpb: %1: 0.2567 becomes 0.26\n").arg(value));
    QCOMPARE(run.status, 0);
    QCOMPARE(m_workshop->run(line("convert --quiet in.xml out.tpb")).err, QString());
    QCOMPARE(m_workshop->run(line("convert --json in.xml out.tpb")).out,
             QStringLiteral("{\"file\":\"in.xml\",\"output\":\"out.tpb\",\"status\":\"converted\",\"problems\":[],"
                            "\"problemCount\":0,\"losses\":[{\"path\":\"%1\",\"before\":\"0.2567\",\"after\":"
                            "\"0.26\"}],\"lossCount\":1,\"error\":null}\n")
                 .arg(value));
    for (const char *out : {"out.json", "out.tps"}) {
        const Run exact = m_workshop->run(line("convert --exact in.xml") << QString::fromUtf8(out));
        QCOMPARE(exact.err, QString());
        QCOMPARE(exact.status, 0);
    }
}

void ToolConvertTest::exactConversionRefusesLosses()
{
    m_workshop->write(QStringLiteral("in.json"), R"({"TunerProperties": {"Version": "1.1", "type": "SCP",
        "baseresource": "b", "quantity": 1, "unset": {"MaxFFPDelay": "5"},
        "BandwidthSelection": [{"Name": "w", "MaxBandwidth": 0.126}, {"Name": "v", "MaxBandwidth": 0.001}],
        "Component": [{"type": "t", "name": "c", "optional": true, "Node": [{"id": "n", "ValueItem": [
        {"ChoiceValueItem": "ValueInt", "ValueInt": {"id": "i", "value": 1}}]}]}]}})");
    const Run run = m_workshop->run(line("convert --exact --max-problems 2 in.json out.xml"));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: out.xml: BandwidthSelection[Name=w]/MaxBandwidth: 0.126 becomes 0.13\n"
                            "tunerproperties: out.xml: BandwidthSelection[Name=v]/MaxBandwidth: 0.001 becomes 0\n"
                            "tunerproperties: out.xml: 3 losses; only the first 2 are listed\n"));
    QCOMPARE(run.status, 1);
    QVERIFY(!m_workshop->files().contains(QStringLiteral("out.xml")));
}

void ToolConvertTest::exactConversionRefusesWhatReadingXmlLoses()
{
    const QByteArray xml = QByteArray(smallXml)
                               .replace("baseresource=\"b\"", "baseresource=\"b\" quantity=\"many\" extra=\"1\"")
                               .replace("optional=\"true\"", "optional=\"no\"")
                               .replace("<ValueInt id=\"i\" value=\"7\"/>", "<ValueFloat id=\"i\" value=\"0.2567\"/>");
    m_workshop->write(QStringLiteral("in.xml"), xml);
    const QString rounded = QStringLiteral("tunerproperties: %1: Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/"
                                           "ValueFloat/value: 0.2567 becomes 0.26\n");
    const Run usual = m_workshop->run(line("convert in.xml out.tpb"));
    QCOMPARE(usual.err, rounded.arg(QStringLiteral("out.tpb")));
    QCOMPARE(usual.status, 0);

    const QString first =
        QStringLiteral("tunerproperties: in.xml:2:60: quantity: 'many' of quantity is not a number; it "
                       "is read as 0 [not-a-number]\n");
    const QString others = QStringLiteral(
        "tunerproperties: in.xml:2:76: unknown attribute 'extra' of TunerProperties; it is ignored; expected name, "
        "type, "
        "baseresource, connectableResources, quantity, parentBaseResource or hwProcessing [unknown-attribute]\n"
        "tunerproperties: in.xml:3:32: Component[type=t,name=c]/optional: 'no' of optional is not a boolean; it is "
        "read "
        "as true; use 'false' [not-a-boolean]\n");
    for (const char *out : {"exact.tpb", "exact.json"}) {
        const Run exact = m_workshop->run(line("convert --exact in.xml") << QString::fromUtf8(out));
        const QString losses = QByteArray(out).endsWith("tpb") ? rounded.arg(QString::fromUtf8(out)) : QString();
        QCOMPARE(exact.err, losses + first + others);
        QCOMPARE(exact.status, 1);
        QVERIFY(!m_workshop->files().contains(QString::fromUtf8(out)));
    }
    const Run one = m_workshop->run(line("convert --exact --max-problems 1 in.xml exact.json"));
    QCOMPARE(
        one.err,
        first
            + QStringLiteral("tunerproperties: in.xml: 3 warnings; only the first is listed; use --max-problems to "
                             "list more\n"));
    QCOMPARE(m_workshop->run(line("convert --exact --quiet in.xml exact.json")).status, 1);
    const Run json = m_workshop->run(line("convert --exact --json --max-problems 1 in.xml exact.json"));
    QCOMPARE(
        json.out,
        QStringLiteral("{\"file\":\"in.xml\",\"output\":\"exact.json\",\"status\":\"problems\",\"problems\":[],"
                       "\"problemCount\":0,\"losses\":[],\"lossCount\":0,\"warnings\":3,\"findings\":[{\"path\":"
                       "\"quantity\",\"line\":2,\"column\":60,\"message\":\"'many' of quantity is not a number; it is "
                       "read as 0\",\"value\":null,\"choices\":null,\"suggestion\":null,\"rule\":\"not-a-number\","
                       "\"level\":\"warning\"}],\"error\":null}\n"));
    // Nothing was lost in reading other forms.
    QCOMPARE(m_workshop->run(line("convert in.xml in.json")).status, 0);
    QCOMPARE(m_workshop->run(line("convert --exact in.json exact.json")).err, QString());
}

void ToolConvertTest::exactConversionRefusesWhatReadersSkip()
{
    m_workshop->write(QStringLiteral("in.xml"),
                      "<TunerProperties Version=\"1.1\" name=\"a\" type=\"Receiver\" baseresource=\"b\">\n"
                      "<name>c</name>\n"
                      "stray\n"
                      "<Component type=\"t\" name=\"c\" optional=\"true\"><Node id=\"n\"><ValueItem>\n"
                      "<ValueInt id=\"i\" value=\"1\"/>\n"
                      "<ValueInt id=\"j\" value=\"2\"/>\n"
                      "</ValueItem></Node></Component>\n"
                      "<MaxFFPDelay>1<x/></MaxFFPDelay>\n"
                      "</TunerProperties>\n");
    const Run run = m_workshop->run(line("convert --exact in.xml out.json"));
    QStringList rules;
    const QStringList lines = run.err.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &text : lines)
        rules.append(text.section(QLatin1Char(':'), 2, 2) + text.mid(text.lastIndexOf(QLatin1String(" ["))));
    QCOMPARE(rules,
             (QStringList{QStringLiteral("1 [repeated-member]"), QStringLiteral("3 [stray-text]"),
                          QStringLiteral("5 [repeated-alternative]"), QStringLiteral("8 [element-in-value]")}));
    QCOMPARE(run.status, 1);
    QVERIFY(!m_workshop->files().contains(QStringLiteral("out.json")));
}

void ToolConvertTest::exactConversionAcceptsWhatACommentAccepts()
{
    m_workshop->write(QStringLiteral("in.xml"),
                      QByteArray(smallXml)
                          .replace("baseresource=\"b\"", "baseresource=\"b\" extra=\"1\"")
                          .replace("<TunerProperties",
                                   "<!-- tunerproperties-lint-disable unknown-attribute -->\n"
                                   "<TunerProperties"));
    const Run run = m_workshop->run(line("convert --exact in.xml out.tpb"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
}

void ToolConvertTest::noValidateWritesInvalidDocuments()
{
    const Run run = m_workshop->run(line("convert - - --no-validate"), withoutTypes(smallXml));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: -: type: (not set) becomes (null)\n"
                            "tunerproperties: -: Component[1]: is lost\n"
                            "tunerproperties: -: Component[type=\"\",name=c]: appears\n"));
    QCOMPARE(run.bytes, QByteArray(smallXml).replace("type=\"SCP\"", "type=\"\"").replace("type=\"t\"", "type=\"\""));
    QCOMPARE(run.status, 0);

    const Run empty = m_workshop->run(line("convert - - --no-validate"), "<TunerProperties Version=\"1.1\"/>");
    QCOMPARE(empty.out,
             QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                            "<TunerProperties Version=\"1.1\" type=\"\" baseresource=\"\"/>\n"));
    QCOMPARE(empty.status, 0);
}

void ToolConvertTest::fileCanBeConvertedInPlace()
{
    m_workshop->write(QStringLiteral("a.xml"), QByteArray(smallXml).replace("  ", "").replace(">\n<", "><"));
    QCOMPARE(m_workshop->run(line("convert a.xml a.xml")).status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), QByteArray(smallXml));
    QCOMPARE(m_workshop->run(line("convert a.xml a.xml --to tagged")).status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), QByteArray::fromHex(smallTaggedHex));
}

void ToolConvertTest::failedConversionInPlaceKeepsTheFile()
{
    m_workshop->write(QStringLiteral("in.xml"), withoutTypes(smallXml));
    const Run run = m_workshop->run(line("convert in.xml in.xml"));
    QCOMPARE(run.err, QString::fromUtf8(twoProblems));
    QCOMPARE(run.status, 1);
    QCOMPARE(m_workshop->read(QStringLiteral("in.xml")), withoutTypes(smallXml));
}

void ToolConvertTest::outputReplacesALongerFile()
{
    m_workshop->write(QStringLiteral("a.xml"), QByteArray(100000, 'x'));
    QCOMPARE(m_workshop->run(line("convert - a.xml"), smallXml).status, 0);
    QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), QByteArray(smallXml));
}

void ToolConvertTest::conversionLeavesNoOtherFiles()
{
    QCOMPARE(m_workshop->run(line("convert - a.xml"), smallXml).status, 0);
    QCOMPARE(m_workshop->run(line("convert - no.xml"), withoutTypes(smallXml)).status, 1);
    QCOMPARE(m_workshop->files(), QStringList(QStringLiteral("a.xml")));
}

void ToolConvertTest::linkStaysAndItsTargetIsWritten()
{
    m_workshop->write(QStringLiteral("file.xml"), "old");
    QVERIFY(QFile::link(m_workshop->path(QStringLiteral("file.xml")), m_workshop->path(QStringLiteral("link.xml"))));
    QCOMPARE(m_workshop->run(line("convert - link.xml"), smallXml).status, 0);
    QVERIFY(QFileInfo(m_workshop->path(QStringLiteral("link.xml"))).isSymLink());
    QCOMPARE(m_workshop->read(QStringLiteral("file.xml")), QByteArray(smallXml));
}

void ToolConvertTest::deviceIsWrittenAndNotReplaced()
{
    const Run run =
        m_workshop->shell(QStringLiteral("mkfifo pipe; cat pipe & \"$tool\" convert - pipe --to xml <<END\n%1END\n"
                                         "wait; test -p pipe")
                              .arg(QString::fromUtf8(smallXml)));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.bytes, QByteArray(smallXml));
    QCOMPARE(run.status, 0);
}

void ToolConvertTest::outputThatCannotBeWrittenIsAnError_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    QTest::newRow("in a missing folder") << line("convert - no/a.xml")
                                         << QStringLiteral("no/a.xml: cannot write: No such file or directory");
    QTest::newRow("a folder") << line("convert - . --to xml")
                              << QStringLiteral(".: cannot write: Filename refers to a directory");
}

void ToolConvertTest::outputThatCannotBeWrittenIsAnError()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const Run run = m_workshop->run(arguments, smallXml);
    QCOMPARE(run.err, QStringLiteral("tunerproperties: %1\n").arg(error));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 3);
    QCOMPARE(m_workshop->files(), QStringList());
}

void ToolConvertTest::specialFilesAreNotReplaced()
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = QFile::encodeName(m_workshop->path(QStringLiteral("socket.xml")));
    QVERIFY(size_t(path.size()) < sizeof(address.sun_path));
    std::copy(path.begin(), path.end(), address.sun_path);
    const int handle = socket(AF_UNIX, SOCK_STREAM, 0);
    QCOMPARE(bind(handle, reinterpret_cast<const sockaddr *>(&address), sizeof(address)), 0);

    const Run run = m_workshop->run(line("convert - socket.xml"), smallXml);
    struct stat status = {};
    QCOMPARE(stat(path.constData(), &status), 0);
    QVERIFY(S_ISSOCK(status.st_mode));
    close(handle);
    QCOMPARE(run.err, QStringLiteral("tunerproperties: socket.xml: cannot write: No such device or address\n"));
    QCOMPARE(run.status, 3);
    QCOMPARE(m_workshop->files(), QStringList(QStringLiteral("socket.xml")));
}

void ToolConvertTest::textThatXmlCannotRepresentIsAnError()
{
    QByteArray tagged = QByteArray::fromHex(smallTaggedHex);
    tagged.replace(QByteArray::fromHex("E0CFAE8E 00000005 00000001 62"),
                   QByteArray::fromHex("E0CFAE8E 00000005 00000001 07")); // a bell as base resource
    m_workshop->write(QStringLiteral("a.xml"), "the old file");
    const QString why = QStringLiteral("a text in or just above line 2 of the document contains a character that XML "
                                       "cannot carry (a control character, U+FFFE, U+FFFF or half a surrogate pair)\n");
    const Run toFile = m_workshop->run(line("convert - a.xml"), tagged);
    QCOMPARE(toFile.err, QStringLiteral("tunerproperties: a.xml: ") + why);
    QCOMPARE(toFile.status, 1);
    QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), QByteArray("the old file"));

    const Run toOutput = m_workshop->run(line("convert - -"), tagged);
    QCOMPARE(toOutput.err, QStringLiteral("tunerproperties: -: ") + why);
    QCOMPARE(toOutput.out, QString());
    QCOMPARE(toOutput.status, 1);
    QCOMPARE(m_workshop->run(line("convert --quiet - a.xml"), tagged).err, QString());
    const Run asJson = m_workshop->run(line("convert --json - a.xml"), tagged);
    QCOMPARE(asJson.out,
             QStringLiteral("{\"file\":\"-\",\"output\":\"a.xml\",\"status\":\"problems\",\"problems\":[],"
                            "\"problemCount\":0,\"losses\":[],\"lossCount\":0,\"error\":\"a.xml: ")
                 + why.trimmed() + QStringLiteral("\"}\n"));
    QCOMPARE(m_workshop->run(line("convert - - --to tagged"), tagged).bytes, tagged);
}

/// in.xml: 2,000 equal nodes, so that its compressed form is very small.
void ToolConvertTest::writeRegularDocument()
{
    const QByteArray node = "<Node id=\"n\"><ValueItem><ValueInt id=\"v\" value=\"1\"/></ValueItem></Node>";
    QByteArray xml = smallXml;
    m_workshop->write(QStringLiteral("in.xml"), xml.replace("</Component>", node.repeated(2000) + "</Component>"));
}

void ToolConvertTest::outputThatNeedsMaxExpansionIsNoted_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("output");
    QTest::newRow("to a file") << QStringLiteral("convert in.xml out.tpz") << QStringLiteral("out.tpz");
    QTest::newRow("into a folder") << QStringLiteral("convert --to compressed --out-dir out in.xml")
                                   << QStringLiteral("out/in.tpz");
    QTest::newRow("with JSON") << QStringLiteral("convert --json in.xml out.tpz") << QStringLiteral("out.tpz");
    QTest::newRow("set") << QStringLiteral("set --max-expansion 1100 in.tpz name other") << QStringLiteral("in.tpz");
}

void ToolConvertTest::outputThatNeedsMaxExpansionIsNoted()
{
    QFETCH(QString, command);
    QFETCH(QString, output);
    writeRegularDocument();
    if (output == QLatin1String("in.tpz"))
        QCOMPARE(m_workshop->run(line("convert in.xml in.tpz")).status, 0);
    const Run run = m_workshop->run(command.split(QLatin1Char(' ')));
    QCOMPARE(run.status, 0);

    const QByteArray written = m_workshop->read(output);
    const auto expanded = qFromBigEndian<quint32>(written.constData() + 8);
    const int times = int(expanded / quint32(written.size())) + 1;
    QVERIFY2(times > 51, qPrintable(QString::number(times)));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: %1: expands to more than 50 times its size; use --max-expansion %2 to "
                            "read it\n")
                 .arg(output)
                 .arg(times));
    const auto validate = [&](int most) {
        return m_workshop
            ->run({QStringLiteral("validate"), QStringLiteral("--max-expansion"), QString::number(most), output})
            .status;
    };
    QCOMPARE(validate(times), 0);
    QCOMPARE(validate(times - 1), 3);
}

void ToolConvertTest::quietConversionNotesNothing()
{
    writeRegularDocument();
    const Run run = m_workshop->run(line("convert --quiet in.xml out.tpz"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
}

TEST_SUITE(ToolConvertTest)
#include "tst_ToolConvert.moc"
