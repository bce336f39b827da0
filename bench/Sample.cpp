// SPDX-License-Identifier: MIT
#include "Sample.h"

#include <QDataStream>

#include <stdexcept>

namespace Bench {
namespace {

QByteArray snapshotOf(const JobXml::TunerProperties &document)
{
    QByteArray snapshot;
    QDataStream stream(&snapshot, QIODevice::WriteOnly);
    document.GetVersionSpecificBinaryWithoutValidation(stream);
    return snapshot;
}

void readXml(JobXml::TunerProperties &document, const QString &xml)
{
    if (!document.SetXmlString(xml, true))
        throw std::runtime_error(document.GetErrorString().toStdString());
}

} // namespace

Sample::Sample(Shape theShape, int theNodes) : shape(theShape), nodes(theNodes)
{
    JobXml::TunerProperties made = Bench::document(shape, nodes);
    text = made.GetXmlString();
    xml = text.toUtf8();
    file = folder.filePath(QStringLiteral("document.xml"));
    if (!made.SaveXml(file))
        throw std::runtime_error(made.GetErrorString().toStdString());
    records = made.GetBinaryRepresentationAsQByteArray();
    snapshot = snapshotOf(made);
    plain = Bench::plain(made);
    tokens = tokensOf(xml);
    for (JobXml::TunerProperties *const tree : {&document, &twin, &unvalidated})
        readXml(*tree, text);
    unvalidated.SetValidate(false);
}

void Summary::add(const char *id, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i)
        checksum = (checksum ^ quint8(id[i])) * 1099511628211U;
}

void Summary::add(const QString &id)
{
    const QByteArray utf8 = id.toUtf8();
    add(utf8.constData(), std::size_t(utf8.size()));
}

QString Summary::text() const
{
    return QStringLiteral("%1 nodes, %2 values, checksum of the ids %3").arg(nodes).arg(values).arg(checksum, 0, 16);
}

static Summary summaryOf(const PlainDocument &document)
{
    Summary summary;
    for (const PlainComponent &component : document.components) {
        for (const PlainNode &node : component.nodes) {
            ++summary.nodes;
            summary.add(node.id);
            for (const PlainValue &value : node.values) {
                ++summary.values;
                summary.add(value.id);
            }
        }
    }
    return summary;
}

QString difference(const Sample &sample, const Summary &read)
{
    const QString expected = summaryOf(sample.plain).text();
    return read.text() == expected ? QString() : read.text() + QLatin1String(" instead of ") + expected;
}

} // namespace Bench
