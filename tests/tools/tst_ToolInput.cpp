// SPDX-License-Identifier: MIT
#include "OnlyOnLinux.h"
#include "Rows.h"
#include "Skip.h"
#include "tools/Tool.h"

#include <sys/stat.h>

/// Recognition of documents, and errors for files that are not documents.
class ToolInputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void everyFormIsRecognized_data();
    void everyFormIsRecognized();
    void contentOverridesTheName_data();
    void contentOverridesTheName();
    void snapshotIsRecognizedByItsNameOrByFrom();
    void fromOverridesTheContent();
    void xmlIsRecognizedInEveryEncoding_data();
    void xmlIsRecognizedInEveryEncoding();
    void pipesAreRead();
    void standardInputIsReadFromItsPosition();
    void namedPipeIsRead();
    void aValidDocumentIsReadOnce_data();
    void aValidDocumentIsReadOnce();

    void unreadableFileIsAnError_data();
    void unreadableFileIsAnError();
    void everyCommandReportsUnreadableFiles_data();
    void everyCommandReportsUnreadableFiles();
    void filesThatAreNotDocumentsAreErrors_data();
    void filesThatAreNotDocumentsAreErrors();
    void messagesNameStandardInputByADash_data();
    void messagesNameStandardInputByADash();
    void filesOfMoreThanAGigabyteAreErrorsBeforeReading_data();
    void filesOfMoreThanAGigabyteAreErrorsBeforeReading();
    void aPipeAmongSeveralFilesIsNotOpened();
    void devicesAmongSeveralFilesAreNotOpened();
    void specialFilesOptionReadsPipesAndDevices();
    void aPipeInTheFolderOfOutputsIsNotOpened();
    void twoPipesCanBeCompared();
    void pipesAndDevicesAreNotChangedInPlace_data();
    void pipesAndDevicesAreNotChangedInPlace();
    void aPipeIsReadIfTheResultIsWrittenElsewhere();
    void aFormattedPipeIsNotWrittenTo();
    void closedStreamsAreNotUsedAsFiles_data();
    void closedStreamsAreNotUsedAsFiles();

private:
    std::unique_ptr<Workshop> m_workshop;
};

namespace {

const QByteArray tagged = QByteArray::fromHex(smallTaggedHex);
const QByteArray snapshot = QByteArray::fromHex(smallSnapshotHex);

/// The tagged record in the compressed form, as the tool writes it.
QByteArray compressed()
{
    Workshop shop;
    shop.write(QStringLiteral("in.xml"), smallXml);
    return shop.run(line("convert in.xml - --to compressed")).bytes;
}

} // namespace

void ToolInputTest::init()
{
    m_workshop = std::make_unique<Workshop>();
}

void ToolInputTest::cleanup()
{
    m_workshop.reset();
}

void ToolInputTest::everyFormIsRecognized_data()
{
    const Rows<QString, QByteArray> row("name", "content");
    row("doc.xml", smallXml);
    row("doc.tpb", tagged);
    row("doc.tpz", compressed());
    row("doc.tps", snapshot);
    row("DOC.TPS", snapshot);
    row("xml", smallXml);
    row("tagged", tagged);
    row("compressed", compressed());
}

void ToolInputTest::everyFormIsRecognized()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    m_workshop->write(name, content);
    const Run run = m_workshop->run({QStringLiteral("convert"), name, QStringLiteral("-")});
    QCOMPARE(run.err, QString());
    QCOMPARE(run.bytes, QByteArray(smallXml));
    QCOMPARE(run.status, 0);
}

void ToolInputTest::contentOverridesTheName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("XML called a snapshot") << QStringLiteral("a.tps") << QByteArray(smallXml);
    QTest::newRow("XML after blank lines") << QStringLiteral("a.tpb") << " \r\n\t" + QByteArray(smallXml).mid(39);
    QTest::newRow("tagged called XML") << QStringLiteral("a.xml") << tagged;
    QTest::newRow("tagged called compressed") << QStringLiteral("a.tpz") << tagged;
    QTest::newRow("compressed called a snapshot") << QStringLiteral("a.tps") << compressed();
}

