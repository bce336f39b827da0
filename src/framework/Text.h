// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include <QString>

namespace JobXml {

/// An empty text that is not null. Its data are Qt's own, so copies may outlive the library and allocate nothing.
inline const QString emptyText{QLatin1String("")};

/// A text that a QString refers to without owning it, as with QStringLiteral: no memory is allocated for the QString,
/// and none is freed. The QString and its copies are valid only as long as this text exists. For use within the library
/// alone: a program may keep every text that it receives after it has unloaded the library.
template <int capacity>
class Text
{
public:
    constexpr explicit Text(const char *ascii = "") : m_storage{headerOf(0), {}}
    {
        for (int i = 0; ascii[i] != '\0'; ++i) {
            m_storage.text[i] = uchar(ascii[i]);
            m_storage.header.size = i + 1;
        }
    }
    Text(const Text &) = delete;
    Text &operator=(const Text &) = delete;

    QString string() const noexcept { return QString(QStringDataPtr{const_cast<QStringData *>(&m_storage.header)}); }
    QStringView view() const noexcept { return QStringView(m_storage.text, m_storage.header.size); }

private:
    struct Storage
    {
        QStringData header;
        ushort text[capacity + 1];
    };

    static constexpr QStringData headerOf(int size)
    {
        return QStringData{{Q_REFCOUNT_INITIALIZE_STATIC, size, 0, 0, offsetof(Storage, text)}};
    }

    Storage m_storage;
};

} // namespace JobXml
