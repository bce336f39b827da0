// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Fuzz {

/// A record as a tree of the parts that a mutator may change: tags, lengths, counts and payloads. The meaning of the
/// bytes is guessed only from their form (lengths that fit exactly), so the tree knows no classes.
struct RecordNode
{
    enum class Shape {
        Payload, ///< bytes
        Members, ///< member records, each with a tag and a length
        Items, ///< a count, and items with a length each
    };

    std::uint32_t tag = 0; ///< meaningless in an item
    Shape shape = Shape::Payload;
    std::string payload;
    std::vector<RecordNode> children;
    std::uint32_t lengthLie = 0; ///< added to the true length when the node is written
    std::uint32_t countLie = 0; ///< added to the true count
};

/// The content after a length word: `members` if it is known that these are member records.
RecordNode parseRecord(const std::string &bytes, bool members);

/// The bytes of the node, without tag and length.
std::string writeRecord(const RecordNode &node);

std::uint32_t wordAt(const std::string &bytes, std::size_t position);
void appendWord(std::string &bytes, std::uint32_t word);

} // namespace Fuzz
