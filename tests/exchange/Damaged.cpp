// SPDX-License-Identifier: MIT

// Reads damaged documents of every form and writes the outcomes, a line each. The documents depend on their
// numbers alone, so programs that were built with different versions of Qt must write the same; scripts/exchange.sh
// compares them.
//
//     exchange_damaged FORM FIRST COUNT
//
// FORM is xml, record, snapshot or json. The columns of a line, separated by tabs:
//   - the form, the number of the document, and how it was read
//   - read, refused or thrown
//   - the line and column of the failure
//   - hashes of all that the object contains afterwards, of the problems, and of the document itself
//   - the message

#include <cstdio>
#include <cstdlib>

#include <QCryptographicHash>
#include <QDataStream>
#include <QFile>
#include <QTemporaryFile>

#include <jobxml/TunerProperties.h>
#include <tunerdocuments/Lint.h>

#include "Encoded.h"
#include "Encodings.h"
#include "ExceptionText.h"
#include "framework/XmlSpellings.h"
#include "interop/Generator.h"

using namespace JobXml;

namespace {

QByteArray hash(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex().left(12);
}

/// Everything that an object contains.
QByteArray stateOf(TunerProperties &object)
{
    object.SetValidate(false);
    QByteArray state;
    QDataStream stream(&state, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    object.GetVersionSpecificBinaryWithoutValidation(stream);
    const QByteArray record = object.GetBinaryRepresentationAsQByteArray();
    const QByteArray xml = object.GetXmlString().toUtf8();
    return hash(state + record + xml);
}

QByteArray oneLine(const QString &text)
{
    return text.toUtf8()
        .replace('\\', "\\\\")
        .replace('\n', "\\n")
        .replace('\r', "\\r")
        .replace('\t', "\\t")
        .replace('\0', "\\0");
}

const QString source = QStringLiteral("document");

/// Collects the columns of a line.
class Outcome
{
public:
    Outcome(const QByteArray &form, int number, const QByteArray &document)
        : m_beginning(form + '\t' + QByteArray::number(number) + '\t'), m_document(document)
    {
    }

    /// Reads the document with the function, which returns whether it could.
    template <class Read>
    void write(const char *how, bool validate, Read &&read) const
    {
        TunerProperties object;
        object.SetValidate(validate);
        QVector<Problem> problems;
        bool isRead = false;
        REPORTGENERATOR::ErrorLocation location;
        const QString thrown = thrownBy([&] {
            try {
                isRead = read(object, problems);
            } catch (const ReportException &exception) {
                location = exception.GetLocation();
                throw;
            }
        });
        if (thrown.isNull())
            location = object.GetErrorLocation();
        QString message = thrown.isNull() ? object.GetErrorString() : thrown;
        if (!location.source.isEmpty())
            message.replace(location.source, source); // the name of a temporary file
        const QByteArray columns[] = {
            m_beginning + how,
            thrown.isNull() ? (isRead ? "read" : "refused") : "thrown",
            QByteArray::number(location.line) + ':' + QByteArray::number(location.column),
            stateOf(object),
            hash(allOf(problems)),
            hash(m_document),
            oneLine(message),
        };
        QByteArray line;
        for (const QByteArray &column : columns)
            line += column + '\t';
        line.back() = '\n';
        std::fwrite(line.constData(), 1, std::size_t(line.size()), stdout);
    }

private:
    static QByteArray allOf(const QVector<Problem> &problems)
    {
        QByteArray all;
        for (const Problem &problem : problems) {
            for (const Step &step : problem.steps)
                all += step.member.toUtf8() + QByteArray::number(step.index) + '/';
            for (const qint64 number : {qint64(problem.line), qint64(problem.column), qint64(problem.offset)})
                all += QByteArray::number(number) + ' ';
            all += problem.member.toUtf8() + problem.message.toUtf8() + '\n';
        }
        return all;
    }

    const QByteArray m_beginning;
    const QByteArray m_document;
};

// --- XML -------------------------------------------------------------------------------------------------------------

QByteArray longName(Random &random)
{
    return QByteArray(4085 + random.below(20), 'n');
}

/// What the readers of different versions of Qt treat differently, besides the tokens of the spellings.
QByteArray oddPiece(Random &random)
{
    switch (random.below(14)) {
    case 0:
        return '<' + longName(random) + "/>";
    case 1:
        return "<p:" + longName(random) + "></p:" + longName(random) + '>';
    case 2:
        return "<x " + longName(random) + "=''/>";
    case 3:
        return '&' + longName(random) + ';';
    case 4:
        return "<?" + longName(random) + " x?>";
    case 5:
        return "<!DOCTYPE " + longName(random) + '>';
    case 6:
        return random.oneOf({"<!DOCTYPE TunerProperties>", "<!DOCTYPE a SYSTEM 'b'>", "<!DOCTYPE a PUBLIC 'b' 'c'>",
                             "<!DOCTYPE a PUBLIC \"\xC3\xA4\" 'c'>", "<!DOCTYPE>", "<!doctype a>", "<!ENTITY a 'b'>"});
    case 7:
        return QByteArray(random.oneIn(2) ? 1 : 3, '\0');
    case 8:
        return QByteArray("</") + longName(random) + '>';
    case 9:
        return QByteArray("<x>").repeated(200 + random.below(200));
    case 10:
        return QByteArray("<x xmlns:a='b' ") + QByteArray("a:y='' ").repeated(1 + random.below(3)) + "/>";
    case 11:
        return random.oneOf({"<x xmlns:xml='u'/>", "<x xmlns:xmlns='u'/>", "<x xmlns:p=''/>", "<xml:x/>", "<p:q:r/>",
                             "<x xml:lang='a' xml:lang='b'/>", "<?xml:a?>", "<?XmL a?>", "<x xmlns=''/>"});
    case 12:
        return QByteArray("<!--") + QByteArray(4090 + random.below(12), 'c') + "\xC3\xA4-->";
    default:
        return QByteArray(4090 + random.below(12), ' ') + "\xF0\x9F\x93\xA1";
    }
}

QByteArray declaration(Random &random)
{
    QByteArray name = random.oneOf(
        {"UTF-8",   "utf-8",    "UTF8",   "UTF_8",        "UTF-16",       "utf16", "UTF-16LE",    "UTF-16BE",
         "UTF-32",  "UTF-32LE", "latin1", "ISO-8859-1",   "ISO_8859-1",   "l1",    "ISO-8859-15", "ISO-8859-2",
         "ASCII",   "US-ASCII", "cp1252", "windows-1252", "windows-1251", "UTF-7", "Shift_JIS",   "GB18030",
         "klingon", "",         " UTF-8", "UTF-8 ",       "\xC3\xA4",     "1252",  "-",           "EBCDIC-CP-US",
         "locale",  "System",   "UTF-8&", "UTF<8"});
    if (random.oneIn(2))
        name = "UTF-8";
    const QByteArray quote = random.oneOf({"'", "\""});
    const QByteArray version = random.oneOf({"1.0", "1.0", "1.0", "1.1", "1", "2.0", ""});
    const QByteArray standalone =
        random.oneOf({"", "", "", " standalone='yes'", " standalone='no'", " standalone='1'"});
    const QByteArray encoding = " encoding=" + quote + name + quote;
    const QByteArray begin = "<?xml version=" + quote + version + quote;
    return random.oneOf({begin + encoding + standalone + "?>", begin + standalone + encoding + "?>", begin + "?>",
                         "<?xml" + encoding + "?>", begin + encoding + standalone + QByteArray("  \n") + "?>"});
}

/// A document without its declaration.
QByteArray content(const QByteArray &document)
{
    const auto end = document.startsWith("<?xml ") ? document.indexOf("?>") : -1;
    return end < 0 ? document : document.mid(end + 2);
}

QByteArray damagedXml(Random &random)
{
    const QByteArray document = random.oneIn(2) ? XmlSpellings::plainDocument(random, "TunerProperties")
                                                : XmlSpellings::document(random, "TunerProperties");
    QByteArray result = random.oneIn(3)
        ? document
        : XmlSpellings::mutated(random, document, XmlSpellings::plainDocument(random, "TunerProperties"));
    if (random.oneIn(4)) {
        const auto at = result.indexOf('>', random.below(int(result.size()) + 1)) + 1;
        result.insert(random.oneIn(3) ? random.below(int(result.size()) + 1) : at, oddPiece(random));
    }
    if (random.oneIn(3))
        result = declaration(random) + content(result);
    return result;
}

/// As Latin-1 if there are wrong bytes, which fromUtf8() converts differently in each version of Qt.
QString textOf(const QByteArray &bytes)
{
    const int size = int(bytes.size()); // without it, Qt 5 converts up to the first U+0000
    const QString text = QString::fromUtf8(bytes.constData(), size);
    return text.toUtf8() == bytes ? text : QString::fromLatin1(bytes.constData(), size);
}

/// The document in any encoding; the declaration names another one as often as not.
QByteArray inAnyEncoding(Random &random, const QByteArray &document)
{
    if (random.oneIn(2))
        return document;
    const QByteArray name = random.oneOf({"UTF-8", "UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE", "ISO-8859-1",
                                          "windows-1252", "ISO-8859-15", "US-ASCII"});
    QByteArray declared = name;
    if (random.oneIn(3) && (declared.endsWith("LE") || declared.endsWith("BE")))
        declared.chop(2);
    QString text = textOf(content(document));
    if (random.oneIn(8))
        text.insert(random.below(int(text.size()) + 1), QChar(ushort(0xD800 + random.below(0x800))));
    if (random.oneIn(2))
        text.prepend(QString::fromUtf8("<?xml version='1.0' encoding='" + declared + "'?>"));
    else if (random.oneIn(2))
        text.prepend(QString::fromUtf8(declaration(random)));
    if (random.oneIn(2) && name.startsWith("UTF-"))
        text.prepend(QChar(QChar::ByteOrderMark));
    QByteArray bytes = encoded(name, text);
    for (int damages = random.oneIn(3) ? 1 + random.below(3) : 0; damages > 0 && !bytes.isEmpty(); --damages) {
        const int at = random.below(int(bytes.size()));
        switch (random.below(4)) {
        case 0:
            bytes[at] = char(bytes.at(at) ^ (1 << random.below(8)));
            break;
        case 1:
            bytes.remove(at, 1 + random.below(3));
            break;
        case 2:
            bytes.truncate(at);
            break;
        default:
            bytes.insert(at, char(random.below(256)));
        }
    }
    return bytes;
}

void readDamagedXml(int number)
{
    Random random(quint32(number) + 1);
    const QByteArray document = damagedXml(random);
    QString text = textOf(document);
    if (random.oneIn(8))
        text.insert(random.below(int(text.size()) + 1), QChar(ushort(0xD800 + random.below(0x800))));
    const Outcome ofText("xml", number, text.toUtf8());
    ofText.write("text", true,
                 [&](TunerProperties &object, QVector<Problem> &) { return object.SetXmlString(text, true); });
    ofText.write("text without validation", false,
                 [&](TunerProperties &object, QVector<Problem> &) { return object.SetXmlString(text, false); });

    const QByteArray bytes = inAnyEncoding(random, document);
    const Outcome ofBytes("xml", number, bytes);
    ofBytes.write("bytes", true, [&](TunerProperties &object, QVector<Problem> &problems) {
        return object.SetXmlDocument(bytes, source, problems);
    });
    if (random.oneIn(4)) {
        QTemporaryFile file;
        if (!file.open() || file.write(bytes) != bytes.size() || !file.seek(0))
            qFatal("cannot write a temporary file");
        ofBytes.write("file", true, [&](TunerProperties &object, QVector<Problem> &) { return object.LoadXml(&file); });
    }
}

// --- Records and snapshots -------------------------------------------------------------------------------------------

QByteArray damaged(Random &random, QByteArray bytes, const QByteArray &other)
{
    do {
        const int at = random.below(int(bytes.size()) + 1);
        const int word = at & ~3;
        switch (random.below(7)) {
        case 0:
            if (at < bytes.size())
                bytes[at] = char(bytes.at(at) ^ (1 << random.below(8)));
            break;
        case 1:
            if (at < bytes.size())
                bytes[at] = char(random.below(256));
            break;
        case 2:
            bytes.truncate(at);
            break;
        case 3:
            bytes.remove(at, 1 + random.below(8));
            break;
        case 4:
            bytes.insert(at, other.mid(random.below(int(other.size()) + 1), 1 + random.below(40)));
            break;
        case 5:
            bytes.replace(word, 4,
                          QByteArray::fromHex(random.oneOf(
                              {"FFFFFFFF", "7FFFFFFF", "80000000", "00000000", "00000001", "FFFFFFFE", "000000FF"})));
            break;
        default:
            bytes.insert(at, char(random.below(256)));
        }
    } while (random.oneIn(2));
    return bytes;
}

TunerProperties built(Random &random)
{
    TunerProperties object;
    object.SetValidate(random.oneIn(2));
    build(object, QByteArray::number(random.below(1000000)));
    return object;
}

void readDamagedRecord(int number)
{
    Random random(quint32(number) + 1);
    constexpr int usualLevel = -1;
    TunerProperties object = built(random);
    TunerProperties other = built(random);
    const bool isCompressed = random.oneIn(4);
    object.SetValidate(false);
    other.SetValidate(false);
    QByteArray bytes = object.GetBinaryRepresentationAsQByteArray();
    bytes = damaged(random, bytes, other.GetBinaryRepresentationAsQByteArray());
    if (isCompressed) {
        bytes = object.GetCompressedBinaryRepresentationAsQByteArray(usualLevel);
        bytes = damaged(random, bytes, bytes);
    }
    const Outcome outcome("record", number, isCompressed ? QByteArray() : bytes);
    outcome.write("bytes", true,
                  [&](TunerProperties &result, QVector<Problem> &) { return result.SetBinaryRepresentation(bytes); });
    outcome.write("bytes without validation", false,
                  [&](TunerProperties &result, QVector<Problem> &) { return result.SetBinaryRepresentation(bytes); });
    outcome.write("bytes with problems", true, [&](TunerProperties &result, QVector<Problem> &problems) {
        return result.SetBinaryRepresentation(bytes, problems);
    });
}

void readDamagedSnapshot(int number)
{
    Random random(quint32(number) + 1);
    const QByteArray bytes = damaged(random, snapshotOf(built(random)), snapshotOf(built(random)));
    Outcome("snapshot", number, bytes).write("bytes", true, [&](TunerProperties &result, QVector<Problem> &) {
        QDataStream stream(bytes);
        result.SetVersionSpecificBinaryWithoutValidation(stream);
        return stream.status() == QDataStream::Ok && stream.atEnd();
    });
}

// --- JSON ------------------------------------------------------------------------------------------------------------

QByteArray jsonOf(const TunerProperties &object)
{
    try {
        return TunerDocuments::Document(object).toBytes(TunerDocuments::Form::Json, source);
    } catch (const TunerDocuments::UnstorableContent &) {
        return QByteArrayLiteral("{}"); // a text that JSON cannot represent
    }
}

/// Values that are read as others, or refused.
QByteArray oddValue(Random &random)
{
    return random.oneOf({"1e400",
                         "-0",
                         "1e-400",
                         "16777217",
                         "9223372036854775807",
                         "9223372036854775808",
                         "-9223372036854775808",
                         "2147483647",
                         "2147483648",
                         "-1",
                         "0.1",
                         "0.1000000014901161",
                         "3.4028235e38",
                         "3.4028236e38",
                         "1.00",
                         "1E+2",
                         "true",
                         "\"true\"",
                         "\"nan\"",
                         "\"INF\"",
                         "\" 7 \"",
                         "\"\"",
                         "\"SCP\"",
                         "\"0.5\"",
                         "\"\xE2\x88\x92"
                         "1\"",
                         "null",
                         "{}",
                         "[]",
                         "[\"Scan\", \"Scan\"]",
                         "{\"id\": \"x\"}"});
}

/// Characters in a text, and their escapes.
QByteArray oddCharacters(Random &random)
{
    return random.oneOf({"\\u0000", "\\u0001", "\\ud83d\\udce1", "\\uFEFF", "\\uFFFF", "\\n", "\\/", "\xEF\xBB\xBF",
                         "\xF0\x9F\x93\xA1", "\xC2\xA0", " ", "i\xCC\x87", "\xC4\xB0"});
}

/// What makes JSON malformed, or changes its structure.
QByteArray oddJson(Random &random)
{
    return random.oneOf({"\\ud83d", "\xC0\x80", "\xED\xA0\xBD", "\xE2\x88\x92", "01", "+1", "NaN", "TRUE", "\"", ",",
                         ":", "// comment\n", "\xC2\xA0", "\"type\": \"SCP\",", "\"unset\": [\"type\"],",
                         "\"a\\u0000b\": 1,"});
}

/// Replaces a value, or adds to a text or to the name of a member. The JSON stays well-formed.
void damageContent(Random &random, QByteArray &json)
{
    const bool isName = random.oneIn(4);
    const QByteArray before = isName ? "  \"" : random.oneIn(2) ? ": \"" : ": ";
    const auto found = json.indexOf(before, random.below(int(json.size()) + 1));
    if (found < 0)
        return;
    const int at = int(found) + int(before.size());
    if (before.endsWith('"')) {
        json.insert(at, oddCharacters(random));
        return;
    }
    int end = int(json.indexOf('\n', at));
    if (end < 0 || QByteArray("{[").contains(json.at(end - 1)))
        return; // a whole object or list
    end -= json.at(end - 1) == ',' ? 1 : 0;
    json.replace(at, end - at, oddValue(random));
}

QByteArray damagedJson(Random &random)
{
    QByteArray bytes = jsonOf(built(random));
    for (int damages = 1 + random.below(3); damages > 0; --damages)
        damageContent(random, bytes);
    if (random.oneIn(6)) {
        const int at = random.below(int(bytes.size()) + 1);
        bytes.insert(random.oneIn(3) ? at : int(bytes.indexOf('\n', at)) + 1, oddJson(random));
    }
    return random.oneIn(12) ? damaged(random, bytes, jsonOf(built(random))) : bytes;
}

void readDamagedJson(int number)
{
    Random random(quint32(number) + 1);
    const QByteArray bytes = damagedJson(random);
    const Outcome outcome("json", number, bytes);
    outcome.write("bytes", false, [&](TunerProperties &result, QVector<Problem> &problems) {
        try {
            const auto options = TunerDocuments::LoadOptions().setForm(TunerDocuments::Form::Json);
            const auto document = TunerDocuments::Document::fromBytes(
                bytes, source, options, [&](const Problem &problem) { problems.append(problem); });
            result = document.tuner;
            TunerDocuments::lint(document, bytes, [&](const TunerDocuments::Finding &finding) {
                Problem problem;
                problem.message = finding.text(source);
                problems.append(problem);
            });
        } catch (const TunerDocuments::DocumentError &error) {
            throw RGException(error.text());
        }
        return true;
    });
}

} // namespace

int main(int argc, char *argv[])
{
    const struct
    {
        const char *form;
        void (*read)(int number);
    } forms[] = {{"xml", readDamagedXml},
                 {"record", readDamagedRecord},
                 {"snapshot", readDamagedSnapshot},
                 {"json", readDamagedJson}};
    for (const auto &[form, read] : forms) {
        if (argc != 4 || qstrcmp(argv[1], form) != 0)
            continue;
        const int first = std::atoi(argv[2]);
        const int count = std::atoi(argv[3]);
        for (int number = first; number < first + count; ++number)
            read(number);
        return 0;
    }
    std::fputs("usage: exchange_damaged xml|record|snapshot|json FIRST COUNT\n", stderr);
    return 2;
}
