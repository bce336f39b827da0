// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QString>

#include <jobxml/TunerProperties.h>

/// The document as an indented tree: an object on each line with all its values, what it contains below it. The values
/// of the document itself have a line each. Numbers are shown exactly, texts in quotes; what is not set is marked.
/// Lines come without their ends, each as soon as it is complete: a tree may be much larger than its document.
void show(const JobXml::TunerProperties &document, const std::function<void(const QString &line)> &lines);
