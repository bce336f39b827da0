// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdio>

#include <QFile>
#include <QProcess>
#include <QTemporaryFile>
#include <QtTest>

#include <jobxml/TunerProperties.h>

#include "ExceptionText.h"
#include "HeapPeak.h"
#include "QtFigures.h"
#include "Skip.h"

using namespace JobXml;

namespace {

/// An input of this size has a number of elements after which QXmlStreamReader has just doubled its stacks.
constexpr int expensiveSize = 4200000;

/// Copies of `opening`, followed by as many of `closing`, until the document has the size.
QByteArray filled(const QByteArray &head, const QByteArray &opening, const QByteArray &closing, const QByteArray &tail,
                  int size)
{
    const int count = (size - head.size() - tail.size()) / (opening.size() + closing.size());
    return head + opening.repeated(count) + closing.repeated(count) + tail;
}

const QByteArray documentStart = QByteArrayLiteral("<TunerProperties Version=\"1.1\">");
const QByteArray documentEnd = QByteArrayLiteral("</TunerProperties>");
const QByteArray componentStart = documentStart + "<Component>";
const QByteArray componentEnd = "</Component>" + documentEnd;

QByteArray openElements(int size)
{
    return filled(componentStart, "<a>", "", "", size);
}

QByteArray closedElements(int size)
{
    return filled(componentStart, "<a>", "</a>", componentEnd, size);
}

QByteArray emptyNodes(int size)
{
    return filled(componentStart, "<Node/>", "", componentEnd, size);
}

QByteArray emptyItems(int size)
{
    return filled(componentStart + "<Node>", "<ValueItem/>", "", "</Node>" + componentEnd, size);
}

QByteArray longText(int size)
{
    return filled(documentStart + "<MaxFFPDelay>", "1", "", "</MaxFFPDelay>" + documentEnd, size);
}

QByteArray longSection(int size)
{
    return filled(documentStart + "<MaxFFPDelay><![CDATA[", "1", "", "]]></MaxFFPDelay>" + documentEnd, size);
}

QByteArray longAttribute(int size)
{
    return filled(documentStart + "<Component name=\"", "1", "", "\"/>" + documentEnd, size);
}

QByteArray longComment(int size)
{
    return filled(documentStart + "<!--", "1", "", "-->" + documentEnd, size);
}

/// The components of an example, again and again.
QByteArray ordinaryXml(int size)
{
    QFile file(QStringLiteral(EXAMPLES_DIR "/receiver.xml"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s", qPrintable(file.errorString()));
    const QByteArray whole = file.readAll();
    const int from = whole.indexOf("<Component");
    const int to = whole.lastIndexOf("</Component>") + int(qstrlen("</Component>"));
    return filled(whole.left(from), whole.mid(from, to - from), "", whole.mid(to), size);
}

QByteArray ordinaryRecords(int size)
{
    TunerProperties document;
    if (!document.SetXmlString(QString::fromUtf8(ordinaryXml(size)), true))
        qFatal("%s", qPrintable(document.GetErrorString()));
    return document.GetBinaryRepresentationAsQByteArray();
}

QByteArray word(qint64 value)
{
    QByteArray four;
    QDataStream(&four, QIODevice::WriteOnly) << qint32(value);
    return four;
}

QByteArray listRecord(quint32 tag, int count, const QByteArray &item)
{
    const QByteArray items = word(count) + (word(item.size()) + item).repeated(count);
    return word(tag) + word(items.size()) + items;
}

/// A document of one component with one node of empty items.
QByteArray recordsOfEmptyItems(int size)
{
    const QByteArray node = listRecord(0x4F71131F, size / 4, {});
    const QByteArray members = listRecord(0x66BA8E61, 1, listRecord(0xC5E53936, 1, node));
    return word(TunerProperties::GetId()) + word(members.size()) + members;
}

/// A complete document with a list of empty texts.
QByteArray recordsOfEmptyTexts(int size)
{
    StringItem text;
    text.Setvalue(QStringLiteral(""));
    ValueStringList list;
    list.Setid(QStringLiteral("a"));
    list.Setvalue(QStringLiteral(""));
    list.SetStringItem(QVector<StringItem>(size / 16, text)); // an item's length, tag, length, and length of the text
    ValueItem item;
    item.SetValueStringList(list);
    Node node;
    node.Setid(QStringLiteral("a"));
    node.AppendValueItem(item);
    Component component;
    component.Settype(QStringLiteral("a"));
    component.Setname(QStringLiteral("a"));
    component.Setoptional(false);
    component.AppendNode(node);
    TunerProperties document;
    document.Settype(TunerProperties::type::SCP);
    document.Setbaseresource(QStringLiteral("a"));
    document.AppendComponent(component);
    return document.GetBinaryRepresentationAsQByteArray();
}

using Compose = QByteArray (*)(int size);

struct Input
{
    const char *name;
    Compose compose;
    /// What docs/pages/cookbook.md says that reading takes at most, in bytes for each byte of the input.
    int validating;
    int otherwise;
};

constexpr int stackOfReader = QtFigures::residentPerByteOfXml;

const Input xmlInputs[] = {
    {"an ordinary document", ordinaryXml, 4, 4},
    {"elements that are never closed", openElements, stackOfReader, stackOfReader},
    {"elements within each other", closedElements, stackOfReader, stackOfReader},
    {"nodes without anything in them", emptyNodes, stackOfReader, stackOfReader},
    {"items without anything in them", emptyItems, stackOfReader, stackOfReader},
    {"a long text", longText, stackOfReader, stackOfReader},
    {"a long section", longSection, stackOfReader, stackOfReader},
    {"a long attribute", longAttribute, stackOfReader, stackOfReader},
    {"a long comment", longComment, stackOfReader, stackOfReader},
};

const Input recordInputs[] = {
    {"records of an ordinary document", ordinaryRecords, 5, 5},
    {"records of items without anything in them", recordsOfEmptyItems, 11, 45},
    {"records of empty texts", recordsOfEmptyTexts, 11, 45},
};

/// A file with these bytes. The bytes are freed before it is read.
struct InputFile
{
    explicit InputFile(const QByteArray &bytes) : size(bytes.size())
    {
        if (!file.open() || file.write(bytes) != size || !file.flush())
            qFatal("%s", qPrintable(file.errorString()));
    }

    QTemporaryFile file;
    qint64 size;
};

void read(const QString &path, bool isXml, bool validate)
{
    TunerProperties document;
    document.SetValidate(validate);
    thrownBy([&] { return isXml ? document.LoadXml(path) : document.LoadBinary(path); });
}

/// The most memory that has been resident in this process.
qint64 mostResident()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.simplified().split(' ').at(1).toLongLong() * 1024;
    }
    return -1;
}

/// The growth of the peak of resident memory in a child process that reads the file; -1 if the process fails.
qint64 residentWhileReading(const QString &path, bool isXml, bool validate)
{
    QProcess reader;
    reader.start(QCoreApplication::applicationFilePath(),
                 {QStringLiteral("tst_MemoryOfReading"), QStringLiteral("--read"), path, QString::number(isXml),
                  QString::number(validate)});
    if (!reader.waitForFinished(-1) || reader.exitStatus() != QProcess::NormalExit || reader.exitCode() != 0)
        return -1;
    return reader.readAllStandardOutput().trimmed().toLongLong();
}

int readAndReport(const QStringList &arguments)
{
    const qint64 before = mostResident();
    read(arguments.at(2), arguments.at(3).toInt() != 0, arguments.at(4).toInt() != 0);
    const qint64 after = mostResident();
    std::printf("%lld\n", after - before);
    return before > 0 && after > before ? 0 : 1;
}

} // namespace

