// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QString>

#include <jobxml/TunerProperties.h>

#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// Shows the document as an indented tree: a line for each object with all its values, followed by the objects in it.
/// The values of the document itself have a line each. Numbers are exact, texts are quoted; members that are not set
/// are marked. Lines are passed without their ends, each as soon as it is complete: a tree may be much larger than its
/// document.
TUNERDOCUMENTS_EXPORT void show(const JobXml::TunerProperties &document,
                                const std::function<void(const QString &line)> &lines);

} // namespace TunerDocuments