void ToolInputTest::contentOverridesTheName()
{
    everyFormIsRecognized();
}

void ToolInputTest::snapshotIsRecognizedByItsNameOrByFrom()
{
    m_workshop->write(QStringLiteral("doc"), snapshot);
    const Run unknown = m_workshop->run(line("convert doc -"));
    QCOMPARE(unknown.err,
             QStringLiteral(
                 "tunerproperties: doc: unknown form: neither XML, JSON nor binary; for a snapshot, use the suffix "
                 ".tps or --from snapshot\n"));
    QCOMPARE(unknown.status, 3);
    QCOMPARE(m_workshop->run(line("convert doc - --from snapshot")).bytes, QByteArray(smallXml));
    QCOMPARE(m_workshop->run(line("convert - - --from snapshot"), snapshot).bytes, QByteArray(smallXml));
}

void ToolInputTest::fromOverridesTheContent()
{
    m_workshop->write(QStringLiteral("a.xml"), smallXml);
    m_workshop->write(QStringLiteral("a.tpb"), tagged);
    const auto complaint = [this](const char *arguments) { return m_workshop->run(line(arguments)).err; };
    QCOMPARE(
        complaint("validate a.xml --from tagged"),
        QStringLiteral("tunerproperties: a.xml: the leading word is 0x3C3F786D, not 0xC10CBB5F (TunerProperties)\n"));
    QCOMPARE(complaint("validate a.xml --from snapshot"),
             QStringLiteral("tunerproperties: a.xml: the snapshot is truncated, or the file is not a snapshot\n"));
    QCOMPARE(complaint("validate a.tpb --from xml"),
             QStringLiteral("tunerproperties: a.tpb:1:1: Encountered incorrectly encoded content.\n"));
}

void ToolInputTest::xmlIsRecognizedInEveryEncoding_data()
{
    QTest::addColumn<QByteArray>("content");
    const QString text = QStringLiteral("<TunerProperties Version=\"1.1\" name=\"\u00dc\"/>");
    const auto utf16 = [&](bool bigEndian) {
        QByteArray bytes = QByteArray::fromHex(bigEndian ? "FEFF" : "FFFE");
        for (const QChar character : text) {
            const char parts[] = {char(character.row()), char(character.cell())};
            bytes.append(parts[bigEndian ? 0 : 1]).append(parts[bigEndian ? 1 : 0]);
        }
        return bytes;
    };
    QTest::newRow("UTF-8") << text.toUtf8();
    QTest::newRow("UTF-8 with a byte order mark") << "\xEF\xBB\xBF" + text.toUtf8();
    QTest::newRow("UTF-16, big-endian") << utf16(true);
    QTest::newRow("UTF-16, little-endian") << utf16(false);
    QTest::newRow("ISO 8859-1") << "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + text.toLatin1();
    QTest::newRow("after a comment") << "<!-- x -->" + text.toUtf8();
}

void ToolInputTest::xmlIsRecognizedInEveryEncoding()
{
    QFETCH(QByteArray, content);
    const Run run = m_workshop->run(line("show -"), content);
    QCOMPARE(run.err, QString());
    QVERIFY(run.out.contains(QStringLiteral("\n  name: \"\u00dc\"\n")));
}

