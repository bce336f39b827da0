// SPDX-License-Identifier: MIT
#include <tunerdocuments/NewDocument.h>

#include <QStringList>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <jobxml/Visit.h>

#include <tunerdocuments/Schema.h>
#include <tunerdocuments/Value.h>

#include "text/Suggestion.h"
#include "text/TextLayout.h"

using namespace JobXml;

namespace TunerDocuments {

namespace NewDocument {

namespace {

constexpr int width = 100;
constexpr int indentation = 2; // as the library writes XML

void store(MemberEditor &member, const QVariant &value)
{
    [[maybe_unused]] const bool isStored = member.SetValue(value);
    Q_ASSERT(isStored); // the callers choose values of the member's type
}

void fill(DataObject &object)
{
    object.SetValidate(false); // incomplete until it is filled
    visit(object, [](MemberEditor &member) {
        if (member.GetKind() == MemberKind::Alternative && member.IsChosen())
            fill(member.EditChild());
        if (!member.IsMandatory() || member.IsSet())
            return;
        switch (member.GetKind()) {
        case MemberKind::Text:
            store(member, QString(member.GetName()));
            break;
        case MemberKind::Enumeration:
        case MemberKind::Choice: // comes before the alternatives
            store(member, member.GetNames().first());
            break;
        case MemberKind::EnumerationList:
            store(member, QVariantList{member.GetNames().first()});
            break;
        case MemberKind::Object:
            fill(member.EditChild());
            break;
        case MemberKind::ObjectList:
            fill(member.AppendChild());
            break;
        default:
            store(member, member.GetDefaultValue());
        }
    });
}

/// Explains the objects of a document, in comments.
class Explanations
{
public:
    explicit Explanations(const TunerProperties &document) { note(document); }

    /// The comment for the first element of this name; null if it is not an object, or not the first.
    QString take(const QString &element, int depth)
    {
        const DataObject *const object = m_objects.take(element);
        return object ? explanation(*object, depth * indentation) : QString();
    }

private:
    void note(const DataObject &object)
    {
        if (!m_objects.contains(object.GetObjectName()))
            m_objects.insert(object.GetObjectName(), &object);
        visit(object, [&](const MemberView &member) {
            for (int i = 0; member.IsChosen() && i < member.GetSize(); ++i)
                note(member.GetChild(i));
        });
    }

    QString explanation(const DataObject &object, int start) const
    {
        TextLayout::Columns columns;
        visit(object, [&](const MemberView &member) {
            if (member.GetKind() != MemberKind::Choice)
                columns.add(syntax(object, member), meaning(object, member));
        });
        const int left = start + indentation;
        const QString blanks(left, QLatin1Char(' '));
        const QString text = blanks
            + TextLayout::wrapped(m_annotations.ofClass(object.GetObjectName()), left, left, width) + QLatin1Char('\n')
            + columns.text(left, width);
        // A comment ends with the first "--".
        return QLatin1Char('\n') + QString(text).replace(QLatin1String("--"), QLatin1String("- -"))
            + QString(start, QLatin1Char(' '));
    }

    /// The syntax of the member in XML.
    QString syntax(const DataObject &object, const MemberView &member) const
    {
        return m_annotations.ofMember(object.GetObjectName(), member.GetName()).isAttribute
            ? QString(member.GetName())
            : QLatin1Char('<') + member.GetName() + QLatin1Char('>');
    }

    QString meaning(const DataObject &object, const MemberView &member) const
    {
        QString text = m_annotations.ofMember(object.GetObjectName(), member.GetName()).text;
        const bool isOptional = !member.IsMandatory() && member.GetKind() != MemberKind::Alternative;
        if (!member.GetNames().isEmpty())
            text += QStringLiteral(" One of ") + Suggestion::listed(member.GetNames()) + QLatin1Char('.');
        const QString inside = membersOfChild(member);
        if (!inside.isEmpty())
            text += QStringLiteral(" Holds ") + inside + QLatin1Char('.');
        return isOptional ? QStringLiteral("Optional. ") + text : text;
    }

    /// Lists the members of a child object that is not in the document and therefore has no comment of its own.
    QString membersOfChild(const MemberView &member) const
    {
        TunerProperties sample;
        sample.SetValidate(false);
        return member.GetSize() != 0 && member.IsSet() ? QString() : membersBelow(sample, member.GetName());
    }

    /// The members of the child objects of this name, wherever they are in a document.
    QString membersBelow(DataObject &object, const QString &name) const
    {
        QString found;
        visit(object, [&](MemberEditor &member) {
            const bool isList = member.GetKind() == MemberKind::ObjectList;
            if (!isList && member.GetKind() != MemberKind::Object && member.GetKind() != MemberKind::Alternative)
                return;
            DataObject &child = isList ? member.AppendChild() : member.EditChild();
            child.SetValidate(false);
            found = found.isNull() && member.GetName() == name ? namesIn(child) : found;
            if (found.isNull())
                found = membersBelow(child, name);
        });
        return found;
    }

    QString namesIn(const DataObject &object) const
    {
        QStringList names;
        visit(object, [&](const MemberView &member) {
            names.append(syntax(object, member)
                         + (member.GetNames().isEmpty()
                                ? QString()
                                : QStringLiteral(": ") + Suggestion::listed(member.GetNames())));
        });
        return names.join(QStringLiteral(", "));
    }

    const Schema::Annotations m_annotations;
    QHash<QString, const DataObject *> m_objects; // the first of each class
};

} // namespace

TunerProperties minimal(const QHash<QString, QString> &values)
{
    TunerProperties document;
    visit(static_cast<DataObject &>(document), [&](MemberEditor &member) {
        if (values.contains(member.GetName()))
            store(member, TypedValue::parse(member, values.value(member.GetName())));
    });
    fill(document);
    document.SetValidate(true);
    return document;
}

QByteArray explained(const QByteArray &xml, const TunerProperties &document)
{
    Explanations explanations(document);
    QByteArray result;
    QXmlStreamReader reader(xml);
    QXmlStreamWriter writer(&result);
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(indentation);
    int depth = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isWhitespace())
            continue;
        if (reader.isStartElement()) {
            const QString comment = explanations.take(reader.name().toString(), depth++);
            if (!comment.isNull())
                writer.writeComment(comment);
        } else if (reader.isEndElement()) {
            --depth;
        }
        writer.writeCurrentToken(reader);
    }
    return result;
}

} // namespace NewDocument

} // namespace TunerDocuments
