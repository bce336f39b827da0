// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <jobxml/TunerProperties.h>

#include "Corpus.h"
#include "reference/PlainStructs.h"
#include "reference/TokenWriter.h"

namespace Bench {

/// A document of the corpus in all forms that operations need.
struct Sample
{
    Sample(Shape shape, int nodes);

    Shape shape;
    int nodes;

    /// Trees as readers leave them, so that no two objects share a text.
    JobXml::TunerProperties document;
    JobXml::TunerProperties twin; ///< equal to it
    JobXml::TunerProperties unvalidated; ///< equal too, not validating

    QByteArray xml; ///< as SaveXml() writes it
    QString text; ///< the same as text
    QTemporaryDir folder;
    QString file; ///< the path of a file with the same, in `folder`
    QByteArray records; ///< the tagged representation
    QByteArray snapshot;
    PlainDocument plain;
    QVector<Token> tokens;
    mutable std::string message; ///< protobuf's; written when it is first needed
};

/// The counts and sums of a document that every peer can determine, to compare what it has read.
struct Summary
{
    int nodes = 0;
    int values = 0;
    quint64 checksum = 14695981039346656037U; ///< of the ids of nodes and values, in order

    /// Adds the id of a node or value, in UTF-8.
    void add(const char *id, std::size_t size);
    void add(const QString &id);
    QString text() const;
};

/// The difference between a document and the result of a peer that has read it; null if there is none.
QString difference(const Sample &sample, const Summary &read);

} // namespace Bench
