// SPDX-License-Identifier: MIT
#include <QtTest>

#include "DocumentSamples.h"
#include "Pipe.h"
#include "PlacesInQt.h"
#include "Surprises.h"

using namespace JobXml;
using namespace OutOfMemory;

namespace {

using Document = Objects<TunerProperties>;

const Samples<TunerProperties> &documents()
{
    return samples<TunerProperties>();
}

QByteArray representation()
{
    return TunerProperties(documents().complete).GetBinaryRepresentationAsQByteArray();
}

QByteArray compressedRepresentation()
{
    return TunerProperties(documents().complete).GetCompressedBinaryRepresentationAsQByteArray(-1);
}

/// With a document type, the document is read by a QXmlStreamReader, not in memory.
QString typed(QString xml)
{
    return xml.insert(xml.indexOf(QLatin1String("<TunerProperties")), QStringLiteral("<!DOCTYPE TunerProperties>"));
}

/// The files that are read.
class Files
{
public:
    Files()
    {
        const QString xml = TunerProperties(documents().complete).GetXmlString();
        write(QStringLiteral("document.xml"), xml.toUtf8());
        write(QStringLiteral("typed.xml"), typed(xml).toUtf8());
        write(QStringLiteral("document.bin"), representation());
        write(QStringLiteral("compressed.bin"), compressedRepresentation());
    }

    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

private:
    void write(const QString &name, const QByteArray &content)
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qUtf8Printable(name));
    }

    QTemporaryDir m_folder;
};

const Files *files = nullptr;

QString path(const char *name)
{
    return files->path(name);
}

// --- The input and the expected result of an operation ---------------------------------------------------------------

void nothing(Document &) { }

void anXmlReader(Document &o)
{
    o.reader = std::make_unique<QXmlStreamReader>(documents().xml);
    o.reader->readNextStartElement();
}

void aStreamWith(Document &o, const QByteArray &bytes)
{
    o.bytes = bytes;
    o.openStream(QIODevice::ReadOnly);
}

bool isComplete(Document &o)
{
    return o.target == documents().complete && snapshotOf(o.target) == documents().snapshot;
}

bool isReadCompletely(Document &o)
{
    return o.answer && isComplete(o);
}

/// Existing data are kept, and the lists continue with the items read.
bool isAdded(Document &o)
{
    const TunerProperties &target = o.target;
    const TunerProperties &read = documents().complete;
    const TunerProperties &before = documents().other;
    return target.GetComponent() == before.GetComponent() + read.GetComponent()
        && target.GetBandwidthSelection() == before.GetBandwidthSelection() + read.GetBandwidthSelection()
        && target.GetStartupModes().GetStartupMode()
        == before.GetStartupModes().GetStartupMode() + read.GetStartupModes().GetStartupMode()
        && target.Getname() == read.Getname();
}

bool isAnsweredAndAdded(Document &o)
{
    return o.answer && isAdded(o);
}

Operation<TunerProperties>::Question fails(const char *error)
{
    return [=](Document &o) { return !o.answer && o.target.GetErrorString().endsWith(QLatin1String(error)); };
}

bool isUnchanged(Document &o)
{
    return o.target == documents().other;
}

} // namespace

/// Memory runs out while a document is read, in every place once.
class OutOfMemoryReadingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_files = std::make_unique<Files>();
        files = m_files.get();
        addXml();
        addRecords();
        addRepresentations();
        addFiles();
        addRefusals();
    }

    void badAllocReachesTheCallerAndAllObjectsStayUsable_data() { addRows(m_operations); }
    void badAllocReachesTheCallerAndAllObjectsStayUsable()
    {
        QFETCH(int, operation);
        const int before = m_allocations;
        QVERIFY(isSurvived(m_operations.at(operation), &m_allocations));
        qInfo("%d allocations", m_allocations - before);
    }

    void cleanupTestCase() { qInfo("%d allocations, each failed alone and with all that follow", m_allocations); }

