// SPDX-License-Identifier: MIT
#include <QSignalSpy>
#include <QThread>
#include <QtTest>

#include <jobxml/MetaTypes.h>

#include "Documents.h"
#include "Model.h"

using namespace JobXml;

namespace {

const QStringList classNames = Model::classes();

QStringList registeredClasses()
{
    QStringList registered;
    for (const QString &name : classNames) {
        if (QMetaType::isRegistered(QMetaType::type("JobXml::" + name.toLatin1())))
            registered += name;
    }
    return registered;
}

} // namespace

/// Objects can be stored in variants and passed to queued signals after RegisterMetaTypes() was called.
class MetaTypesTest : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void found(const JobXml::Component &component);

private Q_SLOTS:
    // Must run before the others.
    void loadingTheLibraryRegistersNothing() { QCOMPARE(registeredClasses(), QStringList()); }

    void registerMetaTypesRegistersEveryClass()
    {
        RegisterMetaTypes();
        RegisterMetaTypes();
        QCOMPARE(registeredClasses(), classNames);
    }

    void objectsAreCreatedByName()
    {
        for (const QString &name : classNames) {
            const int type = QMetaType::type("JobXml::" + name.toLatin1());
            auto *object = static_cast<DataObject *>(QMetaType::create(type));
            QCOMPARE(object->GetObjectName(), name);
            QVERIFY(!object->IsInitialized());
            QMetaType::destroy(type, object);
        }
    }

    void variantContainsACopy()
    {
        Component component = aComponent();
        const QVariant variant = QVariant::fromValue(component);
        component.Setname(QStringLiteral("changed"));
        QCOMPARE(variant.value<Component>().Getname(), QStringLiteral("Preselector"));
        QCOMPARE(variant.typeName(), "JobXml::Component");
    }

    void objectsPassThroughQueuedSignals()
    {
        QThread thread;
        QObject receiver;
        receiver.moveToThread(&thread);
        QString received;
        connect(this, &MetaTypesTest::found, &receiver, [&](const Component &component) {
            received = component.Getname();
            QThread::currentThread()->quit();
        });
        thread.start();
        Q_EMIT found(aComponent(QStringLiteral("IF")));
        QVERIFY(thread.wait(60000));
        QCOMPARE(received, QStringLiteral("IF"));
    }
};

TEST_SUITE(MetaTypesTest)
#include "tst_MetaTypes.moc"
