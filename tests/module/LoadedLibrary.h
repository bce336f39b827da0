// SPDX-License-Identifier: MIT
#pragma once

#include <dlfcn.h>

#include <QFile>
#include <QLibrary>
#include <QString>

/// A library that is loaded during the lifetime of this object, by dlopen() or by QLibrary.
class LoadedLibrary
{
public:
    enum class By { Dlopen, QLibrary };

    LoadedLibrary(const QString &file, By by) : m_library(file)
    {
        if (by == By::QLibrary)
            m_loaded = m_library.load();
        else
            m_handle = dlopen(QFile::encodeName(file).constData(), RTLD_NOW | RTLD_LOCAL);
        if (!isLoaded())
            m_error = by == By::QLibrary ? m_library.errorString() : QString::fromLocal8Bit(dlerror());
    }
    LoadedLibrary(const LoadedLibrary &) = delete;
    LoadedLibrary &operator=(const LoadedLibrary &) = delete;
    ~LoadedLibrary()
    {
        if (m_handle)
            dlclose(m_handle);
        if (m_loaded)
            m_library.unload();
    }

    bool isLoaded() const { return m_handle || m_loaded; }
    QString error() const { return m_error; }

    template <class Function>
    Function function(const char *name)
    {
        return m_handle ? reinterpret_cast<Function>(dlsym(m_handle, name))
                        : reinterpret_cast<Function>(m_library.resolve(name));
    }

private:
    QLibrary m_library;
    void *m_handle = nullptr;
    bool m_loaded = false;
    QString m_error;
};

/// Whether the file is loaded in this process.
inline bool isLoaded(const char *file)
{
    void *const handle = dlopen(file, RTLD_NOW | RTLD_NOLOAD);
    if (handle)
        dlclose(handle);
    return handle != nullptr;
}
