// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace TunerDocuments {

/// Why a document cannot be changed in place.
struct CannotEdit
{
    QString why;
};

} // namespace TunerDocuments
