// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

#include "Encodings.h"
#include "Model.h"

#include <jobxml/TunerProperties.h>

/// The document that the tests of this folder damage. It has every member of every class and every kind of value, and
/// is otherwise as small as possible, since it is truncated at each byte and each of its bits is flipped.
namespace Damage {

/// Sets every member, with one item in each list and one value of each kind. Each text is a single letter, and nearly
/// all values differ, so that no member can pass for another.
class Filler
{
public:
    void fill(JobXml::DataObject &object)
    {
        JobXml::visit(object, [this](JobXml::MemberEditor &member) { fill(member); });
    }

private:
    void fill(JobXml::MemberEditor &member)
    {
        using JobXml::MemberKind;
        switch (member.GetKind()) {
        case MemberKind::Choice:
        case MemberKind::Alternative:
            break; // see fillItems()
        case MemberKind::ObjectList:
            fillItems(member);
            break;
        case MemberKind::Object:
            fill(member.EditChild());
            break;
        default:
            if (!member.SetValue(nextValue(member)))
                qFatal("cannot set %s", member.GetName().data());
        }
    }

    // An item with alternatives occurs once per alternative.
    void fillItems(JobXml::MemberEditor &list)
    {
        JobXml::DataObject &first = list.AppendChild();
        fill(first);
        QStringList alternatives;
        JobXml::visit(std::as_const(first), [&](const JobXml::MemberView &member) {
            if (member.GetKind() == JobXml::MemberKind::Alternative)
                alternatives += member.GetName();
        });
        for (int i = 0; i < alternatives.size(); ++i) {
            JobXml::DataObject &item = i == 0 ? list.EditChild() : list.AppendChild();
            JobXml::visit(item, [&](JobXml::MemberEditor &member) {
                if (member.GetName() == alternatives.at(i))
                    fill(member.EditChild());
            });
        }
    }

    QVariant nextValue(const JobXml::MemberView &member)
    {
        using JobXml::MemberKind;
        ++m_count;
        switch (member.GetKind()) {
        case MemberKind::Text:
            return QString(QChar::fromLatin1(char('A' + m_count % 26)));
        case MemberKind::Boolean:
            return true;
        case MemberKind::Int:
            return -m_count;
        case MemberKind::Int64:
            return (qlonglong(1) << 32) + m_count; // more than 32 bits
        case MemberKind::UInt64:
            return qulonglong(m_count);
        case MemberKind::Float:
            return float(m_count) + 0.5F;
        case MemberKind::Double:
            return m_count + 0.25;
        case MemberKind::Enumeration:
            return member.GetNames().first();
        case MemberKind::EnumerationList:
            return someNames(member.GetNames());
        default:
            return QVariant();
        }
    }

    // Two names, in descending order. Neither has four bytes, which could be read as a tag after a damaged length.
    static QVariantList someNames(QStringList names)
    {
        names.erase(std::remove_if(names.begin(), names.end(), [](const QString &name) { return name.size() == 4; }),
                    names.end());
        return {names.at(1), names.at(0)};
    }

    int m_count = 0;
};

inline JobXml::TunerProperties makeCompactDocument()
{
    JobXml::TunerProperties document;
    document.SetValidate(false); // an item has no data before it is filled
    Filler().fill(document);
    document.SetValidate(true);

    // Texts that take more than one byte in UTF-8, one unit in UTF-16 or one character in XML.
    document.SetconnectableResources(QString::fromUtf8("\xC3\xA4"));
    JobXml::Component &component = document.GetComponent().first();
    component.SetdisplayName(QStringLiteral("&"));
    for (JobXml::ValueItem &item : component.GetNode().first().GetValueItem()) {
        if (item.IsValueStringSet())
            item.GetValueString().Setvalue(QString::fromUtf8("\xF0\x9F\x93\xA1"));
    }
    return document;
}

inline const JobXml::TunerProperties &compactDocument()
{
    static const JobXml::TunerProperties document = makeCompactDocument();
    return document;
}

/// The document as in a file, but without indentation, which would only add equal bytes.
inline const QByteArray &compactXml()
{
    static const QByteArray xml =
        QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n") + xmlOf(compactDocument()).toUtf8() + '\n';
    return xml;
}

} // namespace Damage
