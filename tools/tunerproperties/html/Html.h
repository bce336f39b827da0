// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <jobxml/TunerProperties.h>

#include "documents/Validate.h"

/// The document as a page for a browser, in UTF-8: one file that needs no other and no network, and that changes
/// nothing in the document. Problems stand at the objects that have them. `source` is the name of the file.
QByteArray html(const JobXml::TunerProperties &document, const QVector<Finding> &findings, const QString &source);
