// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QString>
#include <QStringList>

#include <tavikappstartup/Export.h>

/// The application's translation registry. A module registers when it is loaded and unregisters when it is unloaded;
/// in between its catalogue, if there is one for the current QLocale, is installed in the QCoreApplication.
///
/// The catalogue of a module is the file `<module>_<locale>.qm`, looked for with the fallbacks of QTranslator
/// (`de_AT`, then `de`) in these folders, first match wins:
///  1. the folders added with AddSearchPath(), the last added first;
///  2. the folder of this library, and `translations` below it;
///  3. the installed data folder, `<prefix>/share/tunerproperties/translations`.
///
/// No operation fails: a module without a catalogue shows its source texts. All operations are thread-safe.
class TAVIKAPPSTARTUP_EXPORT TranslationCenter
{
public:
    static TranslationCenter &Instance();

    /// Makes the translations of `module` available to QCoreApplication::translate(). Without a QCoreApplication the
    /// module is remembered, and its catalogue installed by the next call of any operation or by InstallPending().
    /// Registering a module again looks for its catalogue anew, for instance after QLocale::setDefault().
    void Register(const QString &module);

    /// Withdraws the translations of `module`; does nothing for one that is not registered. Safe after the
    /// QCoreApplication is gone.
    void Unregister(const QString &module);

    /// Installs the catalogues of modules that registered before there was a QCoreApplication.
    void InstallPending();

    /// Adds a folder that is searched before all others. Modules registered already keep the catalogue they have.
    void AddSearchPath(const QString &folder);

    /// The folders that are searched, in the order of the search.
    QStringList SearchPaths() const;

    /// The registered modules, in the order of their registration.
    QStringList RegisteredModules() const;

    TranslationCenter(const TranslationCenter &) = delete;
    TranslationCenter &operator=(const TranslationCenter &) = delete;

private:
    TranslationCenter();
    ~TranslationCenter();

    class Private;
    std::unique_ptr<Private> d;
};
