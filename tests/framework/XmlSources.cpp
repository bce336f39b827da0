// SPDX-License-Identifier: MIT
#include "framework/XmlSources.h"

#include <memory>
#include <vector>

#include <QDataStream>
#include <QTemporaryFile>
#include <QXmlStreamReader>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include "../src/module/Classes.h"
#include "ExceptionText.h"
#include "framework/Member.h"
#include "framework/Random.h"
#include "framework/Utf8Input.h"
#include "framework/XmlReaderInput.h"

namespace XmlSources {

namespace {

using namespace JobXml;
using Object = DataObject;

QString quoted(const QString &text)
{
    QString result = QStringLiteral("'");
    for (const QChar character : text) {
        if (character >= QLatin1Char(' ') && character < QChar(0x7F))
            result += character;
        else
            result += QStringLiteral("{%1}").arg(uint(character.unicode()), 4, 16, QLatin1Char('0'));
    }
    return result + QLatin1Char('\'');
}

// --- Steps -----------------------------------------------------------------------------------------------------------

struct Name
{
    explicit Name(const QString &text) : utf16(text), ascii(text.toLatin1()) { }
    operator XmlName() const { return {utf16, ascii.constData()}; }

    QString utf16;
    QByteArray ascii;
};

/// All start tags of a document and their attributes, as a reader finds them.
struct StartTags
{
    struct StartTag
    {
        QString name;
        QXmlStreamAttributes attributes;
    };

    explicit StartTags(const QByteArray &document)
    {
        QXmlStreamReader reader(document);
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::StartElement)
                tags.push_back({reader.qualifiedName().toString(), reader.attributes()});
        }
        if (reader.hasError()) {
            error = QStringLiteral("the reader refuses the document in line %1, column %2: %3")
                        .arg(reader.lineNumber())
                        .arg(reader.columnNumber())
                        .arg(reader.errorString());
        }
    }

    std::vector<StartTag> tags;
    QString error;
};

std::unique_ptr<Object> newObject(int number);

/// Reads a document from both inputs, by the same steps.
class Steps
{
public:
    Steps(const QByteArray &document, quint32 seed)
        : m_random(seed), m_reader(document), m_byReader(m_reader), m_inMemory(document)
    {
        m_reader.setNamespaceProcessing(m_random.oneIn(2));
    }

    /// Reads to the end. `startTags` are those of the document.
    QString difference(const StartTags &startTags)
    {
        while (m_difference.isNull()) {
            const XmlInput::Tag tag = next();
            if (tag == XmlInput::Tag::None)
                break;
            if (tag != XmlInput::Tag::Start)
                continue;
            if (m_random.oneIn(2))
                compareAttributes(startTags);
            readOn();
        }
        if (m_difference.isNull() && (m_byReader.isBroken() || m_inMemory.isBroken()))
            differ(QStringLiteral("isBroken() is true: ") + m_reader.errorString());
        return m_difference.isNull() ? QString() : QStringLiteral("... ") + m_done.right(100) + m_difference;
    }

private:
    void differ(const QString &difference)
    {
        if (m_difference.isNull())
            m_difference = difference;
    }

    template <class T>
    void compare(const char *what, const T &byReader, const T &inMemory)
    {
        if (!(byReader == inMemory))
            differ(QStringLiteral("%1 is %2 by the reader, %3 in memory")
                       .arg(QLatin1String(what), shown(byReader), shown(inMemory)));
    }
    static QString shown(const QString &text) { return quoted(text); }
    static QString shown(bool value) { return QLatin1String(value ? "true" : "false"); }
    static QString shown(XmlInput::Tag tag) { return QString::number(int(tag)); }
    static QString shown(const Member *member) { return member ? member->text() : QStringLiteral("null"); }

    void did(const QString &step) { m_done += step + QStringLiteral(", "); }

    XmlInput::Tag next()
    {
        const XmlInput::Tag tag = m_byReader.next();
        compare("next()", tag, m_inMemory.next());
        did(QStringLiteral("next"));
        if (tag != XmlInput::Tag::None && m_difference.isNull())
            compareNames();
        return tag;
    }

