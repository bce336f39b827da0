// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

#include <jobxml/TunerProperties.h>
#include <reportbase/XmlMarkup.h>

#include "documents/xml/XmlPlaces.h"

namespace TunerDocuments {

/// Null if the text of the object, without the objects in it, reads as the object of `tuner`; otherwise the first
/// difference: "MaxFFPDelay: 9223372036854775808 would be read as 0".
QString mismatchIn(const REPORTGENERATOR::XmlMarkup &markup, const XmlPlaces &places,
                   const JobXml::TunerProperties &tuner, const QVector<JobXml::Step> &object);

} // namespace TunerDocuments
