// SPDX-License-Identifier: MIT
#include <jobxml/TunerProperties.h>

#include <QCoreApplication>

#include "framework/Behavior.h"
#include "framework/ChildList.h"
#include "framework/NewObject.h"
#include "framework/Scalar.h"
#include "framework/Table.h"
#include "module/NameList.h"
#include "module/UnitStatics.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("TunerProperties"));

const NameList typeNames({
    QLatin1String("MCP"),
    QLatin1String("SCP"),
    QLatin1String("FFP"),
    QLatin1String("Receiver"),
    QLatin1String("DirectionFinder"),
});

const QString currentVersion = REPORTGENERATOR::ownText("1.1");
constexpr char versionAttributeName[] = "Version";
constexpr Text<8> versionAttribute(versionAttributeName);

using Type = TunerProperties::type;

Type typeOf(const QString &name)
{
    static_assert(int(Type::Invalid) == NameList::notFound, "an unknown name is the invalid type");
    return Type(typeNames.value(name));
}

} // namespace

/// A type is encoded as its name; in snapshots, as its value.
template <>
struct Codec<Type> : CodecDefaults<Type>
{
    static constexpr MemberKind kind = MemberKind::Enumeration;
    static constexpr Traits traits = MayBeInvalid;

    static bool isValid(Type value) { return typeNames.contains(int(value)); }
    [[noreturn]] static void refuse(const DataObject &, QLatin1String member)
    {
        Errors::invalidEnum(TunerProperties::GetStaticObjectName(), member);
    }
    static QStringList names() { return typeNames.names(); }
    static QVariant variant(Type value) { return typeNames.variant(int(value), int(Type::Invalid)); }
    static bool fromVariant(const QVariant &variant, Type &value)
    {
        const auto type = typeNames.fromVariant(variant, Type::Invalid);
        value = type.value_or(value);
        return type.has_value();
    }

    template <class Use>
    static void withText(Type value, Use &&use)
    {
        use(nameOf(value));
    }
    static Type fromName(const QString &name) { return typeOf(name); }
    static Type fromText(const DataObject &, QLatin1String, const XmlText &text) { return typeOf(text.toString()); }
    static void writePayload(BinaryWriter &writer, Type value) { writer.putUtf8(nameOf(value)); }
    static void writeSnapshot(BinaryWriter &writer, Type value) { writer.put(qint8(value)); }
    static bool readSnapshot(BinaryReader &reader, Type &value)
    {
        qint8 number = 0;
        if (!reader.take(number))
            return false;
        value = Type(number);
        return true;
    }

private:
    static QString nameOf(Type value) { return typeNames.name(int(value)); }
};

namespace {

struct Versions
{
    QString own = currentVersion;
    QString loaded;
    bool isOlder = true; // whether `loaded` is; stored, because each unknown element needs it and a version may be long
};

struct TunerPropertiesData
{
    Versions versions;
    StartupModes startupModes;
    ItemList<BandwidthSelection> bandwidths;
    quint64 maxFFPDelay = 0;
    bool hrpanSupported = false;
    ItemList<Component> components;
    QString name;
    Type type = Type::Invalid;
    QString baseresource;
    QString connectableResources;
    int quantity = 1;
    QString parentBaseResource;
    bool hwProcessing = false;
};

// Departs: the bandwidths are optional. XML and tagged records contain all items, and tagged records omit an empty
// list. Snapshots contain the count and the items only if the flag is set.
class BandwidthList final : public ChildList<TunerPropertiesData, BandwidthSelection>
{
public:
    using ChildList::ChildList;

    bool writesChildren(const Block &block) const override { return isPresent(block); }

    void writeRecord(const DataObject &object, Block &block, BinaryWriter &writer) const override
    {
        if (isPresent(block))
            ChildList::writeRecord(object, block, writer);
    }

    void writeSnapshot(const DataObject &object, Block &block, BinaryWriter &writer) const override
    {
        if (isSet(block))
            ChildList::writeSnapshot(object, block, writer);
    }

    bool readSnapshot(DataObject &object, Block &block, BinaryReader &reader) const override
    {
        return !isSet(block) || ChildList::readSnapshot(object, block, reader);
    }
};

// Departs: the start-up modes are a single child object instead of a list.
class StartupModesMember final : public FieldOf<TunerPropertiesData, StartupModes>
{
public:
    constexpr StartupModesMember(int bit, const char *name, quint32 tag, StartupModes TunerPropertiesData::*field)
        : FieldOf(bit, name, tag, field, WrittenWhenSet | HoldsChildren | CreatedWithTheBlock | PresentByValue)
    {
    }
    using FieldOf::reset;

