// SPDX-License-Identifier: MIT
#include "documents/Forms.h"

#include <algorithm>
#include <iterator>

#include <QDataStream>
#include <QFile>
#include <QStringList>
#include <QtEndian>

#include <reportbase/ReadLimits.h>

#include "console/Console.h"
#include "documents/JsonForm.h"
#include "text/Suggestion.h"

using JobXml::Problem;
using JobXml::ProblemVisitor;
using JobXml::ReadOptions;
using JobXml::TunerProperties;

namespace {

struct FormInfo
{
    Form form;
    QLatin1String name;
    QLatin1String suffix;
};

const FormInfo forms[] = {
    {Form::Xml, QLatin1String("xml"), QLatin1String(".xml")},
    {Form::Tagged, QLatin1String("tagged"), QLatin1String(".tpb")},
    {Form::Compressed, QLatin1String("compressed"), QLatin1String(".tpz")},
    {Form::Snapshot, QLatin1String("snapshot"), QLatin1String(".tps")},
    {Form::Json, QLatin1String("json"), QLatin1String(".json")},
};

constexpr int CompressionLevel = -1; // the default of zlib

/// The text after the byte order mark of UTF-8 and blanks.
QByteArray text(const QByteArray &head)
{
    return (head.startsWith("\xEF\xBB\xBF") ? head.mid(3) : head).trimmed();
}

bool looksLikeXml(const QByteArray &head)
{
    if (head.startsWith("\xFE\xFF") || head.startsWith("\xFF\xFE"))
        return true; // UTF-16
    const QByteArray begin = text(head);
    if (begin.size() < 2 || begin[0] != '<')
        return false;
    // A snapshot may begin with the same byte; the next one is then less than 0x10.
    const auto next = static_cast<unsigned char>(begin[1]);
    return next > ' ';
}

bool looksLikeJson(const QByteArray &head)
{
    const QByteArray begin = text(head);
    if (!begin.startsWith('{'))
        return false;
    // A snapshot may also begin with this byte; after the next byte, blank or not, it has a 0.
    const QByteArray next = begin.mid(1).trimmed();
    return !next.isEmpty() && static_cast<unsigned char>(next[0]) > ' ';
}

/// Uses the leading word: the identifier of the class, or the mark of the compressed form.
std::optional<Form> binaryForm(const QByteArray &head)
{
    if (head.size() < int(sizeof(quint32)))
        return {};
    const auto word = qFromBigEndian<quint32>(head.constData());
    if (word == quint32(TunerProperties::GetId()))
        return Form::Tagged;
    if (word == REPORTGENERATOR::CompressedMark)
        return Form::Compressed;
    return {};
}

/// Uses the settings of the libraries' own representations.
void prepare(QDataStream &stream)
{
    stream.setByteOrder(QDataStream::BigEndian);
    stream.setVersion(QDataStream::Qt_5_15);
    stream.setFloatingPointPrecision(QDataStream::DoublePrecision);
}

/// XML and tagged records have values that only their readers refuse.
void loadByLibrary(TunerProperties &document, Input &input, Form form, const ProblemVisitor &visitor)
{
    ReadOptions options;
    options.validate = bool(visitor);
    QString failure;
    const auto visit = [&](const Problem &problem) {
        if (problem.isUnreadable)
            failure = input.shownName() + QStringLiteral(": ") + problem.message;
        else
            visitor(problem);
    };
    if (form == Form::Xml)
        document.LoadXml(&input.file(), visit, options);
    else
        document.LoadBinary(&input.file(), visit, options);
    input.check(); // before an error of a document that has changed meanwhile
    if (!failure.isNull())
        throw FileFailure(document.GetErrorString().isNull() ? failure : document.GetErrorString());
}

void loadJson(TunerProperties &document, Input &input, int maxProblems)
{
    Findings problems(maxProblems);
    const auto visitor = [&](const JsonProblem &problem) {
        if (problem.isUnreadable)
            throw FileFailure(findingOf(problem).text(input.shownName()));
        problems.add(problem);
    };
    const qint64 count = JsonForm::read(document, input.bytes(), visitor, maxProblems);
    if (count == 0)
        return;
    problems.countUnlisted(count - problems.count());
    throw InvalidContent(input.shownName(), std::move(problems));
}

void loadSnapshot(TunerProperties &document, Input &input)
{
    // Reads the file itself: nothing shows how much of a large file is the snapshot.
    QFile &file = input.file();
    QDataStream stream(&file);
    prepare(stream);
    document.SetVersionSpecificBinaryWithoutValidation(stream);
    const qint64 read = file.pos();
    const bool hasMore = !file.read(1).isEmpty();
    input.check();
    if (stream.status() != QDataStream::Ok)
        throw FileFailure(input.shownName()
                          + QStringLiteral(": the snapshot is truncated, or the file is not a snapshot"));
    if (hasMore)
        throw FileFailure(input.shownName()
                          + QStringLiteral(": the snapshot ends after %1 of %2 bytes, or the file is not a snapshot")
                                .arg(read)
                                .arg(file.size()));
}

/// A snapshot omits what is not set, but its reader expects it, so a snapshot of an incomplete document may not be
/// readable.
bool readsBackUnchanged(const QByteArray &snapshot)
{
    TunerProperties document;
    document.SetValidate(false);
    QDataStream source(snapshot);
    prepare(source);
    document.SetVersionSpecificBinaryWithoutValidation(source);
    QByteArray again;
    QDataStream target(&again, QIODevice::WriteOnly);
    prepare(target);
    document.GetVersionSpecificBinaryWithoutValidation(target);
    return source.status() == QDataStream::Ok && again == snapshot;
}

/// The leading word, the length, and the uncompressed size: a big-endian word each.
constexpr int compressedHeadSize = 12;

/// The size that a compressed record declares; 0 for other forms.
qint64 expandedSize(const QByteArray &head)
{
    constexpr int sizeAt = 8;
    if (head.size() < compressedHeadSize || binaryForm(head) != Form::Compressed)
        return 0;
    return qint64(qFromBigEndian<quint32>(head.constData() + sizeAt));
}

} // namespace

