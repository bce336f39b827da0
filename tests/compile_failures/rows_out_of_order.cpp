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
};

constexpr Scalar id{0, "id", 0x10A4C001, &LampData::id, Attribute | Mandatory};
constexpr Scalar lit{1, "lit", 0x10A4C002, &LampData::lit, Attribute | Mandatory};

#ifdef CORRECTED
constexpr Table members{id, lit};
#else
constexpr Table members{lit, id};
#endif
constexpr ClassInfo lamp = describe<LampData, members>(nameOfLamp, 0x5EED0001);