    bool isPresent(const Block &block) const override { return field(block).AnyData(); }

    void reset(Block &block) const override { field(block) = StartupModes(); }

    bool equals(Block *left, Block *right) const override
    {
        return areEqual(left, right, [](const auto &one, const auto &other) { return one == other; });
    }

    void forEachChild(Block &block, const ChildAction &action) const override { action(field(block), -1); }

    void merge(DataObject &object, const DataObject &other) const override
    {
        if (Member::isSet(other))
            static_cast<void>(modify(object).MergeRGObject(get(other))); // both have the same class, so it succeeds
    }

    MemberKind kind() const override { return MemberKind::Object; }
    int childCount(const Block &) const override { return 1; }
    const DataObject &child(const Block &block, int) const override { return field(block); }
    DataObject &editChild(DataObject &object, int) const override { return modify(object); }

    void writeXml(const DataObject &object, Block &block, XmlOutput &output) const override
    {
        if (isSet(block))
            Child::writeXml(field(block), object, output, true);
        else if (output.composition())
            skipChild(field(block), *output.composition());
    }

    void readXmlElement(DataObject &object, XmlInput &input) const override
    {
        if (readModes(object, input, [&](StartupModes &modes) { return Child::readXml(modes, input, xmlName()); }))
            modify(object);
    }

    void writeRecord(const DataObject &object, Block &block, BinaryWriter &writer) const override
    {
        if (isSet(block))
            Child::writeRecord(field(block), object, writer, tag(), true);
        else if (writer.composition())
            skipChild(field(block), *writer.composition());
    }

    void readRecord(DataObject &object, BinaryReader &reader, qint32 length) const override
    {
        readModes(object, reader, [&](StartupModes &modes) {
            Child::readRecord(modes, reader, length);
            return true;
        });
        modify(object);
    }

    void writeSnapshot(const DataObject &, Block &block, BinaryWriter &writer) const override
    {
        if (isSet(block))
            Child::writeSnapshot(field(block), writer);
    }

    bool readSnapshot(DataObject &object, Block &block, BinaryReader &reader) const override
    {
        return !isSet(block)
            || readModes(object, reader, [&](StartupModes &modes) { return Child::readSnapshot(modes, reader); });
    }

private:
    template <class Reader, class Read>
    bool readModes(DataObject &object, Reader &reader, const Read &read) const
    {
        reader.readChildOf(*this);
        return readPart(
            object, ObjectAccess::block(object), reader,
            [this](Block &found) -> StartupModes & { return field(found); }, read);
    }
};

// clang-format off
constexpr quint32 versionTag = 0xCCFEDFA1;

namespace row {
using D = TunerPropertiesData;
constexpr StartupModesMember StartupModes{0, "StartupModes",         0x2A68BEF4, &D::startupModes};
constexpr BandwidthList BandwidthSelection{1, "BandwidthSelection",  0xC2483BA3, &D::bandwidths,           WrittenUnlessEmpty};
constexpr Scalar    MaxFFPDelay{          2, "MaxFFPDelay",          0xC8B67267, &D::maxFFPDelay,          WrittenWhenSet};
constexpr Scalar    HRPANSupported{       3, "HRPANSupported",       0xC82D81E1, &D::hrpanSupported,       WrittenWhenSet};
constexpr ChildList Component{            4, "Component",            0x66BA8E61, &D::components,           Mandatory};
constexpr Scalar    name{                 5, "name",                 0xCB4CF645, &D::name,                 Attribute | WrittenWhenSet | Identifies};
constexpr Scalar    type{                 6, "type",                 0xA1F0EE2D, &D::type,                 Attribute | Mandatory};
constexpr Scalar    baseresource{         7, "baseresource",         0xE0CFAE8E, &D::baseresource,         Attribute | Mandatory};
constexpr Scalar    connectableResources{ 8, "connectableResources", 0x6ADAF7A6, &D::connectableResources, Attribute | WrittenWhenSet};
constexpr Scalar    quantity{             9, "quantity",             0xA59D7D84, &D::quantity,             Attribute | WrittenWhenSet};
constexpr Scalar    parentBaseResource{  10, "parentBaseResource",   0x0BEE909A, &D::parentBaseResource,   Attribute | WrittenWhenSet};
constexpr Scalar    hwProcessing{        11, "hwProcessing",         0x64D08C29, &D::hwProcessing,         Attribute | WrittenWhenSet};
} // namespace row

constexpr Table members{row::StartupModes, row::BandwidthSelection, row::MaxFFPDelay, row::HRPANSupported, row::Component,
                        row::name, row::type, row::baseresource, row::connectableResources, row::quantity,
                        row::parentBaseResource, row::hwProcessing};
// clang-format on

Versions &versionsOf(const DataObject &document)
{
    return static_cast<BlockOf<TunerPropertiesData> &>(ObjectAccess::block(document)).members.versions;
}

void setLoadedVersion(DataObject &document, const QString &version)
{
    Versions &versions = versionsOf(document);
    versions.loaded = version;
    versions.isOlder = versions.own.toFloat() > version.toFloat(); // a text that is not a number is 0
    if (versions.isOlder)
        document.ResetToDefault();
}

class DocumentBehavior final : public Behavior
{
    // Departs: writes the version first, because readers need it before everything else.
    void writeElement(const DataObject &document, XmlOutput &output) const override
    {
        output.writeStartElement(document.GetObjectName());
        output.writeAttribute(versionAttribute.string(), document.GetVersion());
        writeMembers(document, output);
        output.writeEndElement();
    }

