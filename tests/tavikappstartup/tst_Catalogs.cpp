// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include "tavikappstartup/RegistryTest.h"

namespace {

QString displayName(const char *name)
{
    return QCoreApplication::translate("QObject", name, nullptr, -1);
}

// The output and the warnings of the program that registers before its main(), run with the libraries of a folder.
QString outputOfHost(const QString &libraries, const QStringList &arguments)
{
    QProcess host;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LD_LIBRARY_PATH"), libraries);
    host.setProcessEnvironment(environment);
    host.setProcessChannelMode(QProcess::MergedChannels);
    host.start(QStringLiteral(HOST_PROGRAM), arguments);
    if (!host.waitForFinished() || host.exitStatus() != QProcess::NormalExit)
        return host.errorString();
    return QString::fromUtf8(host.readAll()) + QStringLiteral("exit status %1").arg(host.exitCode());
}

} // namespace

class CatalogsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { beginRegistryTest(); }
    void cleanup() { QCOMPARE(warningsOfRegistryTest(), QStringList()); }

    void aRegionFallsBackToItsLanguage();
    void theMostSpecialNameOfAFolderWins();
    void anEarlierFolderWinsOverAMoreSpecialName();
    void theFolderAddedLastIsSearchedFirst();
    void addingAFolderLeavesInstalledCatalogsAlone();
    void theSearchPathsAreTheDocumentedList();
    void addingAFolderAgainMovesItToTheFront();
    void relativeFolderIsResolvedAgainstTheCurrentOne();
    void damagedCatalogIsIgnored();
    void aCatalogFindsOthersInItsFolder();

    void theShippedCatalogsTranslateEveryDisplayName_data();
    void theShippedCatalogsTranslateEveryDisplayName();
    void displayNamesFallBackToTheNames();
    void aProgramRegistersBeforeItsApplicationAndUnregistersAfterIt();
    void anInstalledTreeFindsItsCatalogsWhereverItIsMoved();
};

void CatalogsTest::aRegionFallsBackToItsLanguage()
{
    setLocale("de_AT");
    const Application application;
    center().Register(probe);
    QCOMPARE(signalText(), german);
}

void CatalogsTest::theMostSpecialNameOfAFolderWins()
{
    setLocale("de_AT");
    const Application application;
    center().AddSearchPath(second);
    center().Register(probe);
    QCOMPARE(signalText(), austrianOfSecond);
}

void CatalogsTest::anEarlierFolderWinsOverAMoreSpecialName()
{
    setLocale("de_AT");
    const Application application;
    center().AddSearchPath(second);
    center().AddSearchPath(first);
    center().Register(probe);
    QCOMPARE(signalText(), german);
}

void CatalogsTest::theFolderAddedLastIsSearchedFirst()
{
    const Application application;
    center().AddSearchPath(second);
    center().Register(probe);
    QCOMPARE(signalText(), germanOfSecond);
    center().Register(extra); // the second folder has none
    QCOMPARE(noiseText(), germanNoise);
}

void CatalogsTest::addingAFolderLeavesInstalledCatalogsAlone()
{
    const Application application;
    center().Register(probe);
    center().AddSearchPath(second);
    QCOMPARE(signalText(), german);
    center().Register(probe);
    QCOMPARE(signalText(), germanOfSecond);
}

void CatalogsTest::theSearchPathsAreTheDocumentedList()
{
    const QTemporaryDir one;
    const QTemporaryDir two;
    center().AddSearchPath(one.path());
    center().AddSearchPath(two.path());
    const QStringList paths = center().SearchPaths();
    QCOMPARE(paths.mid(0, 3), (QStringList{two.path(), one.path(), first}));
    const QStringList fixed = paths.mid(paths.size() - 3);
    QCOMPARE(fixed.at(0), libraryFolder);
    QCOMPARE(fixed.at(1), libraryFolder + QStringLiteral("/translations"));
    const QString installed = QStringLiteral("/" INSTALL_DATADIR "/tunerproperties-1/translations");
    QVERIFY2(fixed.at(2).endsWith(installed), qPrintable(fixed.at(2)));
    QVERIFY(!fixed.at(2).contains(QStringLiteral("..")));
}

void CatalogsTest::addingAFolderAgainMovesItToTheFront()
{
    center().AddSearchPath(second);
    const int count = center().SearchPaths().size();
    center().AddSearchPath(first + QStringLiteral("/"));
    QCOMPARE(center().SearchPaths().mid(0, 2), (QStringList{first, second}));
    QCOMPARE(center().SearchPaths().size(), count);
}

void CatalogsTest::relativeFolderIsResolvedAgainstTheCurrentOne()
{
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(QStringLiteral(CATALOGS_DIR)));
    center().AddSearchPath(QStringLiteral("second"));
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(center().SearchPaths().first(), QDir(second).canonicalPath());
    const Application application;
    center().Register(probe);
    QCOMPARE(signalText(), germanOfSecond);
}

void CatalogsTest::damagedCatalogIsIgnored()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("Probe_de.qm")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write("no catalog at all"), qint64(17));
    file.close();

    const Application application;
    center().AddSearchPath(folder.path());
    center().Register(probe);
    QCOMPARE(signalText(), german); // from the next folder
}

void CatalogsTest::aCatalogFindsOthersInItsFolder()
{
    const Application application;
    center().Register(QStringLiteral("Chain"));
    QCOMPARE(QCoreApplication::translate("Chain", "link"), QStringLiteral("Glied"));
    QCOMPARE(signalText(), german); // of the catalog that this one names
    center().Unregister(QStringLiteral("Chain"));
}