    void compareNames()
    {
        const QString name = m_byReader.name();
        compare("name()", name, m_inMemory.name());
        did(name);
        const Name names[] = {Name(name), Name(name + QLatin1Char('x')), Name(name.left(name.size() - 1)),
                              Name(QStringLiteral("Node"))};
        for (const Name &other : names)
            compare("isNamed()", m_byReader.isNamed(other), m_inMemory.isNamed(other));
        const auto object = newObject(m_random.below(Classes::size));
        const ClassInfo &info = ObjectAccess::info(*object);
        compare("findRow()", m_byReader.findRow(info.writtenOrder()), m_inMemory.findRow(info.writtenOrder()));
    }

    void compareAttributes(const StartTags &startTags)
    {
        const int count = m_reader.attributes().size();
        std::vector<QString> names;
        for (const QXmlStreamAttribute &attribute : m_reader.attributes())
            names.push_back(attribute.qualifiedName().toString());
        // Some in order, as objects do, and some in disorder; names that are elsewhere, too.
        for (const QString &name : std::vector<QString>(names))
            names.push_back(m_random.oneIn(2) ? m_random.oneOf(names) : name);
        names.push_back(QStringLiteral("value"));
        names.push_back(m_random.oneOf(startTags.tags).name);
        for (int i = 0; i < 4; ++i) {
            const QXmlStreamAttributes &others = m_random.oneOf(startTags.tags).attributes;
            if (!others.isEmpty())
                names.push_back(m_random.oneOf(others).qualifiedName().toString());
        }
        int found = 0;
        for (std::size_t i = 0; i < names.size(); ++i) {
            XmlText byReader;
            XmlText inMemory;
            const Name name(names[i]);
            const bool isFound = m_byReader.findAttribute(name, byReader);
            compare("findAttribute()", isFound, m_inMemory.findAttribute(name, inMemory));
            found += isFound && int(i) < count ? 1 : 0;
            did(QLatin1Char('@') + names[i]);
            if (isFound)
                compareTexts(byReader, inMemory);
        }
        if (found != count)
            differ(QStringLiteral("%1 of %2 attributes are found").arg(found).arg(count));
    }

    void compareTexts(const XmlText &byReader, const XmlText &inMemory)
    {
        const QString text = byReader.toString();
        compare("toString()", text, inMemory.toString());
        compare("isNull()", text.isNull(), inMemory.toString().isNull());
        compare("isEmpty()", byReader.isEmpty(), inMemory.isEmpty());
        compare("use()", used(byReader), used(inMemory));
        // The input in memory only knows texts without references, so it may miss some, but must not find others.
        for (const char *ascii : {"true", "1", "Filter", ""}) {
            if (inMemory.is(QLatin1String(ascii)))
                compare("is()", byReader.is(QLatin1String(ascii)), true);
        }
        const QByteArray latin1 = text.toLatin1();
        if (byReader.is(QLatin1String(latin1)) != (text == QLatin1String(latin1)))
            differ(QStringLiteral("is() misses the text of the reader"));
    }

    struct Used
    {
        QString operator()(QStringView text) const { return text.toString(); }
        QString operator()(const char *utf8, int size) const
        {
            const QByteArray bytes(utf8, size);
            const QString text = QString::fromUtf8('.' + bytes).mid(1); // a byte order mark is part of the text
            return text.toUtf8() == bytes ? text : QStringLiteral("(invalid UTF-8)");
        }
    };
    static QString used(const XmlText &text) { return text.use(Used()); }

    /// Reads on from a start tag.
    void readOn()
    {
        const int step = m_random.below(10);
        if (step < 3) {
            XmlText byReader;
            XmlText inMemory;
            compare("readText()", m_byReader.readText(byReader), m_inMemory.readText(inMemory));
            did(QStringLiteral("readText"));
            compareTexts(byReader, inMemory);
        } else if (step == 3) {
            m_byReader.skipToSameName();
            m_inMemory.skipToSameName();
            did(QStringLiteral("skipToSameName"));
            compare("name()", m_byReader.name(), m_inMemory.name());
        }
    }

