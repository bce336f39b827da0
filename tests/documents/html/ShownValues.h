// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QVariant>

#include <jobxml/Visit.h>

#include <tunerdocuments/Value.h>

inline bool isNull(const QVariant &value)
{
    return value.userType() == QMetaType::QString && value.toString().isNull();
}

/// What a page shows for a member that has a value.
inline QStringList shownValues(const JobXml::MemberView &member)
{
    const QVariant value = member.GetValue();
    if (value.userType() == QMetaType::QVariantList) {
        QStringList texts;
        for (const QVariant &entry : value.toList())
            texts.append(isNull(entry) ? QStringLiteral("null") : entry.toString());
        return texts.isEmpty() && member.IsSet() ? QStringList{QStringLiteral("empty")} : texts;
    }
    if (isNull(value))
        return member.IsSet() || !isNull(member.GetDefaultValue()) ? QStringList{QStringLiteral("null")}
                                                                   : QStringList();
    if (value.userType() == QMetaType::QString)
        return {value.toString().isEmpty() ? QStringLiteral("empty") : value.toString()};
    return {TunerDocuments::ValueText::ofValue(value)};
}

/// Whether the object has anything but defaults, so that a page shows it although it is not set.
inline bool isKept(const JobXml::DataObject &object)
{
    bool result = false;
    JobXml::visit(object, [&](const JobXml::MemberView &member) {
        const bool isDefault = shownValues(member)
            == (isNull(member.GetDefaultValue())
                    ? QStringList()
                    : QStringList{TunerDocuments::ValueText::ofValue(member.GetDefaultValue())});
        result = result || member.IsSet() || member.GetSize() != 0 || (member.GetValue().isValid() && !isDefault);
    });
    return result;
}
