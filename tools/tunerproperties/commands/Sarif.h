// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include "batch/Batch.h"

/// The findings of many documents as one document in the Static Analysis Results Interchange Format, version 2.1.0,
/// which tools for code review read. It is written piece by piece.
namespace Sarif {

/// Everything before the first result: the tool and its rules.
QByteArray begin();

/// The results of a file, with commas in between; none if nothing was found.
QByteArray results(const Outcome &outcome);

/// Everything after the last result. `errors` are those about files that could not be read.
QByteArray end(const QStringList &errors);

} // namespace Sarif
