// SPDX-License-Identifier: MIT
#include <link.h>

#include <functional>
#include <memory>
#include <optional>

#include <QtTest>

#include "HeapPeak.h"
#include "module/LoadedLibrary.h"

extern "C" int __lsan_do_recoverable_leak_check() __attribute__((weak)); // NOLINT; there with the address sanitizer

namespace {

#ifdef HEAP_OF_A_SANITIZER
constexpr int loads = 200; // each takes longer than the one before
#else
constexpr int loads = 1000;
#endif
constexpr int loadsUntilSteady = 100; // then the loader, the allocator and Qt have allocated the memory that they keep

int loadedObjects()
{
    int count = 0;
    dl_iterate_phdr([](dl_phdr_info *, std::size_t, void *counter) { return ++*static_cast<int *>(counter), 0; },
                    &count);
    return count;
}

// Only files, because a sanitizer also maps memory for every library that is loaded.
int mappedFiles()
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        return -1;
    return maps.readAll().count('/');
}

int openFiles()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
}

/// The resources of the process that increase if unloading does not release them.
struct Possessions
{
    int objects = loadedObjects();
    int files = openFiles();
    int mappings = mappedFiles();
};

} // namespace

Q_DECLARE_METATYPE(LoadedLibrary::By)

/// A program may load and unload the library any number of times; each unloading releases all resources.
class ManyLoadsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLibraryIsLoadedAndUnloadedManyTimes_data();
    void theLibraryIsLoadedAndUnloadedManyTimes();
    void textsOfTheRegistryAreReadableAfterTheModuleIsUnloaded();
};

void ManyLoadsTest::theLibraryIsLoadedAndUnloadedManyTimes_data()
{
    QTest::addColumn<LoadedLibrary::By>("by");
    QTest::addColumn<int>("objectsEvery"); // at every load, at every second one; 0 for never
    QTest::addColumn<bool>("hasApplication");
    QTest::addColumn<bool>("registryStays");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("receiver"); // how one of the names is shown while the library is loaded

    QTest::newRow("nothing used, no application") << LoadedLibrary::By::Dlopen << 0 << false << false << "de_DE"
                                                  << "Receiver";
    QTest::newRow("objects made, no catalog") << LoadedLibrary::By::QLibrary << 1 << true << false << "fi_FI"
                                              << "Receiver";
    QTest::newRow("objects made now and then, a catalog, the registry stays")
        << LoadedLibrary::By::Dlopen << 2 << true << true << "de_DE" << QStringLiteral("Empfänger");
}

void ManyLoadsTest::theLibraryIsLoadedAndUnloadedManyTimes()
{
    QFETCH(LoadedLibrary::By, by);
    QFETCH(int, objectsEvery);
    QFETCH(bool, hasApplication);
    QFETCH(bool, registryStays);
    QFETCH(QString, locale);
    QFETCH(QString, receiver);

    int argc = 1;
    char name[] = "test";
    char *argv[] = {name, nullptr};
    const std::unique_ptr<QCoreApplication> application(hasApplication ? new QCoreApplication(argc, argv) : nullptr);
    QLocale::setDefault(QLocale(locale));
    const auto shown = [] { return QCoreApplication::translate("QObject", "Receiver"); };

    std::unique_ptr<LoadedLibrary> registry;
    std::function<QStringList()> registered = [] { return QStringList(); };
    if (registryStays) {
        registry = std::make_unique<LoadedLibrary>(QStringLiteral(REGISTRY_MODULE), by);
        QVERIFY2(registry->isLoaded(), qPrintable(registry->error()));
        const auto getModules = registry->function<void (*)(QStringList *)>("getRegisteredModules");
        registered = [getModules] {
            QStringList modules;
            getModules(&modules);
            return modules;
        };
    }

    Possessions steady;
    std::optional<HeapPeak> sinceSteady;
    for (int load = 1; load <= loads; ++load) {
        const bool makesObjects = objectsEvery > 0 && load % objectsEvery == 0;
        {
            LoadedLibrary library(makesObjects ? QStringLiteral(USING_MODULE) : QStringLiteral(LIBRARY), by);
            QVERIFY2(library.isLoaded(), qPrintable(library.error()));
            QVERIFY(isLoaded(LIBRARY));
            QCOMPARE(registered(), registryStays ? QStringList(QStringLiteral("TunerProperties")) : QStringList());
            QCOMPARE(shown(), receiver);
            if (makesObjects)
                QCOMPARE(library.function<int (*)()>("useTheModel")(), 0);
        }
        QVERIFY(!isLoaded(LIBRARY));
        QVERIFY(!isLoaded(REPORTBASE));
        QCOMPARE(isLoaded(TAVIKAPPSTARTUP), registryStays);
        QCOMPARE(registered(), QStringList());
        QCOMPARE(shown(), QStringLiteral("Receiver"));
        if (load == loadsUntilSteady) {
            steady = Possessions();
            sinceSteady.emplace();
        }
    }
    const long long left = sinceSteady->inUse();
    const Possessions last;
    QCOMPARE(last.objects, steady.objects);
    QCOMPARE(last.files, steady.files);
    QCOMPARE(last.mappings, steady.mappings);
    if (__lsan_do_recoverable_leak_check) // the address sanitizer keeps a record of each static destructor
        QCOMPARE(__lsan_do_recoverable_leak_check(), 0);
    else // allows less than one byte for each load, and a leak is larger
        QVERIFY2(left < loads - loadsUntilSteady, qPrintable(QString::number(left)));
}

void ManyLoadsTest::textsOfTheRegistryAreReadableAfterTheModuleIsUnloaded()
{
    LoadedLibrary registry(QStringLiteral(REGISTRY_MODULE), LoadedLibrary::By::Dlopen);
    QVERIFY(registry.isLoaded());
    QStringList modules;
    {
        LoadedLibrary library(QStringLiteral(LIBRARY), LoadedLibrary::By::Dlopen);
        QVERIFY(library.isLoaded());
        registry.function<void (*)(QStringList *)>("getRegisteredModules")(&modules);
    }
    QVERIFY(!isLoaded(LIBRARY));
    QCOMPARE(modules, QStringList(QStringLiteral("TunerProperties")));
}

TEST_SUITE_WITHOUT_APPLICATION(ManyLoadsTest)
#include "tst_ManyLoads.moc"