private:
    void add(const char *name, Begins target, Operation<TunerProperties>::Action prepare,
             Operation<TunerProperties>::Action perform, Operation<TunerProperties>::Question isRight,
             Leaves leaves = Leaves::Parts, const QVector<KnownPlace> &places = {})
    {
        m_operations.append(
            {name, target, leaves, std::move(prepare), std::move(perform), std::move(isRight), places, {}});
    }

    void addXml()
    {
        const auto setXmlString = [](const QString &xml) {
            return [=](Document &o) { o.answer = o.target.SetXmlString(xml, true); };
        };
        const QString xml = documents().xml;
        add("SetXmlString", Begins::New, nothing, setXmlString(xml), isReadCompletely);
        add("SetXmlString, shared data", Begins::Shared, nothing, setXmlString(xml), isAnsweredAndAdded);
        add("SetXmlString, by a reader", Begins::New, nothing, setXmlString(typed(xml)), isReadCompletely,
            Leaves::Parts, InQt::xmlReader);
        add("SetXmlString, by a reader, shared data", Begins::Shared, nothing, setXmlString(typed(xml)),
            isAnsweredAndAdded, Leaves::Parts, InQt::xmlReader);
        const auto processXml = [](Document &o) { o.target.ProcessXml(*o.reader); };
        add("ProcessXml", Begins::New, anXmlReader, processXml, isComplete);
        // The caller's reader continues where the memory ran out.
        add(
            "ProcessXml, reading on", Begins::New, anXmlReader,
            [](Document &o) {
                try {
                    o.target.ProcessXml(*o.reader);
                } catch (const std::bad_alloc &) {
                    while (!o.reader->atEnd() && !o.reader->hasError())
                        o.reader->readNext();
                    throw;
                }
            },
            isComplete);
        add("ProcessXml, other data", Begins::Filled, anXmlReader, processXml, isAdded);
    }

    void addRecords()
    {
        const auto aRecord = [](Document &o) { aStreamWith(o, documents().record.mid(4)); };
        const auto setBinary = [](Document &o) { o.target.SetBinary(*o.stream, o.bytes.size()); };
        add("SetBinary", Begins::New, aRecord, setBinary, isComplete);
        add("SetBinary, shared data", Begins::Shared, aRecord, setBinary, isAdded);
        const auto aSnapshot = [](Document &o) { aStreamWith(o, documents().snapshot); };
        const auto setSnapshot = [](Document &o) { o.target.SetVersionSpecificBinaryWithoutValidation(*o.stream); };
        add("snapshot", Begins::New, aSnapshot, setSnapshot, isComplete);
        add("snapshot, shared data", Begins::Shared, aSnapshot, setSnapshot, isAdded);
    }

    void addRepresentations()
    {
        const auto fromBytes = [](Document &o) { o.answer = o.target.SetBinaryRepresentation(o.bytes); };
        const auto fromStream = [](Document &o) { o.answer = o.target.SetBinaryRepresentation(*o.stream); };
        add(
            "SetBinaryRepresentation", Begins::New, [](Document &o) { o.bytes = representation(); }, fromBytes,
            isReadCompletely);
        add(
            "SetBinaryRepresentation, compressed", Begins::New,
            [](Document &o) { o.bytes = compressedRepresentation(); }, fromBytes, isReadCompletely);
        add(
            "SetBinaryRepresentation, stream", Begins::Filled, [](Document &o) { aStreamWith(o, representation()); },
            fromStream, isAnsweredAndAdded);
        add(
            "SetBinaryRepresentation, pipe", Begins::New,
            [](Document &o) {
                o.device = std::make_unique<Pipe>(representation());
                o.stream = std::make_unique<QDataStream>(o.device.get());
            },
            fromStream, isReadCompletely);
        add(
            "SetBinaryRepresentation, stream, compressed", Begins::Shared,
            [](Document &o) { aStreamWith(o, compressedRepresentation()); }, fromStream, isAnsweredAndAdded);
    }

    void addFiles()
    {
        add(
            "LoadXml", Begins::New, nothing, [](Document &o) { o.answer = o.target.LoadXml(path("document.xml")); },
            isReadCompletely);
        const auto loadXml = [](const char *name) {
            return [=](Document &o) {
                QFile file(path(name));
                o.answer = o.target.LoadXml(&file);
            };
        };
        add("LoadXml, file", Begins::Filled, nothing, loadXml("document.xml"), isAnsweredAndAdded);
        add("LoadXml, by a reader", Begins::Filled, nothing, loadXml("typed.xml"), isAnsweredAndAdded, Leaves::Parts,
            InQt::xmlReader);
        const auto loadBinary = [](const char *name) {
            return [=](Document &o) {
                QFile file(path(name));
                o.answer = o.target.LoadBinary(&file);
            };
        };
        add("LoadBinary", Begins::New, nothing, loadBinary("document.bin"), isReadCompletely);
        add("LoadBinary, compressed", Begins::New, nothing, loadBinary("compressed.bin"), isReadCompletely);
    }

    // Reading fails anyway; running out of memory must not look like that failure.
    void addRefusals()
    {
        const auto xml = [](const QString &text) {
            return [=](Document &o) { o.answer = o.target.SetXmlString(text, true); };
        };
        add("XML that is cut off", Begins::New, nothing, xml(documents().xml.left(documents().xml.size() / 2)),
            fails("Premature end of document."), Leaves::Parts, InQt::xmlReader);
        add("XML of another class", Begins::Filled, nothing, xml(QStringLiteral("<Node id=\"n\"/>")),
            fails(": the root element is 'Node', not 'TunerProperties'"), Leaves::Nothing, InQt::xmlReader);
        add("an unknown element", Begins::Filled, nothing,
            xml(QStringLiteral("<TunerProperties Version=\"1.1\"><x/></TunerProperties>")), isUnchanged,
            Leaves::Nothing);
        add(
            "a record with a wrong length", Begins::New, [](Document &o) { aStreamWith(o, documents().record.mid(4)); },
            [](Document &o) { o.target.SetBinary(*o.stream, o.bytes.size() + 4); }, isComplete);
        const auto fromBytes = [](Document &o) { o.answer = o.target.SetBinaryRepresentation(o.bytes); };
        add(
            "a representation of another class", Begins::Filled,
            [](Document &o) { o.bytes = bytes("C8131DB4 00000000"); }, fromBytes,
            fails(": the leading word is 0xC8131DB4, not 0xC10CBB5F (TunerProperties)"), Leaves::Nothing);
        add(
            "a representation that is cut off", Begins::Filled,
            [](Document &o) { o.bytes = representation().left(100); }, fromBytes, fails(" but 92 bytes follow"),
            Leaves::Nothing);
        add(
            "damaged compressed bytes", Begins::Filled,
            [](Document &o) {
                o.bytes = compressedRepresentation();
                o.bytes[40] = char(~o.bytes.at(40));
            },
            fromBytes, fails("binary data: the compressed bytes are damaged"), Leaves::Nothing);
        add(
            "no such file", Begins::Filled, nothing, [](Document &o) { o.answer = o.target.LoadXml(path("none")); },
            fails("none: cannot open: No such file or directory"), Leaves::Nothing);
    }

    std::unique_ptr<Files> m_files;
    QVector<Operation<TunerProperties>> m_operations;
    int m_allocations = 0;
};

TEST_SUITE(OutOfMemoryReadingTest)
#include "tst_OutOfMemoryReading.moc"
