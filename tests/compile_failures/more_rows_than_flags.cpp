// SPDX-License-Identifier: MIT
#include "framework/Scalar.h"
#include "framework/Table.h"

using namespace JobXml;

extern const QString nameOfMany;

struct ManyData
{
    bool m0 = false;
    bool m1 = false;
    bool m2 = false;
    bool m3 = false;
    bool m4 = false;
    bool m5 = false;
    bool m6 = false;
    bool m7 = false;
    bool m8 = false;
    bool m9 = false;
    bool m10 = false;
    bool m11 = false;
    bool m12 = false;
    bool m13 = false;
    bool m14 = false;
    bool m15 = false;
#ifndef CORRECTED
    bool m16 = false;
#endif
};

constexpr Scalar m0{0, "m0", 1, &ManyData::m0, NoTraits};
constexpr Scalar m1{1, "m1", 2, &ManyData::m1, NoTraits};
constexpr Scalar m2{2, "m2", 3, &ManyData::m2, NoTraits};
constexpr Scalar m3{3, "m3", 4, &ManyData::m3, NoTraits};
constexpr Scalar m4{4, "m4", 5, &ManyData::m4, NoTraits};
constexpr Scalar m5{5, "m5", 6, &ManyData::m5, NoTraits};
constexpr Scalar m6{6, "m6", 7, &ManyData::m6, NoTraits};
constexpr Scalar m7{7, "m7", 8, &ManyData::m7, NoTraits};
constexpr Scalar m8{8, "m8", 9, &ManyData::m8, NoTraits};
constexpr Scalar m9{9, "m9", 10, &ManyData::m9, NoTraits};
constexpr Scalar m10{10, "m10", 11, &ManyData::m10, NoTraits};
constexpr Scalar m11{11, "m11", 12, &ManyData::m11, NoTraits};
constexpr Scalar m12{12, "m12", 13, &ManyData::m12, NoTraits};
constexpr Scalar m13{13, "m13", 14, &ManyData::m13, NoTraits};
constexpr Scalar m14{14, "m14", 15, &ManyData::m14, NoTraits};
constexpr Scalar m15{15, "m15", 16, &ManyData::m15, NoTraits};
#ifndef CORRECTED
constexpr Scalar m16{16, "m16", 17, &ManyData::m16, NoTraits};
#endif

#ifdef CORRECTED
constexpr Table members{m0, m1, m2, m3, m4, m5, m6, m7, m8, m9, m10, m11, m12, m13, m14, m15};
#else
constexpr Table members{m0, m1, m2, m3, m4, m5, m6, m7, m8, m9, m10, m11, m12, m13, m14, m15, m16};
#endif
constexpr ClassInfo many = describe<ManyData, members>(nameOfMany, 1);
