// SPDX-License-Identifier: MIT
#include <QtTest>

#include "DocumentSamples.h"
#include "ExceptionText.h"
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

/// The document as it is written when nothing fails.
struct Written
{
    QByteArray xml = TunerProperties(documents().complete).GetXmlString().toUtf8();
    QByteArray representation = TunerProperties(documents().complete).GetBinaryRepresentationAsQByteArray();
    QByteArray compressed = TunerProperties(documents().complete).GetCompressedBinaryRepresentationAsQByteArray(9);
};

const Written &written()
{
    static const Written forms;
    return forms;
}

// --- The input and the expected result of an operation ---------------------------------------------------------------

void nothing(Document &) { }

void aStream(Document &o)
{
    o.openStream(QIODevice::WriteOnly);
}

void aWriter(Document &o)
{
    aStream(o);
    o.writer = std::make_unique<QXmlStreamWriter>(o.device.get());
}

Operation<TunerProperties>::Question writes(const QByteArray &bytes)
{
    return [=](Document &o) { return o.bytes == bytes; };
}

// The record is discarded when memory runs out, and the check comes before that.
const QVector<KnownPlace> checkComesFirst{{Outcome::Unnoticed, "JobXml::DataObject::GetBinary"}};

/// A folder with one file, which exists before it is written.
class Folder
{
public:
    static QString path() { return instance().m_folder.filePath(QStringLiteral("file")); }

    static void begin(Document &)
    {
        for (const QString &left : entries()) // by an attempt that failed
            QFile::remove(instance().m_folder.filePath(left));
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write(old()) != old().size())
            qFatal("cannot write the old file");
    }

    static Operation<TunerProperties>::Question holdsNew(const QByteArray &content)
    {
        return [=](Document &o) { return o.answer && isAlone() && found() == content; };
    }

    static Operation<TunerProperties>::Question holdsOldOrNew(const QByteArray &content)
    {
        return [=](Document &) { return isAlone() && (found() == old() || found() == content); };
    }

    static bool holdsOld(Document &) { return isAlone() && found() == old(); }

    static void remove() { instance().m_folder.remove(); }

private:
    static Folder &instance()
    {
        static Folder folder;
        return folder;
    }

    static QByteArray old() { return QByteArrayLiteral("old"); }
    static QByteArray found()
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static bool isAlone() { return entries() == QStringList{QStringLiteral("file")}; }
    static QStringList entries()
    {
        return QDir(instance().m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir m_folder;
};

} // namespace

/// Memory runs out while a document is written, in every place once.
class OutOfMemoryWritingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
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

    void cleanupTestCase()
    {
        Folder::remove();
        qInfo("%d allocations, each failed alone and with all that follow", m_allocations);
    }

