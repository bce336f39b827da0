// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Threads.h"
#include "module/LoadedLibrary.h"

namespace {

std::atomic<int> expectedMessages{0}; // a message handler is a plain function
std::atomic<int> otherMessages{0};

void countMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const bool expected = type == QtCriticalMsg && qstrcmp(context.category, "reportbase") == 0
        && message == QStringLiteral("XML text:1:25: Premature end of document.");
    ++(expected ? expectedMessages : otherMessages);
}

} // namespace

/// Loading, unloading and several threads. Meaningful under a thread sanitizer.
class LoadsAndThreadsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectsCreatedOnFirstUseAreUsedByManyThreadsAtOnce();
    void libraryIsLoadedAndUnloadedWhileAnotherThreadCallsTheRegistry();
};

// After each load, everything that is created on first use is created again.
void LoadsAndThreadsTest::objectsCreatedOnFirstUseAreUsedByManyThreadsAtOnce()
{
    constexpr int loads = 50;
    const QtMessageHandler before = qInstallMessageHandler(countMessage);
    int wrong = 0;
    for (int load = 0; load < loads; ++load) {
        LoadedLibrary library(QStringLiteral(USING_MODULE), LoadedLibrary::By::Dlopen);
        QVERIFY2(library.isLoaded(), qPrintable(library.error()));
        const auto first = library.function<int (*)()>("useWhatIsMadeOnFirstUse");
        const auto then = library.function<int (*)()>("useTheModel");
        int found[3] = {};
        const auto use = [&](int i) { found[i] = first() + then(); };
        atOnce([&] { use(0); }, [&] { use(1); }, [&] { use(2); });
        wrong += found[0] + found[1] + found[2];
    }
    qInstallMessageHandler(before);
    QCOMPARE(wrong, 0);
    QCOMPARE(expectedMessages.load(), 3 * loads);
    QCOMPARE(otherMessages.load(), 0);
    QVERIFY(!isLoaded(LIBRARY));
}

void LoadsAndThreadsTest::libraryIsLoadedAndUnloadedWhileAnotherThreadCallsTheRegistry()
{
    LoadedLibrary registry(QStringLiteral(REGISTRY_MODULE), LoadedLibrary::By::Dlopen);
    QVERIFY2(registry.isLoaded(), qPrintable(registry.error()));
    const auto getModules = registry.function<void (*)(QStringList *)>("getRegisteredModules");
    const QStringList registered{QStringLiteral("TunerProperties")};

    std::atomic<bool> done{false};
    bool loaded = true;
    int registeredWhileLoaded = 0;
    int strange = 0;
    atOnce(
        [&] {
            for (int load = 0; load < 100; ++load) {
                LoadedLibrary library(QStringLiteral(LIBRARY), LoadedLibrary::By::Dlopen);
                QStringList modules;
                getModules(&modules);
                loaded = loaded && library.isLoaded();
                registeredWhileLoaded += modules == registered;
            }
            done = true;
        },
        [&] {
            QStringList former;
            while (!done) {
                QStringList modules;
                getModules(&modules);
                strange += !modules.isEmpty() && modules != registered;
                strange += !former.isEmpty() && former != registered; // the library may have been unloaded since
                former = modules;
            }
        });
    QVERIFY(loaded);
    QCOMPARE(registeredWhileLoaded, 100);
    QCOMPARE(strange, 0);
}

TEST_SUITE(LoadsAndThreadsTest)
#include "tst_LoadsAndThreads.moc"
