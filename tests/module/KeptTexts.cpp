// SPDX-License-Identifier: MIT

// A plug-in that calls every public function that returns a text, and leaves the texts to its host.

#include <QBuffer>
#include <QDataStream>
#include <QDebug>
#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <jobxml/Visit.h>
#include <reportbase/RepresentationSplitter.h>
#include <reportbase/SaveFile.h>
#include <tavikappstartup/TranslationCenter.h>

#include "Encodings.h"
#include "Members.h"
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

void keepProblem(Keeper &keeper, const char *function, const Problem &problem)
{
    keeper.keep(function, problem.message);
    keeper.keep("Problem::message", problem.message);
    keeper.keep("Problem::member", problem.member);
    keeper.keep("Problem::value", problem.value);
    keeper.keep("ObjectPath::path", "Step::member", problem);
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
    for (const Problem &problem : problems)
        keepProblem(keeper, "DataObject::GetProblems", problem);
    QString shown;
    QDebug(&shown) << object;
    keeper.keep("operator<<", shown);
    keepMembers(keeper, object);
}

template <class Object>
void fill(Object &object, const QString &text);
void fill(ValueItem &object, const QString &text);

/// Sets every text of an object, and of an item in each of its lists.
template <class Object>
struct Filler
{
    Object &object;
    const QString &text;

    template <class V>
    void operator()(const Members::Value<Object, V> &member) const
    {
        if constexpr (std::is_same_v<V, QString>)
            (object.*member.set)(text);
        else if constexpr (std::is_enum_v<V>)
            (object.*member.set)(V(3));
    }
    template <class C>
    void operator()(const Members::Child<Object, C> &member) const
    {
        fill((object.*member.modify)(), text);
    }
    template <class Item, class Given>
    void operator()(const Members::List<Object, Item, Given> &member) const
    {
        if constexpr (std::is_enum_v<Item>) {
            (object.*member.append)(Item(4));
            (object.*member.append)(Item(10));
        } else {
            Item item;
            fill(item, text);
            (object.*member.append)(item);
            (object.*member.append)(Item());
        }
    }
};

template <class Object>
void fill(Object &object, const QString &text)
{
    object.SetValidate(false);
    Members::forEach<Object>(Filler<Object>{object, text});
}

void fill(ValueItem &object, const QString &text)
{
    object.SetValidate(false);
    object.GetValueString().SetValidate(false);
    object.GetValueString().Setvalue(text);
}

/// What a class has besides its members.
void keepMore(Keeper &, DataObject &) { }

void keepMore(Keeper &keeper, ValueItem &object)
{
    for (int kind = 0; kind <= Kinds::size; ++kind)
        keeper.keep("ValueItem::ChoiceValueItemToName", object.ChoiceValueItemToName(ValueItem::ChoiceValueItem(kind)));
    KEEP(ValueItem, object, GetChoiceValueItems);
    KEEP(ValueItem, object, GetGUIChoiceValueItems);
}

void keepMore(Keeper &keeper, StartupModes &object)
{
    for (int mode = -1; mode <= 11; ++mode)
        keeper.keep("StartupModes::StartupModeToName", object.StartupModeToName(StartupModes::StartupMode(mode)));
    KEEP(StartupModes, object, GetStartupModes);
    KEEP(StartupModes, object, GetGUIStartupModes);
    keeper.keep("StartupModes::tr", StartupModes::tr("Stop", nullptr, -1));
    keeper.keep("StartupModes::trUtf8", StartupModes::trUtf8("", nullptr, -1));
}

void keepMore(Keeper &keeper, TunerProperties &object)
{
    KEEP(TunerProperties, object, GetVersion);
    KEEP(TunerProperties, object, GetInitialVersionLoaded);
    KEEP(TunerProperties, object, GettypeAsString);
    for (int type = -1; type <= 5; ++type)
        keeper.keep("TunerProperties::typeToName", object.typeToName(TunerProperties::type(type)));
    KEEP(TunerProperties, object, Gettypes);
    KEEP(TunerProperties, object, GetGUItypes);
    keeper.keep("TunerProperties::tr", TunerProperties::tr("Receiver", nullptr, -1));
    keeper.keep("TunerProperties::trUtf8", TunerProperties::trUtf8("", nullptr, -1));
}

template <class Object>
void keepTexts(Keeper &keeper, Object &object)
{
    keepObject(keeper, object);
    const QByteArray className = Object::GetStaticObjectName().toLatin1();
    Members::forEach<Object>([&](const auto &member) {
        using Member = std::decay_t<decltype(member)>;
        if constexpr (std::is_same_v<Member, Members::Value<Object, QString>>) {
            keeper.keep((className + "::Get" + member.name).constData(), (object.*member.get)());
            keeper.keep((className + "::GetDefault" + member.name).constData(), (object.*member.getDefault)());
        }
    });
    keepMore(keeper, object);
}

