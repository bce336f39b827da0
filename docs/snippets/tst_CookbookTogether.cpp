// SPDX-License-Identifier: MIT
//
// The recipes of the cookbook that deal with several documents, threads or Qt's own ways: the marked parts are what the
// manual shows, and the tests check what they come to.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <future>
#include <iterator>
#include <optional>
#include <vector>

#include <QDataStream>
#include <QDebug>
#include <QHash>
#include <QTemporaryDir>
#include <QVariant>
#include <QtTest>

#include <jobxml/MetaTypes.h>
#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>
#include <reportbase/RepresentationSplitter.h>

#include "Elements.h"

//! [RegisterMetaTypes]
class Watcher : public QObject
{
    Q_OBJECT

public:
    void read(const JobXml::TunerProperties &tuner)
    {
        qDebug() << tuner; // the whole tree, a line for each member
        Q_EMIT tunerRead(tuner);
    }

Q_SIGNALS:
    void tunerRead(const JobXml::TunerProperties &tuner);
};

/// `receive` is called from the event loop, with a copy.
void deliver(Watcher &watcher, QObject &receiver, const std::function<void(const JobXml::TunerProperties &)> &receive)
{
    JobXml::RegisterMetaTypes(); // once in a program, and before the first queued connection
    QObject::connect(&watcher, &Watcher::tunerRead, &receiver, receive, Qt::QueuedConnection);
}
//! [RegisterMetaTypes]

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

//! [compare]
using namespace JobXml;

/// The shortest text that reads back to the same number; what differs never looks the same.
template <class Number>
QString shortest(Number value)
{
    char text[64];
    return QString::fromLatin1(text, int(std::to_chars(std::begin(text), std::end(text), value).ptr - text));
}

QString textOf(const MemberView &member)
{
    const QVariant value = member.GetValue();
    if (!member.IsSet())
        return QStringLiteral("(not set)");
    switch (member.GetKind()) {
    case MemberKind::Float:
        return shortest(value.toFloat());
    case MemberKind::Double:
        return shortest(value.toDouble());
    case MemberKind::EnumerationList:
        return QLatin1Char('[') + value.toStringList().join(QStringLiteral(", ")) + QLatin1Char(']');
    case MemberKind::Text:
        return value.toString().isNull() ? QStringLiteral("(null)")
                                         : QLatin1Char('"') + value.toString() + QLatin1Char('"');
    default:
        return value.toString();
    }
}

/// What identifies an item among its siblings: a component's type and name, a value's id.
QString nameOf(const DataObject &item)
{
    QStringList texts;
    visit(item, [&](const MemberView &member) {
        if (member.IsIdentifying())
            texts.append(member.GetValue().toString());
        else if (member.GetKind() == MemberKind::Alternative && member.IsChosen() && member.GetSize() > 0)
            texts.append(nameOf(member.GetChild()));
    });
    return texts.join(QLatin1Char(' '));
}

QString contentsOf(const DataObject &item)
{
    QString contents;
    QDebug(&contents) << item;
    return contents;
}

/// The paths of a list's items. Of items with one name, the second is "name #2".
QStringList pathsOf(const MemberView &list, const QString &path)
{
    QStringList paths;
    QHash<QString, int> alike;
    for (int i = 0; i < list.GetSize(); ++i) {
        const QString name = nameOf(list.GetChild(i));
        const int count = ++alike[name];
        paths.append(path + QLatin1Char(' ') + name + (count > 1 ? QStringLiteral(" #%1").arg(count) : QString()));
    }
    return paths;
}

/// For each item of the first list, the item of the second to compare it with, or -1: one with the same contents if
/// there is one, otherwise one with the same name.
QVector<int> partners(const MemberView &before, const MemberView &after)
{
    QVector<int> partner(before.GetSize(), -1);
    QVector<bool> taken(after.GetSize());
    for (const auto keyOf : {contentsOf, nameOf}) {
        QHash<QString, QVector<int>> free; // the last one first
        for (int i = after.GetSize() - 1; i >= 0; --i) {
            if (!taken[i])
                free[keyOf(after.GetChild(i))].append(i);
        }
        for (int i = 0; i < partner.size(); ++i) {
            QVector<int> &candidates = free[keyOf(before.GetChild(i))];
            if (partner[i] < 0 && !candidates.isEmpty())
                taken[partner[i] = candidates.takeLast()] = true;
        }
    }
    return partner;
}

void compare(const DataObject &before, const DataObject &after, const QString &path, QStringList &lines);