Q_DECLARE_METATYPE(Compose)

/// Reading takes no more memory than the cookbook states, and than the bound of SECURITY.md for XML.
class MemoryOfReadingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void residentMemoryIsWhatTheCookbookStates_data();
    void residentMemoryIsWhatTheCookbookStates();
    void statedBoundsAreReached();
    void heapStaysWithinTheBoundWhenTheStacksOfTheReaderGrow_data();
    void heapStaysWithinTheBoundWhenTheStacksOfTheReaderGrow();
    void heapStaysWithinTheBoundForTextsInMemory();

private:
    double m_most[2][2] = {}; // resident bytes per byte of input: by XML or records, validating or not
};

void MemoryOfReadingTest::residentMemoryIsWhatTheCookbookStates_data()
{
    QTest::addColumn<Compose>("compose");
    QTest::addColumn<bool>("isXml");
    QTest::addColumn<bool>("validate");
    QTest::addColumn<int>("stated");
    const auto addRows = [](const Input &input, bool isXml) {
        QTest::addRow("%s, validating", input.name) << input.compose << isXml << true << input.validating;
        QTest::addRow("%s, not validating", input.name) << input.compose << isXml << false << input.otherwise;
    };
    for (const Input &input : xmlInputs)
        addRows(input, true);
    for (const Input &input : recordInputs)
        addRows(input, false);
}

