// SPDX-License-Identifier: MIT
//
// The recipe of the cookbook that logs documents and sends them through signals: the manual shows the marked parts, and
// the tests check their results.

#include <functional>

#include <QDebug>
#include <QVariant>
#include <QtTest>

#include <jobxml/MetaTypes.h>
#include <jobxml/TunerProperties.h>

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

class CookbookSignals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDocumentTravelsThroughAQueuedSignal();
    void aDocumentFitsIntoAVariant();
};

void CookbookSignals::aDocumentTravelsThroughAQueuedSignal()
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

void CookbookSignals::aDocumentFitsIntoAVariant()
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

TEST_SUITE(CookbookSignals)
#include "tst_CookbookSignals.moc"
