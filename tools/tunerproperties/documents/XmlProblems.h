// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include <QByteArray>
#include <QString>

/// A problem that a validating reader reports, and its location: line and column, counted from 1.
struct XmlProblem
{
    int line = 0;
    int column = 0;
    QString message;
};

/// Finds everything that a validating reader rejects but that is not in the document once it is read: an unknown
/// element, an empty boolean, an unknown name of a type or mode. The problems are in document order. The document
/// should be a well-formed TunerProperties; otherwise the error of the XML reader comes last. Each problem is passed to
/// the action and not kept.
void findXmlProblems(const QByteArray &document, const std::function<void(const XmlProblem &)> &action);

/// The first error of a validating reader, and its location.
std::optional<XmlProblem> firstXmlRefusal(const QByteArray &document);
