// SPDX-License-Identifier: MIT
//
// Peer: the C++/Tree mapping of CodeSynthesis XSD, generated from the project's schema while building.
#include "Operations.h"

#include <memory>
#include <sstream>

#include <xercesc/util/PlatformUtils.hpp>

#include "tuner-properties.hxx"

namespace Bench {
namespace {

using Tree = std::unique_ptr<Peer::TunerPropertiesType>;

/// Once for the program, instead of in each call.
struct Platform
{
    Platform() { xercesc::XMLPlatformUtils::Initialize(); }
    ~Platform() { xercesc::XMLPlatformUtils::Terminate(); }
    Platform(const Platform &) = delete;
    Platform &operator=(const Platform &) = delete;
};

void read(const Sample &sample, Tree &tree)
{
    std::istringstream stream(std::string(sample.xml.constData(), std::size_t(sample.xml.size())));
    tree = Peer::TunerProperties(stream, xml_schema::flags::dont_validate | xml_schema::flags::dont_initialize);
}

std::string write(const Peer::TunerPropertiesType &tree)
{
    std::ostringstream stream;
    Peer::TunerProperties(stream, tree, xml_schema::namespace_infomap(), "UTF-8", xml_schema::flags::dont_initialize);
    return stream.str();
}

std::string idOf(const Peer::ValueItemType &item)
{
    if (item.ValueBoolean())
        return item.ValueBoolean()->id();
    if (item.ValueFloat())
        return item.ValueFloat()->id();
    if (item.ValueInt())
        return item.ValueInt()->id();
    if (item.ValueInt64())
        return item.ValueInt64()->id();
    if (item.ValueNumericFloat())
        return item.ValueNumericFloat()->id();
    if (item.ValueNumericInt())
        return item.ValueNumericInt()->id();
    if (item.ValueNumericInt64())
        return item.ValueNumericInt64()->id();
    if (item.ValueSelection())
        return item.ValueSelection()->id();
    if (item.ValueString())
        return item.ValueString()->id();
    return item.ValueStringList()->id();
}

Summary summaryOf(const Peer::TunerPropertiesType &tree)
{
    Summary summary;
    const auto add = [&](const std::string &id) { summary.add(id.data(), id.size()); };
    for (const Peer::ComponentType &component : tree.Component()) {
        for (const Peer::NodeType &node : component.Node()) {
            ++summary.nodes;
            add(node.id());
            for (const Peer::ValueItemType &item : node.ValueItem()) {
                ++summary.values;
                add(idOf(item));
            }
        }
    }
    return summary;
}

Operation treeWriter()
{
    Operation operation;
    operation.name = "C++/Tree write";
    operation.prepare = [](Sample &sample) {
        const auto tree = std::make_shared<Tree>();
        read(sample, *tree);
        return Run{[tree] { write(**tree); }};
    };
    operation.verify = [](Sample &sample) {
        Tree tree;
        read(sample, tree);
        JobXml::TunerProperties document;
        const bool isRead = document.SetXmlString(QString::fromStdString(write(*tree)), true);
        return isRead && document == sample.document ? QString() : QStringLiteral("another document is written");
    };
    return operation;
}

} // namespace

void addCodeSynthesis(std::vector<Operation> &operations)
{
    static const Platform platform;
    operations.push_back(reader<Tree>("C++/Tree read", "", read, [](const Sample &sample, const Tree &tree) {
        return difference(sample, summaryOf(*tree));
    }));
    operations.push_back(treeWriter());
}

} // namespace Bench
