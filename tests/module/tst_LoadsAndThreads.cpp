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
    void whatIsMadeOnFirstUseIsFirstUsedByManyThreadsAtOnce();
    void theLibraryComesAndGoesWhileAnotherThreadAsksTheRegistry();
};

// Each load begins anew with everything that is made when it is first used.
void LoadsAndThreadsTest::whatIsMadeOnFirstUseIsFirstUsedByManyThreadsAtOnce()
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

void LoadsAndThreadsTest::theLibraryComesAndGoesWhileAnotherThreadAsksTheRegistry()
{
    LoadedLibrary registry(QStringLiteral(REGISTRY_MODULE), LoadedLibrary::By::Dlopen);
    QVERIFY2(registry.isLoaded(), qPrintable(registry.error()));
    const auto tell = registry.function<void (*)(QStringList *)>("tellRegisteredModules");
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
                tell(&modules);
                loaded = loaded && library.isLoaded();
                registeredWhileLoaded += modules == registered;
            }
            done = true;
        },
        [&] {
            QStringList former;
            while (!done) {
                QStringList modules;
                tell(&modules);
                strange += !modules.isEmpty() && modules != registered;
                strange += !former.isEmpty() && former != registered; // perhaps the library has gone since
                former = modules;
            }
        });
    QVERIFY(loaded);
    QCOMPARE(registeredWhileLoaded, 100);
    QCOMPARE(strange, 0);
}

TEST_SUITE(LoadsAndThreadsTest)
#include "tst_LoadsAndThreads.moc"
