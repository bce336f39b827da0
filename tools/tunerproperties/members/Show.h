// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <jobxml/TunerProperties.h>

/// The document as an indented tree: an object on each line with all its values, what it contains below it. The values
/// of the document itself have a line each. Numbers are shown exactly, texts in quotes; what is not set is marked.
QString show(const JobXml::TunerProperties &document);
