// SPDX-License-Identifier: MIT
#include "documents/json/JsonVersion.h"

#include <algorithm>

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <jobxml/StringItem.h>

using namespace JobXml;

namespace TunerDocuments {
namespace JsonReading {

bool fitsIntoXml(const QString &text)
{
    StringItem sample;
    sample.SetValidate(false);
    sample.Setvalue(text);
    const QVector<Problem> problems = sample.GetProblems();
    return std::none_of(problems.begin(), problems.end(), [](const Problem &problem) { return problem.xmlOnly; });
}

TunerProperties documentOfVersion(const QString &version)
{
    constexpr quint32 versionTag = 0xCCFEDFA1;
    constexpr int headSize = 8;
    QByteArray record;
    QDataStream writer(&record, QIODevice::WriteOnly);
    writer << versionTag << quint32(0) << (version.isNull() ? QStringLiteral("") : version);
    qToBigEndian(quint32(record.size() - headSize), record.data() + sizeof versionTag);
    TunerProperties document;
    document.SetValidate(false);
    QDataStream reader(record);
    document.SetBinary(reader, int(record.size()));
    return document;
}

} // namespace JsonReading
} // namespace TunerDocuments
