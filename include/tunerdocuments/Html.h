// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QByteArray>
#include <QString>
#include <QVector>

#include <jobxml/TunerProperties.h>

#include <tunerdocuments/Export.h>
#include <tunerdocuments/Finding.h>

namespace TunerDocuments {

/// What a page says about its document: problems, which make it invalid, and warnings. A finding is shown at the object
/// of its steps, beside the value of its member if it has one, and in the list at the top with its path.
struct TUNERDOCUMENTS_EXPORT PageFindings
{
    PageFindings() = default; ///< No findings.
    /// The problems of a document; warnings can be added.
    PageFindings(const Findings &found) : listed(found.listed()), problems(found.count()) { }

    QVector<Finding> listed{}; ///< those that the page shows
    qint64 problems = 0; ///< the number of all problems, listed or not
    qint64 warnings = 0; ///< the number of all warnings, listed or not

    qint64 count() const { return problems + warnings; } ///< of all findings, listed or not
};

/// Adds warnings about values that contradict their range or their options, of which at most `most` are listed. Members
/// are recognized by the shape of the object: value, min and max; value, index and a list; a text and a list.
TUNERDOCUMENTS_EXPORT void addValueWarnings(const JobXml::TunerProperties &document, int most, PageFindings &findings);

/// Writes the document as a page for a browser, in UTF-8: a single file that needs no network and cannot change the
/// document. Findings are shown at their values. `source` is the name of the file. The page is written piece by piece,
/// since it may be much larger than the document.
TUNERDOCUMENTS_EXPORT void html(const JobXml::TunerProperties &document, const PageFindings &findings,
                                const QString &source, const std::function<void(const QByteArray &)> &write);

} // namespace TunerDocuments
