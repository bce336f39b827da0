// SPDX-License-Identifier: MIT
#include <QtTest>

#include <cerrno>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "reportbase/Descriptor.h"

using REPORTGENERATOR::Descriptor;
using REPORTGENERATOR::uninterrupted;

class DescriptorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void interruptedCallIsRepeated();
    void otherFailureIsReturned();
    void zeroIsASuccessWhateverErrnoSays();
    void descriptorIsClosedOnceAndErrnoKept();
    void emptyDescriptorHasNoNumber();
};

namespace {

/// A system call that returns these results one after the other, and sets errno as for a signal if it fails.
struct Call
{
    std::vector<int> results;
    int error;
    std::size_t count = 0;

    int operator()()
    {
        const int result = results.at(count++);
        if (result < 0)
            errno = error;
        return result;
    }
};

bool isOpen(int number)
{
    return fcntl(number, F_GETFD) >= 0;
}

int anyFile()
{
    return open("/dev/null", O_RDONLY | O_CLOEXEC);
}

} // namespace

void DescriptorTest::interruptedCallIsRepeated()
{
    Call call{{-1, -1, 7}, EINTR};
    QCOMPARE(uninterrupted(call), 7);
    QCOMPARE(call.count, std::size_t(3));
}

void DescriptorTest::otherFailureIsReturned()
{
    Call call{{-1, 7}, EIO};
    QCOMPARE(uninterrupted(call), -1);
    QCOMPARE(errno, EIO);
    QCOMPARE(call.count, std::size_t(1));
}

// A successful call does not change errno.
void DescriptorTest::zeroIsASuccessWhateverErrnoSays()
{
    Call call{{0, 7}, 0};
    errno = EINTR;
    QCOMPARE(uninterrupted(call), 0);
    QCOMPARE(call.count, std::size_t(1));
}

void DescriptorTest::descriptorIsClosedOnceAndErrnoKept()
{
    const int number = anyFile();
    QVERIFY(isOpen(number));
    {
        Descriptor first(number);
        Descriptor second(std::move(first));
        QVERIFY(!first); // NOLINT(bugprone-use-after-move): moving leaves none
        QCOMPARE(second.number(), number);
        first = std::move(second);
        QCOMPARE(first.number(), number);
        QVERIFY(isOpen(number));
        errno = ENOSPC;
    }
    QCOMPARE(errno, ENOSPC);
    QVERIFY(!isOpen(number));
}

void DescriptorTest::emptyDescriptorHasNoNumber()
{
    const Descriptor none;
    QVERIFY(!none);
    QCOMPARE(none.number(), -1);
}

TEST_SUITE(DescriptorTest)
#include "tst_Descriptor.moc"
