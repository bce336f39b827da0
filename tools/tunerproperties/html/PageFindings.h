// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>

#include "documents/Validate.h"

/// What a page says about its document: problems, which make it invalid, and warnings. As many as are listed, and the
/// number of all.
///
/// A finding is shown at the object of its steps, beside the value of its member if it has one.
struct PageFindings
{
    PageFindings() = default;
    /// The problems; warnings are added.
    PageFindings(const Findings &found) : listed(found.listed()), problems(found.count()) { }

    qint64 count() const { return problems + warnings; }

    QVector<Finding> listed;
    qint64 problems = 0;
    qint64 warnings = 0;
};
