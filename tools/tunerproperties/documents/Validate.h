// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <jobxml/TunerProperties.h>

#include "documents/Forms.h"
#include "documents/Input.h"

/// A reason for which a document would be refused. Either it has a place in an XML file, line and column counting from
/// 1, or a path in the document, which is empty for what the document as such lacks.
struct Finding
{
    QStringList path;
    int line = 0;
    int column = 0;
    QString message;
    QVector<JobXml::Step> steps = {}; ///< the path, for programs

    bool hasPlace() const { return line > 0; }

    /// "FILE:LINE:COLUMN: message" or "FILE: PATH: message"
    QString text(const QString &fileName) const;
};

/// Every reason for which the document would be refused while validating, by its reader or by a writer. The document is
/// the one that was loaded from the input while not validating.
QVector<Finding> findProblems(const JobXml::TunerProperties &document, Input &input, Form form);
