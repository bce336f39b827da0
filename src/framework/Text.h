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
    constexpr explicit Text(const char *ascii = "") : m_storage(ascii) { }
    Text(const Text &) = delete;
    Text &operator=(const Text &) = delete;

    QString string() const noexcept { return m_storage.string(); }
    QStringView view() const noexcept { return QStringView(m_storage.text, m_storage.size()); }

private:
    // What a QString refers to: in Qt 5 a header that the text follows, in Qt 6 the text alone.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    struct Storage
    {
        constexpr explicit Storage(const char *ascii)
            : header{{Q_REFCOUNT_INITIALIZE_STATIC, 0, 0, 0, offsetof(Storage, text)}}, text{}
        {
            for (; ascii[header.size] != '\0'; ++header.size)
                text[header.size] = uchar(ascii[header.size]);
        }
        int size() const noexcept { return header.size; }
        QString string() const noexcept { return QString(QStringDataPtr{const_cast<QStringData *>(&header)}); }

        QStringData header;
        ushort text[capacity + 1];
    };
#else
    struct Storage
    {
        constexpr explicit Storage(const char *ascii) : text{}
        {
            for (; ascii[length] != '\0'; ++length)
                text[length] = uchar(ascii[length]);
        }
        qsizetype size() const noexcept { return length; }
        QString string() const noexcept
        {
            return QString(QStringPrivate(nullptr, const_cast<char16_t *>(text), length));
        }

        qsizetype length = 0;
        char16_t text[capacity + 1];
    };
#endif

    Storage m_storage;
};

} // namespace JobXml
