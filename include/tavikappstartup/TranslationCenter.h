// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>

#include <QString>
#include <QStringList>

#include <tavikappstartup/Export.h>

/// The application's translation registry. A module registers when it is loaded and unregisters when it is unloaded; in
/// between its catalog, if there is one for the current QLocale, is installed in the QCoreApplication.
///
/// The catalog of a module is the file `<module>_<locale>.qm`, which the registry searches for in these folders:
///  1. the folders added with AddSearchPath(), the last added first;
///  2. the folder of this library, symbolic links resolved;
///  3. `translations` in the folder of this library;
///  4. the installed data folder, `<prefix>/share/tunerproperties-1/translations`. It is found from the folder of this
///     library, so that an installed tree may be moved as a whole.
///
/// A static library has no folder of its own: the folder is that of the program or plug-in that is linked with it, and
/// the data folder is found if this is `<prefix>/bin`. Otherwise pass the folder of the catalogs to AddSearchPath() and
/// register again: it is `TunerProperties_TRANSLATIONS_DIR` in CMake, with Qt 6 `TunerPropertiesQt6_TRANSLATIONS_DIR`,
/// and the variable `translationsdir` of pkg-config.
/// On other systems than Linux, the folder is always that of the program, as soon as there is a QCoreApplication.
///
/// Within a folder the names are tried for each language of the locale (QLocale::uiLanguages()), first as the locale is
/// usually named, then without its last parts: `de_AT`, then `de`. The first folder with any of them is used, even if a
/// later folder has a more special one.
///
/// No operation fails: a module without a catalog shows its source texts. All operations are thread-safe, as long as
/// the QCoreApplication is not created or destroyed meanwhile. Installing and withdrawing a catalog sends
/// QEvent::LanguageChange to the application, in the calling thread. The receiver may call any operation; only a
/// Register() in response to each such event would continue forever.
///
/// The registry lives until this library is unloaded or the process ends. A static object that uses it in its
/// destructor calls Instance() in its constructor, and is then destroyed first.
class TAVIKAPPSTARTUP_EXPORT TranslationCenter
{
public:
    /// The registry of the process.
    static TranslationCenter &Instance();

    /// Makes the translations of `module` available to QCoreApplication::translate(). Without a QCoreApplication the
    /// module is stored, and its catalog is found and installed later, see InstallPending(). Registering a module again
    /// searches for its catalog again, for instance after QLocale::setDefault(); the new one replaces the installed
    /// one, and the module keeps its position in RegisteredModules().
    void Register(const QString &module);
    void Register(std::nullptr_t) = delete;

    /// Withdraws the translations of `module`; does nothing for one that is not registered. One call is enough, however
    /// often the module was registered. Safe after the QCoreApplication was destroyed.
    void Unregister(const QString &module);
    void Unregister(std::nullptr_t) = delete;

    /// Installs the catalogs of modules that registered before the present QCoreApplication was created. Every other
    /// operation also does so; call this one if you need nothing else.
    void InstallPending();

    /// Adds a folder that is searched before all others; one that was added before moves to the front. A relative path
    /// is resolved with the current folder at the time of the call. Installed catalogs stay unchanged.
    void AddSearchPath(const QString &folder);
    void AddSearchPath(std::nullptr_t) = delete;

    /// The folders that are searched, as absolute paths in the order of the search, whether they exist or not.
    QStringList SearchPaths() const;

    /// The registered modules, in the order of their registration.
    QStringList RegisteredModules() const;

    TranslationCenter(const TranslationCenter &) = delete;
    TranslationCenter &operator=(const TranslationCenter &) = delete;

private:
    TranslationCenter();
    ~TranslationCenter();

    class TAVIKAPPSTARTUP_NO_EXPORT Private;
    std::unique_ptr<Private> d;
};
