// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QByteArray>
#include <QString>

#include <jobxml/TunerProperties.h>

#include "html/PageFindings.h"

/// Writes the document as a page for a browser, in UTF-8: a single file that needs no network and cannot change the
/// document. Findings are shown at their values. `source` is the name of the file. The page is written piece by piece,
/// since it may be much larger than the document.
void html(const JobXml::TunerProperties &document, const PageFindings &findings, const QString &source,
          const std::function<void(const QByteArray &)> &write);
