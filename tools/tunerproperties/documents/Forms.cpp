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

constexpr int CompressionLevel = -1; // the usual one

/// Behind the mark that UTF-8 may begin with, and blanks.
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
    // A snapshot may begin with the same byte; the one behind it is less than 0x10 there.
    const auto next = static_cast<unsigned char>(begin[1]);
    return next > ' ';
}

bool looksLikeJson(const QByteArray &head)
{
    const QByteArray begin = text(head);
    if (!begin.startsWith('{'))
        return false;
    // So may a snapshot; what stands there behind the next byte, blank or not, is 0.
    const QByteArray next = begin.mid(1).trimmed();
    return !next.isEmpty() && static_cast<unsigned char>(next[0]) > ' ';
}

/// By the leading word: the identifier of the class, or the mark of the compressed form.
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

/// The settings that the libraries' own representations have.
void prepare(QDataStream &stream)
{
    stream.setByteOrder(QDataStream::BigEndian);
    stream.setVersion(QDataStream::Qt_5_15);
    stream.setFloatingPointPrecision(QDataStream::DoublePrecision);
}

void loadByLibrary(TunerProperties &document, Input &input, Form form)
{
    const bool isLoaded = form == Form::Xml ? document.LoadXml(&input.file()) : document.LoadBinary(&input.file());
    input.check(); // a document that has changed meanwhile is not at fault
    if (!isLoaded)
        throw FileFailure(document.GetErrorString());
}

void loadJson(TunerProperties &document, Input &input)
{
    try {
        JsonForm::read(document, input.bytes());
    } catch (const JsonFailure &failure) {
        throw FileFailure(failure.text(input.shownName()));
    }
    if (document.GetValidate())
        document.Check();
}

void loadSnapshot(TunerProperties &document, Input &input)
{
    // From the file itself: nothing says how much of a large file is snapshot.
    QFile &file = input.file();
    QDataStream stream(&file);
    prepare(stream);
    document.SetVersionSpecificBinaryWithoutValidation(stream);
    const qint64 read = file.pos();
    const bool hasMore = !file.read(1).isEmpty();
    input.check();
    if (stream.status() != QDataStream::Ok)
        throw FileFailure(input.shownName() + QStringLiteral(": the snapshot ends early, or is none"));
    if (hasMore)
        throw FileFailure(
            input.shownName()
            + QStringLiteral(": the snapshot ends after %1 of %2 bytes, or is none").arg(read).arg(file.size()));
}

/// A snapshot leaves out what is not set and reads it all the same, so that one of an incomplete document may be lost.
bool isReadAgain(const QByteArray &snapshot)
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

} // namespace

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

Form recognise(Input &input)
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
            ": neither XML, JSON nor a binary form; a snapshot has to be named .tps or read with --from snapshot"));
}

void checkExpansion(Input &input, int times)
{
    // The leading word, the length, and the size of what is compressed: a big-endian word each.
    constexpr int headSize = 12;
    constexpr int sizeAt = 8;
    const QByteArray head = input.head(headSize);
    if (head.size() < headSize || binaryForm(head) != Form::Compressed)
        return;
    const auto expanded = qint64(qFromBigEndian<quint32>(head.constData() + sizeAt));
    const qint64 size = input.file().size();
    if (expanded > size * times)
        throw FileFailure(
            input.shownName()
            + QStringLiteral(": %1 compressed bytes declare %2 bytes, more than %3 times as many; --max-expansion "
                             "changes the limit")
                  .arg(size)
                  .arg(expanded)
                  .arg(times));
}

void load(TunerProperties &document, Input &input, Form form)
{
    try {
        if (form == Form::Snapshot)
            loadSnapshot(document, input);
        else if (form == Form::Json)
            loadJson(document, input);
        else
            loadByLibrary(document, input, form);
        input.check();
    } catch (const ReportException &e) {
        throw FileFailure(input.shownName() + QStringLiteral(": ") + e.GetMessageText());
    }
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
            JsonForm::read(document, bytes);
            return true;
        }
    } catch (const ReportException &) {
    } catch (const JsonFailure &) {
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
        if (!isReadAgain(bytes))
            throw FileFailure(fileName
                              + QStringLiteral(": as a snapshot this document would not be read again as it is; "
                                               "'validate' tells what is missing in it"));
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
        const QString why = document.GetErrorString(); // begins with what was to be written, and a colon
        throw FileFailure(fileName + QStringLiteral(": ") + why.mid(why.indexOf(QLatin1String(": ")) + 2));
    }
    return bytes;
}

} // namespace Forms