InvalidContent::InvalidContent(const QString &fileName, Findings problems)
    : std::runtime_error(problems.lines(fileName, {}).join(QLatin1Char('\n')).toStdString()), m_fileName(fileName),
      m_problems(std::move(problems))
{
}

namespace Forms {

QString names()
{
    return Suggestion::listed(list());
}

QStringList list()
{
    QStringList result;
    for (const FormInfo &info : forms)
        result.append(info.name);
    return result;
}

QString suffixes()
{
    QStringList result;
    for (const FormInfo &info : forms)
        result.append(info.suffix);
    return Suggestion::listed(result);
}

QString suffixOf(Form form)
{
    const auto info = std::find_if(std::begin(forms), std::end(forms),
                                   [form](const FormInfo &candidate) { return candidate.form == form; });
    return info->suffix;
}

std::optional<Form> named(const QString &name)
{
    for (const FormInfo &info : forms) {
        if (info.name == name)
            return info.form;
    }
    return {};
}

std::optional<Form> bySuffix(const FileName &fileName)
{
    const QByteArray name = fileName.bytes().toLower();
    for (const FormInfo &info : forms) {
        if (name.endsWith(info.suffix.data()))
            return info.form;
    }
    return {};
}

Form recognize(Input &input)
{
    constexpr int headSize = 4096; // a document may begin with blank lines
    const QByteArray head = input.head(headSize);
    if (looksLikeXml(head))
        return Form::Xml;
    if (looksLikeJson(head))
        return Form::Json;
    if (const auto form = binaryForm(head))
        return *form;
    if (const auto form = bySuffix(input.name()))
        return *form;
    throw FileFailure(
        input.shownName()
        + QStringLiteral(
            ": unknown form: neither XML, JSON nor binary; for a snapshot, use the suffix .tps or --from snapshot"));
}

void checkExpansion(Input &input, int times)
{
    const qint64 expanded = expandedSize(input.head(compressedHeadSize));
    const qint64 size = input.file().size();
    if (expanded > size * times)
        throw FileFailure(
            input.shownName()
            + QStringLiteral(": expands from %1 to %2 bytes, more than %3 times its size; use --max-expansion "
                             "to allow it")
                  .arg(size)
                  .arg(expanded)
                  .arg(times));
}

int expansionOf(const QByteArray &bytes)
{
    const qint64 expanded = expandedSize(bytes);
    return expanded == 0 ? 0 : int((expanded - 1) / bytes.size() + 1);
}

void load(TunerProperties &document, Input &input, Form form, const ProblemVisitor &visitor, int maxProblems)
{
    switch (form) {
    case Form::Xml:
    case Form::Tagged:
    case Form::Compressed:
        loadByLibrary(document, input, form, visitor);
        break;
    case Form::Snapshot:
        loadSnapshot(document, input);
        break;
    case Form::Json:
        loadJson(document, input, maxProblems);
        break;
    }
    input.check();
    // What the readers of the other two forms accept and a validating one would not is in the document.
    if (visitor && (form == Form::Snapshot || form == Form::Json))
        document.VisitProblems(visitor);
}

bool readBack(TunerProperties &document, QByteArray bytes, Form form)
{
    try {
        switch (form) {
        case Form::Xml:
            return document.SetXmlString(QString::fromUtf8(bytes), document.GetValidate());
        case Form::Tagged:
        case Form::Compressed:
            return document.SetBinaryRepresentation(bytes);
        case Form::Snapshot: {
            QDataStream stream(bytes);
            prepare(stream);
            document.SetVersionSpecificBinaryWithoutValidation(stream);
            return stream.status() == QDataStream::Ok;
        }
        case Form::Json:
            return JsonForm::read(document, bytes) == 0;
        }
    } catch (const ReportException &) {
    }
    return false;
}

QByteArray compose(TunerProperties &document, Form form, const QString &fileName)
{
    QByteArray bytes;
    switch (form) {
    case Form::Xml:
        bytes = document.GetXmlString().toUtf8();
        break;
    case Form::Tagged:
        bytes = document.GetBinaryRepresentationAsQByteArray();
        break;
    case Form::Compressed:
        bytes = document.GetCompressedBinaryRepresentationAsQByteArray(CompressionLevel);
        break;
    case Form::Snapshot: {
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        prepare(stream);
        document.GetVersionSpecificBinaryWithoutValidation(stream);
        if (!readsBackUnchanged(bytes))
            throw FileFailure(fileName
                              + QStringLiteral(": cannot write a snapshot that reads back unchanged; 'validate' "
                                               "reports what is missing"));
        break;
    }
    case Form::Json:
        if (document.GetValidate())
            document.Check();
        try {
            bytes = JsonForm::compose(document);
        } catch (const JsonFailure &failure) {
            throw FileFailure(failure.text(fileName));
        }
        break;
    }
    if (bytes.isEmpty()) {
        const QString why = document.GetErrorString(); // begins with the operation and a colon
        throw FileFailure(fileName + QStringLiteral(": ") + why.mid(why.indexOf(QLatin1String(": ")) + 2));
    }
    return bytes;
}

} // namespace Forms
