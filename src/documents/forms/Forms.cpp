// SPDX-License-Identifier: MIT
#include <QtEndian>

#include <jobxml/TunerProperties.h>
#include <reportbase/ReadLimits.h>

#include <tunerdocuments/Form.h>

namespace TunerDocuments {

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

const FormInfo &infoOf(Form form)
{
    return forms[int(form)]; // in the order of the enumeration
}

/// The text after the byte order mark of UTF-8 and blanks.
QByteArray text(const QByteArray &beginning)
{
    return (beginning.startsWith("\xEF\xBB\xBF") ? beginning.mid(3) : beginning).trimmed();
}

bool looksLikeXml(const QByteArray &beginning)
{
    if (beginning.startsWith("\xFE\xFF") || beginning.startsWith("\xFF\xFE"))
        return true; // UTF-16
    const QByteArray begin = text(beginning);
    if (begin.size() < 2 || begin[0] != '<')
        return false;
    // A snapshot may begin with the same byte; the next one is then less than 0x10.
    const auto next = static_cast<unsigned char>(begin[1]);
    return next > ' ';
}

bool looksLikeJson(const QByteArray &beginning)
{
    const QByteArray begin = text(beginning);
    if (!begin.startsWith('{'))
        return false;
    // A snapshot may also begin with this byte; after the next byte, blank or not, it has a 0.
    const QByteArray next = begin.mid(1).trimmed();
    return !next.isEmpty() && static_cast<unsigned char>(next[0]) > ' ';
}

/// Uses the leading word: the identifier of the class, or the mark of the compressed form.
std::optional<Form> binaryForm(const QByteArray &beginning)
{
    if (beginning.size() < int(sizeof(quint32)))
        return {};
    const auto word = qFromBigEndian<quint32>(beginning.constData());
    if (word == quint32(JobXml::TunerProperties::GetId()))
        return Form::Tagged;
    if (word == REPORTGENERATOR::CompressedMark)
        return Form::Compressed;
    return {};
}

} // namespace

namespace Forms {

QStringList list()
{
    QStringList result;
    for (const FormInfo &info : forms)
        result.append(info.name);
    return result;
}

QString nameOf(Form form)
{
    return infoOf(form).name;
}

std::optional<Form> named(const QString &name)
{
    for (const FormInfo &info : forms) {
        if (info.name == name)
            return info.form;
    }
    return {};
}

QString suffixOf(Form form)
{
    return infoOf(form).suffix;
}

std::optional<Form> bySuffix(const QString &fileName)
{
    for (const FormInfo &info : forms) {
        if (fileName.endsWith(info.suffix, Qt::CaseInsensitive))
            return info.form;
    }
    return {};
}

std::optional<Form> byContent(const QByteArray &beginning)
{
    if (looksLikeXml(beginning))
        return Form::Xml;
    if (looksLikeJson(beginning))
        return Form::Json;
    return binaryForm(beginning);
}

int expansionOf(const QByteArray &beginning, qint64 size)
{
    // The leading word, the length, and the uncompressed size: a big-endian word each.
    constexpr int sizeAt = 8;
    constexpr int headSize = 12;
    if (beginning.size() < headSize || binaryForm(beginning) != Form::Compressed)
        return 0;
    const auto expanded = qint64(qFromBigEndian<quint32>(beginning.constData() + sizeAt));
    return expanded == 0 ? 0 : int((expanded - 1) / size + 1);
}

} // namespace Forms

} // namespace TunerDocuments
