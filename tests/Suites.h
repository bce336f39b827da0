// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QtTest>

/// The suites of a test program. The first argument names the one to run, those behind it are Qt Test's.
namespace Suites {

/// Runs a suite with the program's arguments, without the one that names it. The exit status.
using Run = int (*)(int argc, char **argv);

/// A suite, named as its source without the suffix. They are made before main() begins, in the sources of the suites.
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

/// A class of tests as the suite of its source; in place of QTEST_GUILESS_MAIN and QTEST_APPLESS_MAIN.
#define TEST_SUITE(Test) static const Suites::Suite theSuite(__FILE__, Suites::runWithApplication<Test>);
#define TEST_SUITE_WITHOUT_APPLICATION(Test)                                                                           \
    static const Suites::Suite theSuite(__FILE__, Suites::runWithoutApplication<Test>);

/// A function in place of main(), for a suite that begins with more than an application.
#define TEST_SUITE_RUN_BY(run) static const Suites::Suite theSuite(__FILE__, run);
