// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QByteArray>
#include <QString>

#include <jobxml/TunerProperties.h>

#include <tunerdocuments/Export.h>
#include <tunerdocuments/Finding.h>

namespace TunerDocuments {

/// Writes the document as a page for a browser, in UTF-8: a single file that needs no network and cannot change the
/// document. `source` is the name of the file. The page is written piece by piece, since it may be much larger than the
/// document.
///
/// The page lists the problems and warnings that `findings` keeps at the top, with their paths, and shows each of them
/// at its object too, beside the value of its member if it has one. Nothing else is looked for: a page with empty
/// findings states that there are no problems. lint() with the text of the document finds most.
TUNERDOCUMENTS_EXPORT void html(const JobXml::TunerProperties &document, const Findings &findings,
                                const QString &source, const std::function<void(const QByteArray &)> &write);

/// The same with the problems that the check of the model finds (JobXml::DataObject::VisitProblems()) and the warnings
/// of lint(), of which the first 100 each are shown.
TUNERDOCUMENTS_EXPORT void html(const JobXml::TunerProperties &document, const QString &source,
                                const std::function<void(const QByteArray &)> &write);

/// Writes the differences of two documents as such a page, with the values of both side by side, and returns their
/// number: see findDifferences(). Added and removed items are shown whole. Takes memory in proportion to the
/// differences.
TUNERDOCUMENTS_EXPORT qint64 htmlOfDifferences(const JobXml::TunerProperties &first, const QString &firstSource,
                                               const JobXml::TunerProperties &second, const QString &secondSource,
                                               const std::function<void(const QByteArray &)> &write);

} // namespace TunerDocuments
