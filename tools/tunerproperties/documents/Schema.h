// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

/// The XML Schema of documents, which the program carries along.
namespace Schema {

/// As it stands in share/tuner-properties.xsd, byte for byte.
QByteArray text();

/// The classes and their members, as they stand in share/model.json, byte for byte.
QByteArray model();

/// What the schema tells people about the elements and attributes.
class Annotations
{
public:
    struct Member
    {
        QString text;
        bool isAttribute = false;
    };

    /// Of the schema that the program carries.
    Annotations();

    /// What an object of a class is; null if nothing is told.
    QString ofClass(const QString &name) const;

    /// What a member of it is; of one whose own declaration tells nothing, what its class is.
    Member ofMember(const QString &className, const QString &name) const;

private:
    struct Type
    {
        QString text;
        QHash<QString, Member> members;
        QStringList groups; // of attributes, which are types as well
    };

    void read(const QByteArray &schema);

    QHash<QString, QString> m_typeOfElement;
    QHash<QString, Type> m_types;
};

} // namespace Schema
