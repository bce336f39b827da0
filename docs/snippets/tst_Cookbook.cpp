// SPDX-License-Identifier: MIT
//
// The recipes of the cookbook for a single document: the manual shows the marked parts, and the tests check their
// results.

#include <optional>
#include <utility>

#include <QFile>
#include <QLocale>
#include <QTemporaryDir>
#include <QtTest>

#include <jobxml/TunerProperties.h>
#include <tavikappstartup/TranslationCenter.h>

#include "Elements.h"

namespace {

//! [build]
JobXml::TunerProperties smallReceiver()
{
    JobXml::ValueNumericInt64 hertz;
    hertz.Setid(QStringLiteral("frequency"));
    hertz.Setvalue(98500000);
    hertz.Setmin(9000);
    hertz.Setmax(Q_INT64_C(8000000000));
    hertz.Setstep(1);

    JobXml::ValueItem item;
    item.SetValueNumericInt64(hertz);

    JobXml::Node frequency;
    frequency.Setid(QStringLiteral("frequency"));
    frequency.AppendValueItem(item);

    JobXml::Component tuning;
    tuning.Settype(QStringLiteral("Synthesizer"));
    tuning.Setname(QStringLiteral("tuning"));
    tuning.Setoptional(false);
    tuning.AppendNode(frequency);

    JobXml::TunerProperties tuner;
    tuner.Settype(JobXml::TunerProperties::type::Receiver);
    tuner.Setbaseresource(QStringLiteral("RX-8G"));
    tuner.AppendComponent(tuning);
    return tuner;
}
//! [build]

//! [change]
/// Returns a null string, or the reason for a failure. Throws for errors in the content.
QString setQuantity(const QString &path, int quantity)
{
    JobXml::TunerProperties tuner;
    if (!tuner.LoadXml(path))
        return tuner.GetErrorString();
    tuner.Setquantity(quantity);
    return tuner.SaveXml(path) ? QString() : tuner.GetErrorString(); // the new file or the old one, nothing in between
}
//! [change]

//! [find_node]
/// Null if there is none. Valid until the document is next changed, or used after it was copied or assigned.
const JobXml::Node *findNode(const JobXml::TunerProperties &tuner, const QString &component, const QString &id)
{
    for (const JobXml::Component &candidate : tuner.GetComponent()) {
        if (candidate.Getname() != component)
            continue;
        for (const JobXml::Node &node : candidate.GetNode()) {
            if (node.Getid() == id)
                return &node;
        }
    }
    return nullptr;
}

/// The frequency that the receiver is tuned to, if the document contains it.
std::optional<qint64> frequencyOf(const JobXml::TunerProperties &tuner)
{
    const JobXml::Node *node = findNode(tuner, QStringLiteral("tuning"), QStringLiteral("frequency"));
    if (!node)
        return {};
    for (const JobXml::ValueItem &item : node->GetValueItem()) {
        if (item.GetChoiceValueItem() == JobXml::ValueItem::ChoiceValueItem::ValueNumericInt64)
            return item.GetValueNumericInt64().Getvalue();
    }
    return {};
}
//! [find_node]

//! [problems]
QStringList problemsOf(const JobXml::TunerProperties &tuner)
{
    QStringList lines;
    const QVector<JobXml::Problem> problems = tuner.GetProblems();
    for (const JobXml::Problem &problem : problems)
        lines.append((problem.path + QStringList{problem.message}).join(QStringLiteral(" / ")));
    return lines;
}
//! [problems]

//! [convert]
/// From any form to that of the new file's suffix: .tpb, .tpz or XML.
QString convert(const QString &from, const QString &to)
{
    const bool isXml = from.endsWith(QLatin1String(".xml"));
    JobXml::TunerProperties tuner;
    if (!(isXml ? tuner.LoadXml(from) : tuner.LoadBinary(from))) // plain or compressed records
        return tuner.GetErrorString();

    const bool saved = to.endsWith(QLatin1String(".tpb")) ? tuner.SaveBinary(to)
        : to.endsWith(QLatin1String(".tpz"))              ? tuner.SaveCompressedBinary(to, 9)
                                                          : tuner.SaveXml(to);
    return saved ? QString() : tuner.GetErrorString();
}
//! [convert]

//! [translate]
struct ModeEntry
{
    QString text; // to show
    JobXml::StartupModes::StartupMode mode; // to store
};

/// The entries of a drop-down list, in the language of QLocale().
QVector<ModeEntry> modeEntries()
{
    TranslationCenter::Instance().Register(QStringLiteral("TunerProperties")); // once more after a change of language
    QVector<ModeEntry> entries;
    const QStringList texts = JobXml::StartupModes::GetGUIStartupModes();
    for (int i = 0; i < texts.size(); ++i) // both lists have the order of the values
        entries.append({texts.at(i), JobXml::StartupModes::StartupMode(i)});
    return entries;
}
//! [translate]

//! [hostile]
/// Reads a file of unknown origin. Changes `result` only if all of it is valid; otherwise returns the first problems.
QStringList readUntrusted(const QString &path, JobXml::TunerProperties &result)
{
    constexpr int mostKept = 20; // a document may have a problem for every few bytes
    JobXml::ReadOptions options;
    options.setMaxBytes(10 * 1024 * 1024); // no description of a tuner is larger

    QStringList problems;
    const auto keep = [&problems](const JobXml::Problem &problem) {
        if (problems.size() < mostKept)
            problems.append(problem.message);
    };
    JobXml::TunerProperties read; // not `result`: the object keeps what was read, whatever its problems
    if (read.LoadXml(path, keep, options))
        result = read;
    return problems;
}
//! [hostile]

//! [merge_objects]
/// Sets members that are missing in the document to the defaults.
JobXml::TunerProperties withDefaults(const JobXml::TunerProperties &document, const JobXml::TunerProperties &defaults)
{
    JobXml::TunerProperties merged = defaults;
    // Members that are set in the document replace those of the defaults; items of its lists are appended.
    [[maybe_unused]] const bool isOfOneClass = merged.MergeRGObject(document);
    Q_ASSERT(isOfOneClass); // only objects of another class are refused
    return merged;
}
//! [merge_objects]

QString exampleFile(const char *name)
{
    return QStringLiteral(EXAMPLES_DIR "/") + QLatin1String(name);
}

JobXml::TunerProperties exampleReceiver()
{
    JobXml::TunerProperties tuner;
    if (!tuner.LoadXml(exampleFile("receiver.xml")))
        qFatal("%s", qPrintable(tuner.GetErrorString()));
    return tuner;
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s", qPrintable(file.errorString()));
}

} // namespace

