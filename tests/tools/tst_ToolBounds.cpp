// SPDX-License-Identifier: MIT
#include <functional>

#include <algorithm>
#include <fcntl.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QRandomGenerator>
#include <QSet>
#include <QtEndian>

#include "Heap.h"
#include "QtFigures.h"
#include "Skip.h"
#include "tools/Tool.h"

namespace {

// --- Small documents with large effects ---

QByteArray word(int number)
{
    QByteArray bytes(4, Qt::Uninitialized);
    qToBigEndian<qint32>(number, bytes.data());
    return bytes;
}

QByteArray record(const char *tag, const QByteArray &payload)
{
    return QByteArray::fromHex(tag) + word(payload.size()) + payload;
}

QByteArray textRecord(const char *tag, const QByteArray &text)
{
    return record(tag, word(text.size()) + text);
}

/// A list of one item.
QByteArray listOf(const char *tag, const QByteArray &item)
{
    return record(tag, word(1) + word(item.size()) + item);
}

/// A list of empty items: four bytes each.
QByteArray emptyItems(const char *tag, int count)
{
    return record(tag, word(count) + QByteArray(4 * count, '\0'));
}

constexpr char bandwidthTag[] = "C2483BA3";
constexpr char componentTag[] = "66BA8E61";
constexpr char nodeTag[] = "C5E53936";
constexpr char valueItemTag[] = "4F71131F";
constexpr char rangeTag[] = "07114506"; // a ValueNumericInt
constexpr char selectionTag[] = "AA5F786F";
constexpr char selectionItemTag[] = "4FB19F31";
constexpr char textListTag[] = "491ED6FE";
constexpr char textItemTag[] = "2940EBDD";

QByteArray document(const QByteArray &members)
{
    const QByteArray version = QByteArray::fromHex("CCFEDFA1 0000000A 00000006 0031002E0031");
    return record("C10CBB5F", version + textRecord("A1F0EE2D", "SCP") + textRecord("E0CFAE8E", "b") + members);
}

QByteArray component(const QByteArray &members)
{
    return listOf(componentTag, textRecord("0BAD2053", "t") + textRecord("CB4CF645", "c") + members);
}

QByteArray node(const QByteArray &members)
{
    return component(listOf(nodeTag, textRecord("2B262DC9", "n") + members));
}

/// Values whose choice is an empty value: twelve bytes each.
QByteArray emptyValues(const char *tag, int count)
{
    return node(record(valueItemTag, word(count) + (word(8) + record(tag, {})).repeated(count)));
}

/// The same as JSON. A list of empty items takes three bytes each.
QByteArray jsonItems(const char *name, int count, const QByteArray &item = "{}")
{
    const QByteArray items = (item + ',').repeated(count);
    return QByteArray("\"") + name + "\":[" + items.left(items.size() - 1) + ']';
}

QByteArray jsonDocument(const QByteArray &members)
{
    return R"({"TunerProperties":{"type":"SCP","baseresource":"b",)" + members + "}}";
}

QByteArray jsonComponent(const QByteArray &members)
{
    return jsonDocument(R"("Component":[{"type":"t","name":"c",)" + members + "}]");
}

QByteArray jsonNode(const QByteArray &members)
{
    return jsonComponent(R"("Node":[{"id":"n",)" + members + "}]");
}

/// A value whose choice is this one.
QByteArray jsonChoice(const QByteArray &name, const QByteArray &members = {})
{
    return R"({"ChoiceValueItem":")" + name + R"(",")" + name + R"(":{)" + members + "}}";
}

QByteArray jsonValue(const QByteArray &name, const QByteArray &members)
{
    return jsonNode(jsonItems("ValueItem", 1, jsonChoice(name, members)));
}

/// A representation in the compressed form. qCompress() prepends the size, as that form does.
QByteArray compressed(const QByteArray &representation)
{
    const QByteArray payload = qCompress(representation, 9);
    return "RGZ1" + word(payload.size()) + payload;
}

QByteArray xml(const QByteArray &content, const QByteArray &version = "1.1")
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<TunerProperties Version=\"" + version
        + "\" type=\"SCP\" baseresource=\"b\">" + content + "</TunerProperties>\n";
}

/// A component with a name of 100,000 characters, and 10,000 nodes.
QByteArray longName(const QByteArray &nodeElement)
{
    return xml("<Component type=\"t\" name=\"" + QByteArray(100000, 'x') + "\">" + nodeElement.repeated(10000)
               + "</Component>");
}

// --- Running the tool ---

/// The cost and result of a run.
struct Cost
{
    int status = -1;
    qint64 outSize = 0;
    QByteArray out; // its first 64 KiB
    QByteArray err;
    qint64 memory = 0; // the most that was resident, in bytes
};

