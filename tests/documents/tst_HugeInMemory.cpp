// SPDX-License-Identifier: MIT
#include <limits>
#include <new>

#include <sys/mman.h>

#include <QBuffer>
#include <QtTest>

#include <jobxml/TunerProperties.h>
#include <tunerdocuments/Document.h>
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Editor.h>
#include <tunerdocuments/Patch.h>

#include "Skip.h"
#include "text/Size.h"

using namespace JobXml;
using namespace TunerDocuments;
using REPORTGENERATOR::Size;

namespace {

constexpr qint64 length = qint64(1) << 31; // the first one that int cannot express

/// Zeros that take no memory, since nobody writes them.
class Zeros
{
public:
    explicit Zeros(qint64 size)
        : m_size(std::size_t(size)),
          m_zeros(mmap(nullptr, m_size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0))
    {
    }
    Zeros(const Zeros &) = delete;
    Zeros &operator=(const Zeros &) = delete;
    ~Zeros() { munmap(m_zeros, m_size); }

    bool areThere() const { return m_zeros != MAP_FAILED; }
    const void *data() const { return m_zeros; }

private:
    const std::size_t m_size;
    void *const m_zeros;
};

template <class Action>
QString errorOf(Action &&action)
{
    try {
        action();
    } catch (const DocumentError &error) {
        return error.text();
    }
    return QString();
}

} // namespace

/// Texts and bytes of 2 GiB or more, which Qt 6 can hold, are refused: lengths in documents have 32 bits.
class HugeInMemoryTest : public QObject
{
    Q_OBJECT

private:
    const Zeros m_zeros{2 * length};
    QByteArray m_bytes;
    QString m_text;

private Q_SLOTS:
    void initTestCase()
    {
        if (std::numeric_limits<Size>::max() < length)
            SKIP("This version of Qt has no texts and bytes of 2 GiB.");
        if (!m_zeros.areThere())
            SKIP("The system does not reserve so many addresses.");
        m_bytes = QByteArray::fromRawData(static_cast<const char *>(m_zeros.data()), Size(length));
        m_text = QString::fromRawData(static_cast<const QChar *>(m_zeros.data()), Size(length));
    }

    void documentsAreRefused()
    {
        const QString why = QStringLiteral("a.json: too large: more than 2147483647 bytes");
        const QString name = QStringLiteral("a.json");
        QCOMPARE(errorOf([&] { Document::fromBytes(m_bytes, name); }), why);
        QCOMPARE(errorOf([&] { Patch::fromJson(m_bytes, name); }), why);
        QCOMPARE(errorOf([&] { Editor(Document(TunerProperties(), Form::Json), m_bytes, name); }), why);
    }

    void representationIsRefused()
    {
        TunerProperties tuner;
        QVERIFY(!tuner.SetBinaryRepresentation(m_bytes));
        QVERIFY(!tuner.GetErrorString().isEmpty());
        QVERIFY(!tuner.HasData());
    }

    void xmlTextIsRefused()
    {
        TunerProperties tuner;
        QVERIFY(!tuner.SetXmlString(m_text, true));
        QCOMPARE(tuner.GetErrorString(),
                 QStringLiteral("XML text: the document has 2147483648 characters, but no more than 715827797 can be "
                                "read from a text, only from a file"));
        QVERIFY(!tuner.HasData());
    }

    void memberIsNotWrittenWithALengthOfFewerBits()
    {
        ValueString value;
        value.Setid(QStringLiteral("i"));
        value.Setvalue(m_text);
        QBuffer written;
        QVERIFY(written.open(QIODevice::WriteOnly));
        QDataStream stream(&written);
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, value.GetVersionSpecificBinaryWithoutValidation(stream));
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, value.GetBinaryRepresentation(stream));
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, static_cast<void>(value.GetBinaryRepresentationAsQByteArray()));
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, static_cast<void>(value.GetXmlString()));
        QCOMPARE(written.size(), 0);
    }
};

TEST_SUITE(HugeInMemoryTest)
#include "tst_HugeInMemory.moc"