void compareLists(const MemberView &before, const MemberView &after, const QString &path, QStringList &lines)
{
    const QStringList pathsBefore = pathsOf(before, path);
    const QStringList pathsAfter = pathsOf(after, path);
    QVector<int> partner = partners(before, after);
    QVector<bool> isPaired(after.GetSize());
    for (int i = 0; i < partner.size(); ++i) {
        if (partner[i] < 0) {
            lines.append(pathsBefore[i] + QStringLiteral(": (removed)"));
            continue;
        }
        isPaired[partner[i]] = true;
        compare(before.GetChild(i), after.GetChild(partner[i]), pathsBefore[i], lines);
    }
    for (int i = 0; i < after.GetSize(); ++i) {
        if (!isPaired[i])
            lines.append(pathsAfter[i] + QStringLiteral(": (added)"));
    }
    partner.removeAll(-1);
    if (!std::is_sorted(partner.cbegin(), partner.cend()))
        lines.append(path + QStringLiteral(": (order changed)"));
    if (before.IsSet() != after.IsSet() && before.GetSize() == 0 && after.GetSize() == 0)
        lines.append(path + (after.IsSet() ? QStringLiteral(": (now set, but empty)") : QStringLiteral(": (unset)")));
}

void compare(const MemberView &before, const MemberView &after, const QString &path, QStringList &lines)
{
    const auto isThere = [](const MemberView &child) { return child.IsSet() && child.GetSize() > 0; };
    switch (before.GetKind()) {
    case MemberKind::ObjectList:
        compareLists(before, after, path, lines);
        break;
    case MemberKind::Object:
    case MemberKind::Alternative:
        if (!before.IsChosen() || !after.IsChosen())
            break; // the choice itself is a member as well
        if (isThere(before) && isThere(after))
            compare(before.GetChild(), after.GetChild(), path, lines);
        else if (before.IsSet() != after.IsSet())
            lines.append(path + (after.IsSet() ? QStringLiteral(": (added)") : QStringLiteral(": (removed)")));
        break;
    default:
        if (textOf(before) != textOf(after))
            lines.append(path + QStringLiteral(": ") + textOf(before) + QStringLiteral(" -> ") + textOf(after));
    }
}

/// Compares two objects of one class member by member.
void compare(const DataObject &before, const DataObject &after, const QString &path, QStringList &lines)
{
    std::vector<MemberView> members;
    visit(after, [&](const MemberView &member) { members.push_back(member); });
    std::size_t next = 0;
    visit(before, [&](const MemberView &member) {
        compare(member, members[next++], path + QLatin1Char('/') + member.GetName(), lines);
    });
}

QStringList differences(const TunerProperties &before, const TunerProperties &after)
{
    QStringList lines;
    compare(before, after, QString(), lines);
    return lines;
}
//! [compare]

//! [thread]
/// Saves in another thread while the caller goes on changing its document. The future tells the error or null, and
/// throws what is wrong with the content.
std::future<QString> saveInBackground(const JobXml::TunerProperties &tuner, const QString &path)
{
    // A copy constructed object has data of its own at once, so from here on the two have nothing in common.
    return std::async(std::launch::async,
                      [copy = tuner, path] { return copy.SaveXml(path) ? QString() : copy.GetErrorString(); });
}
//! [thread]

JobXml::TunerProperties receiver()
{
    JobXml::TunerProperties tuner;
    if (!tuner.LoadXml(QStringLiteral(EXAMPLES_DIR "/receiver.xml")))
        qFatal("%s", qPrintable(tuner.GetErrorString()));
    return tuner;
}

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

class CookbookTogether : public QObject
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
    void differencesOfItemsWithOneNameAreListed();
    void differencesAreListedByPath();
    void swappedComponentsAreReported();
    void aSwapOfTwinsIsReported();
    void anInsertedItemProducesOneLine_data();
    void anInsertedItemProducesOneLine();
    void numbersAreShownByTheirShortestText();
    void everyDocumentThatDiffersProducesALine();
    void aCopyIsSavedInAnotherThread();
    void aDocumentTravelsThroughAQueuedSignal();
    void aDocumentFitsIntoAVariant();
};

void CookbookTogether::documentArrivesWhereverItIsSplit()
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

void CookbookTogether::twoDocumentsInOnePacketAreBothReceived()
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

void CookbookTogether::peerThatDeclaresTwoGibibytesIsDisconnected()
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

void CookbookTogether::compressedDocumentThatExpandsTooFarIsRefused()
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

void CookbookTogether::damagedDocumentIsReportedAndTheNextOneIsReceived()
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

void CookbookTogether::damageAnywhereIsReportedAndNeverThrown()
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

void CookbookTogether::truncatedDocumentIsReportedAtTheEndOfTheConnection()
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

