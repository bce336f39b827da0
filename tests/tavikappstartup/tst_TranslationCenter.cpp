// SPDX-License-Identifier: MIT
#include <functional>
#include <memory>
#include <new>

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <dlfcn.h>

#include "tavikappstartup/RegistryTest.h"

using Call = std::function<void()>;
Q_DECLARE_METATYPE(Call)

class TranslationCenterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { beginRegistryTest(); }
    void cleanup() { QCOMPARE(warningsOfRegistryTest(), QStringList()); }

    void thereIsOneRegistry();
    void registeringInstallsTheCatalog();
    void registeringWithoutACatalogIsRememberedAndShowsSourceTexts();
    void aLocaleWithoutACatalogShowsSourceTexts();
    void modulesAreListedInTheOrderOfRegistration();
    void unregisteringWithdrawsTheCatalog();
    void unregisteringLeavesOtherModulesAlone();
    void unregisteringAnUnknownModuleDoesNothing();

    void registeringTwiceInstallsOnce();
    void registeringAgainFollowsTheLocale();
    void registeringAgainWithoutACatalogForTheNewLocaleWithdrawsTheOldOne();
    void registeringAgainFindsACatalogThatCameLater();

    void withoutAnApplicationTheModuleIsRemembered();
    void installPendingInstallsModulesRegisteredBeforeTheApplication();
    void anyNextCallInstallsPendingModules_data();
    void anyNextCallInstallsPendingModules();
    void aPendingModuleFollowsTheLocaleAndTheFoldersOfTheInstallation();
    void unregisteringAPendingModuleInstallsNothing();
    void installPendingInstallsOnlyOnce();
    void registeringTheSameAgainWithoutAnApplicationIsHarmless();

    void unregisteringAfterTheApplicationIsGoneIsSafe();
    void catalogIsInstalledAgainInASecondApplication();
    void catalogIsInstalledInASecondApplicationAtTheSameAddress();
    void aModuleLeftRegisteredOutlivesItsApplication();

    void textsOfAModuleAreKeptWhenItIsUnloaded();
};

void TranslationCenterTest::thereIsOneRegistry()
{
    QCOMPARE(&TranslationCenter::Instance(), &TranslationCenter::Instance());
}

void TranslationCenterTest::registeringInstallsTheCatalog()
{
    Application application;
    QCOMPARE(signalText(), untranslated);
    center().Register(probe);
    QCOMPARE(signalText(), german);
    QCOMPARE(application.languageChanges(), 1);
}

void TranslationCenterTest::registeringWithoutACatalogIsRememberedAndShowsSourceTexts()
{
    Application application;
    center().Register(unheard);
    QCOMPARE(center().RegisteredModules(), QStringList{unheard});
    QCOMPARE(QCoreApplication::translate("Unheard", "signal"), untranslated);
    QCOMPARE(application.languageChanges(), 0);
    center().Unregister(unheard);
    QCOMPARE(center().RegisteredModules(), QStringList());
}

void TranslationCenterTest::aLocaleWithoutACatalogShowsSourceTexts()
{
    setLocale("ja_JP");
    const Application application;
    center().Register(probe);
    QCOMPARE(center().RegisteredModules(), QStringList{probe});
    QCOMPARE(signalText(), untranslated);
}

void TranslationCenterTest::modulesAreListedInTheOrderOfRegistration()
{
    const Application application;
    center().Register(probe);
    center().Register(tuner);
    center().Register(extra);
    QCOMPARE(center().RegisteredModules(), (QStringList{probe, tuner, extra}));
    center().Register(probe);
    QCOMPARE(center().RegisteredModules(), (QStringList{probe, tuner, extra}));
    center().Unregister(probe);
    center().Register(probe);
    QCOMPARE(center().RegisteredModules(), (QStringList{tuner, extra, probe}));
}

