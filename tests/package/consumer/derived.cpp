// SPDX-License-Identifier: MIT
//
// A program of somebody else that derives from a class of the model: derived SCP.xml

#include <cstdio>

#include <QDataStream>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <jobxml/TunerProperties.h>

/// A tuner with an attribute, a child element and a record for each of them.
class SitedTuner : public JobXml::TunerProperties
{
public:
    QString site; // mandatory; an attribute
    QString remark; // optional; a child element

    bool operator==(const SitedTuner &other) const
    {
        return TunerProperties::operator==(other) && site == other.site && remark == other.remark;
    }

    void Reset() override
    {
        TunerProperties::Reset();
        site = remark = QString();
    }
    void ResetToDefault() override
    {
        TunerProperties::ResetToDefault();
        site = remark = QString();
    }
    bool AnyData() const override { return TunerProperties::AnyData() || !site.isNull() || !remark.isNull(); }
    bool HasData() const override { return TunerProperties::HasData() && !site.isNull(); }

    using TunerProperties::Check;
    void Check(bool flag) const override
    {
        TunerProperties::Check(flag);
        if (site.isNull())
            throw OutOfRangeException(GetObjectName() + QStringLiteral(": Please set site properly."));
    }

    void ProcessXml(QXmlStreamReader &reader) override
    {
        const QString found = reader.attributes().value(QLatin1String("site")).toString();
        TunerProperties::ProcessXml(reader);
        if (!found.isNull())
            site = found;
    }

    bool MergeRGObject(const REPORTGENERATOR::IRGObject &other) override
    {
        if (!TunerProperties::MergeRGObject(other))
            return false;
        if (const auto *sited = dynamic_cast<const SitedTuner *>(&other)) {
            site = sited->site;
            remark = sited->remark;
        }
        return true;
    }

    void GetVersionSpecificBinaryWithoutValidation(QDataStream &stream) const override
    {
        TunerProperties::GetVersionSpecificBinaryWithoutValidation(stream);
        stream << site << remark;
    }
    void SetVersionSpecificBinaryWithoutValidation(QDataStream &stream) override
    {
        TunerProperties::SetVersionSpecificBinaryWithoutValidation(stream);
        stream >> site >> remark;
    }

protected:
    void ProcessXmlStartElement(QXmlStreamReader &reader) override
    {
        if (reader.name() == QLatin1String("remark"))
            remark = GetTextValue(reader);
        else
            TunerProperties::ProcessXmlStartElement(reader);
    }
    void writeOwnAttributes(QXmlStreamWriter &writer) const override
    {
        if (!site.isNull())
            writer.writeAttribute(QStringLiteral("site"), site);
    }
    void writeOwnElements(QXmlStreamWriter &writer) const override
    {
        if (!remark.isNull())
            writer.writeTextElement(QStringLiteral("remark"), remark);
    }
    void writeOwnRecords(QDataStream &stream) const override
    {
        writeText(stream, siteTag, site);
        writeText(stream, remarkTag, remark);
    }
    bool readOwnRecord(QDataStream &stream, quint32 tag, qint32) override
    {
        if (tag != siteTag && tag != remarkTag)
            return false;
        QByteArray utf8;
        stream >> utf8;
        (tag == siteTag ? site : remark) = QString::fromUtf8(utf8);
        return true;
    }

private:
    static constexpr quint32 siteTag = 0x5E51E001;
    static constexpr quint32 remarkTag = 0x5E51E002;

    static void writeText(QDataStream &stream, quint32 tag, const QString &text)
    {
        const QByteArray utf8 = text.toUtf8();
        if (!text.isNull())
            stream << tag << qint32(4 + utf8.size()) << utf8;
    }
};

namespace {

const char *compared(const SitedTuner &tuner, const SitedTuner &other)
{
    return tuner == other ? "the same" : "another";
}

// The element and the record of a small tuner, which lacks mandatory members and so does not validate.
void printSmallTuner()
{
    SitedTuner tuner;
    tuner.SetValidate(false);
    tuner.Settype(JobXml::TunerProperties::type::SCP);
    tuner.SetMaxFFPDelay(5);
    tuner.site = QStringLiteral("a");
    tuner.remark = QStringLiteral("b");

    QString xml;
    QXmlStreamWriter writer(&xml);
    tuner.GetXml(writer);
    std::printf("%s\n", qPrintable(xml));

    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    if (tuner.GetBinary(stream, 0, false))
        std::printf("%s\n", record.toHex(' ').toUpper().constData());
}

// A whole document, with validation: without its own mandatory member it is refused, with it every encoding is read
// back.
bool readBack(const QString &path)
{
    SitedTuner tuner;
    if (!tuner.LoadXml(path))
        return false;
    try {
        tuner.Check();
    } catch (const OutOfRangeException &e) {
        std::printf("%s\n", e.what());
    }
    tuner.site = QStringLiteral("Mast 3");
    tuner.remark = QStringLiteral("north");

    SitedTuner fromXml;
    if (!fromXml.SetXmlString(tuner.GetXmlString(), true))
        return false;
    std::printf("its XML reads back: %s document\n", compared(tuner, fromXml));

    SitedTuner fromRecords;
    if (!fromRecords.SetBinaryRepresentation(tuner.GetBinaryRepresentationAsQByteArray()))
        return false;
    std::printf("its records read back: %s document\n", compared(tuner, fromRecords));

    QByteArray snapshot;
    QDataStream writing(&snapshot, QIODevice::WriteOnly);
    tuner.GetVersionSpecificBinaryWithoutValidation(writing);
    QDataStream reading(snapshot);
    SitedTuner fromSnapshot;
    fromSnapshot.SetVersionSpecificBinaryWithoutValidation(reading);
    std::printf("its snapshot reads back: %s document\n", compared(tuner, fromSnapshot));

    SitedTuner merged;
    if (!merged.MergeRGObject(tuner))
        return false;
    std::printf("merged into a new one: %s document\n", compared(tuner, merged));
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    printSmallTuner();
    return readBack(QString::fromLocal8Bit(argv[1])) ? 0 : 1;
}
