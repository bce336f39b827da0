// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/TunerProperties.h>

#include "Documents.h"
#include "Objects.h"
#include "damage/CompactDocument.h"

/// A document with every member of every class and every kind of value, and at least two items in every list: a failure
/// at the second must not change the first.
inline JobXml::TunerProperties completeDocument()
{
    JobXml::TunerProperties document = Damage::compactDocument();
    document.AppendBandwidthSelection(aBandwidth());
    document.AppendComponent(aComponent(QStringLiteral("second")));
    JobXml::Component &first = document.GetComponent().first();
    first.AppendNode(aNode());
    for (JobXml::ValueItem &item : first.GetNode().first().GetValueItem()) {
        if (item.IsValueSelectionSet()) {
            JobXml::SelectionItem option;
            option.Setname(QStringLiteral("j"));
            option.Setvalue(2);
            item.GetValueSelection().AppendSelectionItem(option);
        } else if (item.IsValueStringListSet()) {
            JobXml::StringItem text;
            text.Setvalue(QStringLiteral("z"));
            item.GetValueStringList().AppendStringItem(text);
        }
    }
    return document;
}

template <>
inline const Samples<JobXml::TunerProperties> &samples()
{
    static const Samples<JobXml::TunerProperties> documents(completeDocument(), aDocument(1));
    return documents;
}
