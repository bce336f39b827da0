// SPDX-License-Identifier: MIT
#include <tunerdocuments/Document.h>

#include <QBuffer>
#include <QDataStream>
#include <QFile>

#include <reportbase/SaveFile.h>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/DocumentError.h>

#include "documents/json/JsonForm.h"
#include "documents/values/DocumentSize.h"
#include "documents/values/Identical.h"
#include "text/Size.h"

using JobXml::Problem;
using JobXml::ProblemVisitor;
using JobXml::ReadOptions;
using JobXml::TunerProperties;

namespace TunerDocuments {

namespace {

constexpr int headSize = 4096; // a document may begin with blank lines
constexpr int compressionLevel = -1; // the default of zlib

/// What a document is read from: a file, or bytes in memory. Forms are read from one of them at a time.
class Source
{
public:
    Source(QFile &file, const QString &name) : m_file(&file), m_device(file), m_name(name) { }
    Source(const QByteArray &bytes, const QString &name) : m_bytes(bytes), m_device(m_buffer), m_name(name)
    {
        checkSize(bytes, name);
        m_buffer.setData(bytes);
        m_buffer.open(QIODevice::ReadOnly);
    }

    const QString &name() const { return m_name; }
    qint64 size() const { return m_device.size(); }

    /// The file at its beginning; null if the document is in memory.
    QFile *file() const
    {
        if (m_file)
            rewind();
        return m_file;
    }
    /// The document if it is in memory.
    const QByteArray &bytes() const { return m_bytes; }

    /// File or memory, at its beginning.
    QIODevice &device() const
    {
        rewind();
        return m_device;
    }

    QByteArray head() const
    {
        QByteArray beginning = device().read(headSize);
        check();
        return beginning;
    }

    /// The whole document. QFile::readAll() returns nothing, and reports nothing, where a file does not fit into a
    /// QByteArray.
    QByteArray all() const
    {
        if (!m_file)
            return m_bytes;
        constexpr int pieceSize = 1 << 16;
        QIODevice &source = device();
        QByteArray bytes;
        bytes.reserve(REPORTGENERATOR::Size(std::min(size(), qint64(largest))));
        for (;;) {
            const auto had = bytes.size();
            bytes.resize(had + pieceSize);
            const qint64 read = source.read(bytes.data() + had, pieceSize);
            bytes.resize(had + REPORTGENERATOR::Size(std::max(read, qint64(0))));
            if (read <= 0)
                break;
            if (bytes.size() > largest)
                fail(QStringLiteral("too large: more than %1 bytes").arg(largest));
        }
        check();
        return bytes;
    }

    void check() const
    {
        if (m_file && m_file->error() != QFileDevice::NoError)
            fail(QStringLiteral("cannot read: ") + m_file->errorString());
    }

    [[noreturn]] void fail(const QString &why) const { throw DocumentError(m_name + QStringLiteral(": ") + why); }

private:
    static constexpr int largest = 1'000'000'000; // Qt 5's containers are limited to 2^31 bytes

    void rewind() const
    {
        if (!m_device.seek(0))
            fail(QStringLiteral("cannot read: ") + m_device.errorString());
    }

