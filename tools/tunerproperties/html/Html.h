// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QByteArray>
#include <QString>

#include <jobxml/TunerProperties.h>

#include "documents/Validate.h"

/// The document as a page for a browser, in UTF-8: one file that needs no other and no network, and that changes
/// nothing in the document. Problems stand at the objects that have them. `source` is the name of the file.
/// It is written piece by piece, since it may be much larger than the document.
void html(const JobXml::TunerProperties &document, const Findings &findings, const QString &source,
          const std::function<void(const QByteArray &)> &write);
