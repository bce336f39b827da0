// SPDX-License-Identifier: MIT
#include "documents/XmlProblems.h"

#include <algorithm>
#include <limits>
#include <memory>

#include <QHash>
#include <QRegularExpression>
#include <QStringList>
#include <QTextCodec>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

using namespace JobXml;

namespace {

/// A class of the model, with an object for checks.
struct Class
{
    // The object is part of a document of its own, with all its parents.
    std::shared_ptr<TunerProperties> document = std::make_shared<TunerProperties>();
    DataObject *object = document.get();
    QStringList contained; // the classes of the objects in it
    QStringList members;
};

using Classes = QHash<QString, Class>;

/// The child object of a member, which is created if there is none.
DataObject &childIn(MemberEditor &member)
{
    return member.GetKind() == MemberKind::ObjectList ? member.AppendChild() : member.EditChild();
}

/// Follows the path in a new document.
Class classOf(const QStringList &path)
{
    Class found;
    found.document->SetValidate(false);
    for (const QString &step : path) {
        DataObject *child = nullptr;
        visit(*found.object, [&](MemberEditor &member) {
            if (member.GetName() == step)
                child = &childIn(member);
        });
        found.object = child;
    }
    return found;
}

/// Adds the class of the object at the end of the path, and the classes of all objects that it may contain.
void addClasses(Classes &classes, const QStringList &path)
{
    Class itsClass = classOf(path);
    visit(std::as_const(*itsClass.object), [&](const MemberView &member) {
        switch (member.GetKind()) {
        case MemberKind::Object:
        case MemberKind::ObjectList:
        case MemberKind::Alternative:
            itsClass.contained.append(member.GetName());
            break;
        case MemberKind::Choice:
            break; // not an element
        default:
            itsClass.members.append(member.GetName());
        }
    });
    classes.insert(itsClass.object->GetObjectName(), itsClass);
    for (const QString &name : qAsConst(itsClass.contained))
        addClasses(classes, path + QStringList{name});
}

Classes allClasses()
{
    Classes classes;
    addClasses(classes, {});
    return classes;
}

/// The encoding of a document without a byte order mark, as the reader detects it from the first bytes; null if they do
/// not show it.
QTextCodec *codecByFirstBytes(const QByteArray &document)
{
    static const struct
    {
        QByteArray begin;
        const char *codec;
    } beginnings[] = {
        {QByteArrayLiteral("<\x00\x00\x00"), "UTF-32LE"},
        {QByteArrayLiteral("\x00\x00\x00<"), "UTF-32BE"},
        {QByteArrayLiteral("<\x00"), "UTF-16LE"},
        {QByteArrayLiteral("\x00<"), "UTF-16BE"},
    };
    for (const auto &beginning : beginnings) {
        if (document.startsWith(beginning.begin))
            return QTextCodec::codecForName(beginning.codec);
    }
    return nullptr;
}

/// The text whose characters the reader counts.
QString decoded(const QByteArray &document)
{
    if (QTextCodec *const codec = codecByFirstBytes(document))
        return codec->toUnicode(document);
    QXmlStreamReader reader(document);
    reader.readNext();
    QTextCodec *declared = QTextCodec::codecForName(reader.documentEncoding().toUtf8());
    return QTextCodec::codecForUtfText(document, declared ? declared : QTextCodec::codecForName("UTF-8"))
        ->toUnicode(document);
}

/// The error of the reader, if there is one.
std::optional<XmlProblem> errorOf(const QXmlStreamReader &reader)
{
    if (!reader.hasError())
        return {};
    return XmlProblem{int(reader.lineNumber()), int(std::max(reader.columnNumber(), qint64(1))), reader.errorString()};
}

/// Lines and columns of offsets in a text.
class Locations
{
public:
    explicit Locations(const QString &text)
    {
        for (int i = 0; i < text.size(); ++i) {
            const bool returnBeforeFeed =
                text[i] == QLatin1Char('\r') && i + 1 < text.size() && text[i + 1] == QLatin1Char('\n');
            if (text[i] == QLatin1Char('\n') || (text[i] == QLatin1Char('\r') && !returnBeforeFeed))
                m_lineStarts.append(i + 1);
        }
    }

    XmlProblem at(int offset, const QString &message) const
    {
        const auto next = std::upper_bound(m_lineStarts.begin(), m_lineStarts.end(), offset);
        return {int(next - m_lineStarts.begin()), offset - *(next - 1) + 1, message};
    }

private:
    QVector<int> m_lineStarts = {0};
};

/// Reads a document exactly as the objects do without validating, and has a validating object check each item
/// separately: an element with a single attribute or a single child element.
class Walk
{
public:
    Walk(const QString &text, const std::function<void(const XmlProblem &)> &action)
        : m_text(text), m_locations(text), m_reader(text), m_classes(allClasses()), m_action(action)
    {
    }

    void run()
    {
        if (m_reader.readNextStartElement()) {
            // As in the objects: resolving names in all namespaces takes long, and undeclared prefixes are accepted.
            m_reader.setNamespaceProcessing(false);
            readObject(TunerProperties::GetStaticObjectName());
        }
        // After an error the rest has not been checked, and must not count as valid.
        if (const auto error = errorOf(m_reader))
            m_action(*error);
    }

private:
    struct Attribute
    {
        QString name;
        QString value;
    };
    using Attributes = QVector<Attribute>;

