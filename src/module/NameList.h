// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QStringList>

namespace JobXml {

/// The names of an enumeration, built when the library is loaded; the index of a name is the enumeration's value.
class NameList
{
public:
    static constexpr int notFound = -1;

    explicit NameList(const QStringList &names) : m_names(names) { }

    const QStringList &names() const { return m_names; }

    bool holds(int value) const { return value >= 0 && value < m_names.size(); }

    /// Null for a value without name.
    QString name(int value) const { return holds(value) ? m_names.at(value) : QString(); }

    /// The value of a name, spelled exactly so; notFound for any other text.
    int value(const QString &name) const { return m_names.indexOf(name); }

    /// The names for a user to read, in the language that is installed now.
    QStringList displayNames() const
    {
        QStringList translated;
        translated.reserve(m_names.size());
        for (const QString &name : m_names)
            translated.append(QObject::tr(name.toUtf8().constData(), nullptr, -1));
        return translated;
    }

private:
    const QStringList m_names;
};

} // namespace JobXml
