// SPDX-License-Identifier: MIT
//
// Whatever can be read can be written, and read again to the same: in each encoding and across them. The second byte of
// an input is the encoding of the rest.
#include <algorithm>
#include <limits>
#include <map>
#include <vector>

#include <QDataStream>
#include <QIODevice>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include "Harness.h"
#include "RecordMutator.h"

using namespace Fuzz;

namespace {

using Object = JobXml::DataObject;

struct Encoding
{
    QByteArray (*write)(Object &object);
    bool (*read)(Object &object, const QByteArray &bytes);
    bool loses; ///< whether an incomplete object may come back changed, or not at all
};

QByteArray writeXml(Object &object)
{
    return object.GetXmlString().toUtf8();
}

bool readXml(Object &object, const QByteArray &bytes)
{
    return object.SetXmlString(QString::fromUtf8(bytes), object.GetValidate());
}

QByteArray writeTagged(Object &object)
{
    return object.GetBinaryRepresentationAsQByteArray();
}

QByteArray writeCompressed(Object &object)
{
    return object.GetCompressedBinaryRepresentationAsQByteArray(1);
}

bool readRepresentation(Object &object, const QByteArray &bytes)
{
    QByteArray representation = bytes;
    return object.SetBinaryRepresentation(representation);
}

QByteArray writeSnapshot(Object &object)
{
    QByteArray snapshot;
    QDataStream stream(&snapshot, QIODevice::WriteOnly);
    object.GetVersionSpecificBinaryWithoutValidation(stream);
    return snapshot;
}

bool readSnapshot(Object &object, const QByteArray &bytes)
{
    QDataStream stream(bytes);
    object.SetVersionSpecificBinaryWithoutValidation(stream);
    return stream.status() == QDataStream::Ok && stream.atEnd();
}

constexpr Encoding xml{writeXml, readXml, false};
constexpr Encoding tagged{writeTagged, readRepresentation, false};
constexpr Encoding compressed{writeCompressed, readRepresentation, false};
constexpr Encoding snapshot{writeSnapshot, readSnapshot, true};
constexpr const Encoding *encodings[] = {&xml, &tagged, &compressed, &snapshot};

/// Equal, except for a NaN, which makes an object differ from itself.
bool same(const Class &type, const Object &left, const Object &right)
{
    return type.equal(left, right) || !type.equal(left, *type.copy(left));
}

/// XML reads the delay as a signed number, so that the upper half of its range is lost there.
void keepToWhatXmlCanRead(Object &object)
{
    auto *const document = dynamic_cast<JobXml::TunerProperties *>(&object);
    if (document && document->GetMaxFFPDelay() > quint64(std::numeric_limits<qint64>::max()))
        document->ResetMaxFFPDelay();
}

/// What is set in an object, a path and a value each, as far as every encoding keeps it.
class SetMembers
{
public:
    using Values = std::map<QString, QString>;

    static Values of(const Object &object)
    {
        SetMembers members;
        members.add(object, QString());
        return members.m_values;
    }

private:
    void add(const Object &object, const QString &where)
    {
        JobXml::visit(object, [&](const JobXml::MemberView &member) {
            if (member.IsSet() && member.IsChosen())
                add(member, where + member.GetName());
        });
    }

    void add(const JobXml::MemberView &member, const QString &path)
    {
        switch (member.GetKind()) {
        case JobXml::MemberKind::Choice:
            break; // seen by what is chosen
        case JobXml::MemberKind::EnumerationList: {
            const QVariantList values = member.GetValue().toList();
            addSize(path, int(values.size()));
            for (int i = 0; i < values.size(); ++i)
                m_values[path + QString::number(i)] = normal(values.at(i));
            break;
        }
        case JobXml::MemberKind::ObjectList:
            addSize(path, member.GetSize());
            Q_FALLTHROUGH();
        case JobXml::MemberKind::Object:
        case JobXml::MemberKind::Alternative:
            for (int i = 0; i < member.GetSize(); ++i)
                add(member.GetChild(i), path + QString::number(i) + QLatin1Char('/'));
            break;
        default:
            m_values[path] = normal(member.GetValue());
        }
    }

