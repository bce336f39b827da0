// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>

#include <QString>
#include <QStringList>

#include <tavikappstartup/Export.h>

/// The application's translation registry. A module registers when it is loaded and unregisters when it is unloaded;
/// in between its catalogue, if there is one for the current QLocale, is installed in the QCoreApplication.
///
/// The catalogue of a module is the file `<module>_<locale>.qm`, looked for in these folders:
///  1. the folders added with AddSearchPath(), the last added first;
///  2. the folder of this library, symbolic links resolved;
///  3. `translations` in the folder of this library;
///  4. the installed data folder, `<prefix>/share/tunerproperties-1/translations`. It is found from the folder of this
///     library, so that an installed tree may be moved as a whole.
///
/// Within a folder the names are tried as QTranslator::load() does, the most special first (`de_AT`, then `de`). The
/// first folder that has any of them wins, also over a more special one in a later folder.
///
/// No operation fails: a module without a catalogue shows its source texts. All operations are thread-safe, as long as
/// the QCoreApplication is not made or destroyed meanwhile. Installing and withdrawing a catalogue sends
/// QEvent::LanguageChange to the application, in the calling thread. The receiver may call any operation; only a
/// Register() answering each such event would go on forever.
///
/// The registry lives until this library is unloaded or the process ends. A static object that uses it in its
/// destructor calls Instance() in its constructor, and is then destroyed first.
class TAVIKAPPSTARTUP_EXPORT TranslationCenter
{
public:
    /// The registry of the process.
    static TranslationCenter &Instance();

    /// Makes the translations of `module` available to QCoreApplication::translate(). Without a QCoreApplication the
    /// module is remembered, and its catalogue looked for and installed as InstallPending() tells.
    /// Registering a module again looks for its catalogue anew, for instance after QLocale::setDefault(); it replaces
    /// the one installed and keeps its place in RegisteredModules().
    void Register(const QString &module);
    void Register(std::nullptr_t) = delete;

    /// Withdraws the translations of `module`; does nothing for one that is not registered. One call suffices, however
    /// often the module was registered. Safe after the QCoreApplication is gone.
    void Unregister(const QString &module);
    void Unregister(std::nullptr_t) = delete;

    /// Installs the catalogues of modules that registered before there was a QCoreApplication, or for another one than
    /// there is now. Every other operation does the same in passing; this one is for who needs nothing else.
    void InstallPending();

    /// Adds a folder that is searched before all others; one added already moves to the front. A relative path counts
    /// from the current folder of this moment. Catalogues that are installed already stay as they are.
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