void MemoryOfReadingTest::residentMemoryIsWhatTheCookbookStates()
{
    if (!Heap::isWatched)
        SKIP("a sanitizer keeps freed memory");
    QFETCH(Compose, compose);
    QFETCH(bool, isXml);
    QFETCH(bool, validate);
    QFETCH(int, stated);
    const InputFile input(compose(expensiveSize));
    const qint64 used = residentWhileReading(input.file.fileName(), isXml, validate);
    QVERIFY(used > 0);
    // Without the part that does not grow with the input: pages of libraries that are used for the first time.
    const double perByte = double(used - (2 << 20)) / double(input.size);
    QVERIFY2(perByte <= stated, qPrintable(QStringLiteral("%1 bytes for each byte").arg(perByte)));
    m_most[isXml][validate] = std::max(m_most[isXml][validate], perByte);
    qInfo("%.1f bytes for each byte", perByte);
}

void MemoryOfReadingTest::statedBoundsAreReached()
{
    if (!Heap::isWatched)
        SKIP("a sanitizer keeps freed memory");
    // At least two thirds of each bound are reached, so that the table remains true of this library.
    QVERIFY(m_most[true][true] > 2.0 / 3 * stackOfReader);
    QVERIFY(m_most[true][false] > 2.0 / 3 * stackOfReader);
    QVERIFY(m_most[false][true] > 2.0 / 3 * 11);
    QVERIFY(m_most[false][false] > 2.0 / 3 * 45);
}

void MemoryOfReadingTest::heapStaysWithinTheBoundWhenTheStacksOfTheReaderGrow_data()
{
    QTest::addColumn<int>("size");
    for (int step = 0; step <= 12; step += 3)
        QTest::addRow("step %d", step) << int((1 << 20) * std::pow(2.0, step / 12.0));
}

void MemoryOfReadingTest::heapStaysWithinTheBoundWhenTheStacksOfTheReaderGrow()
{
    QFETCH(int, size);
    for (const Compose compose : {openElements, closedElements, longText}) {
        const InputFile input(compose(size));
        for (const bool validate : {true, false}) {
            const HeapPeak peak;
            read(input.file.fileName(), true, validate);
            // The fixed part of the bound is for memory allocated before the input is read, which does not happen here.
            QVERIFY2(peak.bytes() <= 200 * input.size, qPrintable(QString::number(peak.bytes())));
            QVERIFY(peak.bytes() > input.size); // it was measured
        }
    }
}

void MemoryOfReadingTest::heapStaysWithinTheBoundForTextsInMemory()
{
    const QByteArray open = openElements(1 << 20);
    const QString text = QString::fromUtf8(open);
    TunerProperties document;
    const HeapPeak peak;
    QVERIFY(!document.SetXmlString(text, true));
    QVERIFY2(peak.bytes() <= 200LL * open.size(), qPrintable(QString::number(peak.bytes())));
}

static int run(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (application.arguments().value(1) == QLatin1String("--read"))
        return readAndReport(application.arguments());
    MemoryOfReadingTest test;
    return QTest::qExec(&test, argc, argv);
}

TEST_SUITE_RUN_BY(run)
#include "tst_MemoryOfReading.moc"
