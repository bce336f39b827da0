// SPDX-License-Identifier: MIT
#include "commands/Command.h"

#include <utility>

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

Invocation::Invocation(QStringList arguments, QHash<QString, QString> values)
    : m_arguments(std::move(arguments)), m_values(std::move(values))
{
}

bool Invocation::isSet(const Option &option) const
{
    return m_values.contains(option.names.first());
}

QString Invocation::value(const Option &option) const
{
    return m_values.value(option.names.first());
}
