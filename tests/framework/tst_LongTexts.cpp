// SPDX-License-Identifier: MIT
#include <new>

#include <sys/mman.h>

#include <QtEndian>
#include <QtTest>

#include <jobxml/TunerProperties.h>

#include "Skip.h"
#include "framework/Utf8.h"
#include "framework/XmlInput.h"
#include "text/LongestText.h"

using namespace JobXml;

namespace {

constexpr int longest = 1073741696; // characters

/// Zeros that take no memory unless they are written to.
class Zeros
{
public:
    explicit Zeros(std::size_t size)
        : m_size(size),
          m_zeros(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0))
    {
    }
    Zeros(const Zeros &) = delete;
    Zeros &operator=(const Zeros &) = delete;
    ~Zeros()
    {
        if (areThere())
            munmap(m_zeros, m_size);
    }

    bool areThere() const { return m_zeros != MAP_FAILED; }
    char *data() const { return static_cast<char *>(m_zeros); }

private:
    const std::size_t m_size;
    void *const m_zeros;
};

} // namespace

/// Texts that are longer than a QString of Qt 5 can be are refused, whichever Qt there is.
class LongTextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordWithALongerTextIsRefused();
    void longerTextIsNotConverted();
    void longestTextIsNotTooLong();
};

void LongTextsTest::recordWithALongerTextIsRefused()
{
    constexpr int textSize = longest + 1;
    constexpr int headSize = 8 + 8 + 4;
    const Zeros zeros(std::size_t(headSize) + textSize);
    if (!zeros.areThere())
        SKIP("There are not enough addresses.");
    char *at = zeros.data();
    // The document, its length, the base resource, its length, and the length of the text.
    for (const quint32 word :
         {0xC10CBB5FU, quint32(12 + textSize), 0xE0CFAE8EU, quint32(4 + textSize), quint32(textSize)}) {
        qToBigEndian(word, at);
        at += 4;
    }
    TunerProperties document;
    QVERIFY(!document.SetBinaryRepresentation(QByteArray::fromRawData(zeros.data(), headSize + textSize)));
    QCOMPARE(
        document.GetErrorString(),
        QStringLiteral("binary data: out of memory after 1073741709 bytes, and no text may have more than 1073741696 "
                       "characters"));
    QVERIFY(document.Getbaseresource().isNull());
}

void LongTextsTest::longerTextIsNotConverted()
{
    const Zeros zeros(2 * (std::size_t(longest) + 1));
    if (!zeros.areThere())
        SKIP("There are not enough addresses.");
    QVERIFY_THROWS_EXCEPTION(std::bad_alloc, utf8ToString(zeros.data(), longest + 1));
    const auto *const utf16 = reinterpret_cast<const QChar *>(zeros.data());
    QVERIFY_THROWS_EXCEPTION(std::bad_alloc, XmlText(QStringView(utf16, longest + 1)).toString());
    QCOMPARE(XmlText(QStringView(utf16, 3)).toString().size(), 3);
}

void LongTextsTest::longestTextIsNotTooLong()
{
    QCOMPARE(REPORTGENERATOR::lengthOfText(longest), REPORTGENERATOR::Size(longest));
    QVERIFY_THROWS_EXCEPTION(std::bad_alloc, REPORTGENERATOR::lengthOfText(longest + 1));
    QCOMPARE(QString(longest, Qt::Uninitialized).size(), longest); // Qt 5 can hold it
}

TEST_SUITE(LongTextsTest)
#include "tst_LongTexts.moc"
