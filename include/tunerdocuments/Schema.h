// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QByteArray>
#include <QString>

#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// The schemas of documents, which are resources of the library.
namespace Schema {

/// The XML Schema of what the library writes: the content of share/tuner-properties.xsd, byte for byte.
TUNERDOCUMENTS_EXPORT QByteArray text();

/// The XML Schema of what people may write: the content of share/tuner-properties-author.xsd, byte for byte.
TUNERDOCUMENTS_EXPORT QByteArray forAuthors();

/// The JSON Schema of documents as JSON: the content of share/tuner-properties.schema.json, byte for byte.
TUNERDOCUMENTS_EXPORT QByteArray forJson();

/// The classes and their members: the content of share/model.json, byte for byte.
TUNERDOCUMENTS_EXPORT QByteArray model();

/// The documentation of the elements and attributes in the schema. Copies share their content.
class TUNERDOCUMENTS_EXPORT Annotations
{
public:
    /// The documentation of a member. No later version adds members.
    struct Member
    {
        QString text; ///< null if there is none
        bool isAttribute = false; ///< whether the member is written as an attribute
    };

    /// Reads the schema that the library contains.
    Annotations();

    /// The documentation of a class; null if there is none.
    QString ofClass(const QString &name) const;

    /// The documentation of a member; if it has none, that of its class.
    Member ofMember(const QString &className, const QString &name) const;

private:
    class Private;
    std::shared_ptr<const Private> d;
};

} // namespace Schema

} // namespace TunerDocuments
