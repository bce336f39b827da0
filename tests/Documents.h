// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/TunerProperties.h>

/// Complete and valid documents and parts of documents for tests.

inline JobXml::ValueInt anInt(int value = 1)
{
    JobXml::ValueInt object;
    object.Setid(QStringLiteral("number"));
    object.Setvalue(value);
    return object;
}

inline JobXml::ValueItem anIntItem(int value = 1)
{
    JobXml::ValueItem item;
    item.SetValueInt(anInt(value));
    return item;
}

inline JobXml::Node aNode(const QString &id = QStringLiteral("att"), int items = 1)
{
    JobXml::Node node;
    node.Setid(id);
    for (int i = 0; i < items; ++i)
        node.AppendValueItem(anIntItem(i));
    return node;
}

inline JobXml::Component aComponent(const QString &name = QStringLiteral("Preselector"), int nodes = 1)
{
    JobXml::Component component;
    component.Settype(QStringLiteral("Filter"));
    component.Setname(name);
    component.Setoptional(false);
    for (int i = 0; i < nodes; ++i)
        component.AppendNode(aNode(QStringLiteral("node%1").arg(i)));
    return component;
}

inline JobXml::BandwidthSelection aBandwidth(double bandwidth = 1500000)
{
    JobXml::BandwidthSelection selection;
    selection.SetName(QStringLiteral("wide"));
    selection.SetMaxBandwidth(bandwidth);
    return selection;
}

/// An incomplete document with only that node.
inline JobXml::TunerProperties aDocumentWith(const JobXml::Node &node)
{
    JobXml::Component component;
    component.SetValidate(false);
    component.AppendNode(node);
    JobXml::TunerProperties document;
    document.SetValidate(false);
    document.AppendComponent(component);
    return document;
}

/// A document with a start-up mode, a bandwidth and a component.
inline JobXml::TunerProperties aDocument(int nodes = 2)
{
    JobXml::TunerProperties document;
    document.Settype(JobXml::TunerProperties::type::Receiver);
    document.Setbaseresource(QStringLiteral("RX1"));
    document.GetStartupModes().AppendStartupMode(JobXml::StartupModes::StartupMode::FFM);
    document.AppendBandwidthSelection(aBandwidth());
    document.AppendComponent(aComponent(QStringLiteral("Preselector"), nodes));
    return document;
}
