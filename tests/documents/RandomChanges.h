// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <random>

#include <QDataStream>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include "Encodings.h"
#include "interop/Generator.h"

/// Documents in every possible state, and changes that no setter makes: flags without values, values without flags,
/// several alternatives at once. The same seed produces the same changes.
class RandomChanges
{
public:
    explicit RandomChanges(quint32 seed) : m_numbers(seed) { }

    int below(int end) { return int(m_numbers() % quint32(end)); }

    /// Changes something, or nothing.
    void change(JobXml::TunerProperties &document)
    {
        if (below(3) == 0)
            rearrange(document);
        else
            changeMember(document);
    }

private:
    template <class T, std::size_t size>
    const T &oneOf(const T (&choices)[size])
    {
        return choices[below(int(size))];
    }

    void rearrange(JobXml::TunerProperties &document)
    {
        if (document.GetComponent().isEmpty() || below(4) == 0)
            return rearrange(document.GetBandwidthSelection());
        JobXml::Component &component = document.GetComponent()[below(document.GetComponent().size())];
        if (component.GetNode().isEmpty() || below(3) == 0)
            return below(2) ? rearrange(document.GetComponent()) : rearrange(component.GetNode());
        rearrange(component.GetNode()[below(component.GetNode().size())].GetValueItem());
    }

    template <class Item>
    void rearrange(QVector<Item> &items)
    {
        const int size = items.size();
        switch (below(4)) {
        case 0:
            items.insert(below(size + 1), Item());
            break;
        case 1:
            if (size > 0)
                items.removeAt(below(size));
            break;
        case 2:
            if (size > 0)
                items.move(below(size), below(size));
            break;
        case 3:
            if (size > 0)
                items.append(Item(items[below(size)]));
            break;
        }
    }

    void changeMember(JobXml::DataObject &object)
    {
        object.SetValidate(false);
        int members = 0;
        JobXml::visit(object, [&](const JobXml::MemberView &) { ++members; });
        int left = below(members);
        JobXml::visit(object, [&](JobXml::MemberEditor &member) {
            if (left-- == 0)
                changeMember(member);
        });
    }

    void changeMember(JobXml::MemberEditor &member)
    {
        using Kind = JobXml::MemberKind;
        const bool isList = member.GetKind() == Kind::ObjectList;
        const bool holdsObjects = isList || member.GetKind() == Kind::Object || member.GetKind() == Kind::Alternative;
        if (below(10) == 0)
            member.SetFlag(below(2) != 0);
        else if (below(10) == 0)
            member.Reset();
        else if (isList && (member.GetSize() == 0 || below(10) == 0))
            member.AppendChild();
        else if (holdsObjects)
            changeMember(member.EditChild(isList ? below(member.GetSize()) : 0));
        else if (!member.SetValue(value(member)))
            qFatal("'%s' refuses a value of its type", member.GetName().data());
    }

    QVariant value(const JobXml::MemberView &member)
    {
        using Kind = JobXml::MemberKind;
        switch (member.GetKind()) {
        case Kind::Text:
            return text();
        case Kind::Boolean:
            return below(2) != 0;
        case Kind::Int:
            return oneOf({0, 1, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()});
        case Kind::Int64:
            return QVariant::fromValue(oneOf<qlonglong>({0, 1, -1, std::numeric_limits<qlonglong>::max(),
                                                         std::numeric_limits<qlonglong>::min(), 9007199254740993}));
        case Kind::UInt64:
            return QVariant::fromValue(oneOf<qulonglong>({0, 1, std::numeric_limits<qulonglong>::max()}));
        case Kind::Float:
            return QVariant::fromValue(real<float>());
        case Kind::Double:
            return QVariant::fromValue(real<double>());
        case Kind::Enumeration:
            return name(member, -128, 127);
        case Kind::Choice:
            return name(member, 0, 255);
        case Kind::EnumerationList: {
            QVariantList names;
            for (int i = below(4); i > 0; --i)
                names.append(name(member, -128, 127));
            return names;
        }
        default:
            return {};
        }
    }

    QVariant name(const JobXml::MemberView &member, int least, int greatest)
    {
        const QStringList names = member.GetNames();
        switch (below(4)) {
        case 0:
            return QString();
        case 1:
            return least + below(greatest - least + 1);
        default:
            return names[below(names.size())];
        }
    }

    QString text()
    {
        return oneOf({QString(), QStringLiteral(""), QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
                      QStringLiteral(" [x=\"1\"],\\/ "), QStringLiteral("\uFEFF\uFEFFmark"), QStringLiteral("\u2028\n"),
                      QString(QChar(0)), QStringLiteral("\U0001F600")});
    }

    template <class T>
    T real()
    {
        using Limits = std::numeric_limits<T>;
        const T special[] = {T(0),
                             T(-0.0),
                             T(0.1),
                             T(1) / T(3),
                             Limits::max(),
                             Limits::min(),
                             Limits::lowest(),
                             Limits::infinity(),
                             -Limits::infinity(),
                             Limits::quiet_NaN(),
                             Limits::denorm_min(),
                             T(16777217),
                             T(1e21)};
        return oneOf(special);
    }

    std::mt19937 m_numbers;
};

/// A document of the generator, which follows the rules of the setters or ignores them, with that many changes.
inline JobXml::TunerProperties randomDocument(int seed, int changes = 0)
{
    JobXml::TunerProperties document;
    document.SetValidate(seed % 3 == 0);
    build(document, QByteArray::number(seed));
    document.SetValidate(false);
    RandomChanges random{quint32(seed)};
    while (changes-- > 0)
        random.change(document);
    return document;
}