    // Departs: the version is read first, since an older one resets the document.
    void readAttributes(DataObject &document, XmlInput &input) const override
    {
        XmlText version;
        input.findAttribute({versionAttribute.view(), versionAttributeName}, version);
        setLoadedVersion(document, version.toString());
        Behavior::readAttributes(document, input);
    }

    // Departs: only older documents may contain unknown elements, which have been removed since.
    void readUnknownElement(DataObject &document, XmlInput &input) const override
    {
        if (versionsOf(document).isOlder)
            Behavior::readUnknownElement(document, input);
        else if (document.GetValidate())
            Errors::unknownElement(document, input.name());
        // otherwise the element is not skipped: its content is read as content of the document itself
    }

    // Departs: writes the version in a record of its own, before all others.
    void writeRecords(const DataObject &document, BinaryWriter &writer) const override
    {
        const auto record = writer.begin(versionTag);
        writer.put(document.GetVersion());
        writer.end(record);
        Behavior::writeRecords(document, writer);
    }

    // Departs: knows the record of the version.
    void readRecord(DataObject &document, BinaryReader &reader, quint32 tag, qint32 length) const override
    {
        if (tag == versionTag)
            setLoadedVersion(document, reader.read<QString>(document));
        else
            Behavior::readRecord(document, reader, tag, length);
    }

    // Departs: writes the version between the flags and the members.
    void writeSnapshot(const DataObject &document, BinaryWriter &writer) const override
    {
        writeSnapshotFlags(document, writer);
        writer.put(document.GetVersion());
        writeSnapshotMembers(document, writer);
    }

    // Departs: an older version resets the whole document, including the flags that were just read.
    bool readSnapshot(DataObject &document, BinaryReader &reader) const override
    {
        QString version;
        if (!readSnapshotFlags(document, reader) || !reader.take(version))
            return false;
        setLoadedVersion(document, version);
        return readSnapshotMembers(document, reader);
    }
};

constexpr DocumentBehavior behavior;
constexpr ClassInfo tunerProperties =
    describe<TunerProperties, members, 1>(unitStatics.objectName, 0xC10CBB5F, behavior);

} // namespace

// clang-format off
TunerProperties::TunerProperties() : DataObject(tunerProperties) {}
TunerProperties::TunerProperties(const TunerProperties &other) = default;
TunerProperties::TunerProperties(TunerProperties &&other) noexcept = default;
TunerProperties &TunerProperties::operator=(const TunerProperties &other) noexcept = default;
TunerProperties &TunerProperties::operator=(TunerProperties &&other) noexcept = default;
TunerProperties::~TunerProperties() = default;

void TunerProperties::swap(TunerProperties &other) noexcept { ObjectAccess::swapBlocks(*this, other); }

std::optional<TunerProperties> TunerProperties::fromXml(const QString &xml, QString *error) { return newFromXml<TunerProperties>(xml, error); }
std::optional<TunerProperties> TunerProperties::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<TunerProperties>(representation, error, limits);
}

qint64 TunerProperties::GetId() { return tunerProperties.identifier; }
QString TunerProperties::GetStaticObjectName() { return unitStatics.objectName; }

QString TunerProperties::Getname() const                      { return row::name.get(*this); }
void TunerProperties::Setname(QString value)                  { row::name.set(*this, std::move(value)); }
bool TunerProperties::IsnameSet() const                       { return row::name.isSet(*this); }
void TunerProperties::Resetname()                             { row::name.reset(*this); }
QString TunerProperties::GetDefaultname() const               { return row::name.defaultValue(); }
bool TunerProperties::IsValidname(const QString &value) const { return row::name.isValid(value); }