void ToolInputTest::pipesAreRead()
{
    m_workshop->write(QStringLiteral("doc.xml"), smallXml);
    const Run run = m_workshop->shell(
        QStringLiteral("\"$tool\" convert doc.xml - --to tagged | \"$tool\" convert - - --to compressed"
                       " | \"$tool\" convert - - --to snapshot | \"$tool\" convert - - --from snapshot"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.bytes, QByteArray(smallXml));
}

void ToolInputTest::standardInputIsReadFromItsPosition()
{
    m_workshop->write(QStringLiteral("doc"), "first line\n" + QByteArray(smallXml));
    const Run run = m_workshop->shell(QStringLiteral("{ read line; echo \"$line\"; \"$tool\" convert - -; } < doc"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.bytes, "first line\n" + QByteArray(smallXml));
}

void ToolInputTest::namedPipeIsRead()
{
    m_workshop->write(QStringLiteral("doc.xml"), smallXml);
    QCOMPARE(mkfifo(QFile::encodeName(m_workshop->path(QStringLiteral("pipe"))).constData(), 0600), 0);
    const Run run = m_workshop->shell(QStringLiteral("cat doc.xml > pipe & \"$tool\" convert pipe -; wait"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.bytes, QByteArray(smallXml));
}

void ToolInputTest::aValidDocumentIsReadOnce_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("command");
    for (const char *form : {"xml", "tagged", "compressed", "snapshot", "json"}) {
        for (const char *command :
             {"validate document", "validate --json document", "convert document out.tpb",
              "convert --no-validate document out.tps", "show document", "show --format json document",
              "show --format html document", "get document quantity", "set document quantity 3"})
            QTest::addRow("%s: %s", form, command) << QString::fromLatin1(form) << QString::fromLatin1(command);
    }
}

// The kernel counts the bytes that a process and its finished children have read. Besides the document these are what
// every start of the tool reads, and the beginning of the document, which shows its form.
void ToolInputTest::aValidDocumentIsReadOnce()
{
    if (!QFile::exists(QStringLiteral("/proc/self/io")))
        SKIP("the system does not count what a process reads");
    QFETCH(QString, form);
    QFETCH(QString, command);
    // A quantity of text that does not shrink much: compressed documents have to be large, too.
    QByteArray name;
    for (quint32 i = 0, number = 1; i < 400000; ++i) {
        number = number * 1664525 + 1013904223;
        name += char('!' + 1 + number / 0x1000000 % 60);
    }
    name.replace('&', '_').replace('<', '_').replace('"', '_').replace('\'', '_');
    m_workshop->write(QStringLiteral("in.xml"), QByteArray(smallXml).replace("name=\"c\"", "name=\"" + name + "\""));
    QCOMPARE(m_workshop->run(line("convert in.xml document --to") << form).status, 0);
    const qint64 size = m_workshop->read(QStringLiteral("document")).size();
    QVERIFY2(size > 250000, qPrintable(QString::number(size)));

    const QString from = form == QLatin1String("snapshot") ? QStringLiteral(" --from snapshot") : QString();
    const QString count = QStringLiteral("{ read word number < /proc/self/io; echo \"$number\" >&2; }; ");
    const Run run = m_workshop->shell(
        count + QStringLiteral("\"$tool\" --version > shown; ") + count + QStringLiteral("\"$tool\" ") + command + from
        + QStringLiteral(" > shown; status=$?; ") + count + QStringLiteral("exit $status"));
    QVERIFY2(run.status == 0 || command.startsWith(QLatin1String("get")), qPrintable(run.err)); // the member is not set
    const QStringList numbers = run.err.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QVERIFY2(numbers.size() >= 3, qPrintable(run.err));
    const qint64 begin = numbers.at(0).toLongLong();
    const qint64 afterStart = numbers.at(1).toLongLong();
    const qint64 read = numbers.last().toLongLong() - afterStart - (afterStart - begin);
    const qint64 others = size / 8; // starts differ by a few bytes
    QVERIFY2(read > size - others && read < size + 2 * others,
             qPrintable(QStringLiteral("%1 of %2").arg(read).arg(size)));
}

void ToolInputTest::unreadableFileIsAnError_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("why");
    QTest::newRow("missing") << QStringLiteral("missing.xml")
                             << QStringLiteral("cannot open: No such file or directory");
    QTest::newRow("in a missing folder") << QStringLiteral("no/a.tps")
                                         << QStringLiteral("cannot open: No such file or directory");
    QTest::newRow("a folder") << QStringLiteral(".") << QStringLiteral("cannot open: Is a directory");
    // Everybody can open it, including the superuser, but nobody can read its beginning.
    QTest::newRow("unreadable") << QStringLiteral("/proc/self/mem")
                                << QStringLiteral("cannot read: Input/output error");
}

void ToolInputTest::unreadableFileIsAnError()
{
    QFETCH(QString, name);
    QFETCH(QString, why);
    for (const QStringList &arguments :
         {QStringList{QStringLiteral("show"), name}, QStringList{QStringLiteral("validate"), name},
          QStringList{QStringLiteral("convert"), name, QStringLiteral("out.xml")}}) {
        const Run run = m_workshop->run(arguments);
        QCOMPARE(run.err, QStringLiteral("tunerproperties: %1: %2\n").arg(name, why));
        QCOMPARE(run.out, QString());
        QCOMPARE(run.status, 3);
    }
    QCOMPARE(m_workshop->files(), QStringList());
}

void ToolInputTest::everyCommandReportsUnreadableFiles_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("show") << line("show cut.xml");
    QTest::newRow("validate") << line("validate cut.xml");
    QTest::newRow("convert") << line("convert cut.xml out.xml");
    QTest::newRow("convert without validating") << line("convert cut.xml out.xml --no-validate");
}

