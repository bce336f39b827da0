// SPDX-License-Identifier: MIT
#include <QCoreApplication>
#include <QtTest>

#include <dlfcn.h>

namespace {

QString signalText()
{
    return QCoreApplication::translate("Probe", "signal");
}

bool isLoaded(const char *file)
{
    void *const handle = dlopen(file, RTLD_NOW | RTLD_NOLOAD);
    if (handle)
        dlclose(handle);
    return handle != nullptr;
}

} // namespace

class TranslationUnloadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unloadingTheRegistryWithdrawsInstalledCatalogs();
};

// Twice, because the second registry must start empty.
void TranslationUnloadTest::unloadingTheRegistryWithdrawsInstalledCatalogs()
{
    for (int round = 0; round < 2; ++round) {
        QVERIFY(!isLoaded(LIBRARY_FILE));
        QCOMPARE(signalText(), QStringLiteral("signal"));

        void *const module = dlopen(MODULE_FILE, RTLD_NOW | RTLD_LOCAL);
        QVERIFY2(module, module ? "" : dlerror());
        QVERIFY(isLoaded(LIBRARY_FILE));
        QCOMPARE(signalText(), QStringLiteral("Signal, erster Ordner"));

        QCOMPARE(dlclose(module), 0);
        QVERIFY(!isLoaded(LIBRARY_FILE));
        QCOMPARE(signalText(), QStringLiteral("signal"));
    }
}

TEST_SUITE(TranslationUnloadTest)
#include "tst_TranslationUnload.moc"
