// SPDX-License-Identifier: MIT

// A plug-in that calls every public function that returns a text, and leaves the texts to its host.

#include <QBuffer>
#include <QDataStream>
#include <QDebug>
#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>
#include <reportbase/RepresentationSplitter.h>
#include <reportbase/SaveFile.h>
#include <tavikappstartup/TranslationCenter.h>

#include "Encodings.h"
#include "module/KeptText.h"

using namespace JobXml;

namespace {

/// Ends the program if a text that is to be kept could not be created.
void require(bool isDone)
{
    if (!isDone)
        qFatal("KeptTexts: an object could not be read");
}

/// A text of this plug-in that owns its characters, for functions that return their arguments.
QString own(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

class Keeper
{
public:
    explicit Keeper(KeptTexts &texts) : m_texts(texts) { }

    void keep(const char *function, const QString &text)
    {
        m_texts.append({QByteArray(function), text, QByteArray(), text.toUtf8()});
    }
    void keep(const char *function, const QByteArray &bytes)
    {
        m_texts.append({QByteArray(function), QString(), bytes, QByteArray(bytes.constData(), bytes.size())});
    }
    void keep(const char *function, const QStringList &texts)
    {
        for (const QString &text : texts)
            keep(function, text);
        if (texts.isEmpty())
            keep(function, QString());
    }
    void keep(const char *function, const QVariant &value)
    {
        if (value.userType() == QMetaType::QVariantList) {
            const QVariantList entries = value.toList();
            for (const QVariant &entry : entries)
                keep(function, entry);
        }
        keep(function, value.toString());
    }
    void keep(const char *path, const char *steps, const ObjectPath &place)
    {
        keep(path, place.path);
        for (const Step &step : place.steps)
            keep(steps, QString(step.member));
    }

    /// The text of the exception that the action throws. `error` is the function in Errors.h.
    template <class Action>
    void keepThrown(const char *error, Action action)
    {
        try {
            action();
        } catch (const ReportException &e) {
            keep("ReportException::GetMessageText", e.GetMessageText());
            keep("ReportException::what", QByteArray(e.what()));
            keep(error, e.GetMessageText());
        }
    }

private:
    KeptTexts &m_texts;
};

#define KEEP(Class, object, function) keeper.keep(#Class "::" #function, (object).function())
#define KEEP_MEMBER(Class, object, X)                                                                                  \
    KEEP(Class, object, Get##X);                                                                                       \
    KEEP(Class, object, GetDefault##X)

// --- Members ---------------------------------------------------------------------------------------------------------

/// Child objects are reached by a view of their parent.
void keepMembers(Keeper &keeper, const DataObject &object)
{
    visit(object, [&](const MemberView &member) {
        keeper.keep("MemberView::GetNames", member.GetNames());
        keeper.keep("MemberView::GetValue", member.GetValue());
        keeper.keep("MemberView::GetDefaultValue", member.GetDefaultValue());
        for (int i = 0; i < member.GetSize(); ++i)
            keepMembers(keeper, member.GetChild(i));
    });
}

/// The functions of every class.
template <class Object>
void keepObject(Keeper &keeper, Object &object)
{
    KEEP(IRGObject, object, GetObjectName);
    KEEP(IRGObject, object, GetVersion);
    KEEP(IRGObject, object, GetXmlString);
    KEEP(IRGObject, object, GetErrorString);
    KEEP(IRGObject, object, GetBinaryRepresentationAsQByteArray);
    keeper.keep("IRGObject::GetCompressedBinaryRepresentationAsQByteArray",
                object.GetCompressedBinaryRepresentationAsQByteArray(-1));
    QString invalid = own("valid");
    object.SetInvalid(invalid);
    keeper.keep("IRGObject::SetInvalid", invalid);
    const auto problems = object.GetProblems();
    for (const Problem &problem : problems) {
        keeper.keep("DataObject::GetProblems", problem.message);
        keeper.keep("Problem::message", problem.message);
        keeper.keep("Problem::member", problem.member);
        keeper.keep("ObjectPath::path", "Step::member", problem);
    }
    QString shown;
    QDebug(&shown) << object;
    keeper.keep("operator<<", shown);
    keepMembers(keeper, object);
}

/// Keeps the texts of an object that is new, of one with texts and one with empty texts, and of those that were read
/// from what these two write. `fill` sets every text, `keepTexts` calls the functions of the class.
template <class Object, class Fill, class KeepTexts>
void keepClass(Keeper &keeper, const char *objectName, const char *fromXmlName, const char *fromBinaryName, Fill fill,
               KeepTexts keepTexts)
{
    const auto keepAll = [&](Object &object) {
        keepObject(keeper, object);
        keepTexts(object);
    };
    keeper.keep(objectName, Object::GetStaticObjectName());
    QString error;
    require(!Object::fromXml(own("<unknown/>"), &error).has_value());
    keeper.keep(fromXmlName, error);
    require(!Object::fromBinary(QByteArray(), &error).has_value());
    keeper.keep(fromBinaryName, error);
    Object unset;
    unset.SetValidate(false);
    keepAll(unset);
    for (const QString &text : {own("a text"), QString(0, Qt::Uninitialized)}) {
        Object original;
        original.SetValidate(false);
        fill(original, text);
        keepAll(original);

        Object fromXml;
        require(fromXml.SetXmlString(original.GetXmlString(), false));
        keepAll(fromXml);
        Object fromRecord;
        fromRecord.SetValidate(false);
        QByteArray record = original.GetBinaryRepresentationAsQByteArray();
        require(fromRecord.SetBinaryRepresentation(record));
        keepAll(fromRecord);
        Object fromSnapshot;
        fromSnapshot.SetValidate(false);
        readSnapshot(fromSnapshot, snapshotOf(original));
        keepAll(fromSnapshot);
    }
}

#define KEEP_CLASS(Class, fill, keepTexts)                                                                             \
    keepClass<Class>(keeper, #Class "::GetStaticObjectName", #Class "::fromXml", #Class "::fromBinary", fill, keepTexts)
#define KEEP_CLASS_WITH_ID(Class)                                                                                      \
    KEEP_CLASS(                                                                                                        \
        Class, [](Class &object, const QString &text) { object.Setid(text); },                                         \
        [&](Class &object) { KEEP_MEMBER(Class, object, id); })

void keepValues(Keeper &keeper)
{
    KEEP_CLASS_WITH_ID(ValueBoolean);
    KEEP_CLASS_WITH_ID(ValueFloat);
    KEEP_CLASS_WITH_ID(ValueInt);
    KEEP_CLASS_WITH_ID(ValueInt64);
    KEEP_CLASS_WITH_ID(ValueNumericFloat);
    KEEP_CLASS_WITH_ID(ValueNumericInt);
    KEEP_CLASS_WITH_ID(ValueNumericInt64);
    const auto setName = [](auto &object, const QString &text) { object.Setname(text); };
    KEEP_CLASS(SelectionItem, setName, [&](SelectionItem &object) { KEEP_MEMBER(SelectionItem, object, name); });
    const auto setValue = [](auto &object, const QString &text) { object.Setvalue(text); };
    KEEP_CLASS(StringItem, setValue, [&](StringItem &object) { KEEP_MEMBER(StringItem, object, value); });
    const auto fillSelection = [](ValueSelection &object, const QString &text) {
        object.Setid(text);
        object.Settext(text);
        object.AppendSelectionItem(SelectionItem());
    };
    KEEP_CLASS(ValueSelection, fillSelection, [&](ValueSelection &object) {
        KEEP_MEMBER(ValueSelection, object, id);
        KEEP_MEMBER(ValueSelection, object, text);
    });
    const auto fillValue = [](auto &object, const QString &text) {
        object.Setid(text);
        object.Setvalue(text);
    };
    KEEP_CLASS(ValueString, fillValue, [&](ValueString &object) {
        KEEP_MEMBER(ValueString, object, id);
        KEEP_MEMBER(ValueString, object, value);
    });
    KEEP_CLASS(ValueStringList, fillValue, [&](ValueStringList &object) {
        KEEP_MEMBER(ValueStringList, object, id);
        KEEP_MEMBER(ValueStringList, object, value);
    });
    const auto choose = [](ValueItem &object, const QString &text) { object.GetValueString().Setvalue(text); };
    KEEP_CLASS(ValueItem, choose, [&](ValueItem &object) {
        for (int kind = 0; kind <= 10; ++kind)
            keeper.keep("ValueItem::ChoiceValueItemToName",
                        object.ChoiceValueItemToName(ValueItem::ChoiceValueItem(kind)));
        KEEP(ValueItem, object, GetChoiceValueItems);
        KEEP(ValueItem, object, GetGUIChoiceValueItems);
    });
}

ValueItem anItem(const QString &text)
{
    ValueItem item;
    item.GetValueString().SetValidate(false);
    item.GetValueString().Setvalue(text);
    return item;
}

Node aNode(const QString &text)
{
    Node node;
    node.SetValidate(false);
    node.Setid(text);
    node.AppendValueItem(anItem(text));
    node.AppendValueItem(ValueItem());
    return node;
}

Component aComponent(const QString &text)
{
    Component component;
    component.SetValidate(false);
    component.Settype(text);
    component.Setname(text);
    component.SetdisplayName(text);
    component.AppendNode(aNode(text));
    return component;
}

void keepTuner(Keeper &keeper)
{
    const auto fillNode = [](Node &object, const QString &text) { object = aNode(text); };
    KEEP_CLASS(Node, fillNode, [&](Node &object) { KEEP_MEMBER(Node, object, id); });
    const auto fillComponent = [](Component &object, const QString &text) { object = aComponent(text); };
    KEEP_CLASS(Component, fillComponent, [&](Component &object) {
        KEEP_MEMBER(Component, object, type);
        KEEP_MEMBER(Component, object, name);
        KEEP_MEMBER(Component, object, displayName);
    });
    const auto setName = [](BandwidthSelection &object, const QString &text) { object.SetName(text); };
    KEEP_CLASS(BandwidthSelection, setName,
               [&](BandwidthSelection &object) { KEEP_MEMBER(BandwidthSelection, object, Name); });
    const auto addModes = [](StartupModes &object, const QString &) {
        object.AppendStartupMode(StartupModes::StartupMode::FFM);
        object.AppendStartupMode(StartupModes::StartupMode::Stop);
    };
    KEEP_CLASS(StartupModes, addModes, [&](StartupModes &object) {
        for (int mode = -1; mode <= 11; ++mode)
            keeper.keep("StartupModes::StartupModeToName", object.StartupModeToName(StartupModes::StartupMode(mode)));
        KEEP(StartupModes, object, GetStartupModes);
        KEEP(StartupModes, object, GetGUIStartupModes);
        keeper.keep("StartupModes::tr", StartupModes::tr("Stop", nullptr, -1));
        keeper.keep("StartupModes::trUtf8", StartupModes::trUtf8("", nullptr, -1));
    });
    const auto fillDocument = [](TunerProperties &object, const QString &text) {
        object.Setname(text);
        object.Settype(TunerProperties::type::Receiver);
        object.Setbaseresource(text);
        object.SetconnectableResources(text);
        object.SetparentBaseResource(text);
        object.GetStartupModes().AppendStartupMode(StartupModes::StartupMode::WFFM);
        object.AppendComponent(aComponent(text));
    };
    KEEP_CLASS(TunerProperties, fillDocument, [&](TunerProperties &object) {
        KEEP(TunerProperties, object, GetVersion);
        KEEP(TunerProperties, object, GetInitialVersionLoaded);
        KEEP_MEMBER(TunerProperties, object, name);
        KEEP(TunerProperties, object, GettypeAsString);
        for (int type = -1; type <= 5; ++type)
            keeper.keep("TunerProperties::typeToName", object.typeToName(TunerProperties::type(type)));
        KEEP(TunerProperties, object, Gettypes);
        KEEP(TunerProperties, object, GetGUItypes);
        KEEP_MEMBER(TunerProperties, object, baseresource);
        KEEP_MEMBER(TunerProperties, object, connectableResources);
        KEEP_MEMBER(TunerProperties, object, parentBaseResource);
        keeper.keep("TunerProperties::tr", TunerProperties::tr("Receiver", nullptr, -1));
        keeper.keep("TunerProperties::trUtf8", TunerProperties::trUtf8("", nullptr, -1));
    });
    TunerProperties withoutVersion;
    require(withoutVersion.SetXmlString(own("<TunerProperties/>"), false));
    keeper.keep("TunerProperties::GetInitialVersionLoaded", withoutVersion.GetInitialVersionLoaded());
    keeper.keep("ObjectPath::below", "Step::member",
                ObjectPath().below(own("a label"), {TunerProperties::Gettypes().first(), 0}));
}

// --- Functions for derived classes
// ------------------------------------------------------------------------------------

class Derived : public ValueString
{
public:
    void keepTexts(Keeper &keeper)
    {
        keeper.keep("ObjectClass::name", objectClass().name);
        QXmlStreamReader reader(own("<value></value>"));
        reader.readNextStartElement();
        keeper.keep("IRGObject::GetTextValue", GetTextValue(reader));
        QByteArray utf8;
        composeXml(utf8);
        keeper.keep("IRGObject::composeXml", utf8);
        keeper.keep("DataObject::composeXml", utf8);
        SetObjectName(QString(0, Qt::Uninitialized));
        keeper.keep("IRGObject::GetObjectName", GetObjectName());
        require(!LoadXml(QString())); // which sets the error
        keeper.keep("IRGObject::GetErrorString", GetErrorString());
        SetObjectName(QString());
        keeper.keep("IRGObject::GetObjectName", GetObjectName());
        QString shown;
        QDebug(&shown) << *this;
        keeper.keep("operator<<", shown);
        keeper.keepThrown("Errors::notSet", [this] { ValueString::Check(); });
        keeper.keepThrown("Errors::wrongLength", [this] { ::readRecord(*this, bytes("00000001 00")); });
    }
};

/// Passes its check with any content.
class Lenient : public Node
{
public:
    void Check() const override { }
    void Check(bool) const override { }
};

// --- Failures --------------------------------------------------------------------------------------------------------

void keepExceptions(Keeper &keeper)
{
    keeper.keepThrown("Errors::notSet", [] { ValueInt().Check(); });
    keeper.keepThrown("Errors::nullGiven", [] { ValueInt().Setid(QString()); });
    keeper.keepThrown("Errors::invalidEnumGiven", [] { TunerProperties().Settype(TunerProperties::type(7)); });
    keeper.keepThrown("Errors::incompleteItem", [] { Component().AppendNode(Node()); });
    keeper.keepThrown("Errors::itemWithoutData", [] {
        Lenient node;
        node.SetValidate(false);
        node.Setid(own("id"));
        node.AppendValueItem(ValueItem());
        node.SetValidate(true);
        xmlOf(node);
    });
    keeper.keepThrown("Errors::emptyBoolean", [] { readXml(*std::make_unique<ValueBoolean>(), own("<v value=''/>")); });
    keeper.keepThrown("Errors::unknownElement", [] {
        require(TunerProperties().SetXmlString(own("<TunerProperties Version='1.1'><Other/></TunerProperties>"), true));
    });
    keeper.keepThrown("Errors::wrongLength", [] { readRecord(*std::make_unique<Node>(), bytes("00000001 00")); });
    keeper.keepThrown("Errors::invalidChoice", [] { ValueItem().InitChoice(ValueItem::ChoiceValueItem::None); });
    keeper.keepThrown("Errors::nothingChosen", [] { ValueItem().Check(); });
    keeper.keepThrown("Errors::chosenNotSet", [] {
        ValueItem item;
        item.GetValueInt();
        item.ResetValueInt();
        item.Check();
    });
    keeper.keepThrown("Errors::chosenWithoutData", [] {
        ValueItem item;
        item.GetValueInt();
        item.Check();
    });
    keeper.keepThrown("ReportException::GetMessageText", [] { throw RGException(own("a message")); });
}

void keepLoadFailures(Keeper &keeper)
{
    TunerProperties document;
    document.SetValidate(false);
    const auto keepError = [&](bool done) {
        if (!done)
            KEEP(IRGObject, document, GetErrorString);
    };
    const QTemporaryDir folder;
    keepError(document.LoadXml(QString()));
    keepError(document.LoadXml(static_cast<QFile *>(nullptr)));
    keepError(document.LoadXml(folder.path()));
    keepError(document.LoadXml(folder.filePath(own("none.xml"))));
    keepError(document.SaveXml(QString()));
    keepError(document.SaveXml(folder.path()));
    keepError(document.SaveBinary(QString()));
    keepError(document.SaveCompressedBinary(folder.path(), -1));
    document.Setname(QString(QChar(1)));
    KEEP(IRGObject, document, GetXmlString);
    keepError(false);

    QString manyAttributes = own("<TunerProperties");
    for (int i = 0; i < 1025; ++i)
        manyAttributes += own(" a") + QString::number(i) + own("=''");
    for (const QString &xml :
         {QString(), own("<"), own("<a/>"), own("<?xml encoding='x' version='1.0'?><a/>"), own("<!DOCTYPE a [ ]><a/>"),
          own("<TunerProperties>&a;</TunerProperties>"), manyAttributes + own("/>")})
        keepError(document.SetXmlString(xml, false));
    for (const char *hexBytes : {"", "00", "00000000 00000000", "C10CBB5F 00000001", "C10CBB5F 80000000",
                                 "C10CBB5F 00000001 00 00", "C10CBB5F 00000008 2B262DC9 00000001"}) {
        QByteArray representation = bytes(hexBytes);
        try {
            keepError(document.SetBinaryRepresentation(representation));
        } catch (const ReportException &e) {
            keeper.keep("ReportException::GetMessageText", e.GetMessageText());
        }
    }
    TunerProperties empty;
    QByteArray compressed = document.GetCompressedBinaryRepresentationAsQByteArray(9);
    for (const int byte : {8, 9, compressed.size() - 1}) {
        QByteArray damaged = compressed;
        damaged[byte] = char(damaged[byte] ^ 0x7F);
        keepError(document.SetBinaryRepresentation(damaged));
    }
    QDataStream noDevice;
    keepError(document.SetBinaryRepresentation(noDevice));

    using REPORTGENERATOR::SaveFile;
    keeper.keep("SaveFile", SaveFile(QString(), QByteArray("content")));
    keeper.keep("SaveFile", SaveFile(folder.path(), QByteArray("content")));
    keeper.keep("SaveFile", SaveFile(folder.filePath(own("done")), QByteArray("content")));
    QFile another(folder.filePath(own("done")));
    keeper.keep("SaveFile",
                SaveFile(QFile::encodeName(folder.filePath(own("done"))), own("it"), QByteArray("new"), another));
    QFile file(own("/dev/full"));
    file.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    keeper.keep("WriteAll", REPORTGENERATOR::WriteAll(file, QByteArray("content")));
}

void keepSplitter(Keeper &keeper)
{
    using REPORTGENERATOR::ReadLimits;
    using REPORTGENERATOR::RepresentationSplitter;
    TunerProperties document;
    document.SetValidate(false);
    const QByteArray representation = document.GetBinaryRepresentationAsQByteArray();
    RepresentationSplitter splitter(TunerProperties::GetId());
    KEEP(RepresentationSplitter, splitter, GetErrorString);
    splitter.Append(representation);
    const auto taken = splitter.Take();
    require(taken.has_value());
    keeper.keep("RepresentationSplitter::Take", *taken);
    const auto keepRefusal = [&](const QByteArray &received, const ReadLimits &limits) {
        RepresentationSplitter refusing(TunerProperties::GetId(), limits);
        refusing.Append(received);
        require(!refusing.Take().has_value() && !refusing.GetErrorString().isNull());
        KEEP(RepresentationSplitter, refusing, GetErrorString);
    };
    ReadLimits plainOnly;
    plainOnly.acceptCompressed = false;
    keepRefusal(bytes("00000000 00000000"), {});
    keepRefusal(bytes("C10CBB5F 80000000"), {});
    keepRefusal(bytes("C10CBB5F 7FFFFFFF"), {});
    keepRefusal(document.GetCompressedBinaryRepresentationAsQByteArray(9), plainOnly);
}

void keepRegistry(Keeper &keeper)
{
    TranslationCenter &registry = TranslationCenter::Instance();
    KEEP(TranslationCenter, registry, SearchPaths);
    KEEP(TranslationCenter, registry, RegisteredModules);
}

} // namespace

extern "C" Q_DECL_EXPORT void keepTexts(KeptTexts *texts)
{
    Keeper keeper(*texts);
    keepValues(keeper);
    keepTuner(keeper);
    Derived().keepTexts(keeper);
    keepExceptions(keeper);
    keepLoadFailures(keeper);
    keepSplitter(keeper);
    keepRegistry(keeper);
}
