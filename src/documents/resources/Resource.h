// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace TunerDocuments {

/// The content of a file that the library contains; tunerdocuments.qrc lists them.
QByteArray resource(const char *name);

} // namespace TunerDocuments