    void addSize(const QString &path, int size)
    {
        if (size > 0) // XML has no list without items
            m_values[path] = QString::number(size);
    }

    /// Numbers have two decimals; texts are not null, and are UTF-8, which has no half of a surrogate pair.
    static QString normal(const QVariant &value)
    {
        if (value.userType() != QMetaType::Double && value.userType() != QMetaType::Float)
            return QString::fromUtf8(value.toString().toUtf8()) + QLatin1Char(';');
        const QString text = QString::number(value.toDouble(), 'f', 2);
        return text == QLatin1String("-0.00") ? text.mid(1) : text;
    }

    Values m_values;
};

/// Whether all that is set in one object is also in the other, where more may be set: members that are always written.
bool holdsAllOf(const Object &object, const Object &original)
{
    const SetMembers::Values values = SetMembers::of(object);
    for (const auto &[path, value] : SetMembers::of(original)) {
        const auto found = values.find(path);
        if (found == values.end() || found->second != value)
            return false;
    }
    return true;
}

Class::Pointer reread(const Class &type, const Encoding &encoding, const QByteArray &bytes)
{
    Class::Pointer object = type.make();
    object->SetValidate(false);
    require(encoding.read(*object, bytes), "what was written can be read");
    return object;
}

void goAround(const Class &type, Object &original, bool complete)
{
    std::vector<Class::Pointer> fromTexts; // the encodings that write numbers as texts
    for (const Encoding *encoding : encodings) {
        if (encoding->loses && !complete)
            continue;
        const QByteArray first = encoding->write(original);
        if (first.isEmpty()) {
            require(encoding == &xml, "only XML has texts that it cannot carry");
            continue;
        }
        // The first time, texts that were null come back empty, numbers rounded, and "-0.00" as a zero that is written
        // without its sign; from then on nothing changes.
        const Class::Pointer once = reread(type, *encoding, first);
        require(!complete || holdsAllOf(*once, original), "a complete object comes back with all that was set in it");
        const QByteArray second = encoding->write(*once);
        Class::Pointer twice = reread(type, *encoding, second);
        require(encoding->write(*twice) == second, "what was read is written as the same bytes the second time");
        require(same(type, *once, *twice), "what was read and written is read as an equal object");
        if (encoding == &snapshot) {
            require(second == first && same(type, original, *once), "a snapshot keeps a complete object as it is");
            require(tagged.write(*once) == tagged.write(original), "a snapshot keeps what the records contain");
        } else {
            fromTexts.push_back(std::move(twice));
        }
    }

    if (!complete)
        return;
    for (const Class::Pointer &object : fromTexts) {
        require(same(type, *object, *fromTexts.front()), "XML and records give equal objects");
        for (const Encoding *encoding : encodings)
            require(encoding->write(*object) == encoding->write(*fromTexts.front()),
                    "XML and records give the same bytes");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    const Input input(data, size);
    if (input.bytes.isEmpty())
        return 0;
    const Encoding &encoding = *encodings[quint8(input.bytes.at(0)) % std::size(encodings)];
    const Class::Pointer original = input.object();
    bool read = false;
    returnsNormally([&] { read = encoding.read(*original, input.bytes.mid(1)); });
    if (!read)
        return 0;

    keepToWhatXmlCanRead(*original);
    const QVector<JobXml::Problem> problems = original->GetProblems();
    const bool complete = std::all_of(problems.begin(), problems.end(), [](const JobXml::Problem &problem) {
        return problem.xmlOnly || problem.message.contains(QLatin1String(" is set but empty")); // comes back as it was
    });
    original->SetValidate(false);
    goAround(*input.type, *original, complete);
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(quint8 *data, std::size_t size, std::size_t maxSize, unsigned seed)
{
    if (size > 1 && data[1] % std::size(encodings) == 1)
        return mutateRecord(data, size, maxSize, seed, Framing::ClassByteEncodingByteAndLeadingWord);
    return mutatePlainly(data, size, maxSize, seed);
}
