// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QString>
#include <QVariant>
#include <QVector>

#include <tunerdocuments/Finding.h>

namespace TunerDocuments {

/// What people need besides the text of the model: the value, what is accepted instead, and what was probably meant.
namespace Explanation {

/// Explains a problem whose member has that text in the document, or the problem of an element with that name if it
/// has no member. A null text is not known. The steps lead to the object.
void explainText(Finding &problem, const QVector<JobXml::Step> &steps, const QString &text);

/// Explains a problem whose member, an enumeration, has a value without a name. Its choices are known.
void explainNumber(Finding &problem, int number);

/// The first value without a name in that of an enumeration or a list of them.
std::optional<int> numberIn(const QVariant &value);

} // namespace Explanation

} // namespace TunerDocuments
