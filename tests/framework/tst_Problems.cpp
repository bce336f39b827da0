// SPDX-License-Identifier: MIT
#include <functional>
#include <stdexcept>

#include <QTemporaryDir>
#include <QtTest>

#include <jobxml/Visit.h>
#include <reportbase/Logger.h>

#include "Documents.h"
#include "Encodings.h"
#include "Model.h"

using namespace JobXml;

namespace {

QStringList textsOf(const DataObject &object)
{
    QStringList texts;
    for (const Problem &problem : object.GetProblems())
        texts.append(problem.path.join(QStringLiteral(" / ")) + QStringLiteral(" -> ") + problem.message);
    return texts;
}

class NotingLogger : public REPORTGENERATOR::Logger
{
public:
    void Log(Severity, const QString &message) override { texts.append(message); }
    QStringList texts;
};

// The object at the end of a problem's steps.
const DataObject *objectAt(const DataObject &root, const QVector<Step> &steps)
{
    const DataObject *object = &root;
    for (const Step &step : steps) {
        const DataObject *child = nullptr;
        visit(*object, [&](const MemberView &member) {
            if (member.GetName() == step.member)
                child = &member.GetChild(qMax(step.index, 0));
        });
        object = child;
    }
    return object;
}

} // namespace

using Change = std::function<void(TunerProperties &)>;
Q_DECLARE_METATYPE(Change)

