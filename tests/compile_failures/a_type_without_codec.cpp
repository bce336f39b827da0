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
    QString bytes;
#else
    QByteArray bytes;
#endif
};

constexpr Scalar id{0, "id", 0x10A4C001, &LampData::id, Attribute | Mandatory};
constexpr Scalar lit{1, "lit", 0x10A4C002, &LampData::lit, Attribute | Mandatory};
constexpr Scalar bytes{2, "bytes", 0x10A4C003, &LampData::bytes, Attribute};
constexpr Table members{id, lit, bytes};
constexpr ClassInfo lamp = describe<LampData, members>(nameOfLamp, 0x5EED0001);
