// SPDX-License-Identifier: MIT
#include "values/Alternatives.h"

#include <jobxml/ValueItem.h>

namespace JobXml {

void Alternatives::copyFrom(const Alternatives &other, int kind)
{
    using Copy = void (Alternatives::*)(int, const DataObject &);
    static constexpr Copy copies[kinds] = {
        &Alternatives::copy<JobXml::ValueBoolean>,      &Alternatives::copy<JobXml::ValueFloat>,
        &Alternatives::copy<JobXml::ValueInt>,          &Alternatives::copy<JobXml::ValueInt64>,
        &Alternatives::copy<JobXml::ValueNumericFloat>, &Alternatives::copy<JobXml::ValueNumericInt>,
        &Alternatives::copy<JobXml::ValueNumericInt64>, &Alternatives::copy<JobXml::ValueSelection>,
        &Alternatives::copy<JobXml::ValueString>,       &Alternatives::copy<JobXml::ValueStringList>,
    };
    if (const DataObject *const object = other.find(kind)) {
        const Copy copyOfKind = copies[kind]; // read apart: g++'s check of bounds stumbles over it otherwise
        (this->*copyOfKind)(kind, *object);
    }
}

// Delegates, so that what is built already is destroyed if the next runs out of memory.
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
