// SPDX-License-Identifier: MIT
//
// The recipe of the cookbook that receives documents from a socket: the manual shows the marked part, and the tests
// check its results.

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include <QBuffer>
#include <QDataStream>
#include <QPointer>
#include <QProcess>
#include <QTemporaryFile>
#include <QtTest>

#include <jobxml/TunerProperties.h>
#include <reportbase/RepresentationSplitter.h>

#include "ExampleDocument.h"

//! [stream]
/// Receives documents from a socket or another device: binary representations, plain or compressed, one after the
/// other. Data that have already arrived are read when the event loop runs, so connect to the signals first. Slots may
/// delete the receiver, and close or delete the device.
class DocumentReceiver : public QObject
{
    Q_OBJECT

public:
    explicit DocumentReceiver(QIODevice &socket) : m_socket(&socket)
    {
        connect(&socket, &QIODevice::readyRead, this, &DocumentReceiver::read);
        connect(&socket, &QIODevice::readChannelFinished, this, &DocumentReceiver::finish);
        connect(&socket, &QObject::destroyed, this, &DocumentReceiver::finish);
        QMetaObject::invokeMethod(this, &DocumentReceiver::read, Qt::QueuedConnection);
    }

    /// Receives the rest, and nothing after that. Call it for a device that does not emit readChannelFinished(),
    /// such as a QBuffer, or has emitted it before, such as a process that has finished.
    void finish()
    {
        const QPointer<DocumentReceiver> self(this);
        read();
        if (self && !std::exchange(m_hasEnded, true) && m_splitter.GetPendingSize() > 0)
            Q_EMIT failed(QStringLiteral("the connection ended in the middle of a document"));
    }

Q_SIGNALS:
    void received(const JobXml::TunerProperties &tuner);
    void failed(const QString &why);

private:
    void read()
    {
        if (m_hasEnded)
            return;
        if (m_socket && m_socket->isReadable())
            m_splitter.Append(m_socket->readAll());
        const QPointer<DocumentReceiver> self(this); // null once a slot has deleted the receiver
        while (const std::optional<QByteArray> bytes = m_splitter.Take()) {
            QString why;
            if (const auto tuner = JobXml::TunerProperties::fromBinary(*bytes, &why, m_limits))
                Q_EMIT received(*tuner);
            else
                Q_EMIT failed(why); // only this document; its length was correct, so the next one can be read
            if (!self)
                return;
        }
        const QString refusal = m_splitter.GetErrorString();
        if (refusal.isNull() || std::exchange(m_hasEnded, true)) // a slot may have let more arrive, or called finish()
            return;
        if (m_socket)
            m_socket->close(); // the start of the next document is unknown
        if (self)
            Q_EMIT failed(refusal);
    }

    const REPORTGENERATOR::ReadLimits m_limits =
        REPORTGENERATOR::ReadLimits::forUntrustedData(); // 4 MiB, also when expanded
    QPointer<QIODevice> m_socket; // null once the device is destroyed
    REPORTGENERATOR::RepresentationSplitter m_splitter{JobXml::TunerProperties::GetId(), m_limits};
    bool m_hasEnded = false;
};

void send(QIODevice &socket, const JobXml::TunerProperties &tuner)
{
    socket.write(tuner.GetBinaryRepresentationAsQByteArray());
}
//! [stream]

namespace {

/// One end of a connection, without the network in between.
class Line : public QIODevice
{
public:
    Line() { open(QIODevice::ReadWrite | QIODevice::Unbuffered); }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_arrived.size(); }

    void arrive(const QByteArray &bytes)
    {
        m_arrived += bytes;
        Q_EMIT readyRead();
    }
    void end() { Q_EMIT readChannelFinished(); }
    QByteArray sent() const { return m_sent; }

protected:
    qint64 readData(char *bytes, qint64 size) override
    {
        const int count = int(std::min(size, qint64(m_arrived.size())));
        std::copy_n(m_arrived.cbegin(), count, bytes);
        m_arrived.remove(0, count);
        return count;
    }
    qint64 writeData(const char *bytes, qint64 size) override
    {
        m_sent.append(bytes, int(size));
        return size;
    }

private:
    QByteArray m_arrived;
    QByteArray m_sent;
};

