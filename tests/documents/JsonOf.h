// SPDX-License-Identifier: MIT
#pragma once

#include <jobxml/TunerProperties.h>

#include "JsonDocument.h"
#include "documents/json/JsonForm.h"

/// A document with these members as JSON; it need not be valid.
inline JobXml::TunerProperties documentOf(const QByteArray &members)
{
    JobXml::TunerProperties document;
    document.SetValidate(false);
    if (TunerDocuments::JsonForm::read(document, jsonWith(members)) != 0)
        qFatal("the JSON is not a document");
    return document;
}

/// Null if JSON cannot carry the document.
inline QByteArray jsonOf(const JobXml::TunerProperties &document)
{
    try {
        return TunerDocuments::JsonForm::compose(document);
    } catch (const JsonFailure &) {
        return QByteArray();
    }
}