    Random m_random;
    QXmlStreamReader m_reader;
    XmlReaderInput m_byReader;
    Utf8Input m_inMemory;
    QString m_done;
    QString m_difference;
};

/// The text of every element in turn: the tags up to it are passed.
QString differenceOfTexts(const QByteArray &document, const StartTags &startTags)
{
    constexpr std::size_t most = 24;
    for (std::size_t element = 0; element < startTags.tags.size() && element < most; ++element) {
        QXmlStreamReader reader(document);
        XmlReaderInput byReader(reader);
        Utf8Input inMemory(document);
        for (std::size_t passed = 0; passed <= element;) {
            const XmlInput::Tag tag = byReader.next();
            if (inMemory.next() != tag)
                return QStringLiteral("other tags before element %1").arg(element);
            passed += tag == XmlInput::Tag::Start ? 1 : 0;
        }
        XmlText expected;
        XmlText text;
        if (byReader.readText(expected) != inMemory.readText(text) || expected.toString() != text.toString())
            return QStringLiteral("the text of element %1 (%2) is %3 by the reader, %4 in memory")
                .arg(QString::number(element), startTags.tags[element].name, quoted(expected.toString()),
                     quoted(text.toString()));
        const XmlInput::Tag tag = byReader.next();
        if (inMemory.next() != tag || (tag != XmlInput::Tag::None && byReader.name() != inMemory.name()))
            return QStringLiteral("other tags after the text of element %1").arg(element);
    }
    return QString();
}

// --- Objects ---------------------------------------------------------------------------------------------------------

/// Objects of derived classes are read by a QXmlStreamReader.
template <class T>
class ByReader final : public T
{
public:
    explicit ByReader(const T &object) : T(object) { }
};

struct Class
{
    using Pointer = std::unique_ptr<Object>;

    Pointer (*make)();
    Pointer (*copy)(const Object &object);
    Pointer (*copyByReader)(const Object &object);
    bool (*equal)(const Object &left, const Object &right);
};

template <class T>
const T &of(const Object &object)
{
    return static_cast<const T &>(object);
}

template <class... T>
struct Table
{
    static constexpr Class classes[] = {
        {[]() -> Class::Pointer { return std::make_unique<T>(); },
         [](const Object &object) -> Class::Pointer { return std::make_unique<T>(of<T>(object)); },
         [](const Object &object) -> Class::Pointer { return std::make_unique<ByReader<T>>(of<T>(object)); },
         [](const Object &left, const Object &right) { return of<T>(left) == of<T>(right); }}...};
};

constexpr auto &classes = Classes::Into<Table>::classes;

std::unique_ptr<Object> newObject(int number)
{
    return classes[number].make();
}

int numberOfClass(const QString &name)
{
    for (int number = 0; number < Classes::size; ++number) {
        if (newObject(number)->GetObjectName() == name)
            return number;
    }
    return -1;
}

QString text(bool value)
{
    return QLatin1String(value ? "true" : "false");
}

/// All flags and values of a tree, without changing any.
void listTree(const Object &object, const QString &path, QStringList &lines)
{
    lines += path + QStringLiteral(" validates: ") + text(object.GetValidate());
    if (!object.IsInitialized())
        return;
    visit(object, [&](const MemberView &member) {
        const QString place = path + QLatin1Char('/') + member.GetName();
        lines += place + QStringLiteral(" set: ") + text(member.IsSet());
        const QVariant value = member.GetValue();
        if (value.isValid())
            lines += place + QLatin1Char('=') + quoted(value.toStringList().join(QLatin1Char(',')));
        for (int i = 0; i < member.GetSize(); ++i)
            listTree(member.GetChild(i), place + QString::number(i), lines);
    });
}