void TranslationCenterTest::unregisteringWithdrawsTheCatalog()
{
    Application application;
    center().Register(probe);
    center().Unregister(probe);
    QCOMPARE(signalText(), untranslated);
    QCOMPARE(center().RegisteredModules(), QStringList());
    QCOMPARE(application.languageChanges(), 2);
}

void TranslationCenterTest::unregisteringLeavesOtherModulesAlone()
{
    const Application application;
    center().Register(probe);
    center().Register(extra);
    center().Unregister(probe);
    QCOMPARE(signalText(), untranslated);
    QCOMPARE(noiseText(), germanNoise);
}

void TranslationCenterTest::unregisteringAnUnknownModuleDoesNothing()
{
    Application application;
    center().Register(probe);
    center().Unregister(extra);
    QCOMPARE(center().RegisteredModules(), QStringList{probe});
    QCOMPARE(signalText(), german);
    QCOMPARE(application.languageChanges(), 1);
}

void TranslationCenterTest::registeringTwiceInstallsOnce()
{
    const Application application;
    center().Register(probe);
    center().Register(probe);
    QCOMPARE(center().RegisteredModules(), QStringList{probe});
    QCOMPARE(signalText(), german);
    center().Unregister(probe);
    QCOMPARE(signalText(), untranslated);
    QCOMPARE(center().RegisteredModules(), QStringList());
}

void TranslationCenterTest::registeringAgainFollowsTheLocale()
{
    const Application application;
    center().Register(probe);
    setLocale("fr_FR");
    QCOMPARE(signalText(), german);
    center().Register(probe);
    QCOMPARE(signalText(), french);
    center().Unregister(probe);
    QCOMPARE(signalText(), untranslated);
}

void TranslationCenterTest::registeringAgainWithoutACatalogForTheNewLocaleWithdrawsTheOldOne()
{
    const Application application;
    center().Register(probe);
    setLocale("ja_JP");
    center().Register(probe);
    QCOMPARE(signalText(), untranslated);
    QCOMPARE(center().RegisteredModules(), QStringList{probe});
}

void TranslationCenterTest::registeringAgainFindsACatalogThatCameLater()
{
    const QTemporaryDir folder;
    const QString late = QStringLiteral("Late");
    const Application application;
    center().AddSearchPath(folder.path());
    center().Register(late);
    QVERIFY(QFile::copy(first + QStringLiteral("/Probe_de.qm"), folder.filePath(QStringLiteral("Late_de.qm"))));
    center().InstallPending();
    QCOMPARE(signalText(), untranslated);
    center().Register(late);
    QCOMPARE(signalText(), german);
}

void TranslationCenterTest::withoutAnApplicationTheModuleIsRemembered()
{
    center().Register(probe);
    center().InstallPending();
    QCOMPARE(center().RegisteredModules(), QStringList{probe});
    QCOMPARE(signalText(), untranslated);
}

void TranslationCenterTest::installPendingInstallsModulesRegisteredBeforeTheApplication()
{
    center().Register(probe);
    center().Register(extra);
    const Application application;
    QCOMPARE(signalText(), untranslated);
    center().InstallPending();
    QCOMPARE(signalText(), german);
    QCOMPARE(noiseText(), germanNoise);
}

void TranslationCenterTest::anyNextCallInstallsPendingModules_data()
{
    QTest::addColumn<Call>("call");
    QTest::newRow("Register") << Call([] { center().Register(tuner); });
    QTest::newRow("Unregister") << Call([] { center().Unregister(unheard); });
    QTest::newRow("InstallPending") << Call([] { center().InstallPending(); });
    QTest::newRow("AddSearchPath") << Call([] { center().AddSearchPath(first); });
    QTest::newRow("SearchPaths") << Call([] { center().SearchPaths(); });
    QTest::newRow("RegisteredModules") << Call([] { center().RegisteredModules(); });
}

void TranslationCenterTest::anyNextCallInstallsPendingModules()
{
    QFETCH(Call, call);
    center().Register(probe);
    const Application application;
    QCOMPARE(signalText(), untranslated);
    call();
    QCOMPARE(signalText(), german);
}

