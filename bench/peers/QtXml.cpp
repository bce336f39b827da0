// SPDX-License-Identifier: MIT
//
// Peer: Qt's own document object model.
#include "Operations.h"

#include <QDomDocument>

namespace Bench {
namespace {

void read(const Sample &sample, QDomDocument &document)
{
    document.setContent(sample.xml);
}

/// Calls a function for each child element of a name; an empty name is any.
template <class Function>
void forEach(const QDomElement &parent, const QString &name, const Function &function)
{
    for (QDomElement child = parent.firstChildElement(name); !child.isNull(); child = child.nextSiblingElement(name))
        function(child);
}

Summary summaryOf(const QDomDocument &document)
{
    Summary summary;
    forEach(document.documentElement(), QStringLiteral("Component"), [&](const QDomElement &component) {
        forEach(component, QStringLiteral("Node"), [&](const QDomElement &node) {
            ++summary.nodes;
            summary.add(node.attribute(QStringLiteral("id")));
            forEach(node, QStringLiteral("ValueItem"), [&](const QDomElement &item) {
                ++summary.values;
                summary.add(item.firstChildElement().attribute(QStringLiteral("id")));
            });
        });
    });
    return summary;
}

} // namespace

void addQtXml(std::vector<Operation> &operations)
{
    operations.push_back(
        reader<QDomDocument>("QDomDocument read", "", read, [](const Sample &sample, const QDomDocument &document) {
            return difference(sample, summaryOf(document));
        }));
}

} // namespace Bench
