// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>

#include <QCoreApplication>
#include <QEvent>
#include <QFileInfo>
#include <QLocale>
#include <QString>
#include <QStringList>

#include <tavikappstartup/TranslationCenter.h>

// What the tests of the translation registry share: the modules, catalogs and texts of data/, and an application.

inline const QString probe = QStringLiteral("Probe");
inline const QString extra = QStringLiteral("Extra");
inline const QString tuner = QStringLiteral("TunerProperties");
inline const QString unheard = QStringLiteral("Unheard"); // has no catalog

inline const QString first = QStringLiteral(CATALOGS_DIR "/first");
inline const QString second = QStringLiteral(CATALOGS_DIR "/second");
inline const QString libraryFolder = QFileInfo(QStringLiteral(LIBRARY_FILE)).canonicalPath();

inline const QString untranslated = QStringLiteral("signal");
inline const QString german = QStringLiteral("Signal, erster Ordner");
inline const QString germanOfSecond = QStringLiteral("Signal, zweiter Ordner");
inline const QString austrianOfSecond = QStringLiteral("Signal, österreichisch");
inline const QString french = QStringLiteral("signal en français");
inline const QString germanNoise = QStringLiteral("Rauschen");

inline TranslationCenter &center()
{
    return TranslationCenter::Instance();
}

inline QString signalText()
{
    return QCoreApplication::translate("Probe", "signal");
}

inline QString noiseText()
{
    return QCoreApplication::translate("Extra", "noise");
}

inline void setLocale(const char *name)
{
    QLocale::setDefault(QLocale(QLatin1String(name)));
}

/// An application that a test may create and destroy at any time, and that counts and forwards its LanguageChange
/// events.
class Application : public QCoreApplication
{
public:
    Application() : QCoreApplication(s_argc, s_argv) { }

    int languageChanges() const { return m_languageChanges; }

    std::function<void()> onLanguageChange;

protected:
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::LanguageChange) {
            ++m_languageChanges;
            if (onLanguageChange)
                onLanguageChange();
        }
        return QCoreApplication::event(event);
    }

private:
    std::atomic<int> m_languageChanges = 0; // the event arrives in the thread that called the registry
    static inline char s_name[] = "test";
    static inline char *s_argv[] = {s_name, nullptr};
    static inline int s_argc = 1;
};

/// Between begin() and end() of a test all warnings are collected: Qt prints one when a translator is installed or
/// removed without an application.
class Warnings
{
public:
    static void begin()
    {
        s_texts.clear();
        s_former = qInstallMessageHandler(collect);
    }

    static QStringList end()
    {
        qInstallMessageHandler(s_former);
        return s_texts;
    }

private:
    static void collect(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (type != QtDebugMsg && type != QtInfoMsg)
            s_texts.append(text);
        s_former(type, context, text);
    }

    static inline QStringList s_texts;
    static inline QtMessageHandler s_former = nullptr;
};

/// Each test begins in German with the first folder searched first, and leaves no module and no warning.
inline void beginRegistryTest()
{
    setLocale("de_DE");
    center().AddSearchPath(first);
    Warnings::begin();
}

inline QStringList warningsOfRegistryTest()
{
    const QStringList modules = center().RegisteredModules();
    for (const QString &module : modules)
        center().Unregister(module);
    return Warnings::end();
}
