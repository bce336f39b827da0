// SPDX-License-Identifier: MIT
#include <tavikappstartup/TranslationCenter.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QPointer>
#include <QTranslator>

#include "CatalogNames.h"
#include "CodeFolder.h"

namespace {

// Shared, because a catalog is installed and withdrawn outside the lock: a thread that is installing one while another
// thread or a receiver of LanguageChange withdraws it keeps it alive, and uninstalls it by releasing it.
using Catalog = std::shared_ptr<QTranslator>;

struct Module
{
    QString name;
    quint64 registration; // the number of the call of Register()
    Catalog catalog; // none if there is no file for the locale
    QPointer<QCoreApplication> application; // in which it is installed; another one may later have the same address
};

struct Search
{
    QString module;
    quint64 registration;
    QStringList folders;
    QPointer<QCoreApplication> application;
};

// Texts that a module passes may be in its constant data (QStringLiteral), which disappear when it is unloaded.
QString ownCopy(const QString &text)
{
    return QString(text.constData(), text.size());
}

// The first readable file in the folder that may be the catalog; an empty text if there is none.
QString fileIn(const QString &folder, const QStringList &names)
{
    for (const QString &name : names) {
        for (const QString &file : {QString(folder + QLatin1Char('/') + name + QLatin1String(".qm")),
                                    QString(folder + QLatin1Char('/') + name)}) {
            const QFileInfo info(file);
            if (info.isFile() && info.isReadable())
                return file;
        }
    }
    return {};
}

// A damaged file is ignored with all others in its folder. A catalog that depends on others finds them there by itself.
Catalog load(const Search &search)
{
    const QStringList names = CatalogNames::of(search.module, QLocale().uiLanguages());
    const QString none(QLatin1String("")); // nothing is added to the name or removed from it
    auto catalog = std::make_shared<QTranslator>();
    for (const QString &folder : search.folders) {
        const QString file = fileIn(folder, names);
        if (!file.isEmpty() && catalog->load(file, QString(), none, none))
            return catalog;
    }
    return {};
}

// Without an application both calls only print a warning.
void install(const Catalog &catalog)
{
    if (catalog && QCoreApplication::instance())
        QCoreApplication::installTranslator(catalog.get());
}

void withdraw(const Catalog &catalog)
{
    if (catalog && QCoreApplication::instance())
        QCoreApplication::removeTranslator(catalog.get());
}

} // namespace

/// The lock guards the members and is never held while files are read or events are sent: the receiver of
/// LanguageChange may call back, wait for a thread that calls, or load a library, which takes the loader's lock. Not a
/// QMutex, because the thread sanitizer does not see locks in the uninstrumented Qt library.
class TranslationCenter::Private
{
public:
    void add(const QString &name)
    {
        const std::lock_guard lock(m_mutex);
        const auto known = find(name);
        if (known == m_modules.end()) {
            m_modules.push_back({ownCopy(name), ++m_registrations, {}, {}});
            return;
        }
        known->registration = ++m_registrations;
        known->application.clear();
    }

    Catalog take(const QString &name)
    {
        const std::lock_guard lock(m_mutex);
        const auto known = find(name);
        if (known == m_modules.end())
            return {};
        Catalog catalog = std::move(known->catalog);
        m_modules.erase(known);
        return catalog;
    }

    void addFolder(const QString &folder)
    {
        const QString path = ownCopy(QDir(folder).absolutePath());
        const std::lock_guard lock(m_mutex);
        m_addedFolders.removeAll(path);
        m_addedFolders.prepend(path);
    }

    QStringList folders() const
    {
        const std::lock_guard lock(m_mutex);
        return searchedFolders();
    }

    QStringList names() const
    {
        const std::lock_guard lock(m_mutex);
        QStringList names;
        for (const Module &module : m_modules)
            names.append(module.name);
        return names;
    }

    // After an exception while searching, the module is still pending and keeps its former catalog.
    void installPending()
    {
        while (const std::optional<Search> search = nextSearch()) {
            const Catalog found = load(*search);
            const std::optional<Catalog> former = settle(*search, found);
            if (!former)
                continue;
            install(found);
            withdraw(*former);
        }
    }

private:
    std::vector<Module>::iterator find(const QString &name)
    {
        return std::find_if(m_modules.begin(), m_modules.end(),
                            [&name](const Module &module) { return module.name == name; });
    }

    QStringList searchedFolders() const
    {
        QString folder = QFile::decodeName(m_codeFolder.c_str());
        if (folder.isEmpty() && QCoreApplication::instance())
            folder = QCoreApplication::applicationDirPath();
        if (folder.isEmpty())
            return m_addedFolders;
        return m_addedFolders
            + QStringList{folder, folder + QLatin1String("/translations"),
                          QDir::cleanPath(folder + QLatin1String("/" INSTALLED_TRANSLATIONS))};
    }

    std::optional<Search> nextSearch() const
    {
        QCoreApplication *const application = QCoreApplication::instance();
        const std::lock_guard lock(m_mutex);
        for (const Module &module : m_modules) {
            if (application && module.application != application)
                return Search{module.name, module.registration, searchedFolders(), application};
        }
        return std::nullopt;
    }

    // Replaces the former catalog with the one found, and returns the former; nothing if the search is out of date.
    // This comes before installing, or a receiver of LanguageChange that calls back would find the module pending.
    std::optional<Catalog> settle(const Search &search, const Catalog &found)
    {
        const std::lock_guard lock(m_mutex);
        const auto known = find(search.module);
        if (known == m_modules.end() || known->registration != search.registration)
            return std::nullopt;
        known->application = search.application;
        return std::exchange(known->catalog, found);
    }

    mutable std::mutex m_mutex;
    const std::string m_codeFolder = codeFolder();
    std::vector<Module> m_modules; // in the order of registration
    QStringList m_addedFolders; // the last added first
    quint64 m_registrations = 0;
};

// Destroyed with the library; a translator that is still installed then removes itself.
TranslationCenter &TranslationCenter::Instance()
{
    static TranslationCenter center;
    return center;
}

namespace {

// Created while this library is loaded, not later: codeFolder() takes the loader's lock. A module that registers while
// it is loaded already holds that lock, and both would wait for each other. In a static build, a module may register
// before.
[[maybe_unused]] const TranslationCenter &createdWhenLoaded = TranslationCenter::Instance();

} // namespace

TranslationCenter::TranslationCenter() : d(std::make_unique<Private>()) { }

TranslationCenter::~TranslationCenter() = default;

void TranslationCenter::Register(const QString &module)
{
    d->add(module);
    d->installPending();
}

void TranslationCenter::Unregister(const QString &module)
{
    withdraw(d->take(module));
    d->installPending();
}

void TranslationCenter::InstallPending()
{
    d->installPending();
}

void TranslationCenter::AddSearchPath(const QString &folder)
{
    d->addFolder(folder);
    d->installPending();
}

QStringList TranslationCenter::SearchPaths() const
{
    d->installPending();
    return d->folders();
}

QStringList TranslationCenter::RegisteredModules() const
{
    d->installPending();
    return d->names();
}
