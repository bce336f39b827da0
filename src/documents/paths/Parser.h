// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

#include <tunerdocuments/Path.h>

namespace TunerDocuments::Paths {

/// The steps of a path. Throws PathFailure; see Path::parse().
QVector<Path::Step> parsed(const QString &path);

} // namespace TunerDocuments::Paths
