// SPDX-License-Identifier: MIT
#include "SmallestBlocks.h"

#include <cstdlib>

namespace Bench {
namespace {

constexpr std::size_t header = 8; // the number of owners and the set flags
constexpr std::size_t pointer = sizeof(void *);
constexpr std::size_t nested = 3 * pointer; // an object inside of another: virtual table, block, what the tree shares

class Blocks
{
public:
    explicit Blocks(std::vector<std::size_t> &sizes) : m_sizes(sizes) { }

    void add(const PlainDocument &document)
    {
        object(12 * pointer);
        text(document.version);
        text(document.name);
        text(document.baseresource);
        text(document.connectableResources);
        text(document.parentBaseResource);
        if (!document.startupModes.isEmpty()) {
            object(pointer);
            m_sizes.push_back(sizeof(QArrayData) + std::size_t(document.startupModes.size()));
        }
        list(document.bandwidths, [&](const PlainBandwidth &bandwidth) {
            object(pointer + sizeof(double));
            text(bandwidth.name);
        });
        list(document.components, [&](const PlainComponent &component) {
            object(5 * pointer);
            text(component.type);
            text(component.name);
            text(component.displayName);
            list(component.nodes, [&](const PlainNode &node) {
                object(2 * pointer);
                text(node.id);
                list(node.values, [&](const PlainValue &value) { add(value); });
            });
        });
    }

private:
    void add(const PlainValue &value)
    {
        object(pointer + 16); // the choice and what is chosen
        switch (value.kind) {
        case Kind::Boolean:
        case Kind::Float:
        case Kind::Int:
        case Kind::Int64:
        case Kind::String:
            object(pointer + 8);
            break;
        case Kind::NumericFloat:
        case Kind::NumericInt:
            object(pointer + 4 * 4);
            break;
        case Kind::NumericInt64:
            object(pointer + 4 * 8);
            break;
        case Kind::Selection:
            object(3 * pointer + sizeof(double) + sizeof(qint32));
            break;
        case Kind::StringList:
            object(3 * pointer);
        }
        text(value.id);
        text(value.text);
        list(value.items, [&](const PlainItem &item) {
            object(value.kind == Kind::Selection ? pointer + sizeof(double) : pointer);
            text(item.text);
        });
    }

    void object(std::size_t members) { m_sizes.push_back(header + members); }

    void text(const QString &text)
    {
        if (!text.isEmpty())
            m_sizes.push_back(sizeof(QArrayData) + std::size_t(text.size() + 1) * sizeof(QChar));
    }

    template <class List, class Add>
    void list(const List &list, const Add &add)
    {
        if (list.isEmpty())
            return;
        m_sizes.push_back(sizeof(QArrayData) + std::size_t(list.size()) * nested);
        for (const auto &item : list)
            add(item);
    }

    std::vector<std::size_t> &m_sizes;
};

} // namespace

std::vector<std::size_t> smallestBlocks(const PlainDocument &document)
{
    std::vector<std::size_t> sizes;
    Blocks(sizes).add(document);
    return sizes;
}

void makeAndFree(const std::vector<std::size_t> &sizes, std::vector<void *> &blocks)
{
    blocks.resize(sizes.size());
    for (std::size_t i = 0; i < sizes.size(); ++i)
        blocks[i] = std::malloc(sizes[i]); // NOLINT
    for (void *const block : blocks)
        std::free(block); // NOLINT
}

} // namespace Bench
