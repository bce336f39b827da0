// SPDX-License-Identifier: MIT

// A plug-in that is linked with the library, as a program's plug-ins would be: loading it loads the library, and
// unloading it unloads the library.

#include <QStringList>

#include "Documents.h"
#include "Encodings.h"
#include "ExceptionText.h"

using namespace JobXml;

namespace {

class SilentLogger : public REPORTGENERATOR::Logger
{
public:
    void Log(Severity, const QString &message) override { last = message; }

    QString last;
};

QStringList problemsOfUsing()
{
    QStringList problems;
    const auto expect = [&problems](bool good, const char *what) {
        if (!good)
            problems.append(QString::fromLatin1(what));
    };

    const TunerProperties document = aDocument();
    TunerProperties assigned;
    assigned = document;
    assigned.Setname(QStringLiteral("assigned"));
    expect(assigned != document && !document.IsnameSet(), "sharing");

    TunerProperties read;
    readXml(read, xmlOf(document));
    expect(read == document, "XML");
    read.Reset();
    QByteArray compressed = assigned.GetCompressedBinaryRepresentationAsQByteArray(9);
    expect(read.SetBinaryRepresentation(compressed) && read == assigned, "compressed record");
    read.Reset();
    expect(readSnapshot(read, snapshotOf(document)) == 0 && read == document, "snapshot");

    const auto logger = std::make_shared<SilentLogger>();
    read.SetLogger(logger);
    expect(!read.SetXmlString(QStringLiteral("<TunerProperties Version="), true), "not well formed");
    expect(logger->last == QStringLiteral("XML text:1:25: Premature end of document."), "logger");
    expect(thrownBy([] { ValueInt().Check(); })
               == QStringLiteral("OutOfRangeException: ValueInt: Please set id properly."),
           "exception");
    expect(TunerProperties::Gettypes().size() == 5 && StartupModes::GetGUIStartupModes().size() == 11, "names");
    expect(document.GetVersion() == QStringLiteral("1.1") && ValueInt().GetVersion().isNull(), "version");
    return problems;
}

} // namespace

extern "C" {

/// Creates objects and uses them in all encodings. Returns the number of errors.
Q_DECL_EXPORT int useTheModel()
{
    return problemsOfUsing().size();
}

/// Uses the stock logger and the exceptions, for the first time and from several threads at once.
Q_DECL_EXPORT int useWhatIsMadeOnFirstUse()
{
    TunerProperties document;
    document.SetLogger(std::make_shared<REPORTGENERATOR::Logger>());
    const bool refused = !document.SetXmlString(QStringLiteral("<TunerProperties Version="), true);
    const bool named = ValueInt().GetVersion().isNull() && document.GetObjectName() == QStringLiteral("TunerProperties")
        && TunerProperties::GetGUItypes().size() == 5;
    return (refused ? 0 : 1) + (named ? 0 : 1);
}
}
