// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <tunerdocuments/Document.h>

class FileName;

/// What the commands share that write a page for a browser.
namespace HtmlPage {

/// The name of a file on a page, without its folder.
QString sourceOf(const FileName &name);

/// Throws FileFailure if the document has more objects than a browser can show: an empty one takes four bytes of a
/// record and a kilobyte of a page. `instead` is the command that can show it.
void checkSize(const TunerDocuments::Document &document, const QString &shownName, const QString &instead);

} // namespace HtmlPage