/// All that can be observed of an object, one line each.
QStringList stateOf(Object &object)
{
    QStringList lines;
    lines += QStringLiteral("initialized: ") + text(object.IsInitialized());
    lines += QStringLiteral("error: ")
        + (object.GetErrorString().isNull() ? QStringLiteral("none") : quoted(object.GetErrorString()));
    lines += QStringLiteral("version: ") + quoted(object.GetVersion());
    listTree(object, QString(), lines);
    QByteArray snapshot;
    QDataStream stream(&snapshot, QIODevice::WriteOnly);
    object.GetVersionSpecificBinaryWithoutValidation(stream);
    lines += QStringLiteral("snapshot: ") + QString::fromLatin1(snapshot.toHex());
    lines += QStringLiteral("has data: ") + text(object.HasData()) + text(object.AnyData());
    for (const Problem &problem : object.GetProblems()) {
        lines += QStringLiteral("problem: ") + problem.path.join(QLatin1Char('/')) + problem.member + QLatin1Char(':')
            + problem.message + text(problem.xmlOnly);
    }
    lines += QStringLiteral("check: ") + thrownBy([&] { object.Check(true); });
    QString xml;
    const QString thrown = thrownBy([&] { xml = object.GetXmlString(); });
    lines += QStringLiteral("XML: ") + quoted(xml) + thrown + object.GetErrorString();
    object.SetValidate(false);
    lines += QStringLiteral("XML without validation: ") + quoted(object.GetXmlString());
    lines += QStringLiteral("record: ") + QString::fromLatin1(object.GetBinaryRepresentationAsQByteArray().toHex());
    return lines;
}

QString firstDifference(const QStringList &expected, const QStringList &found)
{
    for (int i = 0; i < std::max(expected.size(), found.size()); ++i) {
        if (expected.value(i) != found.value(i))
            return expected.value(i) + QStringLiteral(" <> ") + found.value(i);
    }
    return QString();
}

/// A document as a text or as the content of a file.
class Source
{
public:
    Source(const QByteArray &document, bool isText) : m_document(document), m_isText(isText)
    {
        if (isText) {
            const bool isMarked = document.startsWith("\xEF\xBB\xBF"); // which the conversion drops
            m_text = QString::fromUtf8(document);
            if (isMarked)
                m_text.prepend(QChar(QChar::ByteOrderMark));
        } else {
            m_isWritten = m_file.open() && m_file.write(document) == document.size() && m_file.flush();
        }
    }

    QString failure() const
    {
        if (m_isText && m_text.toUtf8() != m_document)
            return QStringLiteral("the document is not valid UTF-8");
        return m_isText || m_isWritten ? QString() : QStringLiteral("cannot write ") + m_file.fileName();
    }

    bool readInto(Object &object, bool validate)
    {
        if (m_isText)
            return object.SetXmlString(m_text, validate);
        m_file.seek(0);
        object.SetValidate(validate);
        return object.LoadXml(&m_file);
    }

    /// The same, with all problems.
    bool readInto(Object &object, QVector<Problem> &problems)
    {
        return m_isText ? object.SetXmlString(m_text, problems) : object.LoadXml(m_file.fileName(), problems);
    }

    /// Why this is not the place of a tag or attribute; null if it is.
    template <class Place>
    QString wrongPlace(const Place &place) const
    {
        const auto at = [this](qint64 offset) { return m_document.at(int(offset)); };
        if (place.offset < 0 || place.offset >= m_document.size())
            return QStringLiteral("the offset is %1").arg(place.offset);
        if (at(place.offset) != '<' && QByteArray(" \t\r\n").indexOf(at(place.offset - 1)) < 0)
            return QStringLiteral("there is no tag or attribute at offset %1").arg(place.offset);
        int line = 1;
        QByteArray before; // in the line
        for (int i = m_document.startsWith("\xEF\xBB\xBF") ? 3 : 0; i < place.offset; ++i) {
            before += at(i);
            if (at(i) == '\n' || (at(i) == '\r' && at(i + 1) != '\n')) {
                ++line;
                before.clear();
            }
        }
        before.prepend('.'); // a byte order mark at the beginning would be dropped
        const int column = QString::fromUtf8(before).size();
        return place.line == line && place.column == column
            ? QString()
            : QStringLiteral("offset %1 is line %2, column %3, not line %4, column %5")
                  .arg(place.offset)
                  .arg(line)
                  .arg(column)
                  .arg(place.line)
                  .arg(place.column);
    }

