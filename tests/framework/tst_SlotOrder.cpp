// SPDX-License-Identifier: MIT
#include <cxxabi.h>
#include <dlfcn.h>

#include <cstdlib>
#include <memory>

#include <QtTest>

#include "Model.h"

namespace {

// The virtual operations of the base object in the order of their slots, on which other libraries depend.
const char *const slots46[] = {
    "HasData() const",
    "Reset()",
    "Check(bool) const",
    "Check() const",
    "IsValid(float) const",
    "IsValid(bool) const",
    "IsValid(unsigned int) const",
    "IsValid(long long) const",
    "IsValid(QDateTime const&) const",
    "IsValid(QString const&) const",
    "IsValid(double) const",
    "IsValid(int) const",
    "SetInvalid(float&) const",
    "SetInvalid(unsigned int&) const",
    "SetInvalid(long long&) const",
    "SetInvalid(QString&) const",
    "SetInvalid(double&) const",
    "SetInvalid(int&) const",
    "GetXml(QXmlStreamWriter&) const",
    "GetBinary(QDataStream&, int, bool) const",
    "SetBinary(QDataStream&, int)",
    "SetXmlString(QString const&, bool)",
    "SetBinaryRepresentation(QByteArray&)",
    "SetBinaryRepresentation(QDataStream&)",
    "MergeRGObject(REPORTGENERATOR::IRGObject const&)",
    "GetObjectType()",
    "GetObjectName() const",
    "ProcessXml(QXmlStreamReader&)",
    "GetXmlString()",
    "GetBinaryRepresentation(QDataStream&) const",
    "GetBinaryRepresentationAsQByteArray()",
    "GetCompressedBinaryRepresentation(QDataStream&, int) const",
    "GetCompressedBinaryRepresentationAsQByteArray(int)",
    "LoadXml(QString const&)",
    "LoadXml(QFile*)",
    "LoadBinary(QFile*)",
    "SaveXml(QString const&) const",
    "SetValidate(bool) const",
    "GetValidate() const",
    "SetLogger(std::shared_ptr<REPORTGENERATOR::Logger>) const",
    "ResetLogger() const",
    "GetVersion() const",
    "SetObjectType(REPORTGENERATOR::ObjectTypes)",
    "SetObjectName(QString const&)",
    "ProcessXmlStartElement(QXmlStreamReader&)",
};

QString demangled(const char *symbol)
{
    const std::unique_ptr<char, void (*)(void *)> name(abi::__cxa_demangle(symbol, nullptr, nullptr, nullptr),
                                                       std::free);
    return QString::fromLatin1(name.get());
}

// "JobXml::DataObject::HasData() const" without the class.
QString unqualified(const QString &function)
{
    const int parameters = function.indexOf(QLatin1Char('('));
    return function.mid(function.lastIndexOf(QStringLiteral("::"), parameters) + 2);
}

// What is in slot i of a class's virtual table; null without a table. The offset and the type information precede the
// slots.
const void *addressInSlot(const QString &className, int slot)
{
    const QByteArray symbol = QStringLiteral("_ZTVN6JobXml%1%2E").arg(className.size()).arg(className).toLatin1();
    auto *const *table = static_cast<void *const *>(dlsym(RTLD_DEFAULT, symbol.constData()));
    return table ? table[2 + slot] : nullptr;
}

QString functionInSlot(const QString &className, int slot)
{
    const void *const address = addressInSlot(className, slot);
    if (!address)
        return QStringLiteral("no virtual table of ") + className;
    Dl_info info{};
    if (!dladdr(address, &info) || !info.dli_sname)
        return QStringLiteral("an unknown function");
    return demangled(info.dli_sname);
}

} // namespace

class SlotOrderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { JobXml::TunerProperties::GetId(); } // keeps the library linked

    // Programs that were built with an earlier version depend on this size.
    void objectsHaveTheAgreedSize()
    {
        QCOMPARE(sizeof(JobXml::DataObject), std::size_t(40));
        QCOMPARE(sizeof(JobXml::TunerProperties), std::size_t(40));
        QCOMPARE(sizeof(JobXml::ValueItem), std::size_t(40));
    }

    void virtualOperationsAreInTheAgreedSlots_data()
    {
        QTest::addColumn<QString>("className");
        for (const QString &name : Model::classes())
            QTest::newRow(qPrintable(name)) << name;
    }

    void virtualOperationsAreInTheAgreedSlots()
    {
        QFETCH(QString, className);
        const QString destructor = QLatin1Char('~') + className + QStringLiteral("()");
        QCOMPARE(unqualified(functionInSlot(className, 0)), destructor); // complete
        QCOMPARE(unqualified(functionInSlot(className, 1)), destructor); // deleting
        int slot = 2;
        for (const char *function : slots46)
            QCOMPARE(unqualified(functionInSlot(className, slot++)), QString::fromLatin1(function));
        QCOMPARE(slot, 47); // 46 operations, the destructor with two entries
    }

    void additionsFollowTheContract()
    {
        const QString node = QStringLiteral("Node");
        int slot = 47;
        for (const char *function :
             {"composeXml(QByteArray&) const", "walkContent(QXmlStreamReader&, QString const&)",
              "readXml(std::function<QByteArray ()> const&)", "composeBinary(QDataStream const&, QByteArray&) const",
              "readMembers(QDataStream const&, char const*, int)", "virtualHook(int, void*)", "ResetToDefault()",
              "AnyData() const", "GetVersionSpecificBinaryWithoutValidation(QDataStream&) const",
              "SetVersionSpecificBinaryWithoutValidation(QDataStream&)"})
            QCOMPARE(unqualified(functionInSlot(node, slot++)), QString::fromLatin1(function));
        // Neither of these does anything in this class, so an optimizer may make one function with two names of them.
        for (const char *symbol : {"_ZNK6JobXml10DataObject18writeOwnAttributesER16QXmlStreamWriter",
                                   "_ZNK6JobXml10DataObject16writeOwnElementsER16QXmlStreamWriter"}) {
            const void *const address = dlsym(RTLD_DEFAULT, symbol);
            QVERIFY(address);
            QCOMPARE(addressInSlot(node, slot++), address);
        }
        for (const char *function :
             {"writeOwnRecords(QDataStream&) const", "readOwnRecord(QDataStream&, unsigned int, int)"})
            QCOMPARE(unqualified(functionInSlot(node, slot++)), QString::fromLatin1(function));
    }

    void onlyTheDocumentHasAVersionOfItsOwn()
    {
        QCOMPARE(functionInSlot(QStringLiteral("ValueBoolean"), 43),
                 QStringLiteral("REPORTGENERATOR::IRGObject::GetVersion() const"));
        QCOMPARE(functionInSlot(QStringLiteral("TunerProperties"), 43),
                 QStringLiteral("JobXml::TunerProperties::GetVersion() const"));
    }

    void settingTheObjectTypeIsOverridden()
    {
        QCOMPARE(functionInSlot(QStringLiteral("StringItem"), 44),
                 QStringLiteral("JobXml::DataObject::SetObjectType(REPORTGENERATOR::ObjectTypes)"));
    }
};

TEST_SUITE(SlotOrderTest)
#include "tst_SlotOrder.moc"
