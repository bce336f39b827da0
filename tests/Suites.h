// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QtTest>

/// The suites of a test program. Its first argument names the suite to run; Qt Test receives the others.
namespace Suites {

/// Runs a suite with the program's arguments except the suite's name. Returns the exit status.
using Run = int (*)(int argc, char **argv);

/// A suite. Its name is that of its source without the suffix. The sources create their suites before main() begins.
class Suite
{
public:
    Suite(const char *source, Run run);
};

template <class Test>
int runWithApplication(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

template <class Test>
int runWithoutApplication(int argc, char **argv)
{
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace Suites

/// Defines the test class of a source as its suite; replaces QTEST_GUILESS_MAIN and QTEST_APPLESS_MAIN.
#define TEST_SUITE(Test) static const Suites::Suite theSuite(__FILE__, Suites::runWithApplication<Test>);
#define TEST_SUITE_WITHOUT_APPLICATION(Test)                                                                           \
    static const Suites::Suite theSuite(__FILE__, Suites::runWithoutApplication<Test>);

/// Defines a suite by a function that replaces main(), for suites that need more than an application.
#define TEST_SUITE_RUN_BY(run) static const Suites::Suite theSuite(__FILE__, run);

#if QT_VERSION < QT_VERSION_CHECK(6, 3, 0)
/// What Qt 6 calls QVERIFY_EXCEPTION_THROWN, which is deprecated there.
#define QVERIFY_THROWS_EXCEPTION(exceptiontype, ...) QVERIFY_EXCEPTION_THROWN((__VA_ARGS__), exceptiontype)
#endif