/// The documents and failures that a receiver reports. It is on the heap, so that slots can delete it.
struct Reports
{
    explicit Reports(QIODevice &device) : receiver(new DocumentReceiver(device))
    {
        QObject::connect(receiver, &DocumentReceiver::received, [this](const JobXml::TunerProperties &tuner) {
            documents.append(tuner);
            if (whenReported)
                whenReported();
        });
        QObject::connect(receiver, &DocumentReceiver::failed, [this](const QString &why) {
            failures.append(why);
            if (whenReported)
                whenReported();
        });
    }
    Reports(const Reports &) = delete;
    Reports &operator=(const Reports &) = delete;
    ~Reports() { delete receiver; }

    QPointer<DocumentReceiver> receiver;
    std::function<void()> whenReported;
    QVector<JobXml::TunerProperties> documents;
    QStringList failures;
};

/// A connection with a receiver at its end.
struct Connection : Reports
{
    Connection() : Connection(std::make_unique<Line>()) { }
    explicit Connection(std::unique_ptr<Line> ofLine) : Reports(*ofLine), owned(std::move(ofLine)), line(*owned) { }
    ~Connection() { delete receiver; } // before the line

    std::unique_ptr<Line> owned;
    Line &line;
};

/// A line on which these bytes have arrived before anybody listens.
std::unique_ptr<Line> lineWith(const QByteArray &bytes)
{
    auto line = std::make_unique<Line>();
    line->arrive(bytes);
    return line;
}

/// A process that writes these bytes and ends.
class Writer : public QProcess
{
public:
    explicit Writer(const QByteArray &bytes)
    {
        if (!m_file.open() || m_file.write(bytes) != bytes.size() || !m_file.flush())
            qFatal("%s", qPrintable(m_file.errorString()));
        start(QStringLiteral("cat"), {m_file.fileName()}, QIODevice::ReadOnly);
    }

private:
    QTemporaryFile m_file;
};

const QString endedTooEarly = QStringLiteral("the connection ended in the middle of a document");

/// Fails the test that Qt warns in, as it does when a closed device is read.
class NoWarnings
{
public:
    NoWarnings() { s_previous = qInstallMessageHandler(&NoWarnings::take); }
    NoWarnings(const NoWarnings &) = delete;
    NoWarnings &operator=(const NoWarnings &) = delete;
    ~NoWarnings() { qInstallMessageHandler(s_previous); }

private:
    static void take(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (type == QtWarningMsg)
            QTest::qFail(qPrintable(text), __FILE__, __LINE__);
        else
            s_previous(type, context, text);
    }

    inline static QtMessageHandler s_previous = nullptr;
};

QByteArray asSent(const JobXml::TunerProperties &tuner)
{
    Line line;
    send(line, tuner);
    return line.sent();
}

} // namespace

class CookbookSocket : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documentArrivesWhereverItIsSplit();
    void twoDocumentsInOnePacketAreBothReceived();
    void peerThatDeclaresTwoGibibytesIsDisconnected();
    void compressedDocumentThatExpandsTooFarIsRefused();
    void damagedDocumentIsReportedAndTheNextOneIsReceived();
    void damageAnywhereIsReportedAndNeverThrown();
    void truncatedDocumentIsReportedAtTheEndOfTheConnection();
    void documentThatArrivedBeforeIsReceivedOnceTheEventLoopRuns();
    void documentThatArrivedBeforeIsReceivedAtTheEndOfTheConnection();
    void documentIsReceivedThatArrivesWithTheEndOfTheConnection();
    void outputOfAProcessIsReceived_data();
    void outputOfAProcessIsReceived();
    void bufferIsReadToItsEnd();
    void receiverMayBeDestroyedBeforeItsFirstRead();
    void deviceMayBeClosedOrDestroyedBeforeTheFirstRead();
    void deviceThatIsDestroyedInTheMiddleOfADocumentIsReportedOnce();
    void slotMayDeleteTheReceiver_data();
    void slotMayDeleteTheReceiver();
    void slotMayCloseOrDeleteTheDevice();
    void slotMayLetMoreArrive();
    void slotMayEndTheConnection();
    void refusalIsReportedOnceWhenASlotLetsMoreArrive();
};

