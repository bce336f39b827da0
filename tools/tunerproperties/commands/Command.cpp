// SPDX-License-Identifier: MIT
#include "commands/Command.h"

#include <utility>

#include "text/Printable.h"

QString Option::typed() const
{
    return allTyped().last();
}

QStringList Option::allTyped() const
{
    QStringList result;
    for (const QString &name : names)
        result.append((name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name);
    return result;
}

WrongUsage::WrongUsage(const QString &text) : std::runtime_error(text.toStdString()) { }

namespace {

QString textOf(const QByteArray &typed)
{
    const auto text = Printable::decoded(typed);
    if (!text)
        throw WrongUsage(QLatin1Char('\'') + FileName(typed).shown() + QStringLiteral("' is not valid UTF-8"));
    return *text;
}

} // namespace

Invocation::Invocation(QByteArrayList arguments, QHash<QString, QByteArray> values)
    : m_arguments(std::move(arguments)), m_values(std::move(values))
{
}

QVector<FileName> Invocation::files() const
{
    QVector<FileName> names;
    for (const QByteArray &argument : m_arguments)
        names.append(FileName(argument));
    return names;
}

QString Invocation::text(int index) const
{
    return textOf(m_arguments.at(index));
}

bool Invocation::isSet(const Option &option) const
{
    return m_values.contains(option.names.first());
}

QString Invocation::value(const Option &option) const
{
    return isSet(option) ? textOf(fileValue(option).bytes()) : QString();
}

FileName Invocation::fileValue(const Option &option) const
{
    return FileName(m_values.value(option.names.first()));
}