Cost costOf(const Workshop &shop, const QStringList &arguments)
{
    const QString memoryFile = QStringLiteral("memory");
    QList<QByteArray> words = {QByteArrayLiteral(MEMORY_OF_PROGRAM), QFile::encodeName(shop.path(memoryFile)),
                               QByteArrayLiteral(TOOL_PROGRAM)};
    for (const QString &argument : arguments)
        words.append(QFile::encodeName(argument));
    std::vector<char *> argv;
    for (QByteArray &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    const QByteArray folder = QFile::encodeName(shop.path(QStringLiteral(".")));
    const QByteArray errors = QFile::encodeName(shop.path(QStringLiteral("errors")));
    int out[2] = {-1, -1};
    Cost cost;
    if (pipe(out) != 0)
        return cost;
    const pid_t child = fork();
    if (child == 0) {
        const int err = open(errors.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (err >= 0 && dup2(out[1], STDOUT_FILENO) >= 0 && dup2(err, STDERR_FILENO) >= 0
            && chdir(folder.constData()) == 0) {
            close(out[0]);
            close(out[1]);
            execv(argv.front(), argv.data());
        }
        _exit(127);
    }
    close(out[1]);
    constexpr int kept = 1 << 16;
    QByteArray buffer(kept, Qt::Uninitialized);
    ssize_t size = 0;
    while ((size = read(out[0], buffer.data(), std::size_t(buffer.size()))) > 0) {
        cost.outSize += size;
        cost.out += buffer.left(std::min(int(size), kept - int(cost.out.size())));
    }
    close(out[0]);
    int status = 0;
    if (waitpid(child, &status, 0) == child && WIFEXITED(status))
        cost.status = WEXITSTATUS(status);
    cost.err = shop.read(QStringLiteral("errors"));
    cost.memory = shop.read(memoryFile).trimmed().toLongLong() * 1024;
    return cost;
}

/// The run of five that takes the most memory. They differ by where the allocator begins a segment of 4 MiB.
Cost largestOfFive(const Workshop &shop, const QStringList &arguments)
{
    Cost largest;
    for (int i = 0; i < 5; ++i) {
        const Cost cost = costOf(shop, arguments);
        if (cost.memory > largest.memory)
            largest = cost;
    }
    return largest;
}

constexpr qint64 MiB = 1 << 20;

} // namespace

/// Limits of output and memory for each command, for inputs that are made to need much. RELIABILITY.md states the same
/// bounds.
class ToolBoundsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { m_workshop = std::make_unique<Workshop>(); }
    void cleanup() { m_workshop.reset(); }

    void aLongNameIsReplacedByThePositionInThePathsOfProblems();
    void aLongNameIsReplacedByThePositionInTheJsonOfProblems();
    void aLongNameIsReplacedByThePositionInThePathsOfDifferences();
    void aLongMessageIsShortened();
    void hundredProblemsAreListedAndAllAreCounted();
    void moreProblemsAreListedOnRequest();
    void problemsOfTheXmlReaderAreCountedToo();
    void problemsInEveryItemOfJsonTakeBoundedOutputAndMemory_data();
    void problemsInEveryItemOfJsonTakeBoundedOutputAndMemory();
    void invalidMaxProblemsIsWrongUsage();
    void compressedDataBeyondTheLimitIsAnError_data();
    void compressedDataBeyondTheLimitIsAnError();
    void expansionOfFiftyTimesIsAccepted();
    void pageOfTooManyObjectsIsAnError();
    void pageOfTooManyDifferencesIsAnError();
    void maxExpansionRaisesTheLimit();
    void invalidMaxExpansionIsWrongUsage();
    void everyExampleExpandsWithinTheLimit();
    void bandwidthsOfEverySizeMakeASmallPage();
    void resultsOfManyFilesTakeLittleMemory_data();
    void resultsOfManyFilesTakeLittleMemory();
    void aLongVersionIsNotReadAgainForEachElement();
    void aPageTakesNoMoreMemoryThanLint_data();
    void aPageTakesNoMoreMemoryThanLint();
    void runningOutOfMemoryIsReported_data();
    void runningOutOfMemoryIsReported();
    void thereIsNoSignalHoweverLittleMemoryThereIs();
    void severalFilesNeedNoMoreMemoryThanOne_data();
    void severalFilesNeedNoMoreMemoryThanOne();
    void outputAndMemoryFollowTheSizeOfTheInput_data();
    void outputAndMemoryFollowTheSizeOfTheInput();

private:
    void checkMemory(const Cost &cost, qint64 most)
    {
#ifdef HEAP_OF_A_SANITIZER
        Q_UNUSED(cost)
        Q_UNUSED(most)
#else
        QVERIFY2(cost.memory <= most, qPrintable(QStringLiteral("%1 > %2").arg(cost.memory).arg(most)));
#endif
    }

    std::unique_ptr<Workshop> m_workshop;
    qint64 m_usualMemory = 0; // of validating a small document
    qint64 m_usualMemoryOfPages = 0; // which include their resources
};