void CookbookTogether::differencesOfItemsWithOneNameAreListed()
{
    JobXml::TunerProperties left = receiver();
    const JobXml::Component twin = left.GetComponent()[0];
    left.AppendComponent(twin);
    JobXml::TunerProperties right = left;
    right.GetComponent().last().SetdisplayName(QStringLiteral("the other"));
    const QStringList lines = differences(left, right);
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().contains(QStringLiteral(" #2/displayName: ")), qPrintable(lines.first()));
}

void CookbookTogether::differencesAreListedByPath()
{
    const JobXml::TunerProperties left = receiver();
    JobXml::TunerProperties right = left;
    QCOMPARE(differences(left, right), QStringList());

    right.Setquantity(3);
    right.ResetparentBaseResource();
    right.GetStartupModes().SetStartupMode({JobXml::StartupModes::StartupMode::FFM});
    JobXml::Component &tuning = right.GetComponent()[3];
    QCOMPARE(tuning.Getname(), QStringLiteral("tuning"));
    tuning.GetNode()[0].GetValueItem()[0].GetValueNumericInt64().Setvalue(101700000);
    right.AppendBandwidthSelection([] {
        JobXml::BandwidthSelection wide;
        wide.SetName(QStringLiteral("Wide"));
        wide.SetMaxBandwidth(1000.0);
        return wide;
    }());
    QCOMPARE(
        differences(left, right),
        (QStringList{
            QStringLiteral("/quantity: 2 -> 3"),
            QStringLiteral("/parentBaseResource: \"RACK-A\" -> (not set)"),
            QStringLiteral("/StartupModes/StartupMode: [FFM, Scan, FastScan, MScan, Search, MSearch, Step, Stop] -> "
                           "[FFM]"),
            QStringLiteral("/BandwidthSelection Wide: (added)"),
            QStringLiteral("/Component Synthesizer tuning/Node frequency/ValueItem frequency/ValueNumericInt64/value: "
                           "98500000 -> 101700000"),
        }));
}

void CookbookTogether::swappedComponentsAreReported()
{
    const JobXml::TunerProperties left = receiver();
    JobXml::TunerProperties right = left;
    right.GetComponent().swapItemsAt(0, 2);
    QVERIFY(left != right);
    QCOMPARE(differences(left, right), QStringList(QStringLiteral("/Component: (order changed)")));
}

void CookbookTogether::aSwapOfTwinsIsReported()
{
    JobXml::TunerProperties left = receiver();
    JobXml::Component twin = left.GetComponent()[0];
    twin.Setoptional(!twin.Getoptional());
    left.AppendComponent(twin);
    JobXml::TunerProperties right = left;
    right.GetComponent().swapItemsAt(0, right.GetComponent().size() - 1);
    QVERIFY(left != right);
    QCOMPARE(differences(left, right), QStringList(QStringLiteral("/Component: (order changed)")));
}

void CookbookTogether::anInsertedItemProducesOneLine_data()
{
    QTest::addColumn<QString>("id"); // of the inserted item
    QTest::addColumn<QString>("line");

    const QString node = QStringLiteral("/Component Filter Preselector/Node att/ValueItem ");
    QTest::newRow("an id of its own") << QStringLiteral("new") << node + QStringLiteral("new: (added)");
    QTest::newRow("the id of the others") << QStringLiteral("value") << node + QStringLiteral("value: (added)");
    QTest::newRow("no id") << QString() << node + QStringLiteral(": (added)");
}

void CookbookTogether::anInsertedItemProducesOneLine()
{
    QFETCH(QString, id);
    QFETCH(QString, line);

    const auto item = [](const QString &itemId, int value) {
        JobXml::ValueItem result;
        result.GetValueInt().SetValidate(false);
        if (!itemId.isNull())
            result.GetValueInt().Setid(itemId);
        result.GetValueInt().Setvalue(value);
        return result;
    };
    JobXml::Node node;
    node.Setid(QStringLiteral("att"));
    for (int i = 0; i < 28; ++i)
        node.AppendValueItem(item(QStringLiteral("value"), i));
    JobXml::Component component;
    component.Settype(QStringLiteral("Filter"));
    component.Setname(QStringLiteral("Preselector"));
    component.Setoptional(false);
    component.AppendNode(node);
    JobXml::TunerProperties left;
    left.AppendComponent(component);
    JobXml::TunerProperties right = left;
    right.GetComponent()[0].GetNode()[0].GetValueItem().prepend(item(id, 100));
    QCOMPARE(differences(left, right), QStringList(line));
}

