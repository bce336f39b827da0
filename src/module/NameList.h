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

    bool holds(int value) const { return value >= 0 && value < m_names.size(); }

    /// Null for a value without name.
    QString name(int value) const { return holds(value) ? m_names.at(value) : QString(); }

    /// The value of a name, spelled exactly so; notFound for any other text.
    int value(const QString &name) const { return m_names.indexOf(name); }

    /// The value for a visitor: its name, a null text for the value that means none, its number if it has no name.
    QVariant shown(int value, int none) const
    {
        return value == none || holds(value) ? QVariant(name(value)) : QVariant(value);
    }
    /// The value from what a visitor was shown; nothing if it is neither.
    template <class Enumeration>
    std::optional<Enumeration> fromShown(const QVariant &shown, Enumeration none) const
    {
        if (shown.userType() == QMetaType::Int) {
            const auto result = Enumeration(shown.toInt());
            return int(result) == shown.toInt() ? std::optional(result) : std::nullopt; // what does not fit is none
        }
        if (shown.userType() != QMetaType::QString)
            return {};
        if (shown.toString().isNull())
            return none;
        const int value = this->value(shown.toString());
        return value == notFound ? std::nullopt : std::optional(Enumeration(value));
    }

    /// The names for a user to read, in the language that is installed now.
    QStringList displayNames() const
    {
        QStringList translated;
        translated.reserve(m_names.size());
        for (const QString &name : m_names)
            translated.append(QObject::tr(name.toUtf8().constData(), nullptr, -1));
        return translated;
    }

    /// Writes a value as C++ spells it, `TunerProperties::type::Receiver` for instance, and one without a name by its
    /// number: `TunerProperties::type(7)`.
    QDebug write(QDebug debug, const char *enumeration, int value, int none, const char *nameOfNone) const
    {
        const QDebugStateSaver saver(debug);
        debug.nospace().noquote() << enumeration;
        if (value == none)
            debug << "::" << nameOfNone;
        else if (holds(value))
            debug << "::" << name(value);
        else
            debug << '(' << value << ')';
        return debug;
    }

private:
    const QStringList m_names;
};

} // namespace JobXml
