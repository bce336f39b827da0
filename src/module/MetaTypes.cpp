// SPDX-License-Identifier: MIT
#include <jobxml/MetaTypes.h>

#include <QMetaType>

#include <jobxml/TunerProperties.h>

namespace JobXml {

void RegisterMetaTypes()
{
    qRegisterMetaType<TunerProperties>("JobXml::TunerProperties");
    qRegisterMetaType<StartupModes>("JobXml::StartupModes");
    qRegisterMetaType<BandwidthSelection>("JobXml::BandwidthSelection");
    qRegisterMetaType<Component>("JobXml::Component");
    qRegisterMetaType<Node>("JobXml::Node");
    qRegisterMetaType<ValueItem>("JobXml::ValueItem");
    qRegisterMetaType<ValueBoolean>("JobXml::ValueBoolean");
    qRegisterMetaType<ValueFloat>("JobXml::ValueFloat");
    qRegisterMetaType<ValueInt>("JobXml::ValueInt");
    qRegisterMetaType<ValueInt64>("JobXml::ValueInt64");
    qRegisterMetaType<ValueNumericFloat>("JobXml::ValueNumericFloat");
    qRegisterMetaType<ValueNumericInt>("JobXml::ValueNumericInt");
    qRegisterMetaType<ValueNumericInt64>("JobXml::ValueNumericInt64");
    qRegisterMetaType<ValueSelection>("JobXml::ValueSelection");
    qRegisterMetaType<SelectionItem>("JobXml::SelectionItem");
    qRegisterMetaType<ValueString>("JobXml::ValueString");
    qRegisterMetaType<ValueStringList>("JobXml::ValueStringList");
    qRegisterMetaType<StringItem>("JobXml::StringItem");
}

} // namespace JobXml