/// GetProblems() returns every problem and its location.
class ProblemsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void validDocumentHasNoProblems() { QCOMPARE(textsOf(aDocument()), QStringList()); }

    void everyProblemOfAnObjectIsReported()
    {
        QCOMPARE(textsOf(Component()),
                 (QStringList{QStringLiteral(" -> Component: Please set Node properly."),
                              QStringLiteral(" -> Component: Please set type properly."),
                              QStringLiteral(" -> Component: Please set name properly."),
                              QStringLiteral(" -> Component: Please set optional properly.")}));
    }

    void visitorsSeeTheSameProblemsInTheSameOrder()
    {
        TunerProperties document = aDocument();
        document.SetValidate(false);
        document.GetComponent()[0].GetNode()[1].Resetid();
        document.GetBandwidthSelection()[0].ResetMaxBandwidth();
        document.Resetbaseresource();
        QStringList texts;
        document.VisitProblems([&](const Problem &problem) {
            texts.append(problem.path.join(QStringLiteral(" / ")) + QStringLiteral(" -> ") + problem.message);
        });
        QCOMPARE(texts.size(), 3);
        QCOMPARE(texts, textsOf(document));
    }

    void exceptionOfAVisitorEndsTheVisit()
    {
        int seen = 0;
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, Component().VisitProblems([&](const Problem &) {
            ++seen;
            throw std::runtime_error("enough");
        }));
        QCOMPARE(seen, 1);
    }

    void problemsAreFoundWhateverTheValidateFlag()
    {
        TunerProperties document = aDocument();
        document.SetValidate(false);
        document.GetComponent()[0].GetNode()[0].AppendValueItem(ValueItem());
        document.GetComponent()[0].GetNode()[1].GetValueItem()[0].GetValueInt().Resetvalue();
        document.GetComponent()[0].GetNode()[1].Resetid();
        document.GetBandwidthSelection()[0].ResetMaxBandwidth();
        document.Resetbaseresource();
        const QStringList expected{
            QStringLiteral("BandwidthSelection \"wide\" -> BandwidthSelection: Please set MaxBandwidth properly."),
            QStringLiteral("Component \"Preselector\" / Node \"node0\" / ValueItem 2 -> ValueItem:Check failed. The "
                           "mandatory choice ChoiceValueItem is not initialized"),
            QStringLiteral(
                "Component \"Preselector\" / Node 2 / ValueItem 1 -> ValueItem:Check failed. Mandatory data of "
                "the member (choice element) m_valueInt is not set."),
            QStringLiteral("Component \"Preselector\" / Node 2 / ValueItem 1 / ValueInt \"number\" -> ValueInt: Please "
                           "set value properly."),
            QStringLiteral("Component \"Preselector\" / Node 2 -> Node: Please set id properly."),
            QStringLiteral(" -> TunerProperties: Please set baseresource properly."),
        };
        QCOMPARE(textsOf(document), expected);
        document.SetValidate(true);
        QCOMPARE(textsOf(document), expected);
        QVERIFY(document.GetValidate());
    }

    void anItemWhoseListIsEmptyIsAProblemWithStepsToTheItem()
    {
        Component component = aComponent();
        component.GetNode()[0].SetValueItem({});
        QCOMPARE(
            textsOf(component),
            QStringList{QStringLiteral("Node \"node0\" -> Parameters for Node are not set properly in 'Component'.")});
        const Problem problem = component.GetProblems().constFirst();
        QCOMPARE(objectAt(component, problem.steps), &std::as_const(component).GetNode().at(0));
        QCOMPARE(problem.member, QStringLiteral("ValueItem"));
        QVERIFY(!problem.xmlOnly);
    }

    void anEmptyListIsReportedBesideOtherProblemsOfItsObject()
    {
        TunerProperties document = aDocument();
        document.GetComponent()[0].GetNode().clear();
        document.GetComponent()[0].Resetoptional();
        document.GetComponent().append(Component());
        document.Resetbaseresource();
        QCOMPARE(textsOf(document),
                 (QStringList{
                     QStringLiteral("Component \"Preselector\" -> Component: Please set optional properly."),
                     QStringLiteral("Component \"Preselector\" -> Parameters for Component are not set properly in "
                                    "'TunerProperties'."),
                     QStringLiteral("Component 2 -> Component: Please set Node properly."),
                     QStringLiteral("Component 2 -> Component: Please set type properly."),
                     QStringLiteral("Component 2 -> Component: Please set name properly."),
                     QStringLiteral("Component 2 -> Component: Please set optional properly."),
                     QStringLiteral(" -> TunerProperties: Please set baseresource properly."),
                 }));

        document.GetComponent().clear();
        QCOMPARE(textsOf(document),
                 (QStringList{
                     QStringLiteral(" -> TunerProperties: Please set baseresource properly."),
                     QStringLiteral(" -> TunerProperties: the list Component is set but empty, so nothing would be "
                                    "written; append at least one item"),
                 }));
    }

    void anObjectThatWouldWriteNothingHasAProblem_data()
    {
        QTest::addColumn<Change>("change");
        QTest::newRow("a cleared list") << Change([](TunerProperties &t) { t.GetComponent().clear(); });
        QTest::newRow("an empty list") << Change([](TunerProperties &t) { t.SetComponent({}); });
        QTest::newRow("a list that was only looked at") << Change([](TunerProperties &t) {
            t.ResetComponent();
            QVERIFY(t.GetComponent().isEmpty());
        });
    }

    void anObjectThatWouldWriteNothingHasAProblem()
    {
        QFETCH(Change, change);
        const QTemporaryDir folder;
        TunerProperties document = aDocument();
        change(document);
        document.Check();
        QVERIFY(!document.SaveXml(folder.filePath(QStringLiteral("a.xml"))));
        QVERIFY(!document.SaveBinary(folder.filePath(QStringLiteral("a.tpb"))));
        QVERIFY(document.GetXmlString().isNull());
        QCOMPARE(textsOf(document),
                 QStringList{QStringLiteral(" -> TunerProperties: the list Component is set but empty, so nothing "
                                            "would be written; append at least one item")});
        const Problem problem = document.GetProblems().constFirst();
        QVERIFY(problem.steps.isEmpty()); // the document itself
        QCOMPARE(problem.member, QStringLiteral("Component"));
        QVERIFY(!problem.xmlOnly);
    }

    void everyClassWhoseMandatoryListIsEmptyHasAProblem()
    {
        const QString rest = QStringLiteral(" is set but empty, so nothing would be written; append at least one item");
        Component component = aComponent();
        component.SetNode({});
        QCOMPARE(textsOf(component), QStringList{QStringLiteral(" -> Component: the list Node") + rest});
        Node node = aNode();
        node.SetValueItem({});
        QCOMPARE(textsOf(node), QStringList{QStringLiteral(" -> Node: the list ValueItem") + rest});
        StartupModes modes;
        modes.SetStartupMode({});
        QCOMPARE(textsOf(modes), QStringList{QStringLiteral(" -> StartupModes: the list StartupMode") + rest});
        ValueStringList list;
        list.SetStringItem({});
        list.Setid(QStringLiteral("a"));
        list.Setvalue(QStringLiteral("b"));
        QCOMPARE(textsOf(list), QStringList{QStringLiteral(" -> ValueStringList: the list StringItem") + rest});
        QVERIFY(recordOf(list).isEmpty());
    }

    // They are written without it.
    void objectWithoutDataThatItsParentOmitsIsNotAProblem()
    {
        TunerProperties document = aDocument();
        document.GetStartupModes().SetStartupMode({});
        QVERIFY(!document.GetXmlString().isNull());
        QCOMPARE(textsOf(document), QStringList());
    }

    void aCharacterThatXmlCannotCarryIsAProblemOfXmlAlone_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("what");
        const auto row = [](const char *name, const QString &text, const char *what) {
            QTest::newRow(name) << text << QString::fromLatin1(what);
        };
        const QString ofOne = QStringLiteral("xy");
        row("NUL", QString(QChar(0)),
            "U+0000 at position 1, which XML cannot carry; remove it, or save tagged "
            "records, which can");
        row("a control character", ofOne + QChar(0x1B) + ofOne,
            "U+001B at position 3, which XML cannot carry; remove it, or save tagged records, which can");
        row("U+FFFE", ofOne + QChar(0xFFFE),
            "U+FFFE at position 3, which XML cannot carry; remove it, or save tagged records, which can");
        row("a first half", QString(QChar(0xD83D)) + ofOne,
            "U+D83D, half of a surrogate pair, at position 1, which XML cannot carry; remove it, or complete the pair");
        row("a second half", QStringLiteral("\U0001F4E1") + QChar(0xDCE1),
            "U+DCE1, half of a surrogate pair, at position 3, which XML cannot carry; remove it, or complete the pair");
    }

    void aCharacterThatXmlCannotCarryIsAProblemOfXmlAlone()
    {
        QFETCH(QString, text);
        QFETCH(QString, what);
        const QTemporaryDir folder;
        TunerProperties document = aDocument(2);
        ValueItem &item = document.GetComponent()[0].GetNode()[1].GetValueItem()[0];
        ValueString value;
        value.Setid(QStringLiteral("word"));
        value.Setvalue(text);
        item.SetValueString(value);
        QVERIFY(!document.SaveXml(folder.filePath(QStringLiteral("a.xml"))));
        QVERIFY(document.SaveBinary(folder.filePath(QStringLiteral("a.tpb"))));

        QCOMPARE(textsOf(document),
                 QStringList{QStringLiteral("Component \"Preselector\" / Node \"node1\" / ValueItem 1 / ValueString "
                                            "\"word\" -> ValueString: value contains ")
                             + what});
        const Problem problem = document.GetProblems().constFirst();
        QCOMPARE(objectAt(document, problem.steps), &std::as_const(item).GetValueString());
        QCOMPARE(problem.member, QStringLiteral("value"));
        QVERIFY(problem.xmlOnly);
    }

    void onlyTextsThatWouldBeWrittenAreChecked()
    {
        TunerProperties document = aDocument();
        const QString bell(QChar(7));
        const auto expected = [](const char *place, const char *member) {
            return QString::fromLatin1(place) + QLatin1String(member)
                + QStringLiteral(" contains U+0007 at position 1, which XML cannot carry; remove it, or save tagged "
                                 "records, which can");
        };
        document.Setname(bell);
        document.SetconnectableResources(bell);
        document.GetBandwidthSelection()[0].SetName(bell);
        ValueString unchosen;
        unchosen.Setid(bell);
        ValueItem &item = document.GetComponent()[0].GetNode()[0].GetValueItem()[0];
        item.SetValueString(unchosen);
        item.SetValueInt(anInt());
        QCOMPARE(textsOf(document),
                 (QStringList{
                     expected("BandwidthSelection \"\x07\" -> BandwidthSelection: ", "Name"),
                     expected(" -> TunerProperties: ", "name"),
                     expected(" -> TunerProperties: ", "connectableResources"),
                 }));
    }

    void failedCheckOfADerivedClassIsAProblem()
    {
        class Strict : public TunerProperties
        {
        public:
            using TunerProperties::Check;
            void Check(bool flag) const override
            {
                TunerProperties::Check(flag);
                if (Getquantity() > 9)
                    throw OutOfRangeException(QStringLiteral("too many"));
            }
            bool HasData() const override { return TunerProperties::HasData() && Getquantity() > 0; }
        };
        Strict document;
        static_cast<TunerProperties &>(document) = aDocument();
        QCOMPARE(textsOf(document), QStringList());
        document.Setquantity(10);
        QCOMPARE(textsOf(document), QStringList{QStringLiteral(" -> too many")});
        document.Setquantity(0);
        QCOMPARE(
            textsOf(document),
            QStringList{QStringLiteral(" -> TunerProperties: HasData() returns false, so nothing would be written")});
    }

    void everyExceptionOfADerivedClassIsAProblem()
    {
        class Strict : public TunerProperties
        {
        public:
            using TunerProperties::Check;
            void Check(bool) const override { throw ReportException(QStringLiteral("no exception of the model")); }
        };
        Strict document;
        static_cast<TunerProperties &>(document) = aDocument();
        QCOMPARE(textsOf(document), QStringList{QStringLiteral(" -> no exception of the model")});
    }

    void aCharacterThatADerivedClassWritesIsAProblemOfXmlAlone_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("a control character") << QString(QChar(7));
        QTest::newRow("a half at the end") << QStringLiteral("x") + QChar(0xD83D);
    }

    void aCharacterThatADerivedClassWritesIsAProblemOfXmlAlone()
    {
        class Named : public TunerProperties
        {
        public:
            QString site = QStringLiteral("Bern");

        protected:
            void writeOwnElements(QXmlStreamWriter &writer) const override
            {
                writer.writeTextElement(QStringLiteral("Site"), site);
            }
        };
        QFETCH(QString, text);
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("a.xml"));
        Named document;
        static_cast<TunerProperties &>(document) = aDocument();
        const auto logger = std::make_shared<NotingLogger>();
        document.SetLogger(logger);
        QCOMPARE(textsOf(document), QStringList());
        QVERIFY(document.SaveXml(path));

        document.site = text;
        for (const bool validate : {true, false}) {
            document.SetValidate(validate);
            QCOMPARE(textsOf(document),
                     QStringList{QStringLiteral(" -> TunerProperties: a text that the derived class writes contains a "
                                                "character that XML cannot carry; remove it, or save tagged records, "
                                                "which can")});
            const Problem problem = document.GetProblems().constFirst();
            QVERIFY(problem.xmlOnly);
            QVERIFY(problem.steps.isEmpty());
            QVERIFY(problem.member.isNull());
            QCOMPARE(document.GetErrorString(), QString());
            QCOMPARE(logger->texts, QStringList());
        }
        QVERIFY(!document.SaveXml(path));

        // A text of the base class that XML cannot represent is reported with its member.
        document.Setname(QString(QChar(7)));
        QCOMPARE(textsOf(document),
                 QStringList{QStringLiteral(" -> TunerProperties: name contains U+0007 at position 1, which XML cannot "
                                            "carry; remove it, or save tagged records, which can")});
    }

    void childIsIdentifiedByItsName_data()
    {
        addColumns();
        addCase<ValueBoolean>("ValueBoolean \"a\" -> ValueBoolean: Please set value properly.", named<ValueBoolean>());
        addCase<ValueFloat>("ValueFloat \"a\" -> ValueFloat: Please set value properly.", named<ValueFloat>());
        addCase<ValueInt>("ValueInt \"a\" -> ValueInt: Please set value properly.", named<ValueInt>());
        addCase<ValueInt64>("ValueInt64 \"a\" -> ValueInt64: Please set value properly.", named<ValueInt64>());
        addCase<ValueString>("ValueString \"a\" -> ValueString: Please set value properly.", named<ValueString>());
        addCase<ValueNumericFloat>("ValueNumericFloat \"a\" -> ValueNumericFloat: Please set step properly.",
                                   namedRange<ValueNumericFloat>());
        addCase<ValueNumericInt>("ValueNumericInt \"a\" -> ValueNumericInt: Please set step properly.",
                                 namedRange<ValueNumericInt>());
        addCase<ValueNumericInt64>("ValueNumericInt64 \"a\" -> ValueNumericInt64: Please set step properly.",
                                   namedRange<ValueNumericInt64>());
        addCase<ValueStringList>("ValueStringList \"a\" -> ValueStringList: Please set value properly.", [] {
            auto list = named<ValueStringList>();
            list.GetStringItem();
            return list;
        }());
        addCase<ValueSelection>("ValueSelection \"a\" -> ValueSelection: Please set index properly.", [] {
            auto selection = named<ValueSelection>();
            selection.GetSelectionItem();
            selection.Setvalue(1.0);
            selection.Settext(QStringLiteral("one"));
            return selection;
        }());
    }

    void childIsIdentifiedByItsName() { lastProblemIsAsExpected(); }

    void everyKindOfValueIsIdentifiedByItsName()
    {
        QStringList kinds;
        ValueItem any;
        visit(any, [&](const MemberEditor &alternative) {
            if (alternative.GetKind() == MemberKind::Alternative)
                kinds += alternative.GetName();
        });
        QCOMPARE(kinds, Model::namesIn<Kinds>());
        for (const QString &kind : qAsConst(kinds)) {
            ValueItem item;
            visit(item, [&](MemberEditor &alternative) {
                if (alternative.GetName() == kind)
                    visit(alternative.EditChild(), [&](MemberEditor &member) {
                        if (member.GetName() == QLatin1String("id"))
                            QVERIFY(member.SetValue(QStringLiteral("a")));
                    });
            });
            const QString problem = textsOf(item).constLast();
            QVERIFY2(problem.startsWith(kind + QLatin1String(" \"a\" -> ") + kind + QLatin1String(": Please set ")),
                     qPrintable(problem));
        }
    }

    void childWithoutNameIsNotIdentifiedByItsOtherTexts_data()
    {
        addColumns();
        addCase<ValueString>("ValueString -> ValueString: Please set id properly.", [] {
            ValueString string;
            string.Setvalue(QStringLiteral("text"));
            return string;
        }());
        addCase<ValueStringList>("ValueStringList -> ValueStringList: Please set id properly.", [] {
            ValueStringList list;
            list.GetStringItem();
            list.Setvalue(QStringLiteral("text"));
            return list;
        }());
        addCase<ValueSelection>("ValueSelection -> ValueSelection: Please set id properly.", [] {
            ValueSelection selection;
            selection.GetSelectionItem();
            selection.Setvalue(1.0);
            selection.Settext(QStringLiteral("text"));
            selection.Setindex(0);
            return selection;
        }());
    }

    void childWithoutNameIsNotIdentifiedByItsOtherTexts() { lastProblemIsAsExpected(); }

    void itemWithoutNameIsIdentifiedByItsPosition()
    {
        TunerProperties document = aDocument();
        document.GetComponent()[0].Resetname();
        document.GetComponent()[0].SetdisplayName(QStringLiteral("shown"));
        document.GetBandwidthSelection()[0].ResetName();
        QCOMPARE(textsOf(document),
                 (QStringList{QStringLiteral("BandwidthSelection 1 -> BandwidthSelection: Please set Name properly."),
                              QStringLiteral("Component 1 -> Component: Please set name properly.")}));
    }

    void optionsAreIdentifiedByTheirNamesAndTextsOfAListByTheirPositions()
    {
        ValueSelection selection;
        SelectionItem option;
        option.Setname(QStringLiteral("one"));
        selection.SetSelectionItem({option});
        QCOMPARE(textsOf(selection).constFirst(),
                 QStringLiteral("SelectionItem \"one\" -> SelectionItem: Please set value properly."));

        ValueStringList list;
        list.SetStringItem({StringItem()});
        QCOMPARE(textsOf(list).constFirst(), QStringLiteral("StringItem 1 -> StringItem: Please set value properly."));
    }

    void startupModesHaveNeitherNameNorPosition()
    {
        TunerProperties document = aDocument();
        document.SetStartupModes(StartupModes());
        QCOMPARE(textsOf(document),
                 QStringList{QStringLiteral("StartupModes -> StartupModes: Please set StartupMode properly.")});
    }

    void unchosenAlternativesAreNotAProblem()
    {
        ValueItem item;
        item.GetValueString();
        item.SetValueInt(anInt());
        QCOMPARE(textsOf(item), QStringList());
    }

    void theStepsOfAProblemLeadToItsObject()
    {
        TunerProperties document = aDocument(2);
        document.AppendComponent(aComponent(QStringLiteral("IF"), 3));
        Node &node = document.GetComponent()[1].GetNode()[2];
        node.GetValueItem()[0].GetValueInt().Resetid();
        const QVector<Problem> problems = document.GetProblems();
        QCOMPARE(problems.size(), 2); // of the item, and of its value
        QCOMPARE(problems.at(0).steps.size(), 3);
        QCOMPARE(problems.at(1).path.join(QLatin1Char('/')),
                 QStringLiteral("Component \"IF\"/Node \"node2\"/ValueItem 1/ValueInt"));
        QCOMPARE(objectAt(document, problems.at(1).steps), &std::as_const(node).GetValueItem().at(0).GetValueInt());
        QCOMPARE(problems.at(1).member, QStringLiteral("id"));
        QCOMPARE(problems.at(1).steps.last().index, -1);
    }