void ToolBoundsTest::initTestCase()
{
    Workshop shop;
    shop.write(QStringLiteral("small.xml"), smallXml);
    m_usualMemory = costOf(shop, line("validate small.xml")).memory;
    m_usualMemoryOfPages = costOf(shop, line("show --format html small.xml")).memory;
}

void ToolBoundsTest::aLongNameIsReplacedByThePositionInThePathsOfProblems()
{
    m_workshop->write(QStringLiteral("in.xml"), longName("<Node/>"));
    const Cost cost = costOf(*m_workshop, line("validate in.xml"));
    QCOMPARE(cost.status, 1);
    const QList<QByteArray> lines = cost.out.split('\n');
    QCOMPARE(lines.size(), 102); // the last one is empty
    QCOMPARE(lines[0], QByteArray("in.xml: Component[1]/Node[1]: Node: Please set ValueItem properly."));
    // Two for each node, and the component lacks optional.
    QCOMPARE(lines[100],
             QByteArray("in.xml: 20001 problems; only the first 100 are listed; use --max-problems to list more"));
    checkMemory(cost, 64 * MiB);

    // The position leads to the complete name.
    const Cost name = costOf(*m_workshop, line("get in.xml Component[1]/name"));
    QCOMPARE(name.outSize, qint64(100001));
}

void ToolBoundsTest::aLongNameIsReplacedByThePositionInTheJsonOfProblems()
{
    m_workshop->write(QStringLiteral("in.xml"), longName("<Node/>"));
    const Cost cost = costOf(*m_workshop, line("validate --json --max-problems 1 in.xml"));
    QCOMPARE(cost.status, 1);
    QCOMPARE(cost.out,
             QByteArray(R"({"file":"in.xml","status":"problems","problems":[{"path":"Component[1]/Node[1]",)"
                        R"("line":null,"column":null,"message":"Node: Please set ValueItem properly.",)"
                        R"("value":null,"choices":null,"suggestion":null}],)"
                        R"("problemCount":20001,"warnings":0,"error":null})"
                        "\n"));
}

void ToolBoundsTest::aLongNameIsReplacedByThePositionInThePathsOfDifferences()
{
    m_workshop->write(QStringLiteral("old.xml"), longName("<Node id=\"a\"/>"));
    m_workshop->write(QStringLiteral("new.xml"), longName("<Node id=\"b\"/>"));
    const Cost cost = costOf(*m_workshop, line("diff old.xml new.xml"));
    QCOMPARE(cost.status, 0);
    const QList<QByteArray> lines = cost.out.split('\n');
    QCOMPARE(lines[0], QByteArray("- Component[1]/Node[id=a][1]"));
    QVERIFY2(cost.outSize < 20000 * 45, qPrintable(QString::number(cost.outSize)));
    checkMemory(cost, 64 * MiB);
}

void ToolBoundsTest::aLongMessageIsShortened()
{
    m_workshop->write(QStringLiteral("in.xml"), xml('<' + QByteArray(3000, 'e') + "/>"));
    const Cost cost = costOf(*m_workshop, line("validate in.xml"));
    QCOMPARE(cost.status, 1);
    QVERIFY2(cost.outSize < 1024, qPrintable(QString::number(cost.outSize)));
    QVERIFY2(cost.out.contains("e' in 'TunerProperties'"), cost.out.constData());
}

void ToolBoundsTest::hundredProblemsAreListedAndAllAreCounted()
{
    m_workshop->write(QStringLiteral("in.tpb"), document(component(emptyItems(nodeTag, 20000))));
    const Cost cost = costOf(*m_workshop, line("validate in.tpb"));
    QCOMPARE(cost.status, 1);
    QCOMPARE(cost.out.count('\n'), 101);
    QVERIFY2(
        cost.out.endsWith("in.tpb: 40001 problems; only the first 100 are listed; use --max-problems to list more\n"),
        cost.out.constData());
    // There is no last line if all problems are listed.
    m_workshop->write(QStringLiteral("few.tpb"), document(component(emptyItems(nodeTag, 2))));
    QCOMPARE(costOf(*m_workshop, line("validate --max-problems 5 few.tpb")).out.count('\n'), 5);
    QCOMPARE(costOf(*m_workshop, line("validate few.tpb")).out.count('\n'), 5);
}

void ToolBoundsTest::moreProblemsAreListedOnRequest()
{
    m_workshop->write(QStringLiteral("in.tpb"), document(component(emptyItems(nodeTag, 100))));
    QCOMPARE(costOf(*m_workshop, line("validate --max-problems 1000 in.tpb")).out.count('\n'), 201);
    const Cost converted = costOf(*m_workshop, line("convert --max-problems 2 in.tpb out.xml"));
    QCOMPARE(converted.status, 1);
    QCOMPARE(
        converted.err,
        QByteArray("tunerproperties: in.tpb: Component[type=t,name=c]/Node[1]: Node: Please set ValueItem properly.\n"
                   "tunerproperties: in.tpb: Component[type=t,name=c]/Node[1]: Node: Please set id properly.\n"
                   "tunerproperties: in.tpb: 201 problems; only the first 2 are listed; use --max-problems "
                   "to list more\n"));
}

