// SPDX-License-Identifier: MIT
#include "values/Alternatives.h"

namespace JobXml {

template <class... T>
struct Alternatives::Copies
{
    static constexpr void (Alternatives::*ofKinds[])(int, const DataObject &) = {&Alternatives::copy<T>...};
};

void Alternatives::copyFrom(const Alternatives &other, int kind)
{
    if (const DataObject *const object = other.find(kind)) {
        const auto copy =
            Kinds::Into<Copies>::ofKinds[kind]; // a variable of its own avoids a false warning of g++'s bounds check
        (this->*copy)(kind, *object);
    }
}

// Delegates, so that the alternatives built so far are destroyed if the next one runs out of memory.
Alternatives::Alternatives(const Alternatives &other) : Alternatives()
{
    if (other.m_kindOfFirst >= 0)
        copyFrom(other, other.m_kindOfFirst);
    for (int kind = 0; other.m_others && kind < kinds; ++kind) {
        if (kind != other.m_kindOfFirst)
            copyFrom(other, kind);
    }
}

} // namespace JobXml
