// SPDX-License-Identifier: MIT
//
// Classes that derive from a class of the model and add members, or have a name of their own: the manual shows the
// marked parts, and the tests check their results.

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include <QTemporaryDir>
#include <QtTest>

#include <jobxml/TunerProperties.h>
#include <reportbase/RepresentationSplitter.h>

#include "Documents.h"
#include "Encodings.h"
#include "ExceptionText.h"

namespace {

//! [class]
/// A tuner with the site where it is installed, and a remark of its operators.
class InstalledTuner : public JobXml::TunerProperties
{
public:
    QString site; // mandatory; an attribute
    QString remark; // optional; a child element. Only a null text is missing, not an empty one

    // State: that of the base, and the added members.
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
    bool AnyData() const override { return TunerProperties::AnyData() || !site.isNull() || !remark.isNull(); }
    bool HasData() const override { return TunerProperties::HasData() && !site.isNull(); }
    bool operator==(const InstalledTuner &other) const
    {
        return TunerProperties::operator==(other) && isSame(site, other.site) && isSame(remark, other.remark);
    }
    bool operator!=(const InstalledTuner &other) const { return !(*this == other); }

    bool MergeRGObject(const REPORTGENERATOR::IRGObject &other) override
    {
        if (!TunerProperties::MergeRGObject(other))
            return false;
        if (const auto *installed = dynamic_cast<const InstalledTuner *>(&other)) { // not for a plain TunerProperties
            if (!installed->site.isNull())
                site = installed->site;
            if (!installed->remark.isNull())
                remark = installed->remark;
        }
        return true;
    }

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

    // Snapshots: after the base's members.
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
        if (reader.name() != QLatin1String("remark")) {
            TunerProperties::ProcessXmlStartElement(reader);
            return;
        }
        const QString text = GetTextValue(reader); // leaves the reader on the end of the element
        if (!reader.hasError()) // or the text is truncated
            remark = text.isNull() ? QStringLiteral("") : text; // <remark/> has a null text
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
        // With the size: without it the text ends at the first U+0000.
        (tag == siteTag ? site : remark) = QString::fromUtf8(utf8.constData(), utf8.size());
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
    static bool isSame(const QString &left, const QString &right)
    {
        return left == right && left.isNull() == right.isNull(); // for QString a null text equals an empty one
    }
    void clear()
    {
        site = QString();
        remark = QString();
    }
};
//! [class]

//! [name]
/// The same under a name and an identifier of its own, for documents that no plain reader accepts.
class SiteTuner : public InstalledTuner
{
public:
    SiteTuner() { identify(); }
    // The constructors of the base set the name and the identifier of the base in a copy.
    SiteTuner(const SiteTuner &other) : InstalledTuner(other) { identify(); }
    SiteTuner(SiteTuner &&other) : InstalledTuner(std::move(other)) { identify(); } // not noexcept: a name takes memory
    // An assignment leaves both as they are.
    SiteTuner &operator=(const SiteTuner &) = default;
    SiteTuner &operator=(SiteTuner &&) = default;
    ~SiteTuner() override = default;