void ToolInputTest::everyCommandReportsUnreadableFiles()
{
    QFETCH(QStringList, arguments);
    m_workshop->write(QStringLiteral("cut.xml"), "<TunerProperties Version=\"1.1\">\n  <Component>\n");
    const Run run = m_workshop->run(arguments);
    QCOMPARE(run.err, QStringLiteral("tunerproperties: cut.xml:3:1: Premature end of document.\n"));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 3);
    QCOMPARE(m_workshop->files(), QStringList(QStringLiteral("cut.xml")));
}

void ToolInputTest::filesThatAreNotDocumentsAreErrors_data()
{
    const Rows<QString, QByteArray, QString> row("name", "content", "error");
    const char *const noForm =
        "a: unknown form: neither XML, JSON nor binary; for a snapshot, use the suffix .tps or --from snapshot";
    row("an empty file", "a", "", noForm);
    row("some text", "a", "TunerProperties", noForm);
    row("empty XML", "a.xml", "", "a.xml:1:1: Premature end of document.");
    row("an empty tagged form", "a.tpb", "",
        "a.tpb: the leading word and the length take 8 bytes, but only 0 are there");
    row("an empty compressed form", "a.tpz", "",
        "a.tpz: the leading word and the length take 8 bytes, but only 0 are there");
    row("an empty snapshot", "a.tps", "", "a.tps: the snapshot is truncated, or the file is not a snapshot");
    row("not well formed", "a.xml",
        "<TunerProperties Version=\"1.1\">\n  <Component>\n  </Componend>\n</TunerProperties>\n",
        "a.xml:3:14: Opening and ending tag mismatch.");
    row("another root element", "a.xml", "<!-- x -->\n<Component/>",
        "a.xml:2:12: the root element is 'Component', not 'TunerProperties'");
    row("data after the document", "a.xml", "<TunerProperties/>\n<x/>", "a.xml:2:4: Extra content at end of document.");
    row("another object's record", "a.tpb", QByteArray::fromHex("0ADD1857 00000000"),
        "a.tpb: the leading word is 0x0ADD1857, not 0xC10CBB5F (TunerProperties)");
    row("a record that is cut off", "a.tpb", tagged.left(100),
        "a.tpb: the record's length is 179, but 92 bytes follow");
    row("data after the record", "a.tpb", tagged + "x", "a.tpb: the record's length is 179, but 180 bytes follow");
    row("lengths that do not add up", "a.tpb", QByteArray::fromHex("C10CBB5F 0000000E E0CFAE8E 00000007 00000002 6262"),
        "a.tpb: TunerProperties::SetBinary(...): Length error occurred during processing of binary representation");
    row("a compressed form that is cut off", "a.tpz", compressed().left(6),
        "a.tpz: the leading word and the length take 8 bytes, but only 6 are there");
    row("a compressed form that is damaged", "a.tpz", compressed().replace(compressed().size() - 1, 1, "\xAA"),
        "a.tpz: the compressed bytes are damaged");
    row("a snapshot that is cut off", "a.tps", snapshot.left(snapshot.size() - 1),
        "a.tps: the snapshot is truncated, or the file is not a snapshot");
    row("data after the snapshot", "a.tps", snapshot + "x",
        "a.tps: the snapshot ends after 70 of 71 bytes, or the file is not a snapshot");
}

