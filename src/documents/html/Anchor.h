// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace TunerDocuments {

/// The identifier of an element for the item of a path, which is also the fragment of a link to it: the path, with
/// every character encoded that a link would change. Decoding it like any link returns the path.
QString anchorOf(const QString &path);

} // namespace TunerDocuments
