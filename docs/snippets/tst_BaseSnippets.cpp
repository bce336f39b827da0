// SPDX-License-Identifier: MIT
//
// The examples that the manual shows for the base library and the translation registry. Each result is checked after
// the part that is shown.

#include <memory>

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <jobxml/TunerProperties.h>
#include <reportbase/Environment.h>
#include <reportbase/RepresentationSplitter.h>
#include <reportbase/SaveFile.h>
#include <reportbase/XmlMarkup.h>
#include <tavikappstartup/TranslationCenter.h>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

//! [Logger]
/// Keeps error messages, for a window that shows them.
class ErrorList : public REPORTGENERATOR::Logger
{
public:
    void Log(Severity severity, const QString &message) override
    {
        if (severity == Severity::Error)
            m_messages.append(message);
    }
    QStringList messages() const { return m_messages; }

private:
    QStringList m_messages;
};

QStringList errorsOfLoading(JobXml::TunerProperties &tuner, const QString &path)
{
    const auto errors = std::make_shared<ErrorList>();
    tuner.SetLogger(errors);
    const bool isLoaded = tuner.LoadXml(path);
    tuner.ResetLogger();
    // "missing.xml: cannot open: No such file or directory"
    return isLoaded ? QStringList() : errors->messages();
}
//! [Logger]

} // namespace

class BaseSnippets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadingAndSavingReportErrors();
    void loggerReceivesTheSameTexts();
    void exceptionsAreCaughtByTheirBase();
    void savedFileIsComplete();
    void anEnvironmentIsShared();
    void aModuleIsRegistered();
    void representationsAreReadWithinLimits();
    void sizeOfARepresentationIsKnownFromItsFirstBytes();
    void streamIsSplitIntoRepresentations();
    void placesOfElementsAreFound();
};

void BaseSnippets::loadingAndSavingReportErrors()
{
    //! [IRGObject]
    JobXml::TunerProperties tuner;
    QString why;
    if (!tuner.SetXmlString(QStringLiteral("<Tuner/>"), true))
        why = tuner.GetErrorString(); // "XML text:1:8: the root element is 'Tuner', not 'TunerProperties'"
    //! [IRGObject]
    QCOMPARE(why, QStringLiteral("XML text:1:8: the root element is 'Tuner', not 'TunerProperties'"));
}

void BaseSnippets::loggerReceivesTheSameTexts()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("missing.xml"));
    JobXml::TunerProperties tuner;
    QCOMPARE(errorsOfLoading(tuner, path),
             QStringList{path + QStringLiteral(": cannot open: No such file or directory")});
    QVERIFY(!tuner.GetLogger());
}

void BaseSnippets::exceptionsAreCaughtByTheirBase()
{
    //! [ReportException]
    const JobXml::TunerProperties tuner;
    QString why;
    try {
        tuner.Check();
    } catch (const OutOfRangeException &e) {
        why = e.GetMessageText(); // "TunerProperties: Please set Component properly."
    } catch (const ReportException &) {
        throw; // everything else that the libraries throw; std::exception also catches it
    }
    //! [ReportException]
    QCOMPARE(why, QStringLiteral("TunerProperties: Please set Component properly."));
}

void BaseSnippets::savedFileIsComplete()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("list.txt"));
    //! [SaveFile]
    const QString failure = REPORTGENERATOR::SaveFile(path, QByteArrayLiteral("RX-8G\n"));
    if (!failure.isNull())
        qWarning("%s", qPrintable(failure)); // the old file is as it was
    //! [SaveFile]
    QCOMPARE(failure, QString());
    QCOMPARE(contentOf(path), QByteArrayLiteral("RX-8G\n"));
}

void BaseSnippets::anEnvironmentIsShared()
{
    //! [Environment]
    using REPORTGENERATOR::EnvironmentPointer;
    const EnvironmentPointer lenient = EnvironmentPointer::plain(false);
    const EnvironmentPointer shared = lenient; // the same object, not an equal one
    //! [Environment]
    QVERIFY(shared == lenient);
    QVERIFY(!shared->validate && !shared->logger);
}