void CookbookTogether::numbersAreShownByTheirShortestText()
{
    JobXml::TunerProperties left = receiver();
    JobXml::ValueFloat number;
    number.Setid(QStringLiteral("f"));
    number.Setvalue(0.1F);
    left.GetComponent()[0].GetNode()[0].GetValueItem()[0].SetValueFloat(number);
    JobXml::BandwidthSelection bandwidth;
    bandwidth.SetName(QStringLiteral("b"));
    bandwidth.SetMaxBandwidth(2400.1);
    left.AppendBandwidthSelection(bandwidth);

    JobXml::TunerProperties right = left;
    right.GetComponent()[0].GetNode()[0].GetValueItem()[0].GetValueFloat().Setvalue(
        std::nextafter(0.1F, 1.0F)); // the next number that a float can hold
    right.GetBandwidthSelection().last().SetMaxBandwidth(0.30000000000000004);
    const QStringList lines = differences(left, right);
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines[0].endsWith(QStringLiteral("/BandwidthSelection b/MaxBandwidth: 2400.1 -> 0.30000000000000004")),
             qPrintable(lines[0]));
    QVERIFY2(lines[1].endsWith(QStringLiteral("/ValueItem f/ValueFloat/value: 0.1 -> 0.10000001")),
             qPrintable(lines[1]));
}

void CookbookTogether::everyDocumentThatDiffersProducesALine()
{
    const JobXml::TunerProperties left = receiver();
    const std::function<void(JobXml::TunerProperties &)> changes[] = {
        [](auto &tuner) { tuner = JobXml::TunerProperties(); },
        [](auto &tuner) { tuner.ResetStartupModes(); },
        [](auto &tuner) { tuner.GetStartupModes().ResetStartupMode(); },
        [](auto &tuner) { tuner.ResetComponent(); },
        [](auto &tuner) { tuner.GetBandwidthSelection().clear(); },
        [](auto &tuner) { tuner.SetValidate(false), tuner.Setname(QString()); },
        [](auto &tuner) { tuner.Setname(QStringLiteral("(null)")); },
        [](auto &tuner) { tuner.Setname(QStringLiteral("(not set)")); },
        [](auto &tuner) { tuner.GetComponent()[0].GetNode()[0].GetValueItem()[0].ResetChoiceValueItem(); },
        [](auto &tuner) { tuner.GetComponent()[0].GetNode()[0].GetValueItem()[0].GetValueBoolean(); },
    };
    QVector<JobXml::TunerProperties> documents{left};
    for (const auto &change : changes) {
        JobXml::TunerProperties changed = left;
        change(changed);
        documents.append(changed);
    }
    for (const auto &one : documents) {
        for (const auto &other : documents)
            QCOMPARE(differences(one, other).isEmpty(), one == other);
    }
}

void CookbookTogether::aCopyIsSavedInAnotherThread()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("receiver.xml"));
    const JobXml::TunerProperties original = receiver();
    JobXml::TunerProperties tuner = original;
    std::future<QString> saved = saveInBackground(tuner, path);
    tuner.Setquantity(99); // meanwhile
    tuner.GetComponent().clear();
    QCOMPARE(saved.get(), QString());

    JobXml::TunerProperties read;
    QVERIFY(read.LoadXml(path));
    QVERIFY(read == original);
    QVERIFY_EXCEPTION_THROWN(saveInBackground(JobXml::TunerProperties(), path).get(), OutOfRangeException);
}

void CookbookTogether::aDocumentTravelsThroughAQueuedSignal()
{
    JobXml::TunerProperties tuner;
    tuner.Setquantity(2);
    Watcher watcher;
    QObject context;
    int quantity = 0;
    deliver(watcher, context, [&](const JobXml::TunerProperties &arrived) { quantity = arrived.Getquantity(); });
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("^TunerProperties\\n(.*\\n)*  quantity: 2\\n")));
    watcher.read(tuner);
    QCOMPARE(quantity, 0); // not before the event loop
    QCoreApplication::processEvents();
    QCOMPARE(quantity, 2);
}

void CookbookTogether::aDocumentFitsIntoAVariant()
{
    JobXml::TunerProperties tuner;
    tuner.Setquantity(2);
    //! [variant]
    const QVariant variant = QVariant::fromValue(tuner); // a copy
    const auto back = variant.value<JobXml::TunerProperties>();
    //! [variant]
    QVERIFY(back == tuner);
    QCOMPARE(QByteArray(variant.typeName()), QByteArrayLiteral("JobXml::TunerProperties"));
}

QTEST_GUILESS_MAIN(CookbookTogether)
#include "tst_CookbookTogether.moc"