void TranslationCenterTest::aPendingModuleFollowsTheLocaleAndTheFoldersOfTheInstallation()
{
    center().Register(probe);
    setLocale("de_AT");
    center().AddSearchPath(second);
    const Application application;
    center().InstallPending();
    QCOMPARE(signalText(), austrianOfSecond);
}

void TranslationCenterTest::unregisteringAPendingModuleInstallsNothing()
{
    center().Register(probe);
    Application application;
    center().Unregister(probe);
    center().InstallPending();
    QCOMPARE(signalText(), untranslated);
    QCOMPARE(application.languageChanges(), 0);
}

void TranslationCenterTest::installPendingInstallsOnlyOnce()
{
    Application application;
    center().Register(probe);
    center().Register(unheard);
    center().InstallPending();
    center().InstallPending();
    QCOMPARE(application.languageChanges(), 1);
    center().Unregister(probe);
    QCOMPARE(signalText(), untranslated);
}

void TranslationCenterTest::registeringTheSameAgainWithoutAnApplicationIsHarmless()
{
    {
        const Application application;
        center().Register(probe);
    }
    center().Register(probe);
    center().Register(probe);
    QCOMPARE(center().RegisteredModules(), QStringList{probe});
    Application application;
    center().InstallPending();
    QCOMPARE(signalText(), german);
    QCOMPARE(application.languageChanges(), 1);
}

void TranslationCenterTest::unregisteringAfterTheApplicationIsGoneIsSafe()
{
    {
        const Application application;
        center().Register(probe);
        QCOMPARE(signalText(), german);
    }
    center().Unregister(probe);
    QCOMPARE(center().RegisteredModules(), QStringList());
    const Application application;
    center().InstallPending();
    QCOMPARE(signalText(), untranslated);
}

void TranslationCenterTest::catalogIsInstalledAgainInASecondApplication()
{
    auto application = std::make_unique<Application>();
    center().Register(probe);
    application.reset();
    application = std::make_unique<Application>();
    QCOMPARE(signalText(), untranslated);
    center().InstallPending();
    QCOMPARE(signalText(), german);
    center().Unregister(probe);
    QCOMPARE(signalText(), untranslated);
}

void TranslationCenterTest::catalogIsInstalledInASecondApplicationAtTheSameAddress()
{
    alignas(Application) unsigned char place[sizeof(Application)];
    for (int round = 0; round < 3; ++round) {
        auto *const application = new (place) Application;
        const QString before = signalText();
        center().Register(extra);
        if (round == 0)
            center().Register(probe);
        const QString after = signalText();
        application->~Application();
        QCOMPARE(before, untranslated);
        QCOMPARE(after, german);
    }
}

void TranslationCenterTest::aModuleLeftRegisteredOutlivesItsApplication()
{
    {
        const Application application;
        center().Register(probe);
    }
    QCOMPARE(center().RegisteredModules(), QStringList{probe});
    QCOMPARE(signalText(), untranslated);
}

// Its texts are in its constant data, which are unloaded with it.
void TranslationCenterTest::textsOfAModuleAreKeptWhenItIsUnloaded()
{
    const Application application;
    void *const module = dlopen(MODULE_FILE, RTLD_NOW | RTLD_LOCAL);
    QVERIFY2(module, module ? "" : dlerror());
    QCOMPARE(dlclose(module), 0);
    QVERIFY(!dlopen(MODULE_FILE, RTLD_NOW | RTLD_NOLOAD));
    QCOMPARE(center().SearchPaths().first(), first);
    QCOMPARE(center().RegisteredModules(), QStringList{probe}); // which it forgot to unregister
    QCOMPARE(signalText(), german);
    center().Register(probe);
    QCOMPARE(signalText(), german);
}

TEST_SUITE_WITHOUT_APPLICATION(TranslationCenterTest)
#include "tst_TranslationCenter.moc"
