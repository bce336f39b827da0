// SPDX-License-Identifier: MIT
//
// The recipes of the cookbook that deal with several documents, threads or Qt's own ways: the marked parts are what the
// manual shows, and the tests check what they come to.

#include <functional>
#include <future>

#include <QBuffer>
#include <QDataStream>
#include <QDebug>
#include <QMap>
#include <QTemporaryDir>
#include <QVariant>
#include <QtTest>

#include <jobxml/MetaTypes.h>
#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include "Elements.h"

//! [signal]
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
//! [signal]

namespace {

//! [stream]
/// To a socket: as a QByteArray, so that the other side knows where it ends.
void send(QDataStream &socket, JobXml::TunerProperties &tuner)
{
    socket << tuner.GetBinaryRepresentationAsQByteArray();
}

enum class Received {
    Document,
    NothingYet,
    Damage,
};

/// Call it whenever the socket has new bytes (QIODevice::readyRead).
Received receive(QDataStream &socket, JobXml::TunerProperties &tuner)
{
    QByteArray representation;
    socket.startTransaction();
    socket >> representation;
    if (!socket.commitTransaction())
        return Received::NothingYet; // the stream is back at the start, and the rest may come
    try {
        return tuner.SetBinaryRepresentation(representation) ? Received::Document
                                                             : Received::Damage; // GetErrorString()
    } catch (const ReportException &) { // what is wrong inside; nothing may leave a slot
        return Received::Damage;
    }
}
//! [stream]

//! [compare]
/// What a list's item is called: by what tells it from its siblings, or by its place.
QString nameOf(const JobXml::DataObject &item, int index)
{
    QStringList texts;
    JobXml::visit(item, [&](const JobXml::MemberView &member) {
        if (member.IsIdentifying())
            texts.append(member.GetValue().toString());
    });
    return texts.isEmpty() ? QString::number(index + 1) : texts.join(QLatin1Char(' '));
}

using Values = QMap<QString, QString>;

/// The values that are set in an object and below it, by their paths.
void collectValues(const JobXml::DataObject &object, const QString &path, Values &values)
{
    JobXml::visit(object, [&](const JobXml::MemberView &member) {
        const QString place = path + QLatin1Char('/') + member.GetName();
        switch (member.GetKind()) {
        case JobXml::MemberKind::ObjectList: {
            QHash<QString, int> alike; // of items with one name, the second is "name #2"
            for (int i = 0; i < member.GetSize(); ++i) {
                QString name = nameOf(member.GetChild(i), i);
                if (const int count = ++alike[name]; count > 1)
                    name += QStringLiteral(" #%1").arg(count);
                collectValues(member.GetChild(i), place + QLatin1Char(' ') + name, values);
            }
            break;
        }
        case JobXml::MemberKind::Object:
        case JobXml::MemberKind::Alternative:
            if (member.IsSet() && member.IsChosen())
                collectValues(member.GetChild(), place, values);
            break;
        case JobXml::MemberKind::EnumerationList:
            if (member.IsSet())
                values.insert(place, member.GetValue().toStringList().join(QStringLiteral(", ")));
            break;
        default:
            if (member.IsSet()) {
                const QString text = member.GetValue().toString();
                values.insert(place, text.isNull() ? QStringLiteral("(null)") : text);
            }
        }
    });
}

QStringList differences(const JobXml::TunerProperties &left, const JobXml::TunerProperties &right)
{
    Values before;
    Values after;
    collectValues(left, QString(), before);
    collectValues(right, QString(), after);

    QStringList lines;
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        if (after.value(it.key()) != it.value() || !after.contains(it.key()))
            lines.append(it.key() + QStringLiteral(": ") + it.value() + QStringLiteral(" -> ")
                         + after.value(it.key(), QStringLiteral("(gone)")));
    }
    for (auto it = after.cbegin(); it != after.cend(); ++it) {
        if (!before.contains(it.key()))
            lines.append(it.key() + QStringLiteral(": (new) -> ") + it.value());
    }
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

} // namespace

class CookbookTogether : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDocumentArrivesInPieces();
    void damageIsTold();
    void damageInsideIsToldAndNeverThrown();
    void differencesOfItemsWithOneNameAreListed();
    void differencesAreListedByPath();
    void aCopyIsSavedInAnotherThread();
    void aDocumentTravelsThroughAQueuedSignal();
    void aDocumentFitsIntoAVariant();
};

void CookbookTogether::aDocumentArrivesInPieces()
{
    JobXml::TunerProperties sent = receiver();
    QByteArray wire;
    QDataStream out(&wire, QIODevice::WriteOnly);
    send(out, sent);

    QBuffer socket;
    QVERIFY(socket.open(QIODevice::ReadWrite));
    QDataStream in(&socket);
    JobXml::TunerProperties received;
    QVERIFY(socket.buffer().isEmpty());
    socket.buffer().append(wire.left(100));
    QVERIFY(receive(in, received) == Received::NothingYet);
    QVERIFY(!received.IsInitialized());
    socket.buffer().append(wire.mid(100));
    QVERIFY(receive(in, received) == Received::Document);
    QVERIFY(received == sent);
    QVERIFY(receive(in, received) == Received::NothingYet);
}

void CookbookTogether::damageIsTold()
{
    QByteArray wire;
    QDataStream out(&wire, QIODevice::WriteOnly);
    out << QByteArrayLiteral("nonsense");
    QDataStream in(wire);
    JobXml::TunerProperties received;
    QVERIFY(receive(in, received) == Received::Damage);
    QCOMPARE(received.GetErrorString(),
             QStringLiteral("binary data: the leading word is 0x6E6F6E73, not 0xC10CBB5F (TunerProperties)"));
}

void CookbookTogether::damageInsideIsToldAndNeverThrown()
{
    JobXml::TunerProperties sent = receiver();
    const QByteArray whole = sent.GetBinaryRepresentationAsQByteArray();
    int tried = 0;
    int damaged = 0;
    for (int i = 0; i < whole.size(); i += 7, ++tried) {
        QByteArray flipped = whole;
        flipped[i] = char(flipped[i] ^ 0x40);
        QByteArray wire;
        QDataStream out(&wire, QIODevice::WriteOnly);
        out << flipped;
        QDataStream in(wire);
        JobXml::TunerProperties received;
        damaged += receive(in, received) == Received::Damage ? 1 : 0;
    }
    QVERIFY2(damaged > tried / 4 && damaged < tried, qPrintable(QString::number(damaged)));
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
            QStringLiteral("/Component Synthesizer tuning/Node frequency/ValueItem 1/ValueNumericInt64/value: "
                           "98500000 -> 101700000"),
            QStringLiteral("/StartupModes/StartupMode: FFM, Scan, FastScan, MScan, Search, MSearch, Step, Stop -> FFM"),
            QStringLiteral("/parentBaseResource: RACK-A -> (gone)"),
            QStringLiteral("/quantity: 2 -> 3"),
            QStringLiteral("/BandwidthSelection Wide/MaxBandwidth: (new) -> 1000"),
            QStringLiteral("/BandwidthSelection Wide/Name: (new) -> Wide"),
        }));
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