/// Keeps the texts of an object that is new, of one with texts and one with empty texts, and of those that were read
/// from what these two write.
template <class Object>
void keepClass(Keeper &keeper)
{
    const QByteArray className = Object::GetStaticObjectName().toLatin1();
    keeper.keep((className + "::GetStaticObjectName").constData(), Object::GetStaticObjectName());
    QString error;
    require(!Object::fromXml(own("<unknown/>"), &error).has_value());
    keeper.keep((className + "::fromXml").constData(), error);
    require(!Object::fromBinary(QByteArray(), &error).has_value());
    keeper.keep((className + "::fromBinary").constData(), error);
    Object unset;
    unset.SetValidate(false);
    keepTexts(keeper, unset);
    for (const QString &text : {own("a text"), QString(0, Qt::Uninitialized)}) {
        Object original;
        fill(original, text);
        keepTexts(keeper, original);

        Object fromXml;
        require(fromXml.SetXmlString(original.GetXmlString(), false));
        keepTexts(keeper, fromXml);
        Object fromRecord;
        fromRecord.SetValidate(false);
        QByteArray record = original.GetBinaryRepresentationAsQByteArray();
        require(fromRecord.SetBinaryRepresentation(record));
        keepTexts(keeper, fromRecord);
        Object fromSnapshot;
        fromSnapshot.SetValidate(false);
        readSnapshot(fromSnapshot, snapshotOf(original));
        keepTexts(keeper, fromSnapshot);
    }
}

void keepModel(Keeper &keeper)
{
    Classes::forEach([&](auto tag) { keepClass<typename decltype(tag)::Class>(keeper); });
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
        QByteArray record;
        composeBinary(QDataStream(), record);
        keeper.keep("IRGObject::composeBinary", record);
        keeper.keep("DataObject::composeBinary", record);
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
    keeper.keepThrown("Errors::nullText", [] { ValueInt().Setid(QString()); });
    keeper.keepThrown("Errors::invalidEnum", [] { TunerProperties().Settype(TunerProperties::type(7)); });
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
    for (const int byte : {8, 9, int(compressed.size()) - 1}) {
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

void keepReadProblems(Keeper &keeper)
{
    const QString xml =
        own("<TunerProperties Version='1.1' type=''><StartupModes><StartupMode/></StartupModes>"
            "<Component name='a'><Node><ValueItem><ValueBoolean value=''/></ValueItem></Node></Component>"
            "<Component name='a'/><Unknown/></TunerProperties>");
    const QTemporaryDir folder;
    const auto write = [&](const QString &name, const QByteArray &content) {
        QFile file(folder.filePath(name));
        require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        return file.fileName();
    };
    TunerProperties document;
    require(document.SetXmlString(xml, false));
    const QByteArray representation = document.GetBinaryRepresentationAsQByteArray();
    const auto keepAll = [&](const char *function, const auto &read) {
        TunerProperties into;
        QVector<Problem> problems;
        require(!read(into, problems) && !problems.isEmpty());
        for (const Problem &problem : qAsConst(problems))
            keepProblem(keeper, function, problem);
        keeper.keep("ErrorLocation::source", into.GetErrorLocation().source);
    };
    const QString xmlFile = write(own("a.xml"), xml.toUtf8());
    const QString recordFile = write(own("a.tpb"), representation);
    for (const QString &text : {xml, own("<!DOCTYPE a>") + xml, own("<"), own("<Node/>")})
        keepAll("DataObject::SetXmlString",
                [&](auto &into, auto &problems) { return into.SetXmlString(text, problems); });
    for (const QByteArray &bytes :
         {xml.toUtf8(), "<!DOCTYPE a>" + xml.toUtf8(), QByteArray("<"), QByteArray("<Node/>")})
        keepAll("DataObject::SetXmlDocument",
                [&](auto &into, auto &problems) { return into.SetXmlDocument(bytes, own("source"), problems); });
    for (const QByteArray &bytes : {representation, representation.chopped(1), QByteArray("x")})
        keepAll("DataObject::SetBinaryRepresentation",
                [&](auto &into, auto &problems) { return into.SetBinaryRepresentation(bytes, problems); });
    for (const QString &path : {xmlFile, recordFile, folder.filePath(own("none"))}) {
        keepAll("DataObject::LoadXml", [&](auto &into, auto &problems) { return into.LoadXml(path, problems); });
        keepAll("DataObject::LoadBinary", [&](auto &into, auto &problems) { return into.LoadBinary(path, problems); });
    }
    try {
        TunerProperties strict;
        static_cast<void>(strict.LoadXml(xmlFile));
    } catch (const ReportException &e) {
        keeper.keep("ErrorLocation::source", e.GetLocation().source);
    }
    try {
        TunerProperties strict;
        static_cast<void>(strict.SetXmlString(
            own("<TunerProperties Version='1.1'><Component optional=''/></TunerProperties>"), true));
    } catch (const ReportException &e) {
        for (const QString &step : e.GetLocation().path)
            keeper.keep("ErrorLocation::path", step);
    }
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
    plainOnly.setAcceptCompressed(false);
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
    keepModel(keeper);
    Derived().keepTexts(keeper);
    keepExceptions(keeper);
    keepLoadFailures(keeper);
    keepReadProblems(keeper);
    keepSplitter(keeper);
    keepRegistry(keeper);
}
