// SPDX-License-Identifier: MIT
#include <jobxml/MetaTypes.h>

#include <QMetaType>

#include "module/Classes.h"

namespace JobXml {

void RegisterMetaTypes()
{
    Classes::forEach([](auto tag) {
        using Class = typename decltype(tag)::Class;
        qRegisterMetaType<Class>(("JobXml::" + Class::GetStaticObjectName().toLatin1()).constData());
    });
}

} // namespace JobXml