    void readObject(const QString &name)
    {
        const Class &itsClass = *m_classes.constFind(name);
        const Attributes context = readAttributes(name, itsClass);
        while (canContinue()) {
            const auto token = m_reader.readNext();
            if (token == QXmlStreamReader::StartElement)
                readChild(name, itsClass, context);
            else if (token == QXmlStreamReader::EndElement && m_reader.name() == name)
                return;
        }
    }

    /// Returns the attributes that child elements are checked with: the version, if this is the document.
    Attributes readAttributes(const QString &name, const Class &itsClass)
    {
        Attributes known;
        Attributes context;
        const QXmlStreamAttributes attributes = m_reader.attributes();
        for (const QXmlStreamAttribute &attribute : attributes) {
            const QString attributeName = attribute.qualifiedName().toString();
            if (itsClass.members.contains(attributeName))
                known.append({attributeName, attribute.value().toString()});
            else if (attributeName == QLatin1String("Version"))
                context.append({attributeName, shortVersion(attribute.value())});
        }
        // Usually all are valid, and one check is enough.
        if (!known.isEmpty() && !refusal(name, known).isNull()) {
            for (const Attribute &attribute : known)
                note(refusal(name, {attribute}), [&] { return attributeOffset(attribute.name); });
        }
        return context;
    }

    /// Only the number in a version counts; a long text would be read again for each child element.
    static QString shortVersion(const QStringRef &version)
    {
        constexpr int most = 64;
        return version.size() <= most
            ? version.toString()
            : QString::number(double(version.toFloat()), 'g', std::numeric_limits<float>::max_digits10);
    }

    void readChild(const QString &parent, const Class &parentClass, const Attributes &context)
    {
        const QString name = m_reader.name().toString();
        if (parentClass.contained.contains(name) && m_classes.contains(name)) {
            readObject(name);
            return;
        }
        const int end = endOffset();
        const bool known = parentClass.members.contains(name);
        const QString text = known ? m_reader.readElementText(QXmlStreamReader::SkipChildElements) : QString();
        const bool taken = note(refusal(parent, context, name, text), [&] { return tagOffset(end); });
        if (!known && taken)
            skip(name);
        // otherwise it was read, or its content is read as if it were in the parent
    }

    // By name, not by depth, as the objects do.
    void skip(const QString &name)
    {
        do {
            m_reader.readNext();
        } while (canContinue() && m_reader.name() != name);
    }

    // The file may have changed since it was loaded. A reader in error is not always at its end.
    bool canContinue() const { return !m_reader.atEnd() && !m_reader.hasError(); }

    /// The error of an object for an element with these attributes and this child; null if there is none.
    QString refusal(const QString &name, const Attributes &attributes, const QString &child = {},
                    const QString &text = {}) const
    {
        QString xml;
        QXmlStreamWriter writer(&xml);
        writer.writeStartElement(name);
        for (const Attribute &attribute : attributes)
            writer.writeAttribute(attribute.name, attribute.value);
        if (!child.isNull())
            writer.writeTextElement(child, text);
        writer.writeEndElement();
        try {
            DataObject &object = *m_classes.constFind(name)->object;
            object.ResetToDefault();
            object.SetValidate(true);
            // Only exceptions of the model count: whether the document is well-formed was checked when it was loaded.
            static_cast<void>(object.SetXmlString(xml, true));
        } catch (const RGException &e) {
            return e.GetMessageText();
        }
        return QString();
    }

    /// Reports the message unless it is null. Returns whether it is null.
    template <class FindOffset>
    bool note(const QString &message, FindOffset findOffset)
    {
        if (!message.isNull())
            m_action(m_locations.at(findOffset(), message));
        return message.isNull();
    }

    /// The end of the tag that the reader has just read.
    int endOffset() const { return int(std::min(m_reader.characterOffset(), qint64(m_text.size()))); }

    /// The start of the tag that ends there: no value of an attribute contains a "<".
    int tagOffset(int end) const { return std::max(m_text.lastIndexOf(QLatin1Char('<'), end - 1), 0); }

    /// The start of an attribute in the tag that the reader has just read.
    int attributeOffset(const QString &name) const
    {
        static const QRegularExpression attribute(QStringLiteral(R"(\s([^\s=]+)\s*=\s*(?:"[^"]*"|'[^']*'))"));
        const int end = endOffset();
        const int start = tagOffset(end);
        auto matches = attribute.globalMatch(m_text.mid(start, end - start));
        while (matches.hasNext()) {
            const QRegularExpressionMatch match = matches.next();
            if (match.capturedRef(1) == name)
                return start + match.capturedStart(1);
        }
        return start; // a default of the document type
    }

    QString m_text;
    Locations m_locations;
    QXmlStreamReader m_reader;
    const Classes m_classes;
    const std::function<void(const XmlProblem &)> &m_action;
};

} // namespace

void findXmlProblems(const QByteArray &document, const std::function<void(const XmlProblem &)> &action)
{
    Walk(decoded(document), action).run();
}

std::optional<XmlProblem> firstXmlRefusal(const QByteArray &document)
{
    QXmlStreamReader reader(document);
    if (!reader.readNextStartElement())
        return errorOf(reader);
    try {
        TunerProperties().ProcessXml(reader);
    } catch (const RGException &e) {
        return XmlProblem{int(reader.lineNumber()), int(reader.columnNumber()), e.GetMessageText()};
    }
    return errorOf(reader);
}