    std::unique_ptr<QXmlStreamReader> reader() const
    {
        return m_isText ? std::make_unique<QXmlStreamReader>(m_text) : std::make_unique<QXmlStreamReader>(m_document);
    }

private:
    const QByteArray m_document;
    const bool m_isText;
    QString m_text;
    QTemporaryFile m_file;
    bool m_isWritten = false;
};

/// The result of reading.
struct Outcome
{
    QStringList lines;
    bool isRead = false;
    QString thrown;
    REPORTGENERATOR::ErrorLocation location; ///< of what was thrown
};

template <class Read>
Outcome outcomeOf(Object &object, const Read &read)
{
    Outcome outcome;
    outcome.thrown = thrownBy([&] {
        try {
            outcome.isRead = read();
        } catch (const ReportException &exception) {
            outcome.location = exception.GetLocation();
            throw;
        }
    });
    outcome.lines =
        QStringList{QStringLiteral("read: ") + text(outcome.isRead), QStringLiteral("thrown: ") + outcome.thrown,
                    QStringLiteral("in: ") + outcome.location.path.join(QLatin1Char('/'))}
        + stateOf(object);
    return outcome;
}

Outcome readInMemory(Object &object, Source &source, bool validate)
{
    return outcomeOf(object, [&] { return source.readInto(object, validate); });
}

/// Reads the object from the root element that the reader has reached, as the base library does.
Outcome readFromRoot(Object &object, QXmlStreamReader &reader, bool validate)
{
    object.SetValidate(validate);
    return outcomeOf(object, [&] {
        object.ProcessXml(reader);
        while (!reader.atEnd() && !reader.hasError())
            reader.readNext();
        return !reader.hasError();
    });
}

/// Reads with all problems into objects that hold the same. The result is the object that is read without validation.
QString differenceOfProblems(const Class &type, const Object &original, Source &source)
{
    const auto read = [&](Object &object, QVector<Problem> &problems) {
        object.SetValidate(false);
        QStringList lines;
        const Outcome outcome = outcomeOf(object, [&] { return source.readInto(object, problems); });
        for (const Problem &problem : qAsConst(problems)) {
            lines += problem.path.join(QLatin1Char('/')) + QLatin1Char(':') + problem.member + QLatin1Char(':')
                + problem.message + text(problem.xmlOnly);
            for (const Step &step : problem.steps)
                lines.last() += QLatin1Char('/') + step.member + QString::number(step.index);
        }
        return lines + outcome.lines;
    };
    const Class::Pointer object = type.copy(original);
    QVector<Problem> problems;
    const QStringList found = read(*object, problems);
    for (const Problem &problem : qAsConst(problems)) {
        const QString wrongPlace = problem.offset < 0 ? QString() : source.wrongPlace(problem);
        if (!wrongPlace.isNull())
            return problem.message + QStringLiteral(": ") + wrongPlace;
    }
    const Class::Pointer derived = type.copyByReader(original);
    QVector<Problem> problemsByReader;
    const QString difference = firstDifference(read(*derived, problemsByReader), found);
    if (!difference.isNull())
        return QStringLiteral("all problems, by a derived class <> in memory: ") + difference;
    const Class::Pointer unvalidated = type.copy(original);
    const Outcome outcome = readInMemory(*unvalidated, source, false);
    return outcome.isRead ? firstDifference(stateOf(*unvalidated), stateOf(*object)) : QString();
}

