// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <tunerdocuments/Path.h>

/// How the parts of a path are written.
namespace TunerDocuments::Paths {

/// A text as it is after the "=" of a condition.
QString written(const QString &text);

/// "name=Pre"
QString written(const Path::Condition &condition);

/// "Component[type=Filter,name=Pre][2]"
QString written(const Path::Step &step);

} // namespace TunerDocuments::Paths