void ToolBoundsTest::problemsOfTheXmlReaderAreCountedToo()
{
    m_workshop->write(QStringLiteral("in.xml"), xml(QByteArray("<a/>").repeated(3000)));
    const Cost cost = costOf(*m_workshop, line("validate --max-problems 1 in.xml"));
    QCOMPARE(cost.status, 1);
    QCOMPARE(cost.out,
             QByteArray("in.xml:2:60: Unknown Tag 'a' in 'TunerProperties'. Expected name, type, baseresource, "
                        "connectableResources, quantity, parentBaseResource, hwProcessing, StartupModes, "
                        "BandwidthSelection, MaxFFPDelay, HRPANSupported or Component\n"
                        "in.xml: 3001 problems; only the first is listed; use --max-problems to list more\n"));
}

void ToolBoundsTest::problemsInEveryItemOfJsonTakeBoundedOutputAndMemory_data()
{
    QTest::addColumn<QByteArray>("in");
    constexpr int count = 100000;
    QTest::newRow("numbers as items") << jsonDocument(jsonItems("Component", count, "0"));
    QTest::newRow("unknown members") << jsonDocument(jsonItems("Component", count, R"({"":0})"));
    QTest::newRow("unknown members of items with an identity")
        << jsonComponent(jsonItems("Node", count, R"({"id":"n","":0})"));
    QTest::newRow("unknown names") << jsonDocument("\"StartupModes\":{" + jsonItems("StartupMode", count, R"("")")
                                                   + '}');
    QTest::newRow("values of the wrong type") << jsonNode(jsonItems("ValueItem", count, R"({"ValueInt":{"id":0}})"));
}

void ToolBoundsTest::problemsInEveryItemOfJsonTakeBoundedOutputAndMemory()
{
    QFETCH(QByteArray, in);
    m_workshop->write(QStringLiteral("in.json"), in);
    const qint64 usualMemory = m_usualMemory + 3 * MiB;
    for (const char *command : {"validate in.json", "show in.json", "set in.json name x"}) {
        const Cost cost = costOf(*m_workshop, line(command));
        QCOMPARE(cost.status, 1);
        const QByteArray lines = cost.out + cost.err;
        QCOMPARE(lines.count('\n'), 101);
        QVERIFY2(lines.contains(": 100000 problems; only the first 100 are listed"), lines.right(200).constData());
        checkMemory(cost, usualMemory + 130 * qint64(in.size()));
    }
}

void ToolBoundsTest::invalidMaxProblemsIsWrongUsage()
{
    for (const char *number : {"0", "-1", "many", "2147483648"}) {
        const Run run =
            m_workshop->run({QStringLiteral("validate"), QStringLiteral("--max-problems=") + QLatin1String(number),
                             QStringLiteral("x")});
        QCOMPARE(run.status, 2);
        QCOMPARE(run.err.section(QLatin1Char('\n'), 0, 0),
                 QStringLiteral("tunerproperties: --max-problems must be a number from 1 to 2147483647, not '%1'")
                     .arg(QLatin1String(number)));
    }
}

void ToolBoundsTest::compressedDataBeyondTheLimitIsAnError_data()
{
    QTest::addColumn<QString>("command");
    for (const char *command :
         {"validate in.tpz", "validate --from tagged in.tpz", "convert in.tpz out.xml",
          "convert --no-validate in.tpz out.json", "diff in.tpz in.tpz", "show in.tpz", "show --format json in.tpz",
          "show --format html in.tpz", "get in.tpz name", "set in.tpz name x"})
        QTest::newRow(command) << QString::fromUtf8(command);
}

void ToolBoundsTest::compressedDataBeyondTheLimitIsAnError()
{
    QFETCH(QString, command);
    const QByteArray expanded = document(emptyItems(componentTag, 1000000));
    const QByteArray in = compressed(expanded);
    QCOMPARE(expanded.size(), 4000066);
    QVERIFY(in.size() < 4096);
    m_workshop->write(QStringLiteral("in.tpz"), in);
    const Cost cost = costOf(*m_workshop, command.split(QLatin1Char(' ')));
    QCOMPARE(cost.status, 3);
    QCOMPARE(cost.out, QByteArray());
    QCOMPARE(cost.err,
             "tunerproperties: in.tpz: expands from " + QByteArray::number(in.size())
                 + " to 4000066 bytes, more than 50 times its size; use --max-expansion to allow it\n");
    QCOMPARE(m_workshop->read(QStringLiteral("in.tpz")), in);
    checkMemory(cost, 64 * MiB); // the memory of this program counts for the one that it starts
}