class Cookbook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aReceiverIsBuiltFromNothing();
    void oneValueIsChangedInAFile();
    void aNodeIsFoundByItsId();
    void allProblemsAreListed();
    void formsAreConverted();
    void modesAreShownInTheUsersLanguage();
    void hostileFilesAreRefused();
    void defaultsFillWhatIsMissing();
};

void Cookbook::aReceiverIsBuiltFromNothing()
{
    JobXml::TunerProperties tuner = smallReceiver();
    QCOMPARE(elementOf(tuner),
             QStringLiteral("<TunerProperties Version=\"1.1\" type=\"Receiver\" baseresource=\"RX-8G\">\n"
                            "  <Component type=\"Synthesizer\" name=\"tuning\" optional=\"false\">\n"
                            "    <Node id=\"frequency\">\n"
                            "      <ValueItem>\n"
                            "        <ValueNumericInt64 id=\"frequency\" value=\"98500000\" min=\"9000\" "
                            "max=\"8000000000\" step=\"1\"/>\n"
                            "      </ValueItem>\n"
                            "    </Node>\n"
                            "  </Component>\n"
                            "</TunerProperties>\n"));
}

void Cookbook::oneValueIsChangedInAFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("receiver.xml"));
    QVERIFY(smallReceiver().SaveXml(path));
    QCOMPARE(setQuantity(path, 3), QString());
    JobXml::TunerProperties expected = smallReceiver();
    expected.Setquantity(3);
    JobXml::TunerProperties changed;
    QVERIFY(changed.LoadXml(path));
    QVERIFY(changed == expected);

    const QString missing = folder.filePath(QStringLiteral("missing.xml"));
    QCOMPARE(setQuantity(missing, 3), missing + QStringLiteral(": cannot open: No such file or directory"));
}