void CookbookSocket::documentArrivesWhereverItIsSplit()
{
    JobXml::TunerProperties sent = receiver();
    sent.SetComponent(sent.GetComponent().mid(0, 1)); // a few hundred bytes
    const QByteArray wire = asSent(sent);
    for (int split = 0; split <= wire.size(); ++split) {
        Connection connection;
        connection.line.arrive(wire.left(split));
        QCOMPARE(connection.documents.size(), split == wire.size() ? 1 : 0);
        connection.line.arrive(wire.mid(split));
        QCOMPARE(connection.documents.size(), 1);
        QVERIFY(connection.documents.first() == sent);
        QCOMPARE(connection.failures, QStringList());
    }
}

void CookbookSocket::twoDocumentsInOnePacketAreBothReceived()
{
    const JobXml::TunerProperties first = receiver();
    JobXml::TunerProperties second = first;
    second.Setquantity(7);
    Connection connection;
    connection.line.arrive(asSent(first) + second.GetCompressedBinaryRepresentationAsQByteArray(9));
    QCOMPARE(connection.documents.size(), 2);
    QVERIFY(connection.documents.at(0) == first);
    QVERIFY(connection.documents.at(1) == second); // with its own components, not with those of both
    QCOMPARE(connection.failures, QStringList());
}

void CookbookSocket::peerThatDeclaresTwoGibibytesIsDisconnected()
{
    Connection connection;
    connection.line.arrive(QByteArray::fromHex("c10cbb5f 7fffffff"));
    QCOMPARE(connection.failures,
             QStringList{QStringLiteral("binary data: the representation takes 2147483655 bytes, but no more than "
                                        "4194304 are accepted")});
    QVERIFY(!connection.line.isOpen());
    connection.line.arrive(asSent(receiver()));
    QCOMPARE(connection.documents.size(), 0);
    QCOMPARE(connection.failures.size(), 1);
}

void CookbookSocket::compressedDocumentThatExpandsTooFarIsRefused()
{
    QByteArray bomb("RGZ1");
    const QByteArray payload = qCompress(QByteArray(4194305, '\0'), 9);
    QDataStream(&bomb, QIODevice::Append) << qint32(payload.size());
    bomb += payload;
    Connection connection;
    connection.line.arrive(bomb);
    QCOMPARE(connection.failures,
             QStringList{QStringLiteral("binary data: %1 compressed bytes declare 4194305 bytes, but no more than "
                                        "4194304 are accepted")
                             .arg(payload.size())});
    QVERIFY(!connection.line.isOpen());
}

void CookbookSocket::damagedDocumentIsReportedAndTheNextOneIsReceived()
{
    Connection connection;
    // One member record of an unknown tag, whose length runs past the record.
    connection.line.arrive(QByteArray::fromHex("c10cbb5f 00000008 11111111 00000004") + asSent(receiver()));
    QCOMPARE(connection.failures,
             QStringList{QStringLiteral("TunerProperties::SetBinary(...): Length error occurred during processing of "
                                        "binary representation")});
    QCOMPARE(connection.documents.size(), 1);
    QVERIFY(connection.line.isOpen());
}

void CookbookSocket::damageAnywhereIsReportedAndNeverThrown()
{
    const QByteArray whole = asSent(receiver());
    int tried = 0;
    int damaged = 0;
    for (int i = 8; i < whole.size(); i += 7, ++tried) {
        QByteArray flipped = whole;
        flipped[i] = char(flipped[i] ^ 0x40);
        Connection connection;
        connection.line.arrive(flipped);
        QCOMPARE(connection.documents.size() + connection.failures.size(), 1);
        damaged += connection.failures.size();
    }
    QVERIFY2(damaged > tried / 4 && damaged < tried, qPrintable(QString::number(damaged)));
}

void CookbookSocket::truncatedDocumentIsReportedAtTheEndOfTheConnection()
{
    const QByteArray wire = asSent(receiver());
    Connection whole;
    whole.line.arrive(wire);
    whole.line.end();
    QCOMPARE(whole.failures, QStringList());

    Connection truncated;
    truncated.line.arrive(wire + wire.left(1));
    truncated.line.end();
    QCOMPARE(truncated.documents.size(), 1);
    QCOMPARE(truncated.failures, QStringList{QStringLiteral("the connection ended in the middle of a document")});
}

void CookbookSocket::documentThatArrivedBeforeIsReceivedOnceTheEventLoopRuns()
{
    Connection connection(lineWith(asSent(receiver())));
    QCOMPARE(connection.documents.size(), 0); // before anybody could have connected to the signals
    QCoreApplication::processEvents();
    QCOMPARE(connection.documents.size(), 1);
    QVERIFY(connection.documents.first() == receiver());
    connection.line.arrive(asSent(receiver()));
    QCOMPARE(connection.documents.size(), 2);
    QCOMPARE(connection.failures, QStringList());
}

