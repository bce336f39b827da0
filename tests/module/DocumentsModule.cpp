// SPDX-License-Identifier: MIT

// A plug-in that returns texts of the library for documents.

#include <QStringList>

#include <tunerdocuments/Form.h>
#include <tunerdocuments/Value.h>

extern "C" Q_DECL_EXPORT void textsOfDocuments(QStringList *texts)
{
    texts->append(TunerDocuments::ValueText::notSet());
    texts->append(TunerDocuments::Forms::nameOf(TunerDocuments::Form::Compressed));
    texts->append(TunerDocuments::ValueText::exactly(0.25));
}