    // These of the base would return the base's.
    static qint64 GetId() { return 0x5E51E000; }
    static QString GetStaticObjectName() { return QStringLiteral("SiteTuner"); }

private:
    void identify()
    {
        SetObjectName(GetStaticObjectName());
        m_classIdentifier = GetId();
    }
};
//! [name]

InstalledTuner anInstalledTuner()
{
    InstalledTuner tuner;
    static_cast<JobXml::TunerProperties &>(tuner) = aDocument();
    tuner.site = QStringLiteral("Tower <2> \u00E4");
    tuner.remark = QStringLiteral("second\nantenna");
    return tuner;
}

/// Reads into the object what it has written.
void readBackInto(SiteTuner &tuner)
{
    const QString xml = tuner.GetXmlString();
    const QByteArray representation = tuner.GetBinaryRepresentationAsQByteArray();
    tuner.Reset();
    QVERIFY2(tuner.SetXmlString(xml, true), qPrintable(tuner.GetErrorString()));
    QCOMPARE(tuner.GetXmlString(), xml);
    tuner.Reset();
    QVERIFY2(tuner.SetBinaryRepresentation(representation), qPrintable(tuner.GetErrorString()));
    QCOMPARE(tuner.GetXmlString(), xml);
}

SiteTuner aSiteTuner()
{
    SiteTuner tuner;
    static_cast<InstalledTuner &>(tuner) = anInstalledTuner();
    return tuner;
}

/// A way to create an object that is equal to aSiteTuner().
using Make = std::function<std::shared_ptr<SiteTuner>()>;

} // namespace
Q_DECLARE_METATYPE(Make)

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

    void recordIsReadFromASequentialDevice()
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

    void zeroCharacterInATextIsReadBack()
    {
        InstalledTuner tuner = anInstalledTuner();
        tuner.site = QString::fromLatin1("a\0b", 3);
        tuner.remark = QString::fromLatin1("\0", 1);

        InstalledTuner fromRecords;
        QVERIFY(fromRecords.SetBinaryRepresentation(tuner.GetBinaryRepresentationAsQByteArray()));
        QCOMPARE(fromRecords.site.size(), 3);
        QCOMPARE(fromRecords.site, tuner.site);
        QCOMPARE(fromRecords.remark.size(), 1);
        QVERIFY(fromRecords == tuner);

        InstalledTuner fromSnapshot;
        QCOMPARE(readSnapshot(fromSnapshot, snapshotOf(tuner)), 0);
        QCOMPARE(fromSnapshot.site.size(), 3);
        QVERIFY(fromSnapshot == tuner);
    }

    void emptyTextIsReadBackAndIsNotAMissingOne()
    {
        InstalledTuner tuner = anInstalledTuner();
        tuner.site = QStringLiteral("");
        tuner.remark = QStringLiteral("");
        const QString xml = tuner.GetXmlString();
        QVERIFY(xml.contains(QLatin1String(" site=\"\"")));
        QVERIFY(xml.contains(QLatin1String("<remark></remark>")));

        InstalledTuner fromXml;
        QVERIFY(fromXml.SetXmlString(xml, true));
        QVERIFY(!fromXml.site.isNull());
        QVERIFY(!fromXml.remark.isNull());
        QCOMPARE(fromXml.GetXmlString(), xml);
        QVERIFY(fromXml == tuner);

        InstalledTuner fromShortForm;
        QVERIFY(fromShortForm.SetXmlString(
            QString(xml).replace(QLatin1String("<remark></remark>"), QLatin1String("<remark/>")), true));
        QCOMPARE(fromShortForm.GetXmlString(), xml);

        InstalledTuner fromRecords;
        QVERIFY(fromRecords.SetBinaryRepresentation(tuner.GetBinaryRepresentationAsQByteArray()));
        QCOMPARE(fromRecords.GetXmlString(), xml);
        InstalledTuner fromSnapshot;
        QCOMPARE(readSnapshot(fromSnapshot, snapshotOf(tuner)), 0);
        QCOMPARE(fromSnapshot.GetXmlString(), xml);
    }

    void emptyTextAndMissingOneAreNotEqual()
    {
        InstalledTuner tuner = anInstalledTuner();
        InstalledTuner other(tuner);
        tuner.remark = QString();
        other.remark = QStringLiteral("");
        QVERIFY(tuner != other);
        QVERIFY(other != tuner);
        tuner.remark = other.remark;
        QVERIFY(tuner == other);
        tuner.site = QString();
        other.site = QStringLiteral("");
        QVERIFY(tuner != other);
    }

    void truncatedElementIsDiscarded()
    {
        InstalledTuner tuner = anInstalledTuner();
        tuner.remark = QStringLiteral("north");
        const QString xml = tuner.GetXmlString();
        InstalledTuner read;
        QVERIFY(!read.SetXmlString(xml.left(xml.indexOf(QLatin1String("north")) + 2), true));
        QVERIFY(read.remark.isNull());
        QCOMPARE(read.site, tuner.site);
    }

    void mergingTakesTheOwnMembersThatAreSet()
    {
        InstalledTuner tuner = anInstalledTuner();
        InstalledTuner other;
        other.remark = QStringLiteral("");
        QVERIFY(tuner.MergeRGObject(other));
        QCOMPARE(tuner.site, anInstalledTuner().site);
        QVERIFY(tuner.remark.isEmpty() && !tuner.remark.isNull());
        other.site = QStringLiteral("Mast 3");
        QVERIFY(tuner.MergeRGObject(other));
        QCOMPARE(tuner.site, QStringLiteral("Mast 3"));
        QVERIFY(tuner.MergeRGObject(JobXml::TunerProperties())); // has nothing to copy
        QCOMPARE(tuner.site, QStringLiteral("Mast 3"));
    }

    void ownMembersAreData()
    {
        InstalledTuner tuner;
        QVERIFY(!tuner.AnyData());
        tuner.remark = QStringLiteral("");
        QVERIFY(tuner.AnyData());
    }

    void everyObjectOfAClassWithAnOwnNameKeepsIt_data()
    {
        QTest::addColumn<Make>("make");
        QTest::newRow("copied") << Make([] {
            const SiteTuner original = aSiteTuner();
            return std::make_shared<SiteTuner>(original);
        });
        QTest::newRow("moved") << Make([] { return std::make_shared<SiteTuner>(aSiteTuner()); });
        QTest::newRow("assigned") << Make([] {
            const SiteTuner original = aSiteTuner();
            const auto tuner = std::make_shared<SiteTuner>();
            *tuner = original;
            return tuner;
        });
        QTest::newRow("move assigned") << Make([] {
            const auto tuner = std::make_shared<SiteTuner>();
            *tuner = aSiteTuner();
            return tuner;
        });
        QTest::newRow("moved from and assigned to") << Make([] {
            const auto tuner = std::make_shared<SiteTuner>(aSiteTuner());
            const SiteTuner moved(std::move(*tuner));
            *tuner = moved;
            return tuner;
        });
        QTest::newRow("assigned to as its base") << Make([] {
            const auto tuner = std::make_shared<SiteTuner>();
            static_cast<InstalledTuner &>(*tuner) = anInstalledTuner();
            return tuner;
        });
        QTest::newRow("swapped") << Make([] {
            SiteTuner original = aSiteTuner();
            const auto tuner = std::make_shared<SiteTuner>();
            std::swap(original, *tuner);
            return tuner;
        });
        QTest::newRow("item of a vector that has grown") << Make([] {
            const auto tuners = std::make_shared<QVector<SiteTuner>>();
            for (int i = 0; i < 20; ++i)
                tuners->append(aSiteTuner());
            return std::shared_ptr<SiteTuner>(tuners, &tuners->first());
        });
        QTest::newRow("item of a vector that was shared") << Make([] {
            const QVector<SiteTuner> shared(2, aSiteTuner());
            const auto tuners = std::make_shared<QVector<SiteTuner>>(shared);
            return std::shared_ptr<SiteTuner>(tuners, &tuners->last());
        });
    }

    void everyObjectOfAClassWithAnOwnNameKeepsIt()
    {
        QFETCH(Make, make);
        const std::shared_ptr<SiteTuner> made = make();
        const SiteTuner &tuner = *made;
        QVERIFY(tuner == aSiteTuner());
        QCOMPARE(tuner.GetObjectName(), QStringLiteral("SiteTuner"));
        QVERIFY(tuner.GetXmlString().contains(QLatin1String("\n<SiteTuner Version=\"1.1\" type=\"Receiver\"")));
        QCOMPARE(hex(tuner.GetBinaryRepresentationAsQByteArray().left(4)), QStringLiteral("5E 51 E0 00"));

        SiteTuner fromXml;
        QVERIFY2(fromXml.SetXmlString(tuner.GetXmlString(), true), qPrintable(fromXml.GetErrorString()));
        QVERIFY(fromXml == tuner);
        SiteTuner fromRecords;
        QVERIFY(fromRecords.SetBinaryRepresentation(tuner.GetBinaryRepresentationAsQByteArray()));
        QVERIFY(fromRecords == tuner);
        SiteTuner fromCompressed;
        QVERIFY(fromCompressed.SetBinaryRepresentation(tuner.GetCompressedBinaryRepresentationAsQByteArray(9)));
        QVERIFY(fromCompressed == tuner);
        SiteTuner fromSnapshot;
        QCOMPARE(readSnapshot(fromSnapshot, snapshotOf(tuner)), 0);
        QVERIFY(fromSnapshot == tuner);

        SiteTuner merged;
        QVERIFY(merged.MergeRGObject(tuner));
        QVERIFY(merged == tuner);
        QVERIFY(made->MergeRGObject(SiteTuner()));
        QVERIFY(*made == aSiteTuner());
        readBackInto(*made);
    }

    void readersOfTheBaseRefuseAClassWithAnOwnName()
    {
        const SiteTuner tuner = aSiteTuner();
        InstalledTuner plain;
        QVERIFY(!plain.SetXmlString(tuner.GetXmlString(), true));
        QCOMPARE(plain.GetErrorString(),
                 QStringLiteral("XML text:2:%1: the root element is 'SiteTuner', not 'TunerProperties'")
                     .arg(tuner.GetXmlString().section(QLatin1Char('\n'), 1, 1).size()));
        const QByteArray representation = tuner.GetBinaryRepresentationAsQByteArray();
        QVERIFY(!plain.SetBinaryRepresentation(representation));
        QCOMPARE(plain.GetErrorString(),
                 QStringLiteral("binary data: the leading word is 0x5E51E000, not 0xC10CBB5F (TunerProperties)"));
        QVERIFY(!plain.MergeRGObject(tuner));
        QVERIFY(!SiteTuner::fromBinary(representation)); // inherited, so it reads a TunerProperties
        REPORTGENERATOR::RepresentationSplitter splitter(SiteTuner::GetId());
        splitter.Append(representation);
        QCOMPARE(splitter.Take(), std::optional<QByteArray>(representation));
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

TEST_SUITE(DerivedClassTest)
#include "tst_DerivedClass.moc"