void ToolInputTest::filesThatAreNotDocumentsAreErrors()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    m_workshop->write(name, content);
    const Run run = m_workshop->run({QStringLiteral("validate"), name});
    QCOMPARE(run.err, QStringLiteral("tunerproperties: %1\n").arg(error));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 3);
}

void ToolInputTest::messagesNameStandardInputByADash_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    QTest::newRow("nothing") << QByteArray()
                             << QStringLiteral(
                                    "unknown form: neither XML, JSON nor binary; for a snapshot, use the suffix .tps "
                                    "or --from snapshot");
    QTest::newRow("a record that is cut off")
        << tagged.left(100) << QStringLiteral("the record's length is 179, but 92 bytes follow");
}

void ToolInputTest::messagesNameStandardInputByADash()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    const Run run = m_workshop->run(line("show -"), content);
    QCOMPARE(run.err, QStringLiteral("tunerproperties: -: %1\n").arg(error));
    QCOMPARE(run.status, 3);
    QCOMPARE(m_workshop->run(line("show -"), "<TunerProperties>\n<x>").err,
             QStringLiteral("tunerproperties: -:2:3: Premature end of document.\n"));
}

void ToolInputTest::filesOfMoreThanAGigabyteAreErrorsBeforeReading_data()
{
    const Rows<QString, QByteArray> row("name", "content");
    row("big.xml", smallXml);
    row("big.tpb", tagged);
    row("big.tpz", compressed());
    row("big.tps", snapshot);
    row("big.json", "{\"TunerProperties\": {}}");
    row("big", "");
}

