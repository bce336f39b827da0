// SPDX-License-Identifier: MIT
#include <QTest>

#include <tunerdocuments/Document.h>

#include "documents/RandomChanges.h"
#include "documents/edit/AvoidableLoss.h"

using namespace TunerDocuments;
using JobXml::TunerProperties;

/// Which differences of an edited text from its description are excused.
class AvoidableLossTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lossIsExcusedWhereTheFormCannotHoldTheDescription_data();
    void lossIsExcusedWhereTheFormCannotHoldTheDescription();
    void whatIsWrittenAnewLosesNothingAvoidable();
    void equalDocumentsHaveNoLoss();
};

namespace {

TunerProperties documentOf(const char *members)
{
    return Document::fromBytes(QByteArray(R"({"TunerProperties": {"Version": "1.1", "quantity": 1, )") + members + "}}",
                               QStringLiteral("d.json"))
        .tuner;
}

TunerProperties readBack(const Document &document, Form form)
{
    return Document::fromBytes(document.toBytes(form, QString()), QString(), LoadOptions().setForm(form)).tuner;
}

} // namespace

void AvoidableLossTest::lossIsExcusedWhereTheFormCannotHoldTheDescription_data()
{
    QTest::addColumn<QByteArray>("description");
    QTest::addColumn<QByteArray>("read");
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QString>("loss");
    const auto row = [](const char *title, const char *description, const char *read, const char *written,
                        const char *loss) {
        QTest::newRow(title) << QByteArray(description) << QByteArray(read) << QByteArray(written)
                             << (*loss ? QString::fromUtf8(loss) : QString());
    };
    row("a value", R"("name": "a")", R"("name": "b")", R"("name": "a")", R"(name: "a" would be read as "b")");
    row("a value that is rounded", R"("BandwidthSelection": [{"MaxBandwidth": 0.126}])",
        R"("BandwidthSelection": [{"MaxBandwidth": 0.13}])", R"("BandwidthSelection": [{"MaxBandwidth": 0.13}])", "");
    row("a rounded value that the text has in another way", R"("BandwidthSelection": [{"MaxBandwidth": 0.126}])",
        R"("BandwidthSelection": [{"MaxBandwidth": 0.12}])", R"("BandwidthSelection": [{"MaxBandwidth": 0.13}])", "");
    row("a rounded value that the text has exactly", R"("BandwidthSelection": [{"MaxBandwidth": 0.126}])",
        R"("BandwidthSelection": [{"MaxBandwidth": 0.126}])", R"("BandwidthSelection": [{"MaxBandwidth": 0.13}])", "");
    // A value that is rounded does not excuse others in the same list.
    row("another value of the item", R"("BandwidthSelection": [{"Name": "w", "MaxBandwidth": 0.126}])",
        R"("BandwidthSelection": [{"Name": "v", "MaxBandwidth": 0.13}])",
        R"("BandwidthSelection": [{"Name": "w", "MaxBandwidth": 0.13}])",
        R"(BandwidthSelection[Name=w]/Name: "w" would be read as "v")");
    row("an item is missing", R"("BandwidthSelection": [{"Name": "w", "MaxBandwidth": 0.126}, {"Name": "v"}])",
        R"("BandwidthSelection": [{"Name": "w", "MaxBandwidth": 0.13}])",
        R"("BandwidthSelection": [{"Name": "w", "MaxBandwidth": 0.13}, {"Name": "v"}])",
        "BandwidthSelection: 2 items would be read as 1 item");
    row("items are exchanged", R"("BandwidthSelection": [{"Name": "w", "MaxBandwidth": 0.126}, {"Name": "v"}])",
        R"("BandwidthSelection": [{"Name": "v"}, {"Name": "w", "MaxBandwidth": 0.13}])",
        R"("BandwidthSelection": [{"Name": "w", "MaxBandwidth": 0.13}, {"Name": "v"}])",
        R"(BandwidthSelection[Name=w]/Name: "w" would be read as "v")");
    row("a null text that identifies its item", R"("BandwidthSelection": [{"Name": null}, {"Name": "v"}])",
        R"("BandwidthSelection": [{"Name": ""}, {"Name": "u"}])",
        R"("BandwidthSelection": [{"Name": ""}, {"Name": "v"}])",
        R"(BandwidthSelection[Name=v]/Name: "v" would be read as "u")");
    row("what is in an object that the form does not have", R"("unset": {"StartupModes": {"StartupMode": ["DF"]}})", "",
        "", "");
    row("an object of which the form holds something else", R"("StartupModes": {"StartupMode": [null]})",
        R"("StartupModes": {})", R"("StartupModes": {"StartupMode": ["DF"]})", "");
    row("an object that is empty in the text", R"("StartupModes": {"StartupMode": ["DF"]})", R"("StartupModes": {})",
        R"("StartupModes": {"StartupMode": ["DF"]})", "StartupModes: {...} would be read as {}");
    row("an object beside it", R"("Component": [{"name": "c"}], "unset": {"StartupModes": {"StartupMode": ["DF"]}})",
        R"("Component": [{}])", R"("Component": [{"name": "c"}])",
        R"(Component[1]/name: "c" would be read as (not set))");
    row("a choice", R"("Component": [{"Node": [{"ValueItem": [{"ValueInt": {"id": "i"}}]}]}])",
        R"("Component": [{"Node": [{"ValueItem": [{"ValueFloat": {"id": "i"}}]}]}])",
        R"("Component": [{"Node": [{"ValueItem": [{"ValueInt": {"id": "i"}}]}]}])",
        "Component[1]/Node[1]/ValueItem[id=i]/ChoiceValueItem: ValueInt would be read as ValueFloat");
}

void AvoidableLossTest::lossIsExcusedWhereTheFormCannotHoldTheDescription()
{
    const auto document = [](const QByteArray &members) {
        return documentOf(
            (members.isEmpty() ? QByteArray(R"("hwProcessing": true)") : members + R"(, "hwProcessing": true)")
                .constData());
    };
    QFETCH(QByteArray, description);
    QFETCH(QByteArray, read);
    QFETCH(QByteArray, written);
    QFETCH(QString, loss);
    QCOMPARE(avoidableLoss(document(description), document(read), document(written)), loss);
}

void AvoidableLossTest::whatIsWrittenAnewLosesNothingAvoidable()
{
    int lossy = 0;
    for (int seed = 0; seed < 1000; ++seed) {
        const Document document(randomDocument(seed, seed % 9));
        for (const Form form : {Form::Xml, Form::Tagged}) {
            TunerProperties written;
            try {
                written = readBack(document, form);
            } catch (const DocumentError &) {
                continue; // XML cannot carry a character
            }
            lossy += document.tuner != written;
            QCOMPARE(avoidableLoss(document.tuner, written, written), QString());
            QCOMPARE(avoidableLoss(document.tuner, document.tuner, written), QString());
        }
    }
    QVERIFY2(lossy > 500, qPrintable(QString::number(lossy)));
}

void AvoidableLossTest::equalDocumentsHaveNoLoss()
{
    for (int seed = 0; seed < 200; ++seed) {
        const TunerProperties document = randomDocument(seed, seed % 9);
        TunerProperties other = document;
        other.SetValidate(false);
        QCOMPARE(avoidableLoss(document, other, document), QString());
        other.Setquantity(document.Getquantity() + 1);
        QVERIFY(avoidableLoss(document, other, document).startsWith(QStringLiteral("quantity: ")));
    }
}

TEST_SUITE(AvoidableLossTest)
#include "tst_AvoidableLoss.moc"
