// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/TunerProperties.h>

#include "Documents.h"
#include "Model.h"
#include "Objects.h"
#include "damage/CompactDocument.h"

/// The lists of objects in an object and everything below it that have at least `items` items, as "Component.Node".
inline QSet<QString> listsWith(int items, const JobXml::DataObject &object)
{
    QSet<QString> lists;
    JobXml::visit(object, [&](const JobXml::MemberView &member) {
        if (member.GetKind() == JobXml::MemberKind::ObjectList && member.GetSize() >= items)
            lists += object.GetObjectName() + QLatin1Char('.') + member.GetName();
        for (int i = 0; i < member.GetSize(); ++i)
            lists += listsWith(items, member.GetChild(i));
    });
    return lists;
}

/// A document with every member of every class and every kind of value, and at least two items in every list of
/// objects: a failure at the second must not change the first.
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
    const QSet<QString> shorter = listsWith(0, document) - listsWith(2, document);
    if (!shorter.isEmpty())
        qFatal("no list %s has a second item", qUtf8Printable(shorter.values().join(QStringLiteral(", "))));
    return document;
}

template <>
inline const Samples<JobXml::TunerProperties> &samples()
{
    static const Samples<JobXml::TunerProperties> documents(completeDocument(), aDocument(1));
    return documents;
}
