// SPDX-License-Identifier: MIT
#include <tunerdocuments/Schema.h>

#include <QHash>
#include <QStringList>
#include <QXmlStreamReader>

#include "documents/resources/Resource.h"

namespace TunerDocuments {

namespace Schema {

QByteArray text()
{
    return resource("tuner-properties.xsd");
}

QByteArray forAuthors()
{
    return resource("tuner-properties-author.xsd");
}

QByteArray forJson()
{
    return resource("tuner-properties.schema.json");
}

QByteArray model()
{
    return resource("model.json");
}

class Q_DECL_HIDDEN Annotations::Private
{
public:
    explicit Private(const QByteArray &schema);

    QString ofClass(const QString &name) const;
    Member ofMember(const QString &className, const QString &name) const;

private:
    struct Type
    {
        QString text;
        QHash<QString, Member> members;
        QStringList groups; // attribute groups, which are types, too
    };

    QHash<QString, QString> m_typeOfElement;
    QHash<QString, Type> m_types;
};

Annotations::Private::Private(const QByteArray &schema)
{
    QXmlStreamReader reader(schema);
    QString typeName; // of the current top-level declaration
    QString memberName; // of the declaration in it
    int depth = 0; // the schema itself is 1
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            const QXmlStreamAttributes attributes = reader.attributes();
            const auto value = [&](const char *name) { return attributes.value(QLatin1String(name)).toString(); };
            const QString kind = reader.name().toString();
            ++depth;
            if (kind == QLatin1String("documentation")) {
                const QString documentation = reader.readElementText().simplified();
                --depth; // the end element has been read
                if (typeName.isEmpty())
                    break; // about the schema as a whole
                if (memberName.isEmpty())
                    m_types[typeName].text = documentation;
                else
                    m_types[typeName].members[memberName].text = documentation;
            } else if (depth == 2) {
                typeName = value("name");
                if (kind == QLatin1String("element"))
                    m_typeOfElement.insert(typeName, value("type"));
            } else if (kind == QLatin1String("element") || kind == QLatin1String("attribute")) {
                memberName = attributes.hasAttribute(QLatin1String("name")) ? value("name") : value("ref");
                m_types[typeName].members[memberName].isAttribute = kind == QLatin1String("attribute");
            } else if (kind == QLatin1String("attributeGroup")) {
                m_types[typeName].groups.append(value("ref"));
            }
            break;
        }
        case QXmlStreamReader::EndElement:
            --depth;
            if (reader.name() == QLatin1String("element") || reader.name() == QLatin1String("attribute"))
                memberName.clear();
            break;
        default:
            break;
        }
    }
    if (reader.hasError())
        qFatal("the schema in the program is damaged: %s", qUtf8Printable(reader.errorString()));
}

QString Annotations::Private::ofClass(const QString &name) const
{
    return m_types.value(m_typeOfElement.value(name)).text;
}

Annotations::Member Annotations::Private::ofMember(const QString &className, const QString &name) const
{
    const Type type = m_types.value(m_typeOfElement.value(className));
    Member member = type.members.value(name);
    for (const QString &group : type.groups) {
        if (!type.members.contains(name) && m_types.value(group).members.contains(name))
            member = m_types.value(group).members.value(name);
    }
    if (member.text.isEmpty())
        member.text = ofClass(name);
    return member;
}

Annotations::Annotations() : d(std::make_shared<const Private>(Schema::text())) { }

QString Annotations::ofClass(const QString &name) const
{
    return d->ofClass(name);
}

Annotations::Member Annotations::ofMember(const QString &className, const QString &name) const
{
    return d->ofMember(className, name);
}

} // namespace Schema

} // namespace TunerDocuments