Type TunerProperties::Gettype() const                       { return row::type.get(*this); }
void TunerProperties::Settype(type value)                   { row::type.set(*this, value); }
bool TunerProperties::IstypeSet() const                     { return row::type.isSet(*this); }
void TunerProperties::Resettype()                           { row::type.reset(*this); }
Type TunerProperties::GetDefaulttype() const                { return row::type.defaultValue(); }
Type TunerProperties::GetInvalidtype() const                { return Type::Invalid; }
bool TunerProperties::IsValidtype(type value) const         { return row::type.isValid(value); }
QString TunerProperties::GettypeAsString() const            { return typeToName(Gettype()); }
QString TunerProperties::typeToName(type value) const       { return typeNames.name(int(value)); }
Type TunerProperties::NameTotype(const QString &name) const { return typeOf(name); }
QStringList TunerProperties::Gettypes()                     { return typeNames.names(); }
QStringList TunerProperties::GetGUItypes()                  { return typeNames.displayNames(); }

QString TunerProperties::Getbaseresource() const                      { return row::baseresource.get(*this); }
void TunerProperties::Setbaseresource(QString value)                  { row::baseresource.set(*this, std::move(value)); }
bool TunerProperties::IsbaseresourceSet() const                       { return row::baseresource.isSet(*this); }
void TunerProperties::Resetbaseresource()                             { row::baseresource.reset(*this); }
QString TunerProperties::GetDefaultbaseresource() const               { return row::baseresource.defaultValue(); }
bool TunerProperties::IsValidbaseresource(const QString &value) const { return row::baseresource.isValid(value); }

QString TunerProperties::GetconnectableResources() const                      { return row::connectableResources.get(*this); }
void TunerProperties::SetconnectableResources(QString value)                  { row::connectableResources.set(*this, std::move(value)); }
bool TunerProperties::IsconnectableResourcesSet() const                       { return row::connectableResources.isSet(*this); }
void TunerProperties::ResetconnectableResources()                             { row::connectableResources.reset(*this); }
QString TunerProperties::GetDefaultconnectableResources() const               { return row::connectableResources.defaultValue(); }
bool TunerProperties::IsValidconnectableResources(const QString &value) const { return row::connectableResources.isValid(value); }

int TunerProperties::Getquantity() const                      { return row::quantity.get(*this); }
void TunerProperties::Setquantity(int value)                  { row::quantity.set(*this, value); }
bool TunerProperties::IsquantitySet() const                   { return row::quantity.isSet(*this); }
void TunerProperties::Resetquantity()                         { row::quantity.reset(*this); }
int TunerProperties::GetDefaultquantity() const               { return row::quantity.defaultValue(); }
bool TunerProperties::IsValidquantity(const int &value) const { return row::quantity.isValid(value); }

QString TunerProperties::GetparentBaseResource() const                      { return row::parentBaseResource.get(*this); }
void TunerProperties::SetparentBaseResource(QString value)                  { row::parentBaseResource.set(*this, std::move(value)); }
bool TunerProperties::IsparentBaseResourceSet() const                       { return row::parentBaseResource.isSet(*this); }
void TunerProperties::ResetparentBaseResource()                             { row::parentBaseResource.reset(*this); }
QString TunerProperties::GetDefaultparentBaseResource() const               { return row::parentBaseResource.defaultValue(); }
bool TunerProperties::IsValidparentBaseResource(const QString &value) const { return row::parentBaseResource.isValid(value); }

bool TunerProperties::GethwProcessing() const        { return row::hwProcessing.get(*this); }
void TunerProperties::SethwProcessing(bool value)    { row::hwProcessing.set(*this, value); }
bool TunerProperties::IshwProcessingSet() const      { return row::hwProcessing.isSet(*this); }
void TunerProperties::ResethwProcessing()            { row::hwProcessing.reset(*this); }
bool TunerProperties::GetDefaulthwProcessing() const { return row::hwProcessing.defaultValue(); }

StartupModes &TunerProperties::GetStartupModes()                      { return row::StartupModes.modify(*this); }
const StartupModes &TunerProperties::GetStartupModes() const          { return row::StartupModes.get(*this); }
void TunerProperties::SetStartupModes(const StartupModes &modes)      { row::StartupModes.modify(*this) = modes; }
bool TunerProperties::IsStartupModesSet() const                       { return row::StartupModes.isSet(*this); }
void TunerProperties::ResetStartupModes()                             { row::StartupModes.reset(*this); }
bool TunerProperties::IsValidStartupModes(const StartupModes &) const { return true; }

