// SPDX-License-Identifier: MIT
//
// Builds the description of a small receiver from nothing, checks it and saves it in all forms.
//
//     build_a_receiver FOLDER

#include <cstdio>

#include <QDataStream>
#include <QDir>
#include <QSaveFile>
#include <QString>

#include <jobxml/BandwidthSelection.h>
#include <jobxml/Component.h>
#include <jobxml/Node.h>
#include <jobxml/SelectionItem.h>
#include <jobxml/StartupModes.h>
#include <jobxml/StringItem.h>
#include <jobxml/TunerProperties.h>
#include <jobxml/ValueBoolean.h>
#include <jobxml/ValueItem.h>
#include <jobxml/ValueNumericInt.h>
#include <jobxml/ValueNumericInt64.h>
#include <jobxml/ValueSelection.h>
#include <jobxml/ValueString.h>
#include <jobxml/ValueStringList.h>

namespace {

// Each object is complete before it is added to its parent: while validating, a parent refuses incomplete items.

JobXml::ValueItem unit(const QString &symbol)
{
    JobXml::ValueString text;
    text.Setid(QStringLiteral("unit"));
    text.Setvalue(symbol);
    JobXml::ValueItem item;
    item.SetValueString(text);
    return item;
}

JobXml::Node frequency()
{
    JobXml::ValueNumericInt64 hertz;
    hertz.Setid(QStringLiteral("frequency"));
    hertz.Setvalue(Q_INT64_C(5800000000));
    hertz.Setmin(20000000);
    hertz.Setmax(Q_INT64_C(8000000000));
    hertz.Setstep(1);
    JobXml::ValueItem item;
    item.SetValueNumericInt64(hertz);

    JobXml::Node node;
    node.Setid(QStringLiteral("frequency"));
    node.AppendValueItem(item);
    node.AppendValueItem(unit(QStringLiteral("Hz")));
    return node;
}

JobXml::Node attenuation()
{
    JobXml::ValueNumericInt decibels;
    decibels.Setid(QStringLiteral("attenuation"));
    decibels.Setvalue(10);
    decibels.Setmin(0);
    decibels.Setmax(40);
    decibels.Setstep(2);
    JobXml::ValueItem item;
    item.SetValueNumericInt(decibels);

    JobXml::Node node;
    node.Setid(QStringLiteral("attenuation"));
    node.AppendValueItem(item);
    node.AppendValueItem(unit(QStringLiteral("dB")));
    return node;
}

JobXml::Node preamplifier()
{
    JobXml::ValueBoolean engaged;
    engaged.Setid(QStringLiteral("engaged"));
    engaged.Setvalue(false);
    JobXml::ValueItem item;
    item.SetValueBoolean(engaged);

    JobXml::Node node;
    node.Setid(QStringLiteral("preamplifier"));
    node.AppendValueItem(item);
    return node;
}

JobXml::Node bandwidth()
{
    struct Option
    {
        QString name;
        double hertz;
    };
    const Option options[] = {
        {QStringLiteral("2.4 kHz"), 2400.0}, {QStringLiteral("9 kHz"), 9000.0}, {QStringLiteral("120 kHz"), 120000.0}};
    const int chosen = 1;

    JobXml::ValueSelection selection;
    selection.Setid(QStringLiteral("bandwidth"));
    selection.Setvalue(options[chosen].hertz);
    selection.Settext(options[chosen].name);
    selection.Setindex(chosen);
    for (const Option &option : options) {
        JobXml::SelectionItem item;
        item.Setname(option.name);
        item.Setvalue(option.hertz);
        selection.AppendSelectionItem(item);
    }
    JobXml::ValueItem item;
    item.SetValueSelection(selection);

    JobXml::Node node;
    node.Setid(QStringLiteral("bandwidth"));
    node.AppendValueItem(item);
    node.AppendValueItem(unit(QStringLiteral("Hz")));
    return node;
}

JobXml::Node demodulation()
{
    JobXml::ValueStringList list;
    list.Setid(QStringLiteral("demodulation"));
    list.Setvalue(QStringLiteral("FM"));
    for (const QString &name :
         {QStringLiteral("AM"), QStringLiteral("FM"), QStringLiteral("USB"), QStringLiteral("LSB")}) {
        JobXml::StringItem item;
        item.Setvalue(name);
        list.AppendStringItem(item);
    }
    JobXml::ValueItem item;
    item.SetValueStringList(list);

    JobXml::Node node;
    node.Setid(QStringLiteral("demodulation"));
    node.AppendValueItem(item);
    return node;
}

JobXml::Component frontEnd()
{
    JobXml::Component component;
    component.Settype(QStringLiteral("FrontEnd"));
    component.Setname(QStringLiteral("frontend"));
    component.SetdisplayName(QStringLiteral("Front end"));
    component.Setoptional(false);
    component.AppendNode(frequency());
    component.AppendNode(attenuation());
    component.AppendNode(preamplifier());
    return component;
}

JobXml::Component demodulator()
{
    JobXml::Component component;
    component.Settype(QStringLiteral("Demodulator"));
    component.Setname(QStringLiteral("demodulator"));
    component.Setoptional(true);
    component.AppendNode(bandwidth());
    component.AppendNode(demodulation());
    return component;
}

JobXml::TunerProperties receiver()
{
    JobXml::StartupModes modes;
    modes.AppendStartupMode(JobXml::StartupModes::StartupMode::FFM);
    modes.AppendStartupMode(JobXml::StartupModes::StartupMode::Scan);
    modes.AppendStartupMode(JobXml::StartupModes::StartupMode::Search);

    JobXml::BandwidthSelection realtime;
    realtime.SetName(QStringLiteral("Realtime bandwidth"));
    realtime.SetMaxBandwidth(20000000.0);

    JobXml::TunerProperties tuner;
    tuner.Settype(JobXml::TunerProperties::type::Receiver);
    tuner.Setname(QStringLiteral("Handheld receiver"));
    tuner.Setbaseresource(QStringLiteral("RX-8G-H"));
    tuner.Setquantity(1);
    tuner.SethwProcessing(false);
    tuner.SetStartupModes(modes);
    tuner.AppendBandwidthSelection(realtime);
    tuner.SetMaxFFPDelay(250000000);
    tuner.SetHRPANSupported(true);
    tuner.AppendComponent(frontEnd());
    tuner.AppendComponent(demodulator());
    return tuner;
}

/// Snapshots have no save operation, since they contain neither a signature nor their length.
bool saveSnapshot(const JobXml::TunerProperties &tuner, const QString &path, QString &reason)
{
    QSaveFile file(path);
    bool saved = file.open(QIODevice::WriteOnly);
    if (saved) {
        QDataStream stream(&file);
        stream.setVersion(QDataStream::Qt_5_15);
        tuner.GetVersionSpecificBinaryWithoutValidation(stream);
        saved = stream.status() == QDataStream::Ok && file.commit();
    }
    reason = file.errorString();
    return saved;
}

bool report(bool saved, const QString &path, const QString &reason)
{
    if (saved)
        std::printf("wrote %s\n", qPrintable(path));
    else
        std::fprintf(stderr, "build_a_receiver: %s cannot be written: %s\n", qPrintable(path), qPrintable(reason));
    return saved;
}

bool saveInAllForms(const JobXml::TunerProperties &tuner, const QDir &folder)
{
    const QString xml = folder.filePath(QStringLiteral("receiver.xml"));
    bool saved = tuner.SaveXml(xml);
    if (!report(saved, xml, tuner.GetErrorString()))
        return false;

    const QString tagged = folder.filePath(QStringLiteral("receiver.tpb"));
    saved = tuner.SaveBinary(tagged);
    if (!report(saved, tagged, tuner.GetErrorString()))
        return false;

    const QString compressed = folder.filePath(QStringLiteral("receiver.tpz"));
    saved = tuner.SaveCompressedBinary(compressed, 9);
    if (!report(saved, compressed, tuner.GetErrorString()))
        return false;

    const QString snapshot = folder.filePath(QStringLiteral("receiver.tps"));
    QString reason;
    saved = saveSnapshot(tuner, snapshot, reason);
    return report(saved, snapshot, reason);
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: build_a_receiver FOLDER\n");
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    if (!folder.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "build_a_receiver: %s cannot be made\n", argv[1]);
        return 1;
    }
    try {
        const JobXml::TunerProperties tuner = receiver();
        tuner.Check(); // throws for the first missing member, as saving does
        return saveInAllForms(tuner, folder) ? 0 : 1;
    } catch (const ReportException &exception) {
        std::fprintf(stderr, "build_a_receiver: %s\n", exception.what());
        return 1;
    }
}