void Cookbook::aNodeIsFoundByItsId()
{
    const JobXml::TunerProperties tuner = exampleReceiver();
    const std::optional<qint64> frequency = frequencyOf(tuner);
    QVERIFY(frequency && *frequency == 98500000);
    QVERIFY(!findNode(tuner, QStringLiteral("tuning"), QStringLiteral("no such node")));
    QVERIFY(!frequencyOf(JobXml::TunerProperties()));
}

void Cookbook::allProblemsAreListed()
{
    QCOMPARE(problemsOf(exampleReceiver()), QStringList());

    JobXml::TunerProperties broken = smallReceiver();
    broken.GetComponent()[0].Resetname();
    broken.GetComponent()[0].GetNode()[0].Resetid();
    broken.Resetbaseresource();
    QCOMPARE(problemsOf(broken),
             (QStringList{QStringLiteral("Component 1 / Node 1 / Node: Please set id properly."),
                          QStringLiteral("Component 1 / Component: Please set name properly."),
                          QStringLiteral("TunerProperties: Please set baseresource properly.")}));
}

void Cookbook::formsAreConverted()
{
    const QTemporaryDir folder;
    const JobXml::TunerProperties original = exampleReceiver();
    QString last = exampleFile("receiver.xml");
    for (const char *name : {"receiver.tpb", "receiver.tpz", "receiver.xml"}) {
        const QString next = folder.filePath(QLatin1String(name));
        QCOMPARE(convert(last, next), QString());
        last = next;
    }
    JobXml::TunerProperties converted;
    QVERIFY(converted.LoadXml(last));
    QVERIFY(converted == original);
    QCOMPARE(convert(last, folder.filePath(QStringLiteral("none/receiver.tpb"))),
             folder.filePath(QStringLiteral("none/receiver.tpb: cannot write: No such file or directory")));
}

void Cookbook::modesAreShownInTheUsersLanguage()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    const QVector<ModeEntry> german = modeEntries();
    QLocale::setDefault(QLocale(QLocale::English));
    const QVector<ModeEntry> english = modeEntries();
    QLocale::setDefault(before);

    QCOMPARE(german.size(), 11);
    QCOMPARE(german.at(1).text, QStringLiteral("Schneller Suchlauf"));
    QCOMPARE(english.at(1).text, QStringLiteral("Fast scan"));
    QVERIFY(german.at(1).mode == JobXml::StartupModes::StartupMode::FastScan);
}

void Cookbook::hostileFilesAreRefused()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document.xml"));
    JobXml::TunerProperties result;

    write(path, "<TunerProperties Version=\"1.1\"><Component>");
    QCOMPARE(readUntrusted(path, result), QStringList{QStringLiteral("Premature end of document.")});

    write(path, "<TunerProperties Version=\"1.1\" type=\"Toaster\"/>");
    QCOMPARE(readUntrusted(path, result),
             (QStringList{QStringLiteral("enum is not valid (classname=TunerProperties,membername=m_type)"),
                          QStringLiteral("TunerProperties: Please set Component properly."),
                          QStringLiteral("TunerProperties: Please set type properly."),
                          QStringLiteral("TunerProperties: Please set baseresource properly.")}));

    write(path, "<TunerProperties Version=\"1.1\">" + QByteArray("<A/>").repeated(1000) + "</TunerProperties>");
    QCOMPARE(readUntrusted(path, result).size(), 20);

    write(path, QByteArray(11 * 1024 * 1024, ' '));
    QCOMPARE(readUntrusted(path, result),
             QStringList{QStringLiteral("the document has more than 10485760 bytes, the most that are accepted")});

    QVERIFY(!result.IsInitialized()); // untouched by all of them
    QCOMPARE(readUntrusted(exampleFile("receiver.xml"), result), QStringList());
    QVERIFY(result == exampleReceiver());
}

void Cookbook::defaultsFillWhatIsMissing()
{
    JobXml::TunerProperties defaults;
    defaults.Setquantity(1);
    defaults.SethwProcessing(true);
    defaults.Setbaseresource(QStringLiteral("RX-1"));

    const JobXml::TunerProperties merged = withDefaults(smallReceiver(), defaults);
    JobXml::TunerProperties expected = smallReceiver();
    expected.Setquantity(1);
    expected.SethwProcessing(true);
    QVERIFY(merged == expected); // the base resource is the document's
}

TEST_SUITE(Cookbook)
#include "tst_Cookbook.moc"