void CookbookSocket::documentThatArrivedBeforeIsReceivedAtTheEndOfTheConnection()
{
    Connection connection(lineWith(asSent(receiver()) + "x"));
    connection.line.end();
    QCOMPARE(connection.documents.size(), 1);
    QCOMPARE(connection.failures, QStringList{endedTooEarly});
    QCoreApplication::processEvents();
    QCOMPARE(connection.documents.size(), 1);
    QCOMPARE(connection.failures.size(), 1);
}

void CookbookSocket::documentIsReceivedThatArrivesWithTheEndOfTheConnection()
{
    Connection connection;
    const QSignalBlocker quiet(&connection.line);
    connection.line.arrive(asSent(receiver())); // without readyRead()
    connection.line.blockSignals(false);
    connection.line.end();
    QCOMPARE(connection.documents.size(), 1);
    QCOMPARE(connection.failures, QStringList());
}

void CookbookSocket::outputOfAProcessIsReceived_data()
{
    QTest::addColumn<bool>("isDeliveredBefore");
    QTest::addColumn<bool>("hasEndedBefore");
    QTest::newRow("running") << false << false;
    QTest::newRow("delivered before") << true << false;
    QTest::newRow("ended before") << true << true;
}

void CookbookSocket::outputOfAProcessIsReceived()
{
    QFETCH(bool, isDeliveredBefore);
    QFETCH(bool, hasEndedBefore);
    Writer process(asSent(receiver()) + asSent(receiver()) + "x");
    if (isDeliveredBefore)
        QVERIFY(process.waitForReadyRead());
    if (hasEndedBefore)
        QVERIFY(process.waitForFinished());
    Reports reports(process);
    if (hasEndedBefore)
        reports.receiver->finish(); // the process has reported its end already
    QTRY_COMPARE(reports.failures, QStringList{endedTooEarly});
    QCOMPARE(reports.documents.size(), 2);
    QTRY_COMPARE(process.state(), QProcess::NotRunning);
    QCOMPARE(reports.failures.size(), 1);
}

void CookbookSocket::bufferIsReadToItsEnd()
{
    QByteArray bytes = asSent(receiver()) + asSent(receiver()) + "x";
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    Reports reports(buffer);
    reports.receiver->finish(); // a buffer has no end of its own
    QCOMPARE(reports.documents.size(), 2);
    QCOMPARE(reports.failures, QStringList{endedTooEarly});
}

void CookbookSocket::receiverMayBeDestroyedBeforeItsFirstRead()
{
    const std::unique_ptr<Line> line = lineWith(asSent(receiver()));
    const QByteArray whole = asSent(receiver());
    {
        const Reports reports(*line);
    }
    QCoreApplication::processEvents();
    QCOMPARE(line->bytesAvailable(), qint64(whole.size())); // for another receiver
    const Reports reports(*line);
    QCoreApplication::processEvents();
    QCOMPARE(reports.documents.size(), 1);
}

void CookbookSocket::deviceMayBeClosedOrDestroyedBeforeTheFirstRead()
{
    const NoWarnings noWarnings;
    const std::unique_ptr<Line> closed = lineWith(asSent(receiver()));
    const Reports ofClosed(*closed);
    closed->close();
    auto destroyed = lineWith(asSent(receiver()));
    const Reports ofDestroyed(*destroyed);
    destroyed.reset();
    QCoreApplication::processEvents();
    QCOMPARE(ofClosed.documents.size() + ofDestroyed.documents.size(), 0);
    QCOMPARE(ofClosed.failures + ofDestroyed.failures, QStringList());
}

void CookbookSocket::deviceThatIsDestroyedInTheMiddleOfADocumentIsReportedOnce()
{
    auto line = std::make_unique<Line>();
    const Reports reports(*line);
    line->arrive(asSent(receiver()).left(9));
    line.reset();
    QCoreApplication::processEvents();
    QCOMPARE(reports.failures, QStringList{endedTooEarly});

    auto ended = std::make_unique<Line>();
    const Reports reportsOfEnded(*ended);
    ended->arrive(asSent(receiver()).left(9));
    ended->end();
    ended.reset();
    QCOMPARE(reportsOfEnded.failures, QStringList{endedTooEarly});
}