private:
    template <class T>
    static T named()
    {
        T object;
        object.Setid(QStringLiteral("a"));
        return object;
    }

    template <class T>
    static T namedRange()
    {
        T object = named<T>();
        object.Setvalue(1);
        object.Setmin(0);
        object.Setmax(2);
        return object;
    }

    static void choose(ValueItem &item, const ValueBoolean &value) { item.SetValueBoolean(value); }
    static void choose(ValueItem &item, const ValueFloat &value) { item.SetValueFloat(value); }
    static void choose(ValueItem &item, const ValueInt &value) { item.SetValueInt(value); }
    static void choose(ValueItem &item, const ValueInt64 &value) { item.SetValueInt64(value); }
    static void choose(ValueItem &item, const ValueNumericFloat &value) { item.SetValueNumericFloat(value); }
    static void choose(ValueItem &item, const ValueNumericInt &value) { item.SetValueNumericInt(value); }
    static void choose(ValueItem &item, const ValueNumericInt64 &value) { item.SetValueNumericInt64(value); }
    static void choose(ValueItem &item, const ValueSelection &value) { item.SetValueSelection(value); }
    static void choose(ValueItem &item, const ValueString &value) { item.SetValueString(value); }
    static void choose(ValueItem &item, const ValueStringList &value) { item.SetValueStringList(value); }

    static void addColumns()
    {
        QTest::addColumn<ValueItem>("item");
        QTest::addColumn<QString>("expected");
    }

    /// A row for an item that has chosen the value, with the expected problem of that value.
    template <class T>
    static void addCase(const char *expected, const T &value)
    {
        ValueItem item;
        choose(item, value);
        QTest::newRow(qPrintable(T::GetStaticObjectName())) << item << QString::fromLatin1(expected);
    }

    static void lastProblemIsAsExpected()
    {
        QFETCH(ValueItem, item);
        QFETCH(QString, expected);
        QCOMPARE(textsOf(item).constLast(), expected);
    }
};

TEST_SUITE(ProblemsTest)
#include "tst_Problems.moc"
