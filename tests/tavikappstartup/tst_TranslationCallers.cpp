// SPDX-License-Identifier: MIT
#include <atomic>
#include <cstdlib>
#include <new>
#include <thread>
#include <utility>
#include <vector>

#include <QtTest>

#include "tavikappstartup/RegistryTest.h"

namespace {

// Allocations of this thread that still succeed; negative: all.
thread_local int allocationsLeft = -1;

// Called at the allocation after them, in place of failing.
thread_local void (*intruder)() = nullptr;

// False if `call` ran out of memory with this number of allocations.
template <typename Call>
bool runsWithin(int allocations, Call &&call)
{
    allocationsLeft = allocations;
    try {
        call();
    } catch (const std::bad_alloc &) {
        allocationsLeft = -1;
        return false;
    }
    allocationsLeft = -1;
    return true;
}

// Runs `call` and, after this number of allocations in it, `intrusion`, as another thread might; false if `call` ended
// before.
template <typename Call>
bool runsWithIntrusion(int allocations, void (*intrusion)(), Call &&call)
{
    intruder = intrusion;
    allocationsLeft = allocations;
    call();
    allocationsLeft = -1;
    return std::exchange(intruder, nullptr) == nullptr;
}

} // namespace

void *operator new(std::size_t size)
{
    if (allocationsLeft == 0) {
        if (!intruder)
            throw std::bad_alloc();
        allocationsLeft = -1;
        std::exchange(intruder, nullptr)();
    }
    if (allocationsLeft > 0)
        --allocationsLeft;
    if (void *memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

class TranslationCallersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { beginRegistryTest(); }
    void cleanup() { QCOMPARE(warningsOfRegistryTest(), QStringList()); }

    void theReceiverOfALanguageChangeMayCallAnyOperation();
    void unregisteringWhileTheCatalogIsBeingInstalledWithdrawsIt();
    void registeringAgainWhileTheCatalogIsBeingInstalledKeepsTheLater();
    void aReceiverMayWaitForAnotherThreadThatCalls();

    void anExceptionOutOfAReceiverLeavesTheRegistryUsable();
    void whereverMemoryRunsOutTheRegistryStaysUsable();
    void moduleIsNotHalfRegisteredWhenMemoryRunsOut();

    void registeringAgainMakesASearchInProgressOutOfDate();
    void unregisteringEndsASearchInProgress();
    void threadsMayCallAtOnce();
};

void TranslationCallersTest::theReceiverOfALanguageChangeMayCallAnyOperation()
{
    Application application;
    QStringList listed;
    application.onLanguageChange = [&listed] {
        center().InstallPending();
        center().AddSearchPath(first);
        center().Unregister(unheard);
        listed = center().RegisteredModules();
    };
    center().Register(probe);
    QCOMPARE(listed, QStringList{probe});
    QCOMPARE(application.languageChanges(), 1);
    application.onLanguageChange = [&application] {
        application.onLanguageChange = nullptr;
        center().Register(extra);
    };
    center().Register(probe);
    QCOMPARE(center().RegisteredModules(), (QStringList{probe, extra}));
    QCOMPARE(signalText(), german);
    QCOMPARE(noiseText(), germanNoise);
}

void TranslationCallersTest::unregisteringWhileTheCatalogIsBeingInstalledWithdrawsIt()
{
    Application application;
    application.onLanguageChange = [&application] {
        application.onLanguageChange = nullptr;
        center().Unregister(probe);
    };
    center().Register(probe);
    QCOMPARE(center().RegisteredModules(), QStringList());
    QCOMPARE(signalText(), untranslated);
}

void TranslationCallersTest::registeringAgainWhileTheCatalogIsBeingInstalledKeepsTheLater()
{
    Application application;
    application.onLanguageChange = [&application] {
        application.onLanguageChange = nullptr;
        setLocale("fr_FR");
        center().Register(probe);
    };
    center().Register(probe);
    QCOMPARE(signalText(), french);
    center().Unregister(probe);
    QCOMPARE(signalText(), untranslated);
}

void TranslationCallersTest::aReceiverMayWaitForAnotherThreadThatCalls()
{
    Application application;
    QStringList listed;
    application.onLanguageChange = [&listed] {
        std::thread([&listed] { listed = center().RegisteredModules(); }).join();
    };
    center().Register(probe);
    QCOMPARE(listed, QStringList{probe});
    application.onLanguageChange = nullptr;
}

void TranslationCallersTest::anExceptionOutOfAReceiverLeavesTheRegistryUsable()
{
    Application application;
    center().Register(probe);
    setLocale("fr_FR");
    application.onLanguageChange = [&application] {
        application.onLanguageChange = nullptr;
        throw 1;
    };
    QVERIFY_THROWS_EXCEPTION(int, center().Register(probe));
    QCOMPARE(center().RegisteredModules(), QStringList{probe});
    QCOMPARE(signalText(), french);
    center().Unregister(probe);
    QCOMPARE(signalText(), untranslated); // the German one is also withdrawn
    QCOMPARE(center().RegisteredModules(), QStringList());
}

void TranslationCallersTest::whereverMemoryRunsOutTheRegistryStaysUsable()
{
    const Application application;
    int failures = 0;
    for (int allocations = 0;; ++allocations) {
        setLocale("de_DE");
        center().Register(probe);
        QCOMPARE(signalText(), german);
        setLocale("fr_FR");
        const bool done = runsWithin(allocations, [] { center().Register(probe); });
        if (!done) {
            ++failures;
            QVERIFY(signalText() == german || signalText() == french);
        }
        QCOMPARE(center().RegisteredModules(), QStringList{probe}); // tries again
        QCOMPARE(signalText(), french);
        center().Unregister(probe);
        QCOMPARE(signalText(), untranslated);
        if (done)
            break;
    }
    QVERIFY(failures > 0);
}

void TranslationCallersTest::moduleIsNotHalfRegisteredWhenMemoryRunsOut()
{
    const Application application;
    center().Register(extra);
    int allocations = 0;
    while (!runsWithin(allocations, [] { center().Register(probe); })) {
        // Remembered, then installed by this next call; or not registered at all.
        const bool remembered = center().RegisteredModules() == (QStringList{extra, probe});
        if (!remembered)
            QCOMPARE(center().RegisteredModules(), QStringList{extra});
        QCOMPARE(signalText(), remembered ? german : untranslated);
        QCOMPARE(noiseText(), germanNoise);
        center().Unregister(probe);
        QCOMPARE(signalText(), untranslated);
        ++allocations;
    }
    QVERIFY(allocations > 0);
    QCOMPARE(signalText(), german);
}

void TranslationCallersTest::registeringAgainMakesASearchInProgressOutOfDate()
{
    const Application application;
    int allocations = 0;
    for (bool intruded = true; intruded; ++allocations) {
        setLocale("de_DE");
        center().Register(probe);
        intruded = runsWithIntrusion(
            allocations,
            [] {
                setLocale("fr_FR");
                runsWithin(0, [] { center().Register(probe); }); // is only stored
            },
            [] { center().Register(probe); });
        center().InstallPending();
        QCOMPARE(signalText(), intruded ? french : german);
        center().Unregister(probe);
        QCOMPARE(signalText(), untranslated);
    }
    QVERIFY(allocations > 1);
}

void TranslationCallersTest::unregisteringEndsASearchInProgress()
{
    const Application application;
    int allocations = 0;
    for (bool intruded = true; intruded; ++allocations) {
        center().Register(probe);
        intruded = runsWithIntrusion(
            allocations, [] { center().Unregister(probe); }, [] { center().Register(probe); });
        QCOMPARE(center().RegisteredModules(), intruded ? QStringList() : QStringList{probe});
        QCOMPARE(signalText(), intruded ? untranslated : german);
        center().Unregister(probe);
    }
    QVERIFY(allocations > 1);
}

void TranslationCallersTest::threadsMayCallAtOnce()
{
    const Application application;
    center().Register(probe);
    std::atomic<int> surprises(0);
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([number, &surprises] {
            const QString own = QStringLiteral("Own%1").arg(number);
            for (int round = 0; round < 100; ++round) {
                center().Register(own);
                center().Register(extra); // all four
                center().AddSearchPath(round % 2 == 0 ? first : second);
                if (!center().RegisteredModules().contains(own) || signalText() != german)
                    ++surprises;
                center().Unregister(own);
                center().Unregister(extra);
                if (center().RegisteredModules().contains(own))
                    ++surprises;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(surprises.load(), 0);
    QCOMPARE(center().RegisteredModules(), QStringList{probe});
    QCOMPARE(signalText(), german);
    QCOMPARE(noiseText(), QStringLiteral("noise"));
}

TEST_SUITE_WITHOUT_APPLICATION(TranslationCallersTest)
#include "tst_TranslationCallers.moc"