void ToolBoundsTest::expansionOfFiftyTimesIsAccepted()
{
    // An unknown record that cannot be compressed, and empty nodes, which compress to next to nothing.
    QByteArray noise(4000, Qt::Uninitialized);
    QRandomGenerator generator(1);
    for (char &byte : noise)
        byte = char(generator.bounded(256));
    const auto composed = [&](int nodes) {
        return document(record("01020304", noise) + emptyItems(componentTag, nodes));
    };
    const QByteArray accepted = compressed(composed(53000));
    const QByteArray refused = compressed(composed(59500));
    const double acceptedTimes = double(composed(53000).size()) / accepted.size();
    const double refusedTimes = double(composed(59500).size()) / refused.size();
    QVERIFY2(acceptedTimes > 44 && acceptedTimes < 50, qPrintable(QString::number(acceptedTimes)));
    QVERIFY2(refusedTimes > 50 && refusedTimes < 56, qPrintable(QString::number(refusedTimes)));
    m_workshop->write(QStringLiteral("accepted.tpz"), accepted);
    m_workshop->write(QStringLiteral("refused.tpz"), refused);
    QCOMPARE(costOf(*m_workshop, line("get accepted.tpz type")).status, 0);
    QCOMPARE(costOf(*m_workshop, line("get refused.tpz type")).status, 3);
}

void ToolBoundsTest::pageOfTooManyObjectsIsAnError()
{
    m_workshop->write(QStringLiteral("in.tpb"), document(emptyItems(componentTag, 1000001)));
    const Cost cost = costOf(*m_workshop, line("show --format html in.tpb"));
    QCOMPARE(cost.status, 3);
    QCOMPARE(cost.outSize, qint64(0));
    QCOMPARE(cost.err,
             QByteArray("tunerproperties: in.tpb: cannot show more than 1000000 objects on a page; use 'show --format "
                        "json'\n"));
    QVERIFY(costOf(*m_workshop, line("show --format json in.tpb")).outSize > 1000001);
}

void ToolBoundsTest::pageOfTooManyDifferencesIsAnError()
{
    m_workshop->write(QStringLiteral("none.tpb"), document(emptyItems(componentTag, 0)));
    m_workshop->write(QStringLiteral("most.tpb"), document(emptyItems(componentTag, 100000)));
    m_workshop->write(QStringLiteral("more.tpb"), document(emptyItems(componentTag, 100001)));
    m_workshop->write(QStringLiteral("large.tpb"), document(emptyItems(componentTag, 1000001)));
    const Cost most = costOf(*m_workshop, line("diff --format html none.tpb most.tpb"));
    QCOMPARE(most.err, QByteArray());
    QCOMPARE(most.status, 0);
    const Cost more = costOf(*m_workshop, line("diff --format html none.tpb more.tpb"));
    QCOMPARE(more.status, 3);
    QCOMPARE(more.outSize, qint64(0));
    QCOMPARE(more.err,
             QByteArray("tunerproperties: none.tpb: cannot show more than 100000 differences on a page; use 'diff "
                        "--json'\n"));
    const Cost large = costOf(*m_workshop, line("diff --format html none.tpb large.tpb"));
    QCOMPARE(large.status, 3);
    QCOMPARE(large.outSize, qint64(0));
    QCOMPARE(large.err,
             QByteArray("tunerproperties: large.tpb: cannot show more than 1000000 objects on a page; use 'diff "
                        "--json'\n"));
}

void ToolBoundsTest::maxExpansionRaisesTheLimit()
{
    m_workshop->write(QStringLiteral("in.tpz"), compressed(document(component(emptyItems(nodeTag, 20000)))));
    QCOMPARE(costOf(*m_workshop, line("get in.tpz type")).status, 3);
    const Cost cost = costOf(*m_workshop, line("get --max-expansion 1100 in.tpz type"));
    QCOMPARE(cost.status, 0);
    QCOMPARE(cost.out, QByteArray("SCP\n"));
    QCOMPARE(costOf(*m_workshop, line("validate --max-expansion 1100 in.tpz")).status, 1);
}

void ToolBoundsTest::invalidMaxExpansionIsWrongUsage()
{
    const Run run = m_workshop->run(line("show --max-expansion 1101 x"));
    QCOMPARE(run.status, 2);
    QCOMPARE(run.err.section(QLatin1Char('\n'), 0, 0),
             QStringLiteral("tunerproperties: --max-expansion must be a number from 1 to 1100, not '1101'"));
}

void ToolBoundsTest::everyExampleExpandsWithinTheLimit()
{
    for (const QString &name : exampleNames()) {
        QCOMPARE(costOf(*m_workshop, {QStringLiteral("convert"), examplePath(name), QStringLiteral("out.tpz")}).status,
                 0);
        // Even a limit of 10 is enough.
        QCOMPARE(costOf(*m_workshop, line("validate --max-expansion 10 out.tpz")).status, 0);
    }
}

