// SPDX-License-Identifier: MIT
#include "framework/ChildList.h"
#include "framework/Scalar.h"
#include "framework/Table.h"

using namespace JobXml;

extern const QString nameOfLamp;

struct LampData
{
    QString id;
    bool lit = false;
#ifdef CORRECTED
    QString names;
#else
    QStringList names;
#endif
};

constexpr Scalar id{0, "id", 0x10A4C001, &LampData::id, Attribute | Mandatory};
constexpr Scalar lit{1, "lit", 0x10A4C002, &LampData::lit, Attribute | Mandatory};
constexpr Scalar names{2, "names", 0x10A4C003, &LampData::names, Attribute};
constexpr Table members{id, lit, names};
constexpr ClassInfo lamp = describe<LampData, members>(nameOfLamp, 0x5EED0001);
