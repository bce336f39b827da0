// SPDX-License-Identifier: MIT
#include <QDebug>
#include <QtTest>

#include <jobxml/QtTest.h>
#include <jobxml/Visit.h>

#include "Documents.h"
#include "NewMembers.h"

using namespace JobXml;

namespace {

template <class T>
QString textOf(const T &value)
{
    QString text;
    QDebug(&text).nospace() << value;
    return text;
}

QString debugText(const DataObject &object)
{
    return textOf(object);
}

} // namespace

/// Objects can be written to a log, and shown by a test that fails.
class DebugTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void enumeratorsAreWrittenAsInCpp()
    {
        using Type = TunerProperties::type;
        using Mode = StartupModes::StartupMode;
        using Choice = ValueItem::ChoiceValueItem;
        using REPORTGENERATOR::Logger;
        using REPORTGENERATOR::ObjectTypes;
        QCOMPARE(textOf(Type::DirectionFinder), QStringLiteral("TunerProperties::type::DirectionFinder"));
        QCOMPARE(textOf(Type::Invalid), QStringLiteral("TunerProperties::type::Invalid"));
        QCOMPARE(textOf(Type(7)), QStringLiteral("TunerProperties::type(7)"));
        QCOMPARE(textOf(Mode::Scan), QStringLiteral("StartupModes::StartupMode::Scan"));
        QCOMPARE(textOf(Mode::Invalid), QStringLiteral("StartupModes::StartupMode::Invalid"));
        QCOMPARE(textOf(Mode(-5)), QStringLiteral("StartupModes::StartupMode(-5)"));
        QCOMPARE(textOf(Choice::ValueStringList), QStringLiteral("ValueItem::ChoiceValueItem::ValueStringList"));
        QCOMPARE(textOf(Choice::None), QStringLiteral("ValueItem::ChoiceValueItem::None"));
        if (Kinds::size == 10)
            QCOMPARE(textOf(Choice(10)), QStringLiteral("ValueItem::ChoiceValueItem(10)"));
        QCOMPARE(textOf(Choice(200)), QStringLiteral("ValueItem::ChoiceValueItem(200)"));
        QCOMPARE(textOf(MemberKind::Text), QStringLiteral("MemberKind::Text"));
        QCOMPARE(textOf(MemberKind::Boolean), QStringLiteral("MemberKind::Boolean"));
        QCOMPARE(textOf(MemberKind::Int), QStringLiteral("MemberKind::Int"));
        QCOMPARE(textOf(MemberKind::Int64), QStringLiteral("MemberKind::Int64"));
        QCOMPARE(textOf(MemberKind::UInt64), QStringLiteral("MemberKind::UInt64"));
        QCOMPARE(textOf(MemberKind::Float), QStringLiteral("MemberKind::Float"));
        QCOMPARE(textOf(MemberKind::Double), QStringLiteral("MemberKind::Double"));
        QCOMPARE(textOf(MemberKind::Enumeration), QStringLiteral("MemberKind::Enumeration"));
        QCOMPARE(textOf(MemberKind::EnumerationList), QStringLiteral("MemberKind::EnumerationList"));
        QCOMPARE(textOf(MemberKind::Choice), QStringLiteral("MemberKind::Choice"));
        QCOMPARE(textOf(MemberKind::Object), QStringLiteral("MemberKind::Object"));
        QCOMPARE(textOf(MemberKind::ObjectList), QStringLiteral("MemberKind::ObjectList"));
        QCOMPARE(textOf(MemberKind::Alternative), QStringLiteral("MemberKind::Alternative"));
        QCOMPARE(textOf(MemberKind(99)), QStringLiteral("MemberKind(99)"));
        QCOMPARE(textOf(Logger::Severity::Error), QStringLiteral("Logger::Severity::Error"));
        QCOMPARE(textOf(Logger::Severity::Information), QStringLiteral("Logger::Severity::Information"));
        QCOMPARE(textOf(Logger::Severity(9)), QStringLiteral("Logger::Severity(9)"));
        QCOMPARE(textOf(ObjectTypes::Undefined), QStringLiteral("ObjectTypes::Undefined"));
        QCOMPARE(textOf(ObjectTypes(3)), QStringLiteral("ObjectTypes(3)"));
    }

    void enumeratorsKeepTheSettingsOfTheStream()
    {
        QString text;
        QDebug(&text) << 1 << TunerProperties::type::MCP << QStringLiteral("a") << MemberKind::Int << 2;
        QCOMPARE(text, QStringLiteral("1 TunerProperties::type::MCP \"a\" MemberKind::Int 2 "));
        text.clear();
        QDebug(&text).nospace() << 1 << StartupModes::StartupMode::DF << QStringLiteral("a") << 2;
        QCOMPARE(text, QStringLiteral("1StartupModes::StartupMode::DF\"a\"2"));
    }

    void aProblemIsWrittenWithItsPath()
    {
        TunerProperties document = aDocument(2);
        document.GetComponent()[0].GetNode()[1].Resetid();
        document.Resetbaseresource();
        const QVector<Problem> problems = document.GetProblems();
        QCOMPARE(textOf(problems.at(0)),
                 QStringLiteral("Problem(Component \"Preselector\" / Node 2: Node: Please set id properly.)"));
        QCOMPARE(textOf(problems.at(1)), QStringLiteral("Problem(TunerProperties: Please set baseresource properly.)"));
        QString text;
        QDebug(&text) << problems.mid(1) << QStringLiteral("a");
        text.remove(0, text.indexOf(QLatin1Char('('))); // the name of the list, which is Qt's own
        QCOMPARE(text, QStringLiteral("(Problem(TunerProperties: Please set baseresource properly.)) \"a\" "));
    }

    void aProblemIsWrittenWithItsPlace()
    {
        Problem problem({}, QStringLiteral("Node: Please set id properly."));
        problem.path = QStringList{QStringLiteral("Node 2")};
        problem.line = 12;
        problem.column = 8;
        problem.offset = 120;
        QCOMPARE(textOf(problem), QStringLiteral("Problem(12:8: Node 2: Node: Please set id properly.)"));
        problem.line = 0;
        problem.column = 0;
        QCOMPARE(textOf(problem), QStringLiteral("Problem(offset 120: Node 2: Node: Please set id properly.)"));
    }

    void anObjectIsWrittenAsATree()
    {
        TunerProperties document = aDocument(1);
        document.Setname(QStringLiteral("a \"b\"\n"));
        const auto expected = QStringLiteral("TunerProperties\n"
                                             "  name: \"a \\\"b\\\"\\n\"\n"
                                             "  type: \"Receiver\"\n"
                                             "  baseresource: \"RX1\"\n"
                                             "  connectableResources: null (not set)\n"
                                             "  quantity: 1 (not set)\n"
                                             "  parentBaseResource: null (not set)\n"
                                             "  hwProcessing: false (not set)\n"
                                             "  StartupModes\n"
                                             "    StartupMode: [\"FFM\"]\n"
                                             "  0: BandwidthSelection\n"
                                             "    Name: \"wide\"\n"
                                             "    MaxBandwidth: 1500000\n"
                                             "  MaxFFPDelay: 0 (not set)\n"
                                             "  HRPANSupported: false (not set)\n"
                                             "  0: Component\n"
                                             "    type: \"Filter\"\n"
                                             "    name: \"Preselector\"\n"
                                             "    displayName: null (not set)\n"
                                             "    optional: false\n"
                                             "    0: Node\n"
                                             "      id: \"node0\"\n"
                                             "      0: ValueItem\n"
                                             "        ChoiceValueItem: \"ValueInt\"\n"
                                             "        ValueInt\n"
                                             "          id: \"number\"\n"
                                             "          value: 0");
        QCOMPARE(Model::withoutNewMembers(debugText(document), expected), expected);
    }

    void anObjectWithoutDataIsWrittenAndStaysWithoutData()
    {
        const ValueItem item;
        QCOMPARE(debugText(item), QStringLiteral("ValueItem\n  ChoiceValueItem: null (not set)"));
        QVERIFY(!item.IsInitialized());
        const Node node;
        QCOMPARE(debugText(node), QStringLiteral("Node\n  id: null (not set)\n  ValueItem: empty (not set)"));
        QVERIFY(!node.IsInitialized());
        const TunerProperties document;
        QVERIFY(debugText(document).contains(QStringLiteral("\n  StartupModes: unused (not set)\n")));
        QVERIFY(!document.IsInitialized());
    }

    void numbersKeepTheirValue()
    {
        ValueFloat number;
        number.Setvalue(0.5F);
        QCOMPARE(debugText(number), QStringLiteral("ValueFloat\n  id: null (not set)\n  value: 0.5"));
        number.Setvalue(0.1F);
        QVERIFY(debugText(number).endsWith(QStringLiteral("value: 0.1")));
        number.Setvalue(1234567.0F);
        QVERIFY(debugText(number).endsWith(QStringLiteral("value: 1234567")));
        SelectionItem item;
        item.Setvalue(0.1 + 0.2);
        QVERIFY(debugText(item).endsWith(QStringLiteral("value: 0.30000000000000004")));
        number.Setvalue(std::numeric_limits<float>::quiet_NaN());
        QCOMPARE(debugText(number), QStringLiteral("ValueFloat\n  id: null (not set)\n  value: nan"));
        ValueInt64 large;
        large.Setvalue(std::numeric_limits<qint64>::min());
        QVERIFY(debugText(large).endsWith(QStringLiteral("value: -9223372036854775808")));
    }

    void unsetMembersAreLabelledNotSet()
    {
        TunerProperties document;
        document.ResetToDefault();
        QVERIFY2(debugText(document).contains(QStringLiteral("\n  StartupModes (not set)\n"
                                                             "    StartupMode: [] (not set)\n"
                                                             "  BandwidthSelection: empty (not set)\n")),
                 qPrintable(debugText(document)));
    }

    void onlyTheChosenAlternativeIsWritten()
    {
        ValueItem item;
        item.SetValueInt(anInt(1));
        item.SetValueString(ValueString());
        QCOMPARE(debugText(item),
                 QStringLiteral("ValueItem\n"
                                "  ChoiceValueItem: \"ValueString\"\n"
                                "  ValueString\n"
                                "    id: null (not set)\n"
                                "    value: null (not set)"));
    }

    void streamKeepsItsSettings()
    {
        QString text;
        QDebug(&text) << "before" << ValueBoolean() << 1;
        QCOMPARE(text, QStringLiteral("before ValueBoolean\n  id: null (not set)\n  value: false (not set) 1 "));
    }

    void failedTestShowsTheSameText()
    {
        const ValueInt value = anInt(7);
        const QByteArray text = debugText(value).toUtf8();
        const std::unique_ptr<char[]> shown(QTest::toString(value));
        QCOMPARE(QByteArray(shown.get()), text);
    }

    void everyClassHasATextForTests()
    {
        QStringList classes;
        const auto check = [&](const auto &object) {
            const std::unique_ptr<char[]> shown(QTest::toString(object));
            QVERIFY(shown);
            QCOMPARE(QByteArray(shown.get()), debugText(object).toUtf8());
            QVERIFY(!object.IsInitialized());
            classes += object.GetObjectName();
        };
        Classes::forEach([&](auto tag) { check(typename decltype(tag)::Class()); });
        classes.sort();
        QCOMPARE(classes, Model::classes());
    }
};

TEST_SUITE_WITHOUT_APPLICATION(DebugTest)
#include "tst_Debug.moc"
