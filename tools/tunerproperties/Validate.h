// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <jobxml/TunerProperties.h>

#include "Forms.h"
#include "Input.h"

/// Every reason for which the document would be refused while validating, by its reader or by a writer, a line each:
/// "FILE:LINE:COLUMN: message" for what stands in an XML file, "FILE: PATH: message" for what the document lacks. The
/// document is the one that was loaded from the input while not validating.
QStringList findProblems(const JobXml::TunerProperties &document, Input &input, Form form);