private:
    using Question = Operation<TunerProperties>::Question;
    using Action = Operation<TunerProperties>::Action;

    void add(const char *name, Begins target, Action prepare, Action perform, Question isRight,
             const QVector<KnownPlace> &places = {}, Question isUnharmed = {})
    {
        m_operations.append({name, target, Leaves::Nothing, std::move(prepare), std::move(perform), std::move(isRight),
                             places, std::move(isUnharmed)});
    }

    void addXml()
    {
        const auto source = [](Document &o) { o.source.GetXml(*o.writer); };
        const auto target = [](Document &o) { o.target.GetXml(*o.writer); };
        add("GetXml", Begins::New, aWriter, source, writes(documents().xml.toUtf8()));
        add(
            "GetXml, writing on", Begins::New, aWriter,
            [](Document &o) {
                try {
                    o.source.GetXml(*o.writer);
                } catch (const std::bad_alloc &) {
                    o.writer->writeEndDocument();
                    throw;
                }
            },
            writes(documents().xml.toUtf8()), InQt::xmlWriterAfterwards);
        add("GetXml, shared data", Begins::Shared, aWriter, target, writes(xmlOf(documents().other).toUtf8()));
        add(
            "GetXml, not validating", Begins::New, aWriter,
            [](Document &o) {
                o.target.SetValidate(false);
                o.target.GetXml(*o.writer);
            },
            writes(R"(<TunerProperties Version="1.1" type="" baseresource=""/>)"));
        add(
            "GetXmlString", Begins::New, nothing, [](Document &o) { o.text = o.source.GetXmlString(); },
            [](Document &o) { return o.text.toUtf8() == written().xml; });
    }

    void addRecords()
    {
        add(
            "GetBinary", Begins::New, aStream, [](Document &o) { o.answer = o.source.GetBinary(*o.stream, 0, false); },
            writes(documents().record));
        add(
            "GetBinary, shared data", Begins::Shared, aStream,
            [](Document &o) { o.answer = o.target.GetBinary(*o.stream, 0, false); },
            writes(recordOf(documents().other)));
        add(
            "snapshot", Begins::New, aStream,
            [](Document &o) { o.source.GetVersionSpecificBinaryWithoutValidation(*o.stream); },
            writes(documents().snapshot));
        add(
            "snapshot, shared data", Begins::Shared, aStream,
            [](Document &o) { o.target.GetVersionSpecificBinaryWithoutValidation(*o.stream); },
            writes(documents().otherSnapshot));
    }

    void addRepresentations()
    {
        add(
            "GetBinaryRepresentation", Begins::New, aStream,
            [](Document &o) { o.source.GetBinaryRepresentation(*o.stream); }, writes(written().representation));
        add(
            "GetBinaryRepresentationAsQByteArray", Begins::New, nothing,
            [](Document &o) { o.bytes = o.source.GetBinaryRepresentationAsQByteArray(); },
            writes(written().representation));
        add(
            "GetCompressedBinaryRepresentation", Begins::New, aStream,
            [](Document &o) { o.source.GetCompressedBinaryRepresentation(*o.stream, 9); },
            writes(written().compressed));
        add(
            "GetCompressedBinaryRepresentationAsQByteArray", Begins::New, nothing,
            [](Document &o) { o.bytes = o.source.GetCompressedBinaryRepresentationAsQByteArray(9); },
            writes(written().compressed));
    }

    void addFiles()
    {
        add(
            "SaveXml", Begins::New, Folder::begin, [](Document &o) { o.answer = o.source.SaveXml(Folder::path()); },
            Folder::holdsNew(written().xml), {}, Folder::holdsOldOrNew(written().xml));
        add(
            "SaveBinary", Begins::New, Folder::begin,
            [](Document &o) { o.answer = o.source.SaveBinary(Folder::path()); },
            Folder::holdsNew(written().representation), {}, Folder::holdsOldOrNew(written().representation));
        add(
            "SaveCompressedBinary", Begins::New, Folder::begin,
            [](Document &o) { o.answer = o.source.SaveCompressedBinary(Folder::path(), 9); },
            Folder::holdsNew(written().compressed), {}, Folder::holdsOldOrNew(written().compressed));
    }

    // Writing fails anyway; running out of memory must not look like that failure.
    void addRefusals()
    {
        const auto isNothing = [](Document &o) { return o.bytes.isEmpty() && o.text.isNull() && !o.answer; };
        add(
            "XML without data", Begins::New, aWriter, [](Document &o) { o.target.GetXml(*o.writer); }, isNothing);
        add(
            "a record without data", Begins::New, aStream,
            [](Document &o) { o.answer = o.target.GetBinary(*o.stream, 0, false); }, isNothing);
        add(
            "a record that the check refuses", Begins::New, aStream,
            [](Document &o) {
                TunerProperties document(o.source);
                document.GetComponent()[0].Resetname();
                o.answer = thrownBy([&] { static_cast<void>(document.GetBinary(*o.stream, 0, false)); }).isNull();
            },
            isNothing, checkComesFirst);
        add(
            "a character that XML cannot carry", Begins::New, nothing,
            [](Document &o) {
                TunerProperties document(o.source);
                document.Setname(QString(QChar(1)));
                o.text = document.GetXmlString();
                o.answer = !document.GetErrorString().isEmpty();
            },
            [](Document &o) { return o.text.isNull() && o.answer; }, InQt::xmlWriter);
        add(
            "a file in no folder", Begins::New, Folder::begin,
            [](Document &o) {
                o.answer = o.source.SaveXml(Folder::path() + QStringLiteral("/in/no/folder"));
                o.text = o.source.GetErrorString();
            },
            [](Document &o) {
                return !o.answer && o.text.endsWith(QLatin1String("/in/no/folder: cannot write: Not a directory"))
                    && Folder::holdsOld(o);
            },
            {}, Folder::holdsOld);
    }

    QVector<Operation<TunerProperties>> m_operations;
    int m_allocations = 0;
};

TEST_SUITE(OutOfMemoryWritingTest)
#include "tst_OutOfMemoryWriting.moc"