// Sparse files, which need no room.
void ToolInputTest::filesOfMoreThanAGigabyteAreErrorsBeforeReading()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    m_workshop->write(name, content);
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    for (const qint64 size : {qint64(3) << 30, qint64(1'000'000'001)}) {
        QVERIFY(QFile::resize(m_workshop->path(name), size));
        const QString refusal = QStringLiteral("tunerproperties: %1: too large: %2 bytes; the limit is 1000000000 "
                                               "bytes\n");
        for (const QStringList &arguments :
             {QStringList{QStringLiteral("validate"), name}, QStringList{QStringLiteral("show"), name},
              QStringList{QStringLiteral("convert"), name, QStringLiteral("out.xml")},
              QStringList{QStringLiteral("set"), name, QStringLiteral("quantity"), QStringLiteral("2")},
              QStringList{QStringLiteral("diff"), QStringLiteral("small.xml"), name}}) {
            const Run run = m_workshop->run(arguments);
            QCOMPARE(run.err, refusal.arg(name).arg(size));
            QCOMPARE(run.out, QString());
            QCOMPARE(run.status, 3);
        }
        const Run fromInput = m_workshop->shell(QStringLiteral("\"$tool\" validate --quiet - < %1").arg(name));
        QCOMPARE(fromInput.err, refusal.arg(QStringLiteral("-")).arg(size));
        QCOMPARE(fromInput.status, 3);
    }
    QCOMPARE(m_workshop->files(), QStringList({name, QStringLiteral("small.xml")}));
}

namespace {

const QString notRegular =
    QStringLiteral("tunerproperties: %1: not a regular file; use --special-files to read it among several files\n");

} // namespace

// Nobody ever opens the other end.
void ToolInputTest::aPipeAmongSeveralFilesIsNotOpened()
{
    m_workshop->write(QStringLiteral("good.xml"), smallXml);
    QCOMPARE(mkfifo(QFile::encodeName(m_workshop->path(QStringLiteral("planted.xml"))).constData(), 0600), 0);
    QVERIFY(QFile::link(QStringLiteral("planted.xml"), m_workshop->path(QStringLiteral("z.xml"))));
    const QString pipes = notRegular.arg(QStringLiteral("planted.xml")) + notRegular.arg(QStringLiteral("z.xml"));
    const Run validated = m_workshop->shell(QStringLiteral("\"$tool\" validate -- *.xml"));
    QCOMPARE(validated.err, pipes + QStringLiteral("tunerproperties: 3 files: 1 valid, 2 unreadable\n"));
    QCOMPARE(validated.status, 3);
    const Run formatted = m_workshop->shell(QStringLiteral("\"$tool\" fmt -- *.xml"));
    QCOMPARE(formatted.err,
             notRegular.arg(QStringLiteral("planted.xml")) // z.xml is the same file
                 + QStringLiteral("tunerproperties: 2 files: 1 unchanged, 1 unreadable\n"));
    QCOMPARE(m_workshop->run(line("fmt planted.xml z.xml")).err, notRegular.arg(QStringLiteral("planted.xml")));
    QCOMPARE(formatted.status, 3);
    const Run converted = m_workshop->shell(QStringLiteral("\"$tool\" convert --to tagged --out-dir out -- *.xml"));
    QCOMPARE(converted.err, pipes + QStringLiteral("tunerproperties: 3 files: 1 converted, 2 unreadable\n"));
    QCOMPARE(converted.status, 3);
    QCOMPARE(m_workshop->read(QStringLiteral("out/good.tpb")), tagged);
}

void ToolInputTest::devicesAmongSeveralFilesAreNotOpened()
{
    m_workshop->write(QStringLiteral("good.xml"), smallXml);
    const Run run = m_workshop->run(line("validate /dev/zero good.xml . -"), smallXml);
    QCOMPARE(run.err,
             notRegular.arg(QStringLiteral("/dev/zero"))
                 + QStringLiteral("tunerproperties: .: cannot open: Is a directory\n"
                                  "tunerproperties: 4 files: 2 valid, 2 unreadable\n"));
    QCOMPARE(run.status, 3);
}

void ToolInputTest::specialFilesOptionReadsPipesAndDevices()
{
    m_workshop->write(QStringLiteral("good.xml"), smallXml);
    QCOMPARE(mkfifo(QFile::encodeName(m_workshop->path(QStringLiteral("pipe"))).constData(), 0600), 0);
    const Run run = m_workshop->shell(
        QStringLiteral("cat good.xml > pipe & \"$tool\" validate --special-files pipe good.xml; wait"));
    QCOMPARE(run.err, QStringLiteral("tunerproperties: 2 files: 2 valid\n"));
    QCOMPARE(run.status, 0);
}

void ToolInputTest::aPipeInTheFolderOfOutputsIsNotOpened()
{
    m_workshop->write(QStringLiteral("a.xml"), smallXml);
    QVERIFY(QDir().mkpath(m_workshop->path(QStringLiteral("out"))));
    const QString pipe = m_workshop->path(QStringLiteral("out/a.tpb"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const Run run = m_workshop->run(line("convert --to tagged --out-dir out a.xml"));
    QCOMPARE(run.err,
             QStringLiteral("tunerproperties: out/a.tpb: cannot write: it exists and is not a regular file\n"));
    QCOMPARE(run.status, 3);
    const Run allowed = m_workshop->shell(
        QStringLiteral("cat out/a.tpb & \"$tool\" convert --special-files --to tagged --out-dir out a.xml; wait"));
    QCOMPARE(allowed.err, QString());
    QCOMPARE(allowed.bytes, tagged);
}

void ToolInputTest::twoPipesCanBeCompared()
{
    m_workshop->write(QStringLiteral("a.xml"), smallXml);
    const Run run =
        m_workshop->shell(QStringLiteral("mkfifo p q; cat a.xml > p & cat a.xml > q & \"$tool\" diff p q; wait"));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 0);
}

void ToolInputTest::pipesAndDevicesAreNotChangedInPlace_data()
{
    QTest::addColumn<QString>("command");
    for (const char *command : {"set %1 name=p", "add %1 Component[type=t]", "remove %1 name", "move %1 Component[1] 1",
                                "patch %1 changes", "merge a.xml %1 a.xml", "fmt %1"})
        QTest::newRow(command) << QString::fromLatin1(command);
}

// Nobody ever opens the other end of the pipe.
void ToolInputTest::pipesAndDevicesAreNotChangedInPlace()
{
    QFETCH(QString, command);
    m_workshop->write(QStringLiteral("a.xml"), smallXml);
    m_workshop->write(QStringLiteral("changes"), "");
    QCOMPARE(mkfifo(QFile::encodeName(m_workshop->path(QStringLiteral("pipe"))).constData(), 0600), 0);
    for (const char *const name : {"pipe", "/dev/null", "/dev/stdin"}) {
        const QString file = QString::fromLatin1(name);
        const Run run = m_workshop->shell(QStringLiteral("cat a.xml | \"$tool\" ") + command.arg(file));
        QCOMPARE(run.err,
                 QStringLiteral("tunerproperties: %1: not a regular file, so it cannot be changed in place; use - to "
                                "read standard input and write standard output\n")
                     .arg(file));
        QCOMPARE(run.out, QString());
        QCOMPARE(run.status, 3);
    }
}

void ToolInputTest::aPipeIsReadIfTheResultIsWrittenElsewhere()
{
    m_workshop->write(QStringLiteral("a.xml"), smallXml);
    m_workshop->write(QStringLiteral("b.xml"), QByteArray(smallXml).replace("\"b\"", "\"R2\""));
    const QByteArray fromPipe = QByteArrayLiteral("mkfifo pipe; cat a.xml > pipe & \"$tool\" %1; wait");
    const auto run = [&](const char *command) {
        QFile::remove(m_workshop->path(QStringLiteral("pipe")));
        return m_workshop->shell(QString::fromLatin1(QByteArray(fromPipe).replace("%1", command)));
    };
    const Run dry = run("set --dry-run pipe baseresource=R2");
    QCOMPARE(dry.out + dry.err, QStringLiteral("~ baseresource: \"b\" -> \"R2\"\n"));
    QCOMPARE(dry.status, 0);
    const Run merged = run("merge -o merged.xml a.xml pipe b.xml");
    QCOMPARE(merged.out + merged.err, QString());
    QCOMPARE(m_workshop->read(QStringLiteral("merged.xml")), m_workshop->read(QStringLiteral("b.xml")));
    const Run checked = run("fmt --check pipe");
    QCOMPARE(checked.out + checked.err, QString());
    QCOMPARE(checked.status, 0);
    const Run filtered = m_workshop->shell(QStringLiteral("cat a.xml | \"$tool\" set - baseresource=R2"));
    QCOMPARE(filtered.bytes, m_workshop->read(QStringLiteral("b.xml")));
    QCOMPARE(filtered.status, 0);
}

void ToolInputTest::aFormattedPipeIsNotWrittenTo()
{
    m_workshop->write(QStringLiteral("good.xml"), smallXml);
    const Run run = m_workshop->shell(QStringLiteral("mkfifo pipe; tr -d '\\n' < good.xml > pipe & \"$tool\" fmt "
                                                     "--special-files good.xml pipe; s=$?; wait; exit $s"));
    QCOMPARE(
        run.err,
        QStringLiteral("tunerproperties: pipe: not a regular file, so it cannot be changed in place; use - to read "
                       "standard input and write standard output\n"
                       "tunerproperties: 2 files: 1 unchanged, 1 unwritable\n"));
    QCOMPARE(run.status, 3);
}

void ToolInputTest::closedStreamsAreNotUsedAsFiles_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("err");
    QTest::addColumn<int>("status");
    QTest::newRow("output") << QStringLiteral("\"$tool\" show small.xml >&-")
                            << QStringLiteral("tunerproperties: -: cannot write: Bad file descriptor\n") << 3;
    QTest::newRow("input") << QStringLiteral("\"$tool\" show - <&-")
                           << QStringLiteral("tunerproperties: -: cannot read: Bad file descriptor\n") << 3;
    QTest::newRow("all, a file is written") << QStringLiteral(
        "\"$tool\" convert missing.xml a.xml <&- >&- 2>&-; \"$tool\" convert small.xml a.xml <&- >&- 2>&-")
                                            << QString() << 0;
}

void ToolInputTest::closedStreamsAreNotUsedAsFiles()
{
    ONLY_ON_LINUX("standard streams that are closed");
    QFETCH(QString, command);
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const Run run = m_workshop->shell(command);
    QTEST(run.err, "err");
    QTEST(run.status, "status");
    if (run.status == 0)
        QCOMPARE(m_workshop->read(QStringLiteral("a.xml")), QByteArray(smallXml));
}

TEST_SUITE(ToolInputTest)
#include "tst_ToolInput.moc"
