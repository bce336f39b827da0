// SPDX-License-Identifier: MIT
#include <QSignalSpy>
#include <QThread>
#include <QtTest>

#include <jobxml/MetaTypes.h>

#include "Documents.h"
#include "Model.h"
#include "QtFigures.h"

using namespace JobXml;

namespace {

const QStringList classNames = Model::classes();

// Neither version of Qt has the other's function.
QMetaType metaTypeOf(const QString &className)
{
    const QByteArray name = "JobXml::" + className.toLatin1();
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QMetaType(QMetaType::type(name));
#else
    return QMetaType::fromName(name);
#endif
}

QStringList registeredClasses()
{
    QStringList registered;
    for (const QString &name : classNames) {
        if (metaTypeOf(name).isRegistered())
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
            const QMetaType type = metaTypeOf(name);
            auto *object = static_cast<DataObject *>(type.create());
            QCOMPARE(object->GetObjectName(), name);
            QVERIFY(!object->IsInitialized());
            type.destroy(object);
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

    // Qt 6 finds the operators of the objects by itself. Qt 5 compares their addresses.
    void variantsOfEqualObjectsAreEqualWithQt6()
    {
        const QVariant one = QVariant::fromValue(aComponent());
        const QVariant other = QVariant::fromValue(aComponent());
        QCOMPARE(one == other, !QtFigures::isQt5);
        QVERIFY(one.value<Component>() == other.value<Component>());
        QVERIFY(one != QVariant::fromValue(aComponent(QStringLiteral("IF"))));
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