void ToolBoundsTest::bandwidthsOfEverySizeMakeASmallPage()
{
    constexpr int count = 3000;
    QByteArray bandwidths;
    for (int i = 0; i < count; ++i) {
        const QByteArray number = i == 0 ? QByteArray("1e-300") : i == 1 ? QByteArray("1e308") : QByteArray("1");
        bandwidths += "<BandwidthSelection Name=\"n\" MaxBandwidth=\"" + number + "\"/>";
    }
    m_workshop->write(QStringLiteral("in.xml"), xml(bandwidths));
    const Cost cost = costOf(*m_workshop, line("show --format html in.xml"));
    QCOMPARE(cost.status, 0);
    QVERIFY2(cost.outSize < count * 1500, qPrintable(QString::number(cost.outSize)));
    checkMemory(cost, 64 * MiB);
}

void ToolBoundsTest::resultsOfManyFilesTakeLittleMemory_data()
{
    QTest::addColumn<QString>("options");
    QTest::newRow("as lines") << "";
    QTest::newRow("quietly") << " --quiet";
    QTest::newRow("as JSON") << " --json";
}

void ToolBoundsTest::resultsOfManyFilesTakeLittleMemory()
{
    QFETCH(QString, options);
    m_workshop->write(QStringLiteral("in.tpb"), document(component(emptyItems(nodeTag, 4000))));
    QStringList arguments = (QStringLiteral("validate --jobs 4") + options).split(QLatin1Char(' '));
    for (int i = 0; i < 40; ++i)
        arguments.append(QStringLiteral("in.tpb"));
    const Cost cost = costOf(*m_workshop, arguments);
    QCOMPARE(cost.status, 1);
    QVERIFY2(cost.outSize <= 40 * 20000, qPrintable(QString::number(cost.outSize)));
    QCOMPARE(cost.outSize == 0, options == QLatin1String(" --quiet"));
    checkMemory(cost, QtFigures::mostForResults * MiB);
}

// This used to process 100,000 characters for each element, which took minutes.
void ToolBoundsTest::aLongVersionIsNotReadAgainForEachElement()
{
    m_workshop->write(QStringLiteral("in.xml"), xml(QByteArray("<a/>").repeated(5000), QByteArray(100000, '1')));
    const Cost cost = costOf(*m_workshop, line("validate --max-problems 1 in.xml"));
    QCOMPARE(cost.status, 1);
    QVERIFY2(cost.out.contains("in.xml: 5001 problems"), cost.out.constData());
}

void ToolBoundsTest::aPageTakesNoMoreMemoryThanLint_data()
{
    QTest::addColumn<QByteArray>("nodeStart");
    QTest::addColumn<QByteArray>("panel");
    QTest::newRow("no problem") << QByteArray("<Node id=\"n%1\">")
                                << QByteArray("<p class=\"fine\">Validation found no problems.</p>");
    QTest::newRow("a problem of each node") << QByteArray("<Node>") << QByteArray("<h2>22000 problems</h2>");
    QTest::newRow("a warning about each node but the first")
        << QByteArray("<Node id=\"n\">") << QByteArray("<h2>No problems, 21999 warnings</h2>");
}

// The page is written while it is composed, so it is never in memory as a whole: only what finds its findings is.
void ToolBoundsTest::aPageTakesNoMoreMemoryThanLint()
{
    QFETCH(QByteArray, nodeStart);
    QFETCH(QByteArray, panel);
    constexpr int count = 22000;
    QByteArray nodes;
    for (int i = 0; i < count; ++i)
        nodes += QByteArray(nodeStart).replace("%1", QByteArray::number(i))
            + "<ValueItem><ValueNumericInt id=\"Attenuation\" value=\"10\" min=\"0\" max=\"70\" step=\"1\"/>"
              "</ValueItem></Node>\n";
    m_workshop->write(QStringLiteral("in.xml"),
                      xml("<Component type=\"t\" name=\"c\" optional=\"false\">" + nodes + "</Component>"));
    const Cost lint = largestOfFive(*m_workshop, line("lint in.xml"));
    const Cost page = largestOfFive(*m_workshop, line("show --format html in.xml"));
    QCOMPARE(page.status, 0);
    QVERIFY2(page.out.contains(panel), page.out.constData());
    QVERIFY2(page.outSize > 20 * MiB, qPrintable(QString::number(page.outSize)));
    checkMemory(page, lint.memory + 3 * MiB);
}

void ToolBoundsTest::runningOutOfMemoryIsReported_data()
{
    QTest::addColumn<QString>("command");
    for (const char *command : {"validate small.xml", "validate in.tpb", "validate -j 1 in.tpb small.xml",
                                "show --format html in.tpb", "convert --no-validate in.tpb out.xml"})
        QTest::newRow(command) << QString::fromUtf8(command);
}