    QFile *m_file = nullptr;
    QByteArray m_bytes;
    mutable QBuffer m_buffer;
    QIODevice &m_device;
    const QString m_name;
};

Form formOf(const Source &source, const LoadOptions &options)
{
    if (options.form())
        return *options.form();
    if (const auto form = Forms::byContent(source.head()))
        return *form;
    if (const auto form = Forms::bySuffix(source.name()))
        return *form; // its reader reports the error
    source.fail(QStringLiteral(
        "unknown form: neither XML, JSON nor binary; a snapshot is recognized by the suffix .tps alone"));
}

/// Expands nothing, so a small file cannot make the program use memory and time for a large one.
void checkExpansion(const Source &source, int times)
{
    constexpr int sizeAt = 8;
    const QByteArray head = source.head();
    if (Forms::expansionOf(head, source.size()) > times)
        source.fail(QStringLiteral("expands from %1 to %2 bytes, more than %3 times its size")
                        .arg(source.size())
                        .arg(head.mid(sizeAt, sizeof(quint32)).toHex().toUInt(nullptr, 16))
                        .arg(times));
}

/// Uses the settings of the libraries' own representations.
void prepare(QDataStream &stream)
{
    stream.setByteOrder(QDataStream::BigEndian);
    stream.setVersion(QDataStream::Qt_5_15);
    stream.setFloatingPointPrecision(QDataStream::DoublePrecision);
}

/// XML and tagged records have values that only their readers refuse.
void loadByLibrary(TunerProperties &tuner, const Source &source, Form form, const ProblemVisitor &visitor)
{
    ReadOptions options;
    options.setValidate(bool(visitor));
    QString failure;
    const auto visit = [&](const Problem &problem) {
        if (problem.isUnreadable)
            failure = source.name() + QStringLiteral(": ") + problem.message;
        else
            visitor(problem);
    };
    if (form == Form::Xml && source.file())
        tuner.LoadXml(source.file(), visit, options);
    else if (form == Form::Xml)
        tuner.SetXmlDocument(source.bytes(), source.name(), visit, options);
    else if (source.file())
        tuner.LoadBinary(source.file(), visit, options);
    else
        tuner.SetBinaryRepresentation(source.bytes(), visit, options);
    if (!failure.isNull())
        throw DocumentError(tuner.GetErrorString().isNull() ? failure : tuner.GetErrorString());
}

Finding findingOf(const JsonProblem &problem)
{
    Finding finding;
    finding.message = problem.message;
    finding.value = problem.value;
    finding.choices = problem.choices;
    finding.suggestion = problem.suggestion;
    finding.steps = problem.steps;
    finding.member = problem.member;
    finding.path = problem.path;
    finding.line = problem.line;
    finding.column = problem.column;
    return finding;
}

void loadJson(TunerProperties &tuner, const Source &source, int maxProblems)
{
    Findings problems(maxProblems);
    const auto visitor = [&](const JsonProblem &problem) {
        const Finding finding = findingOf(problem);
        if (problem.isUnreadable)
            throw DocumentError(finding.text(source.name()));
        problems.add(finding);
    };
    const qint64 count = JsonForm::read(tuner, source.all(), visitor, maxProblems);
    if (count == 0)
        return;
    problems.addUnlisted(count - problems.count());
    throw InvalidContent(source.name(), problems);
}

void loadSnapshot(TunerProperties &tuner, const Source &source)
{
    // Reads the file itself: nothing shows how much of a large file is the snapshot.
    QIODevice &device = source.device();
    QDataStream stream(&device);
    prepare(stream);
    tuner.SetVersionSpecificBinaryWithoutValidation(stream);
    const qint64 read = device.pos();
    const bool hasMore = !device.read(1).isEmpty();
    source.check();
    if (stream.status() != QDataStream::Ok)
        source.fail(QStringLiteral("the snapshot is truncated, or the file is not a snapshot"));
    if (hasMore)
        source.fail(QStringLiteral("the snapshot ends after %1 of %2 bytes, or the file is not a snapshot")
                        .arg(read)
                        .arg(source.size()));
}

Document loadFrom(const Source &source, const LoadOptions &options, const ProblemVisitor &visitor)
{
    Document document;
    document.tuner.SetValidate(false);
    document.form = formOf(source, options);
    switch (document.form) {
    case Form::Tagged:
    case Form::Compressed:
        checkExpansion(source, options.maxExpansion());
        Q_FALLTHROUGH();
    case Form::Xml:
        loadByLibrary(document.tuner, source, document.form, visitor);
        return document;
    case Form::Snapshot:
        loadSnapshot(document.tuner, source);
        break;
    case Form::Json:
        loadJson(document.tuner, source, options.maxProblems());
        break;
    }
    // What the readers of these two forms accept and a validating one would not is in the document.
    if (visitor)
        document.tuner.VisitProblems(visitor);
    return document;
}

/// A snapshot omits what is not set, but its reader expects it, so a snapshot of an incomplete document may not be
/// readable.
bool readsBackUnchanged(const QByteArray &snapshot)
{
    TunerProperties tuner;
    tuner.SetValidate(false);
    QDataStream source(snapshot);
    prepare(source);
    tuner.SetVersionSpecificBinaryWithoutValidation(source);
    QByteArray again;
    QDataStream target(&again, QIODevice::WriteOnly);
    prepare(target);
    tuner.GetVersionSpecificBinaryWithoutValidation(target);
    return source.status() == QDataStream::Ok && again == snapshot;
}

QByteArray plainSnapshotOf(const TunerProperties &tuner)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    prepare(stream);
    tuner.GetVersionSpecificBinaryWithoutValidation(stream);
    return bytes;
}

/// The description in a document that was written, which is complete.
TunerProperties readBack(const QByteArray &bytes, Form form)
{
    return Document::fromBytes(bytes, QString(),
                               LoadOptions().setForm(form).setMaxExpansion(std::numeric_limits<int>::max()))
        .tuner;
}

QByteArray snapshotOf(const TunerProperties &tuner, const QString &name)
{
    QByteArray bytes = plainSnapshotOf(tuner);
    if (!readsBackUnchanged(bytes))
        throw UnstorableContent(
            name
            + QStringLiteral(": cannot write a snapshot that reads back unchanged, since the document "
                             "is incomplete"));
    return bytes;
}

QByteArray jsonOf(const TunerProperties &tuner, const QString &name)
{
    if (tuner.GetValidate())
        tuner.Check();
    try {
        return JsonForm::compose(tuner);
    } catch (const JsonFailure &failure) {
        throw UnstorableContent(failure.text(name));
    }
}

QByteArray bytesOf(TunerProperties &tuner, Form form, const QString &name)
{
    switch (form) {
    case Form::Xml:
        return tuner.GetXmlString().toUtf8();
    case Form::Tagged:
        return tuner.GetBinaryRepresentationAsQByteArray();
    case Form::Compressed:
        return tuner.GetCompressedBinaryRepresentationAsQByteArray(compressionLevel);
    case Form::Snapshot:
        return snapshotOf(tuner, name);
    case Form::Json:
        break;
    }
    return jsonOf(tuner, name);
}

} // namespace

