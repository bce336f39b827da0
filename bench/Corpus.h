// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/TunerProperties.h>

namespace Bench {

/// How the nodes of a document are spread.
enum class Shape {
    Tree, ///< 20 to 50 nodes in each component
    Flat, ///< all nodes in one component
};

const char *nameOf(Shape shape);

/// A complete tuner description with so many nodes: 1 to 3 values per node, 1.45 on average, of all kinds, and 3 to
/// 8 items in each list. The same on every machine, since it is made from numbers of its own generator. All numbers
/// have two decimals at most, so that every encoding carries them exactly.
JobXml::TunerProperties document(Shape shape, int nodes);

} // namespace Bench