void CookbookSocket::slotMayDeleteTheReceiver_data()
{
    QTest::addColumn<QByteArray>("wire");
    QTest::addColumn<bool>("isReceived");
    const QByteArray whole = asSent(receiver());
    QTest::newRow("two documents") << whole + whole << true;
    QTest::newRow("a document and the start of another") << whole + "x" << true;
    QTest::newRow("a damaged document") << QByteArray::fromHex("c10cbb5f 00000008 11111111 00000004") + whole << false;
    QTest::newRow("a refused stream") << QByteArray::fromHex("c10cbb5f 7fffffff") << false;
    QTest::newRow("a document and a refused stream") << whole + QByteArray::fromHex("c10cbb5f 7fffffff") << true;
    QTest::newRow("a truncated document") << whole.left(9) << false;
}

void CookbookSocket::slotMayDeleteTheReceiver()
{
    QFETCH(QByteArray, wire);
    QFETCH(bool, isReceived);
    Connection connection;
    connection.whenReported = [&] { delete connection.receiver; };
    connection.line.arrive(wire);
    connection.line.end();
    QVERIFY(!connection.receiver);
    QCOMPARE(connection.documents.size(), isReceived ? 1 : 0);
    QCOMPARE(connection.failures.size(), isReceived ? 0 : 1);

    Connection closing; // deletes it while the refused stream is being closed
    QObject::connect(&closing.line, &QIODevice::aboutToClose, [&] { delete closing.receiver; });
    closing.line.arrive(QByteArray::fromHex("c10cbb5f 7fffffff"));
    QVERIFY(!closing.receiver);
    QCOMPARE(closing.failures, QStringList());
}

void CookbookSocket::slotMayCloseOrDeleteTheDevice()
{
    const NoWarnings noWarnings;
    const QByteArray wire = asSent(receiver()) + asSent(receiver());
    Connection connection;
    connection.whenReported = [&] { connection.line.close(); };
    connection.line.arrive(wire);
    QCOMPARE(connection.documents.size(), 2); // both had arrived
    connection.line.end();
    QCOMPARE(connection.failures, QStringList());

    auto line = lineWith(wire + "x");
    Reports reports(*line);
    reports.whenReported = [&] { line.reset(); };
    QCoreApplication::processEvents(); // in the first read, since a device is not deleted in a signal of its own
    QCOMPARE(reports.documents.size(), 2);
    QCOMPARE(reports.failures, QStringList{endedTooEarly});
}

void CookbookSocket::slotMayLetMoreArrive()
{
    // As the event loop of a dialog does that the slot shows.
    QVector<JobXml::TunerProperties> sent(3, receiver());
    for (int i = 0; i < sent.size(); ++i)
        sent[i].Setquantity(i);
    const QByteArray last = asSent(sent.at(2));
    Connection connection;
    connection.whenReported = [&] {
        connection.whenReported = nullptr;
        connection.line.arrive(last.left(20));
        connection.line.arrive(last.mid(20));
    };
    connection.line.arrive(asSent(sent.at(0)) + asSent(sent.at(1)));
    QCOMPARE(connection.documents.size(), 3);
    for (int i = 0; i < sent.size(); ++i)
        QVERIFY(connection.documents.at(i) == sent.at(i));
    QCOMPARE(connection.failures, QStringList());
}

void CookbookSocket::slotMayEndTheConnection()
{
    Connection connection;
    connection.whenReported = [&] { connection.line.end(); };
    connection.line.arrive(asSent(receiver()) + asSent(receiver()) + "x");
    QCOMPARE(connection.documents.size(), 2);
    QCOMPARE(connection.failures, QStringList{endedTooEarly});
}

void CookbookSocket::refusalIsReportedOnceWhenASlotLetsMoreArrive()
{
    Connection connection;
    connection.whenReported = [&] { connection.line.arrive(QByteArray::fromHex("c10cbb5f 7fffffff")); };
    connection.line.arrive(asSent(receiver()) + asSent(receiver()));
    QCOMPARE(connection.documents.size(), 2);
    QCOMPARE(connection.failures.size(), 1);
    connection.line.end();
    QCOMPARE(connection.failures.size(), 1);
}

TEST_SUITE(CookbookSocket)
#include "tst_CookbookSocket.moc"
