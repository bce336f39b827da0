// SPDX-License-Identifier: MIT
#include "RecordTree.h"

namespace Fuzz {

namespace {

constexpr std::size_t WordSize = 4;
constexpr int DeepestNesting = 12; // the model's is 9

RecordNode parse(const std::string &bytes, int depth);

/// Reads length and payload at `position`, and advances it.
bool takePayload(const std::string &bytes, std::size_t &position, std::string &payload)
{
    if (bytes.size() - position < WordSize)
        return false;
    const std::uint32_t length = wordAt(bytes, position);
    position += WordSize;
    if (length > bytes.size() - position)
        return false;
    payload = bytes.substr(position, length);
    position += length;
    return true;
}

bool parseMembers(const std::string &bytes, int depth, std::vector<RecordNode> &members)
{
    std::size_t position = 0;
    while (position < bytes.size()) {
        if (bytes.size() - position < WordSize)
            return false;
        const std::uint32_t tag = wordAt(bytes, position);
        position += WordSize;
        std::string payload;
        if (!takePayload(bytes, position, payload))
            return false;
        members.push_back(parse(payload, depth + 1));
        members.back().tag = tag;
    }
    return true;
}

bool parseItems(const std::string &bytes, int depth, std::vector<RecordNode> &items)
{
    const std::uint32_t count = wordAt(bytes, 0);
    std::size_t position = WordSize;
    if (count > bytes.size() / WordSize)
        return false;
    for (std::uint32_t i = 0; i < count; ++i) {
        std::string payload;
        if (!takePayload(bytes, position, payload))
            return false;
        items.push_back(parse(payload, depth + 1));
    }
    return position == bytes.size();
}

RecordNode parse(const std::string &bytes, int depth)
{
    constexpr std::size_t numberSize = 8;
    RecordNode node;
    node.payload = bytes;
    const bool isText = bytes.size() >= WordSize && wordAt(bytes, 0) == bytes.size() - WordSize;
    if (depth > DeepestNesting || bytes.size() < WordSize || bytes.size() == numberSize || (isText && bytes.size() > 4))
        return node;

    std::vector<RecordNode> children;
    if (parseItems(bytes, depth, children)) {
        node.shape = RecordNode::Shape::Items;
    } else {
        children.clear();
        if (parseMembers(bytes, depth, children))
            node.shape = RecordNode::Shape::Members;
        else
            children.clear();
    }
    node.children = std::move(children);
    return node;
}

} // namespace

std::uint32_t wordAt(const std::string &bytes, std::size_t position)
{
    std::uint32_t word = 0;
    for (std::size_t i = position; i < position + WordSize; ++i)
        word = word << 8 | static_cast<unsigned char>(bytes[i]);
    return word;
}

void appendWord(std::string &bytes, std::uint32_t word)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(word >> shift & 0xFF);
}

RecordNode parseRecord(const std::string &bytes, bool members)
{
    RecordNode node = parse(bytes, 0);
    if (members && node.shape != RecordNode::Shape::Members) {
        node.children.clear();
        if (parseMembers(bytes, 0, node.children))
            node.shape = RecordNode::Shape::Members;
    }
    return node;
}

std::string writeRecord(const RecordNode &node)
{
    if (node.shape == RecordNode::Shape::Payload)
        return node.payload;

    std::string bytes;
    if (node.shape == RecordNode::Shape::Items)
        appendWord(bytes, std::uint32_t(node.children.size()) + node.countLie);
    for (const RecordNode &child : node.children) {
        if (node.shape == RecordNode::Shape::Members)
            appendWord(bytes, child.tag);
        const std::string payload = writeRecord(child);
        appendWord(bytes, std::uint32_t(payload.size()) + child.lengthLie);
        bytes += payload;
    }
    return bytes;
}

} // namespace Fuzz
