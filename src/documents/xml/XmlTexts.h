// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>

#include <reportbase/XmlMarkup.h>

namespace TunerDocuments {

/// Where texts are between the tags of a document: without comments, processing instructions and elements. A CDATA
/// section is one, with its marks.
namespace XmlTexts {

/// The texts of an element's content.
QVector<REPORTGENERATOR::XmlMarkup::Span> inElement(const REPORTGENERATOR::XmlMarkup &markup, int element);

/// The texts of a part that begins outside of any tag. `element` is the first one that begins in it or after it.
QVector<REPORTGENERATOR::XmlMarkup::Span> inPart(const REPORTGENERATOR::XmlMarkup &markup,
                                                 REPORTGENERATOR::XmlMarkup::Span part, int element);

} // namespace XmlTexts

} // namespace TunerDocuments