struct InvalidContent::Private
{
    QString name;
    Findings problems;
};

InvalidContent::InvalidContent(const QString &name, const Findings &problems)
    : DocumentError(problems.lines(name).join(QLatin1Char('\n'))),
      d(std::make_shared<const Private>(Private{name, problems}))
{
}

InvalidContent::InvalidContent(const InvalidContent &) = default;
InvalidContent::~InvalidContent() = default;

const QString &InvalidContent::name() const
{
    return d->name;
}

const Findings &InvalidContent::problems() const
{
    return d->problems;
}

Document::Document() = default;
Document::Document(const TunerProperties &description, Form asForm) : tuner(description), form(asForm) { }
Document::Document(const Document &) = default;
Document::Document(Document &&) noexcept = default;
Document &Document::operator=(const Document &) = default;
Document &Document::operator=(Document &&) noexcept = default;
Document::~Document() = default;

Document Document::load(const QString &path, const LoadOptions &options, const ProblemVisitor &visitor)
{
    QFile file(path);
    return load(file, options, visitor);
}

Document Document::load(QFile &file, const LoadOptions &options, const ProblemVisitor &visitor)
{
    const QString name = file.fileName();
    if (!file.isOpen() && !file.open(QIODevice::ReadOnly))
        throw DocumentError(name + QStringLiteral(": cannot open: ") + file.errorString());
    return loadFrom(Source(file, name), options, visitor);
}

Document Document::fromBytes(const QByteArray &bytes, const QString &name, const LoadOptions &options,
                             const ProblemVisitor &visitor)
{
    return loadFrom(Source(bytes, name), options, visitor);
}

QByteArray Document::toBytes(Form asForm, const QString &name) const
{
    auto &writable = const_cast<TunerProperties &>(tuner); // writing keeps the reason of a failure
    QByteArray bytes = bytesOf(writable, asForm, name);
    if (bytes.isEmpty()) {
        const QString why = tuner.GetErrorString(); // begins with the operation and a colon
        throw UnstorableContent(name + QStringLiteral(": ") + why.mid(why.indexOf(QLatin1String(": ")) + 2));
    }
    return bytes;
}

QString Loss::text() const
{
    const QString where = path.isEmpty() ? QString() : path + QStringLiteral(": ");
    return where + (what.isNull() ? QStringLiteral("%1 becomes %2").arg(before, after) : what);
}

QVector<Loss> Document::lossesIn(const QByteArray &bytes, Form asForm, int most, qint64 *count) const
{
    QVector<Loss> losses;
    qint64 all = 0;
    const TunerProperties written = readBack(bytes, asForm);
    // Comparing items by their identity takes longer than writing them, and there is mostly no difference.
    if (!areIdentical(tuner, written)) {
        findDifferences(tuner, written, [&](const Difference &difference) {
            if (all++ >= most)
                return;
            const bool isChange = difference.kind == Difference::Changed;
            const QString what = difference.kind == Difference::Removed ? QStringLiteral("is lost")
                : difference.kind == Difference::Added                  ? QStringLiteral("appears")
                                                                        : QStringLiteral("is moved");
            losses.append({difference.path, difference.before, difference.after, isChange ? QString() : what});
        });
    }
    if (count)
        *count = all;
    return losses;
}

void Document::save(const QString &path, Form asForm) const
{
    const QString failure = REPORTGENERATOR::SaveFile(path, toBytes(asForm, path));
    if (!failure.isNull())
        throw DocumentError(failure);
}

} // namespace TunerDocuments