QVector<BandwidthSelection> &TunerProperties::GetBandwidthSelection()                      { return row::BandwidthSelection.modify(*this); }
const QVector<BandwidthSelection> &TunerProperties::GetBandwidthSelection() const          { return row::BandwidthSelection.get(*this); }
void TunerProperties::SetBandwidthSelection(const QVector<BandwidthSelection> &items)      { row::BandwidthSelection.set(*this, items); }
void TunerProperties::AppendBandwidthSelection(const BandwidthSelection &item)             { row::BandwidthSelection.append(*this, item); }
bool TunerProperties::IsBandwidthSelectionSet() const                                      { return row::BandwidthSelection.isSet(*this); }
void TunerProperties::ResetBandwidthSelection()                                            { row::BandwidthSelection.reset(*this); }
bool TunerProperties::IsValidBandwidthSelection(const BandwidthSelection &) const          { return true; }
bool TunerProperties::IsValidBandwidthSelection(const QVector<BandwidthSelection> &) const { return true; }

quint64 TunerProperties::GetMaxFFPDelay() const                      { return row::MaxFFPDelay.get(*this); }
void TunerProperties::SetMaxFFPDelay(quint64 value)                  { row::MaxFFPDelay.set(*this, value); }
bool TunerProperties::IsMaxFFPDelaySet() const                       { return row::MaxFFPDelay.isSet(*this); }
void TunerProperties::ResetMaxFFPDelay()                             { row::MaxFFPDelay.reset(*this); }
quint64 TunerProperties::GetDefaultMaxFFPDelay() const               { return row::MaxFFPDelay.defaultValue(); }
bool TunerProperties::IsValidMaxFFPDelay(const quint64 &value) const { return row::MaxFFPDelay.isValid(value); }

bool TunerProperties::GetHRPANSupported() const        { return row::HRPANSupported.get(*this); }
void TunerProperties::SetHRPANSupported(bool value)    { row::HRPANSupported.set(*this, value); }
bool TunerProperties::IsHRPANSupportedSet() const      { return row::HRPANSupported.isSet(*this); }
void TunerProperties::ResetHRPANSupported()            { row::HRPANSupported.reset(*this); }
bool TunerProperties::GetDefaultHRPANSupported() const { return row::HRPANSupported.defaultValue(); }

QVector<Component> &TunerProperties::GetComponent()                      { return row::Component.modify(*this); }
const QVector<Component> &TunerProperties::GetComponent() const          { return row::Component.get(*this); }
void TunerProperties::SetComponent(const QVector<Component> &items)      { row::Component.set(*this, items); }
void TunerProperties::AppendComponent(const Component &item)             { row::Component.append(*this, item); }
bool TunerProperties::IsComponentSet() const                             { return row::Component.isSet(*this); }
void TunerProperties::ResetComponent()                                   { row::Component.reset(*this); }
bool TunerProperties::IsValidComponent(const Component &) const          { return true; }
bool TunerProperties::IsValidComponent(const QVector<Component> &) const { return true; }
// clang-format on

// Departs: also compares the versions, which initializes both objects if one of them is initialized.
bool TunerProperties::operator==(const TunerProperties &other) const
{
    if (!IsInitialized() && !other.IsInitialized())
        return true;
    return GetVersion() == other.GetVersion() && areEqual(*this, other);
}

bool TunerProperties::operator!=(const TunerProperties &other) const
{
    return !(*this == other);
}

// Departs: only the document has a version.
const QString &TunerProperties::GetVersion() const
{
    return versionsOf(*this).own;
}

QString TunerProperties::GetInitialVersionLoaded() const
{
    return versionsOf(*this).loaded;
}

// Departs: also sets the flag of the quantity.
void TunerProperties::ResetToDefault()
{
    DataObject::ResetToDefault();
    row::quantity.setFlag(*this, true);
}

QString TunerProperties::tr(const char *sourceText, const char *disambiguation, int n)
{
    return QCoreApplication::translate("JobXml::TunerProperties", sourceText, disambiguation, n);
}

QString TunerProperties::trUtf8(const char *sourceText, const char *disambiguation, int n)
{
    return tr(sourceText, disambiguation, n);
}

QDebug operator<<(QDebug debug, TunerProperties::type value)
{
    return typeNames.write(std::move(debug), "TunerProperties::type", int(value), int(TunerProperties::type::Invalid),
                           "Invalid");
}

} // namespace JobXml
