// SPDX-License-Identifier: MIT
#include "Operations.h"

#include <optional>
#include <stdexcept>

#include <QBuffer>
#include <QDataStream>
#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

using JobXml::TunerProperties;

namespace Bench {
namespace {

// The references for the library's operations; defined in References.cpp.
constexpr auto tokenWalk = "token walk";
constexpr auto tokenWriter = "token writer";
constexpr auto tokenWriterFormatted = "token writer, formatted";
constexpr auto structsToRecords = "structs to records";
constexpr auto recordsToStructs = "records to structs";
constexpr auto structsToSnapshot = "structs to snapshot";
constexpr auto snapshotToStructs = "snapshot to structs";
constexpr auto smallestBlocks = "smallest blocks";

void readXml(const Sample &sample, TunerProperties &document)
{
    QXmlStreamReader reader(sample.xml);
    reader.readNextStartElement();
    document.ProcessXml(reader);
}

/// For operations that report a failure by their result.
void require(bool isDone, const TunerProperties &document)
{
    if (!isDone)
        throw std::runtime_error(document.GetErrorString().toStdString());
}

/// The file is in the system's cache, since it has just been written.
void readXmlFile(const Sample &sample, TunerProperties &document)
{
    require(document.LoadXml(sample.file), document);
}

void readXmlText(const Sample &sample, TunerProperties &document)
{
    require(document.SetXmlString(sample.text, true), document);
}

void readRecords(const Sample &sample, TunerProperties &document)
{
    QBuffer buffer;
    buffer.setData(sample.records);
    buffer.open(QIODevice::ReadOnly);
    QDataStream stream(&buffer);
    qint32 leadingWord = 0;
    qint32 length = 0;
    stream >> leadingWord >> length;
    document.SetBinary(stream, length);
}

void readRepresentation(const Sample &sample, TunerProperties &document)
{
    require(document.SetBinaryRepresentation(sample.records), document);
}

void readSnapshot(const Sample &sample, TunerProperties &document)
{
    QBuffer buffer;
    buffer.setData(sample.snapshot);
    buffer.open(QIODevice::ReadOnly);
    QDataStream stream(&buffer);
    document.SetVersionSpecificBinaryWithoutValidation(stream);
}

/// The same with a logger in the tree, as applications have it.
template <void (*read)(const Sample &, TunerProperties &)>
void logging(const Sample &sample, TunerProperties &document)
{
    document.SetLogger(std::make_shared<REPORTGENERATOR::Logger>());
    read(sample, document);
}

QString differs(const Sample &sample, const TunerProperties &document)
{
    if (!(document == sample.document))
        return QStringLiteral("the document read is not equal to the one written");
    if (!(plain(document) == sample.plain))
        return QStringLiteral("the values read are not those written");
    return {};
}

QString writeXml(const TunerProperties &document)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    document.GetXml(writer);
    return xml;
}

QByteArray writeRecords(const TunerProperties &document)
{
    QByteArray representation;
    QBuffer buffer(&representation);
    buffer.open(QIODevice::WriteOnly);
    QDataStream stream(&buffer);
    document.GetBinary(stream, int(TunerProperties::GetId()), true);
    return representation;
}

QByteArray writeSnapshot(const TunerProperties &document)
{
    QByteArray snapshot;
    QBuffer buffer(&snapshot);
    buffer.open(QIODevice::WriteOnly);
    QDataStream stream(&buffer);
    document.GetVersionSpecificBinaryWithoutValidation(stream);
    return snapshot;
}

/// An operation that is neither reader nor writer, and its postcondition.
Operation other(const char *name, const char *reference, std::function<Run(Sample &)> prepare,
                const std::function<bool(Sample &)> &holds)
{
    Operation operation;
    operation.name = name;
    operation.reference = reference;
    operation.prepare = std::move(prepare);
    operation.verify = [holds](Sample &sample) {
        return holds(sample) ? QString() : QStringLiteral("the result is wrong");
    };
    return operation;
}

Operation saveXml()
{
    const auto folder = std::make_shared<QTemporaryDir>();
    const QString path = folder->filePath(QStringLiteral("document.xml"));
    Operation operation = writer(
        "XML file", tokenWriterFormatted,
        [folder, path](Sample &sample) {
            require(sample.document.SaveXml(path), sample.document);
            return path;
        },
        [](Sample &) { return QString(); });
    operation.verify = [folder, path](Sample &sample) {
        QFile file(path);
        const bool isThere = sample.document.SaveXml(path) && file.open(QIODevice::ReadOnly);
        return isThere && file.readAll() == sample.xml ? QString() : QStringLiteral("another file is written");
    };
    operation.hasInstructions = false;
    return operation;
}

Operation check()
{
    return other(
        "check", smallestBlocks, [](Sample &sample) { return Run{[&sample] { sample.document.Check(); }}; },
        [](Sample &sample) {
            sample.document.Check(); // throws
            return sample.document.HasData();
        });
}

Operation copy()
{
    return other(
        "copy", smallestBlocks,
        [](Sample &sample) { return Run{[&sample] { const TunerProperties copy(sample.document); }}; },
        [](Sample &sample) { return differs(sample, TunerProperties(sample.document)).isNull(); });
}

Operation assignment()
{
    Operation operation = other(
        "assignment", "",
        [](Sample &sample) {
            const auto target = std::make_shared<std::optional<TunerProperties>>();
            return Run{[target, &sample] { **target = sample.document; }, [target] { target->emplace(); }};
        },
        [](Sample &sample) {
            TunerProperties target;
            target = sample.document;
            return differs(sample, target).isNull();
        });
    operation.isTimed = false; // the clock would measure itself
    return operation;
}

Operation equality()
{
    const auto areEqual = [](Sample &sample) { return sample.document == sample.twin; };
    return other(
        "equality", smallestBlocks,
        [areEqual](Sample &sample) { return Run{[areEqual, &sample] { areEqual(sample); }}; }, areEqual);
}

void addLibrary(std::vector<Operation> &operations)
{
    const auto unformatted = [](Sample &sample) { return writeTokens(sample.tokens); };
    const auto formatted = [](Sample &sample) { return sample.text; };
    const auto records = [](Sample &sample) { return sample.records; };
    operations.push_back(reader<TunerProperties>("XML read", tokenWalk, readXml, differs));
    operations.push_back(reader<TunerProperties>("XML file read", tokenWalk, readXmlFile, differs));
    operations.push_back(reader<TunerProperties>("XML text read", tokenWalk, readXmlText, differs));
    operations.push_back(writer(
        "XML write, off", tokenWriter, [](Sample &sample) { return writeXml(sample.unvalidated); }, unformatted));
    operations.push_back(writer(
        "XML write", tokenWriter, [](Sample &sample) { return writeXml(sample.document); }, unformatted));
    operations.push_back(writer(
        "XML text, off", tokenWriterFormatted, [](Sample &sample) { return sample.unvalidated.GetXmlString(); },
        formatted));
    operations.push_back(writer(
        "XML text", tokenWriterFormatted, [](Sample &sample) { return sample.document.GetXmlString(); }, formatted));
    operations.push_back(saveXml());
    operations.push_back(writer(
        "tagged write, off", structsToRecords, [](Sample &sample) { return writeRecords(sample.unvalidated); },
        records));
    operations.push_back(writer(
        "tagged write", structsToRecords, [](Sample &sample) { return writeRecords(sample.document); }, records));
    operations.push_back(reader<TunerProperties>("tagged read", recordsToStructs, readRecords, differs));
    operations.push_back(writer(
        "representation write", structsToRecords,
        [](Sample &sample) { return sample.document.GetBinaryRepresentationAsQByteArray(); }, records));
    operations.push_back(reader<TunerProperties>("representation read", recordsToStructs, readRepresentation, differs));
    operations.push_back(writer(
        "snapshot write", structsToSnapshot, [](Sample &sample) { return writeSnapshot(sample.document); },
        [](Sample &sample) { return sample.snapshot; }));
    operations.push_back(reader<TunerProperties>("snapshot read", snapshotToStructs, readSnapshot, differs));
    operations.push_back(check());
    operations.push_back(copy());
    operations.push_back(assignment());
    operations.push_back(equality());
    operations.push_back(reader<TunerProperties>("XML read, logger", tokenWalk, logging<readXml>, differs));
    operations.push_back(
        reader<TunerProperties>("tagged read, logger", recordsToStructs, logging<readRecords>, differs));
}

} // namespace

std::vector<Operation> operations()
{
    std::vector<Operation> all;
    addLibrary(all);
    addReferences(all);
#ifdef BENCH_HAS_QTXML
    addQtXml(all);
#endif
#ifdef BENCH_HAS_PUGIXML
    addPugixml(all);
#endif
#ifdef BENCH_HAS_CODESYNTHESIS
    addCodeSynthesis(all);
#endif
#ifdef BENCH_HAS_PROTOBUF
    addProtobuf(all);
#endif
    return all;
}

} // namespace Bench
