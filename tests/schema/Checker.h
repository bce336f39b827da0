// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

/// The verdict of xmllint on one document.
struct Verdict
{
    bool accepted = false;
    bool refused = false;
    QStringList complaints;
};

/// Compares documents with a schema by xmllint.
class Checker
{
public:
    explicit Checker(const QString &schema) : m_schema(schema) { }

    /// One run of xmllint for all documents without a verdict, since starting it takes longer than checking. The test
    /// fails if there is no verdict on one of them.
    void check(const QStringList &documents);

    /// On a document that was checked.
    Verdict verdict(const QString &document) const { return m_verdicts.value(document); }

private:
    QString m_schema;
    QHash<QString, Verdict> m_verdicts; // by document
};