/// Reads into objects of one class that hold the same, one for each way.
QString differenceOfObject(const Class &type, const Object &original, Source &source, bool validate)
{
    const QString what = QStringLiteral("%1, %2: ")
                             .arg(original.GetObjectName(), QLatin1String(validate ? "validating" : "not validating"));
    const QStringList before = stateOf(*type.copy(original));
    const Class::Pointer object = type.copy(original);
    const Outcome found = readInMemory(*object, source, validate);
    if (!found.thrown.isNull() && !source.wrongPlace(found.location).isNull())
        return what + found.thrown + QStringLiteral(": ") + source.wrongPlace(found.location);

    const Class::Pointer derived = type.copyByReader(original);
    QString difference = firstDifference(readInMemory(*derived, source, validate).lines, found.lines);
    if (!difference.isNull())
        return what + QStringLiteral("by a derived class <> in memory: ") + difference;

    const Class::Pointer processed = type.copy(original);
    const auto reader = source.reader();
    while (!reader->atEnd() && reader->readNext() != QXmlStreamReader::StartElement) { }
    if (reader->name() == original.GetObjectName()) {
        difference = firstDifference(readFromRoot(*processed, *reader, validate).lines, found.lines);
        if (!difference.isNull())
            return what + QStringLiteral("by ProcessXml() <> in memory: ") + difference;
        if (!type.equal(*object, *processed) && type.equal(*object, *type.copy(*object))) // a NaN never is
            return what + QStringLiteral("the objects are not equal");
    } else if (found.isRead) {
        return what + QStringLiteral("an object was read from another element");
    }
    difference = firstDifference(before, stateOf(*type.copy(original)));
    return difference.isNull() ? QString() : what + QStringLiteral("changes another object: ") + difference;
}

/// An object that holds something already: what the document itself, or another element of it, means for its class.
Class::Pointer usedObject(const Class &type, const QByteArray &document, bool isOfRoot)
{
    Class::Pointer object = type.make();
    object->SetValidate(false);
    QXmlStreamReader reader(document);
    if (reader.readNextStartElement() && (isOfRoot || reader.readNextStartElement()))
        object->ProcessXml(reader);
    return object;
}

} // namespace

QString differenceOfSteps(const QByteArray &document, quint32 seed)
{
    if (!XmlSubset::contains(document))
        return QString();
    const StartTags startTags(document);
    if (!startTags.error.isNull())
        return startTags.error;
    QString difference = differenceOfTexts(document, startTags);
    for (quint32 run = 0; run < 3 && difference.isNull(); ++run)
        difference = Steps(document, seed + run).difference(startTags);
    return difference;
}

QString differenceOfObjects(const QByteArray &document, quint32 seed)
{
    if (!XmlSubset::contains(document))
        return QString();
    Random random(seed);
    Source source(document, !random.oneIn(3));
    if (!source.failure().isNull())
        return source.failure();
    QXmlStreamReader reader(document);
    reader.readNextStartElement();
    int number = numberOfClass(reader.name().toString());
    if (number < 0 || random.oneIn(16))
        number = random.below(Classes::size);
    const Class &type = classes[number];
    const Class::Pointer fresh = type.make();
    const Class::Pointer used = usedObject(type, document, random.oneIn(2));
    for (const Object *original : {fresh.get(), used.get()}) {
        for (const bool validate : {true, false}) {
            const QString difference = differenceOfObject(type, *original, source, validate);
            if (!difference.isNull())
                return difference;
        }
        const QString difference = differenceOfProblems(type, *original, source);
        if (!difference.isNull())
            return original->GetObjectName() + QStringLiteral(": ") + difference;
    }
    return QString();
}

QByteArray longEnoughToShareTexts(const QByteArray &document)
{
    return document + "<!--" + QByteArray(4096, '.') + "-->";
}

QString difference(const QByteArray &document, quint32 seed)
{
    const QString difference = differenceOfSteps(document, seed);
    return difference.isNull() ? differenceOfObjects(document, seed) : difference;
}

} // namespace XmlSources
