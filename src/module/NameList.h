// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <optional>
#include <utility>

#include <QCoreApplication>
#include <QDebug>
#include <QStringList>
#include <QVariant>

namespace JobXml {

/// The names of an enumeration, built when the library is loaded; the index of a name is the enumeration's value.
class NameList
{
public:
    static constexpr int notFound = -1;

    explicit NameList(std::initializer_list<QLatin1String> names) : m_names(names.begin(), names.end()) { }
    explicit NameList(QStringList names) : m_names(std::move(names)) { }

    const QStringList &names() const { return m_names; }

    bool contains(int value) const { return value >= 0 && value < m_names.size(); }

    /// Null for a value without name.
    QString name(int value) const { return contains(value) ? m_names.at(value) : QString(); }

    /// The value of a name, which must match exactly; notFound for any other text.
    int value(const QString &name) const { return int(m_names.indexOf(name)); }

    /// The value for a visitor: its name, a null text for the value that means none, its number if it has no name.
    QVariant variant(int value, int none) const
    {
        return value == none || contains(value) ? QVariant(name(value)) : QVariant(value);
    }
    /// The inverse of variant(); nothing for any other value.
    template <class Enumeration>
    std::optional<Enumeration> fromVariant(const QVariant &variant, Enumeration none) const
    {
        if (variant.userType() == QMetaType::Int) {
            const auto result = Enumeration(variant.toInt());
            return int(result) == variant.toInt() ? std::optional(result) : std::nullopt; // nothing if it does not fit
        }
        if (variant.userType() != QMetaType::QString)
            return {};
        if (variant.toString().isNull())
            return none;
        const int value = this->value(variant.toString());
        return value == notFound ? std::nullopt : std::optional(Enumeration(value));
    }

    /// The names for users, translated into the installed language.
    QStringList displayNames() const
    {
        QStringList translated;
        translated.reserve(m_names.size());
        for (const QString &name : m_names)
            translated.append(QObject::tr(name.toUtf8().constData(), nullptr, -1));
        return translated;
    }

    /// Writes a value as in C++, for example `TunerProperties::type::Receiver`, or `TunerProperties::type(7)` for a
    /// value without a name.
    QDebug write(QDebug debug, const char *enumeration, int value, int none, const char *nameOfNone) const
    {
        const QDebugStateSaver saver(debug);
        debug.nospace().noquote() << enumeration;
        if (value == none)
            debug << "::" << nameOfNone;
        else if (contains(value))
            debug << "::" << name(value);
        else
            debug << '(' << value << ')';
        return debug;
    }

private:
    const QStringList m_names;
};

} // namespace JobXml
