// SPDX-License-Identifier: MIT
//
// The recipe of the cookbook that receives documents from a socket: the marked part is what the manual shows, and the
// tests check what it comes to.

#include <algorithm>
#include <optional>

#include <QDataStream>
#include <QtTest>

#include <jobxml/TunerProperties.h>
#include <reportbase/RepresentationSplitter.h>

#include "ExampleDocument.h"

//! [stream]
/// Receives documents from a socket: binary representations, plain or compressed, one after the other.
class DocumentReceiver : public QObject
{
    Q_OBJECT

public:
    explicit DocumentReceiver(QIODevice &socket) : m_socket(socket)
    {
        connect(&m_socket, &QIODevice::readyRead, this, &DocumentReceiver::read);
        connect(&m_socket, &QIODevice::readChannelFinished, this, &DocumentReceiver::finish);
    }

Q_SIGNALS:
    void received(const JobXml::TunerProperties &tuner);
    void failed(const QString &why);

private:
    void read()
    {
        m_splitter.Append(m_socket.readAll());
        while (const std::optional<QByteArray> bytes = m_splitter.Take()) {
            QString why;
            if (const auto tuner = JobXml::TunerProperties::fromBinary(*bytes, &why, limits))
                Q_EMIT received(*tuner);
            else
                Q_EMIT failed(why); // this document alone; its length was right, so the next one can be read
        }
        if (!m_splitter.GetErrorString().isNull()) {
            m_socket.disconnect(this); // nobody knows where the next document starts
            m_socket.close();
            Q_EMIT failed(m_splitter.GetErrorString());
        }
    }

    void finish()
    {
        if (m_splitter.GetPendingSize() > 0)
            Q_EMIT failed(QStringLiteral("the connection ended in the middle of a document"));
    }

    static constexpr auto limits = REPORTGENERATOR::ReadLimits::forUntrustedData(); // 4 MiB, also when expanded
    QIODevice &m_socket;
    REPORTGENERATOR::RepresentationSplitter m_splitter{JobXml::TunerProperties::GetId(), limits};
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

/// A connection whose documents and failures are kept.
struct Connection
{
    Connection()
    {
        QObject::connect(&receiver, &DocumentReceiver::received,
                         [this](const JobXml::TunerProperties &tuner) { documents.append(tuner); });
        QObject::connect(&receiver, &DocumentReceiver::failed, [this](const QString &why) { failures.append(why); });
    }

    Line line;
    DocumentReceiver receiver{line};
    QVector<JobXml::TunerProperties> documents;
    QStringList failures;
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
                                        "4194304 are taken")
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

QTEST_GUILESS_MAIN(CookbookSocket)
#include "tst_CookbookSocket.moc"
