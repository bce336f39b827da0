// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "PlainStructs.h"

namespace Bench {

/// The smallest set of heap blocks that a tree of shared objects can consist of, which is what copying, checking and
/// comparing are measured against:
///  - for each object a block with the number of its owners, its set flags and its members. Objects are values with
///    virtual functions, as the accessors give them out: inside of a list or another object each takes three pointers,
///    to its virtual table, to its block, and to what a tree shares (flag and logger);
///  - for each list a block with a header as QVector's and the objects inside;
///  - for each text that is not empty, a block as QString's: its header, the text, a final null.
/// In the order in which a reader meets them: an object, its texts, its lists.
std::vector<std::size_t> smallestBlocks(const PlainDocument &document);

/// Allocates the blocks and frees them, in the same order. `blocks` is where they are kept meanwhile.
void makeAndFree(const std::vector<std::size_t> &sizes, std::vector<void *> &blocks);

} // namespace Bench
