// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include <QByteArray>
#include <QString>

/// Something that a validating reader refuses, and where it stands: line and column count from 1.
struct XmlProblem
{
    int line = 0;
    int column = 0;
    QString message;
};

/// All that a validating reader would refuse in a document but cannot be seen any more once the document is read: an
/// unknown element, an empty boolean, the name of no type or mode. In the order of the document, which is to be well
/// formed and a TunerProperties; where it is not, the error of the reader comes last. None is kept: each is passed to
/// the action.
void findXmlProblems(const QByteArray &document, const std::function<void(const XmlProblem &)> &action);

/// What a validating reader refuses first, whatever it is, and where the reader was then.
std::optional<XmlProblem> firstXmlRefusal(const QByteArray &document);