void BaseSnippets::aModuleIsRegistered()
{
    const QTemporaryDir folder;
    const QString catalogs = folder.path();
    //! [TranslationCenter]
    TranslationCenter &center = TranslationCenter::Instance();
    center.AddSearchPath(catalogs); // of the application, before the default folders
    center.Register(QStringLiteral("TunerProperties")); // again, so that its catalog is also searched there
    //! [TranslationCenter]
    QCOMPARE(center.SearchPaths().constFirst(), catalogs);
    QCOMPARE(center.RegisteredModules(), QStringList{QStringLiteral("TunerProperties")});
}

void BaseSnippets::representationsAreReadWithinLimits()
{
    const QByteArray received = QByteArray::fromHex("52475a31 00000000");
    //! [ReadLimits]
    REPORTGENERATOR::ReadLimits limits = REPORTGENERATOR::ReadLimits::forUntrustedData();
    limits.setAcceptCompressed(false);
    JobXml::TunerProperties tuner;
    QString why;
    if (!tuner.SetBinaryRepresentation(received, limits))
        why = tuner.GetErrorString();
    //! [ReadLimits]
    QCOMPARE(why,
             QStringLiteral("binary data: the representation is compressed, but only uncompressed ones are accepted"));
}

void BaseSnippets::sizeOfARepresentationIsKnownFromItsFirstBytes()
{
    const QByteArray received = QByteArray::fromHex("c10cbb5f 00000100");
    //! [SizeOfRepresentation]
    using REPORTGENERATOR::RepresentationSize;
    const RepresentationSize size = REPORTGENERATOR::SizeOfRepresentation(received, JobXml::TunerProperties::GetId());
    const bool isComplete = size.state == RepresentationSize::State::Known && received.size() >= size.bytes;
    //! [SizeOfRepresentation]
    QCOMPARE(size.bytes, qint64(264));
    QVERIFY(!isComplete);
}

void BaseSnippets::streamIsSplitIntoRepresentations()
{
    JobXml::ValueBoolean on;
    on.Setid(QStringLiteral("on"));
    on.Setvalue(true);
    const QByteArray bytes = on.GetBinaryRepresentationAsQByteArray();
    QVector<JobXml::ValueBoolean> values;
    //! [RepresentationSplitter]
    REPORTGENERATOR::RepresentationSplitter splitter(JobXml::ValueBoolean::GetId());
    splitter.Append(bytes + bytes.left(10)); // whatever has arrived
    while (const auto representation = splitter.Take()) {
        if (const auto value = JobXml::ValueBoolean::fromBinary(*representation))
            values.append(*value);
    }
    //! [RepresentationSplitter]
    QCOMPARE(values.size(), 1);
    QVERIFY(values.first() == on);
    QCOMPARE(splitter.GetPendingSize(), 10);
    QVERIFY(splitter.GetErrorString().isNull());
}

void BaseSnippets::placesOfElementsAreFound()
{
    const QByteArray document = "<Tuner>\n  <!-- IF -->\n  <Node id='gain'/>\n</Tuner>";
    QStringList places;
    //! [XmlMarkup]
    const REPORTGENERATOR::XmlMarkup markup(document); // a document that was read
    for (const auto &element : markup.elements()) {
        const int id = markup.findAttribute(element, QLatin1String("id"));
        if (id >= 0) {
            const auto value = markup.attributes().at(id).value; // the bytes between the quotes
            places.append(QStringLiteral("%1 %2-%3").arg(markup.localName(element)).arg(value.begin).arg(value.end));
        }
    }
    //! [XmlMarkup]
    QCOMPARE(places, QStringList{QStringLiteral("Node 34-38")});
}

TEST_SUITE(BaseSnippets)
#include "tst_BaseSnippets.moc"
