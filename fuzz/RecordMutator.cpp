// SPDX-License-Identifier: MIT
#include "RecordMutator.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <random>

#include <QByteArray>

#include "RecordTree.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maxSize);

namespace Fuzz {

namespace {

using Random = std::minstd_rand;

constexpr std::size_t WordSize = 4;

// Every tag of the model, so that members occur where the corpus has none yet.
constexpr std::uint32_t tags[] = {
#include "Tags.inc"
};

constexpr std::uint32_t lies[] = {1, 4, 8, 0u - 1, 0u - 4, 0u - 8, 0x7FFFFFFF, 0x80000000, 0x10000, 0x7F000000};

std::size_t below(Random &random, std::size_t limit)
{
    return limit == 0 ? 0 : std::size_t(random()) % limit;
}

template <class Range>
auto &oneOf(Random &random, Range &range)
{
    return range[below(random, std::size(range))];
}

void collect(RecordNode &node, std::vector<RecordNode *> &nodes)
{
    nodes.push_back(&node);
    for (RecordNode &child : node.children)
        collect(child, nodes);
}

RecordNode &anyNode(Random &random, RecordNode &root, bool withChildren)
{
    std::vector<RecordNode *> nodes;
    collect(root, nodes);
    if (withChildren) {
        nodes.erase(
            std::remove_if(nodes.begin(), nodes.end(), [](const RecordNode *node) { return node->children.empty(); }),
            nodes.end());
        if (nodes.empty())
            return root;
    }
    return *oneOf(random, nodes);
}

void mutatePayload(std::string &payload)
{
    constexpr std::size_t room = 64;
    const std::size_t size = payload.size();
    payload.resize(size + room);
    payload.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t *>(payload.data()), size, payload.size()));
}

/// A payload that begins with its own length, as texts do.
void mutateText(std::string &payload)
{
    std::string text = payload.size() >= WordSize ? payload.substr(WordSize) : payload;
    mutatePayload(text);
    payload.clear();
    appendWord(payload, std::uint32_t(text.size()));
    payload += text;
}

RecordNode newMember(Random &random)
{
    RecordNode member;
    member.tag = oneOf(random, tags);
    switch (below(random, 4)) {
    case 0:
        member.payload = std::string(8, '\0');
        member.payload.back() = char(below(random, 256));
        break;
    case 1:
        member.payload = std::string(1, char(below(random, 2)));
        break;
    case 2:
        appendWord(member.payload, 1);
        member.payload += 'x';
        break;
    default:
        break; // an empty object, or an incomplete member
    }
    return member;
}

void mutateTree(Random &random, RecordNode &root)
{
    enum Change { Erase, Repeat, RepeatOften, Swap, Transplant, Retag, LieAboutLength, LieAboutCount, Insert, Payload };
    static constexpr Change changes[] = {Erase,          Repeat,        RepeatOften, Swap,    Transplant, Retag,  Retag,
                                         LieAboutLength, LieAboutCount, Insert,      Payload, Payload,    Payload};
    RecordNode &parent = anyNode(random, root, true);
    const std::size_t index = below(random, parent.children.size());
    switch (oneOf(random, changes)) {
    case Erase:
        if (!parent.children.empty())
            parent.children.erase(parent.children.begin() + std::ptrdiff_t(index));
        break;
    case Repeat:
    case RepeatOften:
        if (!parent.children.empty()) {
            const RecordNode child = parent.children[index];
            const std::size_t times = std::size_t(1) << below(random, 5);
            parent.children.insert(parent.children.begin() + std::ptrdiff_t(index), times, child);
        }
        break;
    case Swap:
        if (!parent.children.empty())
            std::swap(parent.children[index], oneOf(random, parent.children));
        break;
    case Transplant: {
        RecordNode copy = anyNode(random, root, false);
        parent.children.insert(parent.children.begin() + std::ptrdiff_t(index), std::move(copy));
        break;
    }
    case Retag:
        anyNode(random, root, false).tag = oneOf(random, tags);
        break;
    case LieAboutLength:
        anyNode(random, root, false).lengthLie = oneOf(random, lies);
        break;
    case LieAboutCount:
        parent.countLie = oneOf(random, lies);
        break;
    case Insert:
        if (root.shape == RecordNode::Shape::Payload) {
            root.shape = RecordNode::Shape::Members;
            root.children = {newMember(random)};
        } else {
            parent.children.insert(parent.children.begin() + std::ptrdiff_t(index), newMember(random));
        }
        break;
    case Payload: {
        RecordNode &node = anyNode(random, root, false);
        if (node.shape != RecordNode::Shape::Payload)
            break;
        const bool isText =
            node.payload.size() >= WordSize && wordAt(node.payload, 0) == node.payload.size() - WordSize;
        if (isText && below(random, 4) != 0)
            mutateText(node.payload);
        else
            mutatePayload(node.payload);
        break;
    }
    }
}

