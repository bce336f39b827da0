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

/// A class of the model, with an object of it to ask.
struct Class
{
    // The object stands in a document of its own, below what it belongs to.
    std::shared_ptr<TunerProperties> document = std::make_shared<TunerProperties>();
    DataObject *object = document.get();
    QStringList contained; // the classes of the objects in it
    QStringList members;
};

using Classes = QHash<QString, Class>;

/// The child object in a member, which is made if there is none.
DataObject &childIn(MemberEditor &member)
{
    return member.GetKind() == MemberKind::ObjectList ? member.AppendChild() : member.EditChild();
}

/// Takes the way to the same object in a new document.
Class classOf(const QStringList &way)
{
    Class found;
    found.document->SetValidate(false);
    for (const QString &step : way) {
        DataObject *child = nullptr;
        visit(*found.object, [&](MemberEditor &member) {
            if (member.GetName() == step)
                child = &childIn(member);
        });
        found.object = child;
    }
    return found;
}

/// Adds the class of the object at the end of the way, and those of all that it may contain.
void addClasses(Classes &classes, const QStringList &way)
{
    Class itsClass = classOf(way);
    visit(std::as_const(*itsClass.object), [&](const MemberView &member) {
        switch (member.GetKind()) {
        case MemberKind::Object:
        case MemberKind::ObjectList:
        case MemberKind::Alternative:
            itsClass.contained.append(member.GetName());
            break;
        case MemberKind::Choice:
            break; // is no element of its own
        default:
            itsClass.members.append(member.GetName());
        }
    });
    classes.insert(itsClass.object->GetObjectName(), itsClass);
    for (const QString &name : qAsConst(itsClass.contained))
        addClasses(classes, way + QStringList{name});
}

Classes allClasses()
{
    Classes classes;
    addClasses(classes, {});
    return classes;
}

/// The encoding of a document without a byte order mark, as the reader sees it by the first bytes; null if they do not
/// show it.
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

/// The document as the reader counts its characters.
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

/// Why the reader cannot read on, if it cannot.
std::optional<XmlProblem> errorOf(const QXmlStreamReader &reader)
{
    if (!reader.hasError())
        return {};
    return XmlProblem{int(reader.lineNumber()), int(std::max(reader.columnNumber(), qint64(1))), reader.errorString()};
}

/// Lines and columns of places in a text.
class Places
{
public:
    explicit Places(const QString &text)
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

/// Goes through a document exactly as the objects do when they read it without validating, and asks a validating object
/// about each thing by itself: an element with nothing else in it than one attribute or one child element.
class Walk
{
public:
    Walk(const QString &text, const std::function<void(const XmlProblem &)> &action)
        : m_text(text), m_places(text), m_reader(text), m_classes(allClasses()), m_action(action)
    {
    }

    void run()
    {
        if (m_reader.readNextStartElement()) {
            // As inside of the objects: looking names up among all namespaces takes long, and undeclared ones pass.
            m_reader.setNamespaceProcessing(false);
            readObject(TunerProperties::GetStaticObjectName());
        }
        // The rest of what cannot be read has not been looked at, and must not pass for valid.
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
        while (goesOn()) {
            const auto token = m_reader.readNext();
            if (token == QXmlStreamReader::StartElement)
                readChild(name, itsClass, context);
            else if (token == QXmlStreamReader::EndElement && m_reader.name() == name)
                return;
        }
    }

    /// Returns what the child elements are to be judged with: the version of the document, if this is the document.
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
        // Nearly always none is refused, and asking once will do.
        if (!known.isEmpty() && !refusal(name, known).isNull()) {
            for (const Attribute &attribute : known)
                note(refusal(name, {attribute}), [&] { return attributeOffset(attribute.name); });
        }
        return context;
    }

    /// Only the number in a version counts; a long text would be read again with each child element.
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
        // otherwise it was read, or what it holds is read as if it stood in the parent
    }

    // By name, not by depth, as the objects do it.
    void skip(const QString &name)
    {
        do {
            m_reader.readNext();
        } while (goesOn() && m_reader.name() != name);
    }

    // A file may have changed since it was loaded; a reader in error is not always at its end.
    bool goesOn() const { return !m_reader.atEnd() && !m_reader.hasError(); }

    /// What an object says about an element with these attributes and this child; null if it takes them.
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
            // Only exceptions of the model count: whether the document is well-formed was seen when it was loaded.
            static_cast<void>(object.SetXmlString(xml, true));
        } catch (const RGException &e) {
            return e.GetMessageText();
        }
        return QString();
    }

    /// Passes a refusal on, if it is one; returns whether it is none.
    template <class FindOffset>
    bool note(const QString &message, FindOffset findOffset)
    {
        if (!message.isNull())
            m_action(m_places.at(findOffset(), message));
        return message.isNull();
    }

    /// Where the tag ends that the reader has just read.
    int endOffset() const { return int(std::min(m_reader.characterOffset(), qint64(m_text.size()))); }

    /// Where the tag begins that ends there: no value of an attribute holds a "<" as such.
    int tagOffset(int end) const { return std::max(m_text.lastIndexOf(QLatin1Char('<'), end - 1), 0); }

    /// Where an attribute begins in the tag that the reader has just read.
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
        return start; // the document type gives it by default
    }

    QString m_text;
    Places m_places;
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
