// SPDX-License-Identifier: MIT

// The library's side of the exchange with a reader and writer that share no code with it: reads requests from standard
// input until it ends, and writes an answer to each to standard output. One process converts any number of documents.
//
// A request is, in QDataStream's form: whether to validate (bool), the name of the class (QByteArray), the number of
// steps (quint8), for each step its kind (quint8) and content (QByteArray), and the requested forms (QByteArray).
//
// One object performs all steps of a request, one after the other, until one fails:
//   'x', 'f'   read an XML document, as text or from a file
//   't'        read a representation, compressed or not
//   's'        read a snapshot
//   'j'        read a TunerProperties from JSON
//   'g'        build a document from the seed in the content
//
// The answer is the outcome of the steps, then the object in each requested form: 'x', 't', 'c', 's', or 'j' for a
// TunerProperties. Each of them is an Outcome (quint8) and a QByteArray.
//
// With --model or --built it lists the members of the model, or those that 'g' sets, instead.

#include <cstdio>
#include <memory>

#include <QDataStream>
#include <QFile>
#include <QMap>
#include <QTemporaryFile>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/DocumentError.h>

#include "Encodings.h"
#include "ExceptionText.h"

#include "Generator.h"
#include "Model.h"

using namespace JobXml;

namespace {

using Object = std::unique_ptr<DataObject>;

struct Outcome
{
    enum Kind : quint8 {
        Done = 'd', // with the bytes written, or the number of bytes left after reading a snapshot
        Nothing = 'n', // no failure, but nothing was written
        Refused = 'r', // with GetErrorString()
        Thrown = 't', // with the exception
    };
    Kind kind;
    QByteArray content;
};

Object newObject(const QByteArray &className, bool validate)
{
    Object object;
    Classes::forEach([&](auto tag) {
        using Class = typename decltype(tag)::Class;
        if (Class::GetStaticObjectName().toLatin1() == className)
            object = std::make_unique<Class>();
    });
    if (!object)
        qFatal("no class is named %s", className.constData());
    object->SetValidate(validate);
    return object;
}

template <class Call>
Outcome attempt(Call &&call)
{
    Outcome outcome{Outcome::Thrown, {}};
    const QString thrown = thrownBy([&] { outcome = call(); });
    return thrown.isNull() ? outcome : Outcome{Outcome::Thrown, thrown.toUtf8()};
}

Outcome refused(const DataObject &object)
{
    return {Outcome::Refused, object.GetErrorString().toUtf8()};
}

Outcome written(const DataObject &object, const QByteArray &bytes)
{
    if (!bytes.isEmpty())
        return {Outcome::Done, bytes};
    return object.GetErrorString().isNull() ? Outcome{Outcome::Nothing, {}} : refused(object);
}

Outcome writeJson(const DataObject &object)
{
    const TunerDocuments::Document document(dynamic_cast<const TunerProperties &>(object));
    try {
        return {Outcome::Done, document.toBytes(TunerDocuments::Form::Json, QStringLiteral("document"))};
    } catch (const TunerDocuments::DocumentError &error) {
        return {Outcome::Refused, error.text().toUtf8()};
    }
}

Outcome readJson(DataObject &object, const QByteArray &content)
{
    try {
        dynamic_cast<TunerProperties &>(object) =
            TunerDocuments::Document::fromBytes(content, QStringLiteral("document.json")).tuner;
        return {Outcome::Done, {}};
    } catch (const TunerDocuments::DocumentError &error) {
        return {Outcome::Refused, error.text().toUtf8()};
    }
}

Outcome write(DataObject &object, char form)
{
    constexpr int usualLevel = -1;
    switch (form) {
    case 'x':
        return written(object, object.GetXmlString().toUtf8());
    case 't':
        return written(object, object.GetBinaryRepresentationAsQByteArray());
    case 'c':
        return written(object, object.GetCompressedBinaryRepresentationAsQByteArray(usualLevel));
    case 's':
        return {Outcome::Done, snapshotOf(object)};
    case 'j':
        return writeJson(object);
    }
    qFatal("unknown form '%c'", form);
}

bool readFile(DataObject &object, const QByteArray &content)
{
    QTemporaryFile file;
    if (!file.open() || file.write(content) != content.size() || !file.seek(0))
        qFatal("cannot write a temporary file");
    return object.LoadXml(&file);
}

Outcome readSnapshotInto(DataObject &object, const QByteArray &snapshot)
{
    QDataStream stream(snapshot);
    object.SetVersionSpecificBinaryWithoutValidation(stream);
    return {Outcome::Done,
            stream.status() == QDataStream::Ok ? QByteArray::number(stream.device()->bytesAvailable())
                                               : QByteArrayLiteral("ends early")};
}

Outcome read(DataObject &object, char form, QByteArray content)
{
    const auto done = [&](bool good) { return good ? Outcome{Outcome::Done, {}} : refused(object); };
    switch (form) {
    case 'x':
        return done(object.SetXmlString(QString::fromUtf8(content), object.GetValidate()));
    case 'f':
        return done(readFile(object, content));
    case 't':
    case 'c':
        return done(object.SetBinaryRepresentation(content));
    case 's':
        return readSnapshotInto(object, content);
    case 'j':
        return readJson(object, content);
    }
    qFatal("unknown form '%c'", form);
}

Outcome performStep(DataObject &object, char kind, const QByteArray &content)
{
    if (kind != 'g')
        return read(object, kind, content);
    build(object, content);
    return {Outcome::Done, {}};
}

void writeOutcome(QDataStream &answers, const Outcome &outcome)
{
    answers << quint8(outcome.kind);
    // Like QByteArray, but never null.
    answers.writeBytes(outcome.content.constData(), uint(outcome.content.size()));
}

void answer(QDataStream &requests, QDataStream &answers)
{
    bool validate = true;
    QByteArray className;
    quint8 steps = 0;
    requests >> validate >> className >> steps;

    const Object object = newObject(className, validate);
    Outcome outcome{Outcome::Done, {}};
    for (int i = 0; i < steps; ++i) {
        quint8 kind = 0;
        QByteArray content;
        requests >> kind >> content;
        if (outcome.kind == Outcome::Done)
            outcome = attempt([&] { return performStep(*object, char(kind), content); });
    }
    writeOutcome(answers, outcome);

    QByteArray forms;
    requests >> forms;
    for (const char form : qAsConst(forms))
        writeOutcome(answers, attempt([&] { return write(*object, form); }));
}

/// The members that visit() visits: for each a line of its class, name, kind and default, whether it is mandatory, and
/// the class of its children, separated by tabs.
QByteArray model()
{
    const QMap<MemberKind, QByteArray> kinds{
        {MemberKind::Text, "text"},
        {MemberKind::Boolean, "boolean"},
        {MemberKind::Int, "int32"},
        {MemberKind::Int64, "int64"},
        {MemberKind::UInt64, "uint64"},
        {MemberKind::Float, "float"},
        {MemberKind::Double, "double"},
        {MemberKind::Enumeration, "tuner type"},
        {MemberKind::EnumerationList, "modes"},
        {MemberKind::Object, "object"},
        {MemberKind::ObjectList, "list"},
        {MemberKind::Alternative, "alternative"},
    };
    QByteArray lines;
    Model::forEachClass([&](DataObject &object) {
        visit(object, [&](MemberEditor &member) {
            if (member.GetKind() == MemberKind::Choice)
                return;
            const QByteArray child = Model::holdsObjects(member.GetKind())
                ? Model::newChild(member).GetObjectName().toLatin1()
                : member.GetNames().join(QLatin1Char(' ')).toLatin1();
            const QList<QByteArray> columns{object.GetObjectName().toLatin1(),   member.GetName().data(),
                                            kinds.value(member.GetKind()),       member.GetDefaultValue().toByteArray(),
                                            member.IsMandatory() ? "yes" : "no", child};
            lines += columns.join('\t') + '\n';
        });
    });
    return lines;
}

/// The members that documents of the Generator set, as "Component.name".
QByteArray builtMembers()
{
    QStringList names;
    Model::forEachClass([&](DataObject &object) {
        for (int seed = 0; seed < 200; ++seed) {
            const Object built = newObject(object.GetObjectName().toLatin1(), true);
            build(*built, QByteArray::number(seed));
            visit(std::as_const(*built), [&](const MemberView &member) {
                const QString name = built->GetObjectName() + QLatin1Char('.') + member.GetName();
                if (member.GetKind() != MemberKind::Choice && member.IsSet() && !names.contains(name))
                    names += name;
            });
        }
    });
    return names.join(QLatin1Char('\n')).toLatin1();
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc == 2) {
        const QByteArray text = argv[1] == QByteArrayLiteral("--model") ? model() : builtMembers();
        return std::fwrite(text.constData(), 1, std::size_t(text.size()), stdout) == std::size_t(text.size()) ? 0 : 1;
    }
    QFile input;
    QFile output;
    if (!input.open(stdin, QIODevice::ReadOnly) || !output.open(stdout, QIODevice::WriteOnly))
        return 1;
    QDataStream requests(input.readAll());
    QDataStream answers(&output);
    while (!requests.atEnd()) {
        answer(requests, answers);
        if (requests.status() != QDataStream::Ok)
            qFatal("a request is cut off");
    }
    return output.flush() && answers.status() == QDataStream::Ok ? 0 : 1;
}
