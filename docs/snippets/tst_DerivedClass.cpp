// SPDX-License-Identifier: MIT
//
// A class that derives from a class of the model and adds members of its own: the marked part is what the manual shows,
// and the tests check what it comes to.

#include <QTemporaryDir>
#include <QtTest>

#include <jobxml/TunerProperties.h>

#include "Documents.h"
#include "Encodings.h"
#include "ExceptionText.h"

namespace {

//! [class]
/// A tuner that knows where it is installed, and what its operators wrote about it.
class InstalledTuner : public JobXml::TunerProperties
{
public:
    QString site; // mandatory; an attribute
    QString remark; // optional; a child element

    // State: what the base has, and the members added.
    void Reset() override
    {
        TunerProperties::Reset();
        clear();
    }
    void ResetToDefault() override
    {
        TunerProperties::ResetToDefault();
        clear();
    }
    bool HasData() const override { return TunerProperties::HasData() && !site.isNull(); }
    bool operator==(const InstalledTuner &other) const
    {
        return TunerProperties::operator==(other) && site == other.site && remark == other.remark;
    }
    bool operator!=(const InstalledTuner &other) const { return !(*this == other); }

    using TunerProperties::Check; // Check() calls Check(false)
    void Check(bool flag) const override
    {
        TunerProperties::Check(flag);
        if (site.isNull())
            throw OutOfRangeException(GetObjectName() + QStringLiteral(": Please set site properly."));
    }

    // XML: attributes are read here, child elements below.
    void ProcessXml(QXmlStreamReader &reader) override
    {
        const QString found = reader.attributes().value(QLatin1String("site")).toString();
        TunerProperties::ProcessXml(reader); // resets the object if the document has an older version
        if (!found.isNull())
            site = found;
    }

    // Snapshots: after what the base has.
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
            remark = GetTextValue(reader); // leaves the reader on the end of the element
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

    // Tagged records: a tag that no member of the model has, the length, the payload.
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
            stream << tag << qint32(4 + utf8.size()) << utf8; // a QByteArray is its size in four bytes, then the bytes
    }
    void clear()
    {
        site = QString();
        remark = QString();
    }
};
//! [class]

InstalledTuner anInstalledTuner()
{
    InstalledTuner tuner;
    static_cast<JobXml::TunerProperties &>(tuner) = aDocument();
    tuner.site = QStringLiteral("Tower <2> \u00E4");
    tuner.remark = QStringLiteral("second\nantenna");
    return tuner;
}

} // namespace

class DerivedClassTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void xmlHasTheAttributeBesideThoseOfTheBaseAndTheElementAtTheEnd()
    {
        InstalledTuner tuner;
        tuner.SetValidate(false);
        tuner.Settype(JobXml::TunerProperties::type::SCP);
        tuner.SetMaxFFPDelay(5);
        tuner.site = QStringLiteral("a");
        tuner.remark = QStringLiteral("b");
        QCOMPARE(xmlOf(tuner),
                 QStringLiteral("<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"\" site=\"a\">"
                                "<MaxFFPDelay>5</MaxFFPDelay><remark>b</remark></TunerProperties>"));
    }

    void xmlOfAnObjectWithoutContentHasItsAttribute()
    {
        InstalledTuner tuner;
        tuner.SetValidate(false);
        tuner.site = QStringLiteral("a");
        QCOMPARE(xmlOf(tuner),
                 QStringLiteral("<TunerProperties Version=\"1.1\" type=\"\" baseresource=\"\" site=\"a\"/>"));
    }

    void recordsFollowThoseOfTheBase()
    {
        InstalledTuner tuner;
        tuner.SetValidate(false);
        const QByteArray base = recordOf(tuner);
        tuner.site = QStringLiteral("ab");
        QByteArray expected = base.mid(4) + bytes("5E51E001 00000006 00000002 6162");
        expected.prepend(char(expected.size())).prepend(3, '\0');
        QCOMPARE(hex(recordOf(tuner)), hex(expected));
    }

    void everyFormReadsBackWhatItWrote()
    {
        const InstalledTuner tuner = anInstalledTuner();
        InstalledTuner fromXml;
        QVERIFY(fromXml.SetXmlString(InstalledTuner(tuner).GetXmlString(), true));
        QVERIFY(fromXml == tuner);

        InstalledTuner fromRecords;
        QByteArray representation = InstalledTuner(tuner).GetBinaryRepresentationAsQByteArray();
        QVERIFY(fromRecords.SetBinaryRepresentation(representation));
        QVERIFY(fromRecords == tuner);

        InstalledTuner fromLittleEndian;
        readRecord(fromLittleEndian, recordOf(tuner, littleEndian), littleEndian);
        QVERIFY(fromLittleEndian == tuner);

        InstalledTuner fromSnapshot;
        QCOMPARE(readSnapshot(fromSnapshot, snapshotOf(tuner)), 0);
        QVERIFY(fromSnapshot == tuner);
    }

    void everyFileReadsBackWhatItHolds()
    {
        const QTemporaryDir folder;
        const QString xml = folder.filePath(QStringLiteral("a.xml"));
        const QString compressed = folder.filePath(QStringLiteral("a.tpz"));
        const InstalledTuner tuner = anInstalledTuner();
        QVERIFY(tuner.SaveXml(xml));
        QVERIFY(tuner.SaveCompressedBinary(compressed, 9));
        InstalledTuner fromXml;
        QVERIFY(fromXml.LoadXml(xml));
        QVERIFY(fromXml == tuner);
        InstalledTuner fromRecords;
        QFile file(compressed);
        QVERIFY(fromRecords.LoadBinary(&file));
        QVERIFY(fromRecords == tuner);
    }

    void aRecordIsReadFromADeviceThatIsNoBuffer()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("record")));
        QVERIFY(file.open(QIODevice::ReadWrite));
        const InstalledTuner tuner = anInstalledTuner();
        const QByteArray record = recordOf(tuner);
        file.write(record);
        QVERIFY(file.seek(4));
        QDataStream stream(&file);
        InstalledTuner read;
        read.SetBinary(stream, record.size() - 4);
        QVERIFY(read == tuner);
    }

    void recordsMayComeInAnyOrder()
    {
        const InstalledTuner tuner = anInstalledTuner();
        InstalledTuner bare(tuner);
        bare.site = QString();
        bare.remark = QString();
        bare.SetValidate(false);
        const QByteArray ofBase = recordOf(bare).mid(4);
        const QByteArray own = recordOf(tuner).mid(4 + ofBase.size());
        QDataStream stream(own + ofBase);
        InstalledTuner read;
        read.SetBinary(stream, own.size() + ofBase.size());
        QVERIFY(read == tuner);
    }

    void aRecordThatIsCutOffIsALengthError()
    {
        const QByteArray record = recordOf(anInstalledTuner());
        const int own = 4 + 4 + 4 + 12 + 4 + 4 + 4 + 14;
        for (int cut = 1; cut <= own; ++cut) {
            QDataStream stream(record.mid(4, record.size() - 4 - cut));
            InstalledTuner read;
            QCOMPARE(thrownBy([&] { read.SetBinary(stream, record.size() - 4); }),
                     QStringLiteral("BinaryParsingException: TunerProperties::SetBinary(...): Length error occurred "
                                    "during processing of binary representation"));
        }
    }

    void resettingTakesTheOwnMembersAlong()
    {
        InstalledTuner tuner = anInstalledTuner();
        tuner.Reset();
        QVERIFY(tuner.site.isNull() && tuner.remark.isNull());
        QVERIFY(!tuner.HasData());
        tuner = anInstalledTuner();
        tuner.ResetToDefault();
        QVERIFY(tuner.site.isNull() && tuner.remark.isNull());
    }

    void anOlderDocumentReplacesTheOwnMembers()
    {
        InstalledTuner tuner = anInstalledTuner();
        tuner.SetValidate(false);
        readXml(tuner, QStringLiteral("<TunerProperties Version=\"1.0\" site=\"new\"/>"));
        QCOMPARE(tuner.site, QStringLiteral("new"));
        QVERIFY(tuner.remark.isNull());
    }

    void ownMembersDecideAboutEquality()
    {
        const InstalledTuner tuner = anInstalledTuner();
        InstalledTuner other(tuner);
        QVERIFY(other == tuner);
        other.remark = QStringLiteral("another");
        QVERIFY(other != tuner);
        InstalledTuner onlyOwn;
        onlyOwn.site = QStringLiteral("a");
        QVERIFY(onlyOwn != InstalledTuner());
    }

    void aMissingOwnMemberIsAProblemAndIsNotWritten()
    {
        InstalledTuner tuner = anInstalledTuner();
        tuner.site = QString();
        const QString text = QStringLiteral("TunerProperties: Please set site properly.");
        QCOMPARE(thrownBy([&] { tuner.Check(); }), QStringLiteral("OutOfRangeException: ") + text);
        QCOMPARE(thrownBy([&] { return tuner.GetXmlString(); }), QStringLiteral("OutOfRangeException: ") + text);
        const QVector<JobXml::Problem> problems = tuner.GetProblems();
        QCOMPARE(problems.size(), 1);
        QCOMPARE(problems.at(0).message, text);
    }

    void theBaseClassReadsWhatItKnows()
    {
        InstalledTuner tuner = anInstalledTuner();
        JobXml::TunerProperties fromRecords;
        QByteArray representation = tuner.GetBinaryRepresentationAsQByteArray();
        QVERIFY(fromRecords.SetBinaryRepresentation(representation));
        QVERIFY(fromRecords == aDocument());
        JobXml::TunerProperties fromXml;
        QCOMPARE(thrownBy([&] { return fromXml.SetXmlString(tuner.GetXmlString(), true); }),
                 QStringLiteral("InvalidXmlException: Unknown Tag 'remark' in 'TunerProperties'."));
    }
};

QTEST_GUILESS_MAIN(DerivedClassTest)
#include "tst_DerivedClass.moc"
