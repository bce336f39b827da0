// SPDX-License-Identifier: MIT
#include "framework/Hash.h"

#include <QHash>

#include <jobxml/Visit.h>

namespace JobXml {

namespace {

HashValue hashOf(const QVariant &value, HashValue seed)
{
    switch (value.userType()) {
    case QMetaType::QString:
        return qHash(value.toString(), seed);
    case QMetaType::Bool:
        return qHash(int(value.toBool()), seed);
    case QMetaType::Float:
        return qHash(value.toFloat(), seed); // the same for 0 and -0, since they are equal
    case QMetaType::Double:
        return qHash(value.toDouble(), seed);
    case QMetaType::QVariantList: {
        const QVariantList entries = value.toList();
        for (const QVariant &entry : entries)
            seed = hashOf(entry, seed) + 1; // makes the hash depend on the order
        return qHash(entries.size(), seed);
    }
    default:
        return qHash(value.toLongLong(), seed);
    }
}

} // namespace

HashValue hashOf(const DataObject &object, HashValue seed)
{
    HashValue hash = seed;
    int position = 0;
    visit(object, [&](const MemberView &member) {
        ++position;
        if (member.IsSet())
            hash = hashOf(member.GetValue(), qHash(position, hash));
    });
    return hash;
}

} // namespace JobXml
