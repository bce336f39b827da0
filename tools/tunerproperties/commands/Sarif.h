// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayList>

#include "batch/Batch.h"

/// The findings of many documents as one document in the Static Analysis Results Interchange Format, version 2.1.0,
/// which tools for code review read. It is written piece by piece.
namespace Sarif {

/// Everything before the first result: the tool and its rules.
QByteArray begin();

/// The results of a file, with commas in between; none if nothing was found.
QByteArray results(const Outcome &outcome);

/// What the end says about a file: why it could not be read, and how many findings are not among the results.
QByteArrayList notifications(const Outcome &outcome);

/// Everything after the last result, with the notifications about all files.
QByteArray end(ExitStatus status, const QByteArrayList &notifications);

} // namespace Sarif
