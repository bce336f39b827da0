// SPDX-License-Identifier: MIT
#include <pthread.h>

#include <atomic>
#include <stdexcept>

#include <QTest>
#include <QVector>

#include <batch/InOrder.h>

/// Several threads, whose results are used in order.
class InOrderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resultsAreUsedInOrder_data();
    void resultsAreUsedInOrder();
    void tasksInProgressNeverExceedTheJobs();
    void threadsDoNotRunFarAhead();
    void largeResultsStopThreadsFromRunningAhead();
    void exceptionOfATaskIsThrownInOrder();
    void exceptionWhileUsingAResultEndsTheRun();
    void tickIsCalledWhileWaiting();
    void callerWorksIfNoThreadCanBeStarted();
};

void InOrderTest::resultsAreUsedInOrder_data()
{
    QTest::addColumn<int>("jobs");
    for (const int jobs : {1, 2, 5, 100})
        QTest::addRow("%d", jobs) << jobs;
}

void InOrderTest::resultsAreUsedInOrder()
{
    QFETCH(int, jobs);
    QVector<int> used;
    InOrder<int>::run(
        1000, jobs, [](int index) { return index * index; }, [&](int &&result) { used.append(result); }, [] {});
    QCOMPARE(used.size(), 1000);
    for (int i = 0; i < used.size(); ++i)
        QCOMPARE(used[i], i * i);

    InOrder<int>::run(
        0, jobs, [](int index) { return index; }, [](int &&) { QFAIL("there is nothing to use"); }, [] {});
}

void InOrderTest::tasksInProgressNeverExceedTheJobs()
{
    std::atomic<int> atOnce{0};
    std::atomic<int> most{0};
    InOrder<int>::run(
        300, 3,
        [&](int index) {
            const int now = ++atOnce;
            int before = most;
            while (before < now && !most.compare_exchange_weak(before, now)) { }
            std::this_thread::yield();
            --atOnce;
            return index;
        },
        [](int &&) {}, [] {});
    QVERIFY2(most >= 1 && most <= 3, qPrintable(QString::number(most)));
}

void InOrderTest::threadsDoNotRunFarAhead()
{
    std::atomic<int> begun{0};
    int used = 0;
    int farthest = 0;
    InOrder<int>::run(
        1000, 2,
        [&](int index) {
            ++begun;
            return index;
        },
        [&](int &&) {
            if (used++ == 0)
                QTest::qSleep(100); // the others have time to run ahead meanwhile
            farthest = std::max(farthest, begun - used);
        },
        [] {});
    QCOMPARE(used, 1000);
    // 32 ahead of the result that is used next.
    QVERIFY2(farthest <= 32, qPrintable(QString::number(farthest)));
}

void InOrderTest::largeResultsStopThreadsFromRunningAhead()
{
    std::atomic<int> begun{0};
    int used = 0;
    int farthest = 0;
    InOrder<int>::run(
        50, 2,
        [&](int index) {
            ++begun;
            return index;
        },
        [&](int &&result) {
            QCOMPARE(result, used);
            if (used++ == 0)
                QTest::qSleep(100); // the others have time to run ahead meanwhile
            farthest = std::max(farthest, begun - used);
        },
        [] {}, [](const int &) { return std::int64_t(16) << 20; });
    QCOMPARE(used, 50);
    // The first waiting result reaches the limit; each of the two threads may have started another task before.
    QVERIFY2(farthest <= 3, qPrintable(QString::number(farthest)));
}

void InOrderTest::exceptionOfATaskIsThrownInOrder()
{
    QVector<int> used;
    QString message;
    try {
        InOrder<int>::run(
            100, 4,
            [](int index) {
                if (index == 7 || index == 9)
                    throw std::runtime_error("number " + std::to_string(index));
                return index;
            },
            [&](int &&result) { used.append(result); }, [] {});
    } catch (const std::runtime_error &e) {
        message = QString::fromUtf8(e.what());
    }
    QCOMPARE(message, QStringLiteral("number 7"));
    QCOMPARE(used, QVector<int>({0, 1, 2, 3, 4, 5, 6}));
}

void InOrderTest::exceptionWhileUsingAResultEndsTheRun()
{
    std::atomic<int> begun{0};
    QString message;
    try {
        InOrder<int>::run(
            100000, 4,
            [&](int index) {
                ++begun;
                return index;
            },
            [](int &&result) {
                if (result == 10)
                    throw std::runtime_error("enough");
            },
            [] {});
    } catch (const std::runtime_error &e) {
        message = QString::fromUtf8(e.what());
    }
    QCOMPARE(message, QStringLiteral("enough"));
    QVERIFY2(begun <= 11 + 4 * 16, qPrintable(QString::number(begun)));
}

void InOrderTest::tickIsCalledWhileWaiting()
{
    std::atomic<int> ticks{0};
    InOrder<int>::run(
        1, 1,
        [&](int index) {
            while (ticks < 2)
                std::this_thread::yield();
            return index;
        },
        [](int &&) {}, [&] { ++ticks; });
    QVERIFY(ticks >= 2);
}

// Threads with stacks larger than any address space cannot be started.
void InOrderTest::callerWorksIfNoThreadCanBeStarted()
{
    pthread_attr_t usual;
    QCOMPARE(pthread_getattr_default_np(&usual), 0);
    pthread_attr_t huge;
    QCOMPARE(pthread_attr_init(&huge), 0);
    QCOMPARE(pthread_attr_setstacksize(&huge, std::size_t(1) << 60), 0);
    QCOMPARE(pthread_setattr_default_np(&huge), 0);
    bool hasStarted = true;
    try {
        std::thread([] {}).join();
    } catch (const std::system_error &) {
        hasStarted = false;
    }
    QVector<int> used;
    int onCaller = 0;
    const std::thread::id caller = std::this_thread::get_id();
    InOrder<int>::run(
        100, 4,
        [&](int index) {
            onCaller += std::this_thread::get_id() == caller ? 1 : 0;
            return index;
        },
        [&](int &&result) { used.append(result); }, [] {});
    QCOMPARE(pthread_setattr_default_np(&usual), 0);
    pthread_attr_destroy(&huge);
    pthread_attr_destroy(&usual);
    QVERIFY(!hasStarted);
    QCOMPARE(onCaller, 100);
    QCOMPARE(used.size(), 100);
    for (int i = 0; i < used.size(); ++i)
        QCOMPARE(used[i], i);
}

TEST_SUITE_WITHOUT_APPLICATION(InOrderTest)
#include "tst_InOrder.moc"