// Every limit of the address space with which the program starts: where it runs out, it says so, and is never ended by
// a signal. An allocator and the stacks of threads reserve large parts at once.
void ToolBoundsTest::runningOutOfMemoryIsReported()
{
#ifdef HEAP_OF_A_SANITIZER
    SKIP("a sanitizer needs more address space than there is memory");
#endif
    QFETCH(QString, command);
    m_workshop->write(QStringLiteral("in.tpb"),
                      document(textRecord("6ADAF7A6", QByteArray(20 * MiB, 'x')) + emptyItems(componentTag, 90000)));
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    int started = 0;
    int reported = 0;
    for (int kibibytes = 72 << 10; kibibytes <= 200 << 10; kibibytes += 16 << 10) {
        const QString limited = QStringLiteral("ulimit -v %1; ulimit -c 0; exec \"$tool\" ").arg(kibibytes);
        if (m_workshop->shell(limited + QStringLiteral("--version")).status != 0)
            continue;
        ++started;
        const Run run = m_workshop->shell(limited + command);
        if (run.status == 3) {
            ++reported;
            QVERIFY2(run.err.contains(QStringLiteral("out of memory")), qPrintable(run.err));
            QVERIFY2(run.out.isEmpty(), "a part of the page has been written");
        } else {
            QVERIFY2(run.status == 0 || (run.status == 1 && command.startsWith(QLatin1String("validate"))),
                     qPrintable(QStringLiteral("%1 with %2 KiB: %3").arg(run.status).arg(kibibytes).arg(run.err)));
        }
    }
    QVERIFY(started > 0);
    QVERIFY(reported > 0 || !command.contains(QStringLiteral("in.tpb")));
}

// Libraries allocate memory before main(), and some end the process by a signal if there is none.
void ToolBoundsTest::thereIsNoSignalHoweverLittleMemoryThereIs()
{
#ifdef HEAP_OF_A_SANITIZER
    SKIP("a sanitizer needs more address space than there is memory");
#endif
    constexpr int notLoaded = 127; // the system's loader says which library it has no memory for
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    QSet<int> statuses;
    for (int kibibytes = 24 << 10; kibibytes <= 120 << 10; kibibytes += 1 << 10) {
        const QString limited = QStringLiteral("ulimit -v %1; ulimit -c 0; exec \"$tool\" ").arg(kibibytes);
        const Run run = m_workshop->shell(limited + QStringLiteral("validate small.xml"));
        statuses.insert(run.status);
        if (run.status == 3)
            QCOMPARE(run.err, QStringLiteral("tunerproperties: out of memory\n"));
        else
            QVERIFY2(run.status == notLoaded || run.status == 0,
                     qPrintable(QStringLiteral("%1 with %2 KiB: %3").arg(run.status).arg(kibibytes).arg(run.err)));
    }
    QVERIFY(statuses.contains(notLoaded));
    QVERIFY(statuses.contains(0));
}

void ToolBoundsTest::severalFilesNeedNoMoreMemoryThanOne_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("summary");
    QTest::newRow("validate") << QStringLiteral("validate") << QStringLiteral("3 valid");
    QTest::newRow("lint") << QStringLiteral("lint") << QStringLiteral("3 clean");
    QTest::newRow("convert") << QStringLiteral("convert --to json --out-dir out") << QStringLiteral("3 converted");
    QTest::newRow("fmt") << QStringLiteral("fmt --check") << QStringLiteral("3 unchanged");
}

// A thread needs address space for its stack and its heap. With fewer threads than wanted, or none, all files are
// processed.
void ToolBoundsTest::severalFilesNeedNoMoreMemoryThanOne()
{
#ifdef HEAP_OF_A_SANITIZER
    SKIP("a sanitizer needs more address space than there is memory");
#endif
    QFETCH(QString, command);
    QFETCH(QString, summary);
    for (const char *name : {"a.xml", "b.xml", "c.xml"})
        m_workshop->write(QString::fromUtf8(name), smallXml);
    const auto run = [&](int kibibytes, const char *files) {
        return m_workshop->shell(QStringLiteral("ulimit -v %1; ulimit -c 0; exec \"$tool\" -j 3 ").arg(kibibytes)
                                 + command + QLatin1String(files));
    };
    constexpr int step = 1 << 10;
    int kibibytes = 64 << 10;
    while (kibibytes < 200 << 10 && run(kibibytes, " a.xml").status != 0)
        kibibytes += step;
    const int most = kibibytes + (40 << 10); // enough for threads
    for (kibibytes += step; kibibytes <= most; kibibytes += step) {
        const Run several = run(kibibytes, " a.xml b.xml c.xml");
        QVERIFY2(several.status == 0, qPrintable(QStringLiteral("%1 KiB: ").arg(kibibytes) + several.err));
        QCOMPARE(several.err, QStringLiteral("tunerproperties: 3 files: ") + summary + QLatin1Char('\n'));
    }
}