std::size_t put(const std::string &head, const RecordNode &root, std::uint8_t *out, std::size_t maxSize)
{
    std::string bytes = head;
    const std::string members = writeRecord(root);
    appendWord(bytes, std::uint32_t(members.size()) + root.lengthLie);
    bytes += members;
    const std::size_t size =
        std::min(bytes.size(), maxSize); // truncated if there is no space, which is also a mutation
    std::memcpy(out, bytes.data(), size);
    return size;
}

std::string mutatedRecord(Random &random, const std::string &members)
{
    RecordNode root = parseRecord(members, true);
    const std::size_t times = 1 + below(random, 4);
    for (std::size_t i = 0; i < times; ++i)
        mutateTree(random, root);
    return writeRecord(root);
}

} // namespace

std::size_t mutatePlainly(std::uint8_t *data, std::size_t size, std::size_t maxSize, unsigned)
{
    return LLVMFuzzerMutate(data, size, maxSize);
}

std::size_t mutateRecord(std::uint8_t *data, std::size_t size, std::size_t maxSize, unsigned seed, Framing framing)
{
    Random random(seed);
    const std::size_t headSize = std::size_t(framing);
    if (size < headSize + WordSize || below(random, 8) == 0)
        return LLVMFuzzerMutate(data, size, maxSize);

    const std::string input(reinterpret_cast<const char *>(data), size);
    RecordNode root = parseRecord(input.substr(headSize + WordSize), true);
    const std::size_t times = 1 + below(random, 4);
    for (std::size_t i = 0; i < times; ++i)
        mutateTree(random, root);
    return put(input.substr(0, headSize), root, data, maxSize);
}

std::size_t crossRecords(View first, View second, std::uint8_t *out, std::size_t maxSize, unsigned seed,
                         Framing framing)
{
    Random random(seed);
    const std::size_t headSize = std::size_t(framing);
    if (std::min(first.size, second.size) < headSize + WordSize)
        return 0;
    const std::string target(reinterpret_cast<const char *>(first.data), first.size);
    const std::string source(reinterpret_cast<const char *>(second.data), second.size);
    RecordNode root = parseRecord(target.substr(headSize + WordSize), true);
    RecordNode other = parseRecord(source.substr(headSize + WordSize), true);
    RecordNode &parent = anyNode(random, root, true);
    const std::size_t index = below(random, parent.children.size() + 1);
    parent.children.insert(parent.children.begin() + std::ptrdiff_t(index), anyNode(random, other, false));
    if (root.shape == RecordNode::Shape::Payload)
        root.shape = RecordNode::Shape::Members;
    return put(target.substr(0, headSize), root, out, maxSize);
}

std::size_t mutateCompressed(std::uint8_t *data, std::size_t size, std::size_t maxSize, unsigned seed)
{
    // class byte, leading word, length; then the compressed leading word, length and members
    constexpr std::size_t headSize = 1 + 2 * WordSize;
    constexpr std::size_t largestPlain = 1 << 20;
    Random random(seed);
    const std::string input(reinterpret_cast<const char *>(data), size);
    if (size < headSize + WordSize || wordAt(input, headSize) > largestPlain || below(random, 8) == 0)
        return LLVMFuzzerMutate(data, size, maxSize);

    const QByteArray plain = qUncompress(data + headSize, int(size - headSize));
    if (std::size_t(plain.size()) < 2 * WordSize)
        return LLVMFuzzerMutate(data, size, maxSize);
    std::string changed = plain.left(WordSize).toStdString();
    const std::string members = mutatedRecord(random, plain.mid(2 * WordSize).toStdString());
    appendWord(changed, std::uint32_t(members.size()));
    changed += members;

    const QByteArray packed = qCompress(reinterpret_cast<const uchar *>(changed.data()), int(changed.size()), 1);
    std::string bytes = input.substr(0, 1 + WordSize);
    appendWord(bytes, std::uint32_t(packed.size()));
    bytes += packed.toStdString();
    if (bytes.size() > maxSize)
        return LLVMFuzzerMutate(data, size, maxSize);
    std::memcpy(data, bytes.data(), bytes.size());
    return bytes.size();
}

} // namespace Fuzz