void CatalogsTest::theShippedCatalogsTranslateEveryDisplayName_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("inGerman");
    QTest::addColumn<QString>("inEnglish");
    const struct
    {
        const char *name;
        const char *inGerman;
        const char *inEnglish;
    } rows[] = {
        // clang-format off
        {"MCP",               "MCP",                                "MCP"},
        {"SCP",               "SCP",                                "SCP"},
        {"FFP",               "FFP",                                "FFP"},
        {"Receiver",          "Empfänger",                          "Receiver"},
        {"DirectionFinder",   "Peiler",                             "Direction finder"},
        {"Scan",              "Suchlauf",                           "Scan"},
        {"FastScan",          "Schneller Suchlauf",                 "Fast scan"},
        {"MScan",             "Speichersuchlauf (MScan)",           "Memory scan (MScan)"},
        {"FFM",               "Festfrequenz (FFM)",                 "Fixed frequency (FFM)"},
        {"WFFM",              "Breitband-Festfrequenz (WFFM)",      "Wideband fixed frequency (WFFM)"},
        {"Step",              "Schrittweise",                       "Step by step"},
        {"DF",                "Peilung",                            "Direction finding"},
        {"MSearch",           "Speichersuche (MSearch)",            "Memory search (MSearch)"},
        {"Polar",             "Polardarstellung",                   "Polar display"},
        {"Search",            "Suche",                              "Search"},
        {"Stop",              "Halt",                               "Stop"},
        {"ValueBoolean",      "Ja oder Nein",                       "Yes or no"},
        {"ValueFloat",        "Gleitkommazahl",                     "Floating-point number"},
        {"ValueInt",          "Ganzzahl (32 Bit)",                  "Integer (32-bit)"},
        {"ValueInt64",        "Ganzzahl (64 Bit)",                  "Integer (64-bit)"},
        {"ValueNumericFloat", "Zahl mit Bereich (Gleitkommazahl)",  "Number with range (floating-point)"},
        {"ValueNumericInt",   "Zahl mit Bereich (Ganzzahl, 32 Bit)", "Number with range (32-bit integer)"},
        {"ValueNumericInt64", "Zahl mit Bereich (Ganzzahl, 64 Bit)", "Number with range (64-bit integer)"},
        {"ValueSelection",    "Auswahl",                            "Selection"},
        {"ValueString",       "Text",                               "Text"},
        {"ValueStringList",   "Liste von Texten",                   "List of texts"},
        // clang-format on
    };
    for (const auto &row : rows)
        QTest::newRow(row.name) << QByteArray(row.name) << QString::fromUtf8(row.inGerman)
                                << QString::fromUtf8(row.inEnglish);
}

void CatalogsTest::theShippedCatalogsTranslateEveryDisplayName()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, inGerman);
    QFETCH(QString, inEnglish);
    const Application application;
    center().Register(tuner);
    QCOMPARE(displayName(name.constData()), inGerman);
    setLocale("en_GB");
    center().Register(tuner);
    QCOMPARE(displayName(name.constData()), inEnglish);
    center().Unregister(tuner);
    QCOMPARE(displayName(name.constData()), QString::fromUtf8(name));
}

void CatalogsTest::displayNamesFallBackToTheNames()
{
    setLocale("ja_JP");
    const Application application;
    center().Register(tuner);
    QCOMPARE(displayName("Receiver"), QStringLiteral("Receiver"));
    QCOMPARE(displayName("DirectionFinder"), QStringLiteral("DirectionFinder"));
    QCOMPARE(displayName("ValueInt64"), QStringLiteral("ValueInt64"));
}

void CatalogsTest::aProgramRegistersBeforeItsApplicationAndUnregistersAfterIt()
{
    const Application application;
    const QString expected = QStringLiteral("Peiler\nSuche\n%1\nleft: 0\nexit status 0");
    QCOMPARE(outputOfHost(libraryFolder,
                          {QStringLiteral("de_CH"), QStringLiteral("DirectionFinder"), QStringLiteral("Search")}),
             expected.arg(center().SearchPaths().last()));
}

void CatalogsTest::anInstalledTreeFindsItsCatalogsWhereverItIsMoved()
{
    const Application application;
    const QTemporaryDir scratch;
    const QDir built(scratch.filePath(QStringLiteral("built")));
    const QString libraries = QStringLiteral(INSTALL_LIBDIR);
    const QString data = QStringLiteral(INSTALL_DATADIR "/tunerproperties-1/translations");
    QVERIFY(built.mkpath(libraries));
    QVERIFY(built.mkpath(data));
    QVERIFY(QFile::copy(QStringLiteral(LIBRARY_FILE), built.filePath(libraries + QStringLiteral("/" LIBRARY_SONAME))));
    QVERIFY(QFile::copy(libraryFolder + QStringLiteral("/translations/TunerProperties_de.qm"),
                        built.filePath(data + QStringLiteral("/TunerProperties_de.qm"))));

    const QString expected = QStringLiteral("Empfänger\n%1\nleft: 0\nexit status 0");
    const QStringList arguments{QStringLiteral("de_DE"), QStringLiteral("Receiver")};
    QCOMPARE(outputOfHost(built.filePath(libraries), arguments),
             expected.arg(QDir(built.filePath(data)).canonicalPath()));

    const QDir moved(scratch.filePath(QStringLiteral("moved")));
    QVERIFY(QDir().rename(built.path(), moved.path()));
    QCOMPARE(outputOfHost(moved.filePath(libraries), arguments),
             expected.arg(QDir(moved.filePath(data)).canonicalPath()));
}

TEST_SUITE_WITHOUT_APPLICATION(CatalogsTest)
#include "tst_Catalogs.moc"
