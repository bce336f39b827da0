// SPDX-License-Identifier: MIT
//
// Peer: pugixml's document object model.
#include "Operations.h"

#include <cstring>

#include <pugixml.hpp>

namespace Bench {
namespace {

void read(const Sample &sample, pugi::xml_document &document)
{
    document.load_buffer(sample.xml.constData(), std::size_t(sample.xml.size()));
}

Summary summaryOf(const pugi::xml_document &document)
{
    Summary summary;
    const auto add = [&](const char *id) { summary.add(id, std::strlen(id)); };
    for (const pugi::xml_node &component : document.document_element().children("Component")) {
        for (const pugi::xml_node &node : component.children("Node")) {
            ++summary.nodes;
            add(node.attribute("id").value());
            for (const pugi::xml_node &item : node.children("ValueItem")) {
                ++summary.values;
                add(item.first_child().attribute("id").value());
            }
        }
    }
    return summary;
}

} // namespace

void addPugixml(std::vector<Operation> &operations)
{
    operations.push_back(reader<pugi::xml_document>("pugixml read", "", read,
                                                    [](const Sample &sample, const pugi::xml_document &document) {
                                                        return difference(sample, summaryOf(document));
                                                    }));
}

} // namespace Bench