void ToolBoundsTest::outputAndMemoryFollowTheSizeOfTheInput_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("in");
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("outPerByte");
    QTest::addColumn<int>("memoryPerByte");
    // Many, so that the constant part of the bounds does not hide them.
    constexpr int count = 17000;
    constexpr int jsonCount = 3000;
    constexpr int choiceCount = jsonCount / 20; // these are twenty times as long
    const struct
    {
        const char *name;
        QByteArray bytes;
    } documents[] = {
        {"bandwidths", document(emptyItems(bandwidthTag, count) + component(emptyItems(nodeTag, 1)))},
        {"components", document(emptyItems(componentTag, count))},
        {"nodes", document(component(emptyItems(nodeTag, count)))},
        {"items", document(node(emptyItems(valueItemTag, count)))},
        {"ranges", document(emptyValues(rangeTag, count / 3))}, // three times as long
        {"selections", document(emptyValues(selectionTag, count / 3))},
        {"options", document(node(listOf(valueItemTag, record(selectionTag, emptyItems(selectionItemTag, count)))))},
        {"texts", document(node(listOf(valueItemTag, record(textListTag, emptyItems(textItemTag, count)))))},
        {"JSON bandwidths", jsonDocument(jsonItems("Component", 1) + ',' + jsonItems("BandwidthSelection", jsonCount))},
        {"JSON modes",
         jsonDocument(jsonItems("Component", 1) + ",\"StartupModes\":{" + jsonItems("StartupMode", jsonCount, "0")
                      + '}')},
        {"JSON components", jsonDocument(jsonItems("Component", 6 * jsonCount))},
        {"JSON nodes", jsonComponent(jsonItems("Node", jsonCount))},
        {"JSON items", jsonNode(jsonItems("ValueItem", 50000))},
        {"JSON ranges", jsonNode(jsonItems("ValueItem", choiceCount, jsonChoice("ValueNumericInt")))},
        {"JSON selections", jsonNode(jsonItems("ValueItem", choiceCount, jsonChoice("ValueSelection")))},
        {"JSON options", jsonValue("ValueSelection", jsonItems("SelectionItem", jsonCount))},
        {"JSON texts", jsonValue("ValueStringList", jsonItems("StringItem", jsonCount))},
    };
    // The bounds in RELIABILITY.md.
    const struct
    {
        const char *command;
        int outPerByte;
        int memoryPerByte;
    } commands[] = {{"validate %1", 1, 130},
                    {"convert --no-validate %1 out.xml", 0, QtFigures::convertPerByte},
                    {"convert --no-validate %1 out.json", 0, QtFigures::convertPerByte},
                    {"diff small.xml %1", 100, 120},
                    {"diff --format html small.xml %1", 300, 380},
                    {"merge -o out.json small.xml small.xml %1", 0, 360},
                    {"show %1", 40, 130},
                    {"show --format json %1", 20, 120},
                    {"show --format html %1", 300, 130},
                    {"get %1 Component", 20, 120},
                    {"fmt %1", 0, 180},
                    {"set --rewrite --no-validate %1 name x", 0, 360}};
    for (const auto &document : documents) {
        const QString file = document.bytes.startsWith('{') ? QStringLiteral("in.json") : QStringLiteral("in.tpb");
        for (const auto &command : commands) {
            const QString commandLine = QString::fromUtf8(command.command).arg(file);
            QTest::addRow("%s: %s", document.name, qPrintable(commandLine))
                << file << document.bytes << commandLine << command.outPerByte << command.memoryPerByte;
        }
    }
}

void ToolBoundsTest::outputAndMemoryFollowTheSizeOfTheInput()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, in);
    QFETCH(QString, command);
    QFETCH(int, outPerByte);
    QFETCH(int, memoryPerByte);
    constexpr qint64 usualOutput = 1 << 16; // styles and script of a page, a hundred problems
    m_workshop->write(file, in);
    m_workshop->write(QStringLiteral("small.xml"), smallXml);
    const qint64 usualMemory = m_usualMemoryOfPages + 3 * MiB;
    const Cost cost = costOf(*m_workshop, command.split(QLatin1Char(' ')));
    QVERIFY2(cost.status == 0 || (cost.status == 1 && command.startsWith(QLatin1String("validate"))),
             cost.err.constData());
    const qint64 mostOutput = usualOutput + in.size() * outPerByte;
    QVERIFY2(cost.outSize <= mostOutput, qPrintable(QStringLiteral("%1 > %2").arg(cost.outSize).arg(mostOutput)));
    checkMemory(cost, usualMemory + qint64(in.size()) * memoryPerByte);
}

TEST_SUITE(ToolBoundsTest)
#include "tst_ToolBounds.moc"
