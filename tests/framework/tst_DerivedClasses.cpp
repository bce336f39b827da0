// SPDX-License-Identifier: MIT
#include <QtTest>

#include <QXmlStreamReader>

#include "Documents.h"
#include "Encodings.h"
#include "ExceptionText.h"
#include "WholeTree.h"

using namespace JobXml;
using REPORTGENERATOR::Logger;

namespace {

/// Check() does nothing, and so does not propagate.
template <class Object>
class Trusting : public Object
{
public:
    using Object::Check;
    void Check(bool) const override { }
};

/// Stops validating as soon as SetValidate() is called.
template <class Object>
class Lenient : public Object
{
public:
    void SetValidate(bool) const override { Object::SetValidate(false); }
};

/// A node that is a different class for the base library.
class TaggedNode : public Node
{
public:
    TaggedNode() { m_classIdentifier = 0x7A66ED; }
};

/// Reads its content by ProcessXml() of the base library.
class WalkedComponent : public Component
{
public:
    void ProcessXml(QXmlStreamReader &reader) override
    {
        Settype(reader.attributes().value(QLatin1String("type")).toString());
        Setname(reader.attributes().value(QLatin1String("name")).toString());
        Setoptional(true);
        REPORTGENERATOR::IRGObject::ProcessXml(reader);
    }
};

/// A component without a type, for which Check() throws.
template <class Object>
Object anIncompleteComponent()
{
    Object component;
    component.Setname(QStringLiteral("Preselector"));
    component.Setoptional(false);
    component.AppendNode(aNode());
    component.REPORTGENERATOR::IRGObject::SetValidate(true);
    return component;
}

int following(const DataObject &root, bool validate, const std::shared_ptr<Logger> &logger)
{
    return WholeTree::count(root, [&](const DataObject &object) {
        return object.GetValidate() == validate && object.GetLogger() == logger;
    });
}

} // namespace

using Write = std::function<void(const Component &)>;
using WriteDocument = std::function<void(TunerProperties &)>;
using WriteAny = std::function<void()>;
Q_DECLARE_METATYPE(Write)
Q_DECLARE_METATYPE(WriteDocument)
Q_DECLARE_METATYPE(WriteAny)

/// Classes derived from those of the model that override operations that the base library calls.
class DerivedClassesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writerPropagatesFlagAndLoggerAlthoughCheckDoesNot_data()
    {
        QTest::addColumn<Write>("write");
        QTest::newRow("GetXml") << Write([](const Component &o) { xmlOf(o); });
        QTest::newRow("GetBinary") << Write([](const Component &o) { recordOf(o); });
        QTest::newRow("GetXmlString") << Write([](const Component &o) { QVERIFY(!o.GetXmlString().isNull()); });
    }

    void writerPropagatesFlagAndLoggerAlthoughCheckDoesNot()
    {
        QFETCH(Write, write);
        Trusting<Component> component;
        static_cast<Component &>(component) = aComponent(QStringLiteral("Preselector"), 2);
        const auto logger = std::make_shared<Logger>();
        component.SetValidate(false);
        component.IRGObject::SetValidate(true); // the root alone
        component.IRGObject::SetLogger(logger);
        QCOMPARE(following(component, true, logger), 1);
        write(component);
        QCOMPARE(following(component, true, logger), 7); // component, two nodes, items and values
    }

    void objectThatStopsValidatingInSetValidateIsWritten()
    {
        const auto xml =
            QStringLiteral("<Component type=\"\" name=\"Preselector\" optional=\"false\"><Node id=\"att\">"
                           "<ValueItem><ValueInt id=\"number\" value=\"0\"/></ValueItem></Node></Component>");
        const auto forXml = anIncompleteComponent<Lenient<Component>>();
        forXml.IRGObject::SetValidate(true);
        QCOMPARE(xmlOf(forXml), xml);

        const auto forBinary = anIncompleteComponent<Lenient<Component>>();
        forBinary.IRGObject::SetValidate(true);
        Component same = anIncompleteComponent<Component>();
        same.SetValidate(false);
        QVERIFY(!recordOf(same).isEmpty());
        QCOMPARE(hex(recordOf(forBinary)), hex(recordOf(same)));

        auto forText = anIncompleteComponent<Lenient<Component>>();
        forText.IRGObject::SetValidate(true);
        QCOMPARE(forText.GetXmlString(), same.GetXmlString());
        QCOMPARE(forText.GetErrorString(), QString());
    }

    void writerChecksTheChildrenThatAnOverriddenCheckSkips_data()
    {
        QTest::addColumn<WriteDocument>("write");
        QTest::newRow("GetXml") << WriteDocument([](TunerProperties &o) { xmlOf(o); });
        QTest::newRow("GetBinary") << WriteDocument([](TunerProperties &o) { recordOf(o); });
        QTest::newRow("GetXmlString") << WriteDocument([](TunerProperties &o) { QVERIFY(!o.GetXmlString().isNull()); });
    }

    void writerChecksTheChildrenThatAnOverriddenCheckSkips()
    {
        QFETCH(WriteDocument, write);
        Trusting<TunerProperties> document;
        static_cast<TunerProperties &>(document) = aDocument();
        Component &component = document.GetComponent()[0];
        component.SetValidate(false);
        component.SetdisplayName(QString()); // mandatory for Check() but not for HasData()
        QCOMPARE(thrownBy([&] { write(document); }),
                 QStringLiteral("OutOfRangeException: Component: Please set displayName properly."));
    }

    void childrenAreWrittenByTheFlagThatTheyFollow()
    {
        // The root does not propagate, so each child uses its own flag, and its children that of their parent.
        class Solitary : public Trusting<Component>
        {
        public:
            void SetValidate(bool validate) const override { IRGObject::SetValidate(validate); }
        };
        Solitary component;
        static_cast<Component &>(component) = aComponent();
        component.GetNode()[0].GetValueItem()[0].GetValueInt().Resetid();
        std::as_const(component).GetNode()[0].IRGObject::SetValidate(false); // not yet below it
        QCOMPARE(xmlOf(component),
                 QStringLiteral("<Component type=\"Filter\" name=\"Preselector\" optional=\"false\"><Node id=\"node0\">"
                                "<ValueItem><ValueInt id=\"\" value=\"0\"/></ValueItem></Node></Component>"));
    }

    void itemWithoutDataIsRefusedByItsWriter_data()
    {
        QTest::addColumn<QString>("thrown");
        QTest::addColumn<WriteAny>("write");
        QTest::newRow("StringItem") << QStringLiteral(
            "IncompleteDefinitionException: Parameters for StringItem are not set properly in "
            "'ValueStringList'.") << WriteAny([] {
            Trusting<ValueStringList> list;
            list.Setid(QStringLiteral("id"));
            list.Setvalue(QStringLiteral("value"));
            list.SetStringItem({StringItem()});
            xmlOf(list);
        });
        QTest::newRow("SelectionItem") << QStringLiteral(
            "IncompleteDefinitionException: Parameters for SelectionItem are not set properly in "
            "'ValueSelection'.") << WriteAny([] {
            Trusting<ValueSelection> selection;
            selection.Setid(QStringLiteral("id"));
            selection.Setvalue(1);
            selection.Settext(QStringLiteral("one"));
            selection.Setindex(0);
            selection.SetSelectionItem({SelectionItem()});
            xmlOf(selection);
        });
        QTest::newRow("ValueItem") << QStringLiteral(
            "IncompleteDefinitionException: Parameters for ValueItem are not set properly in 'Node'.")
                                   << WriteAny([] {
                                          Trusting<Node> node;
                                          node.Setid(QStringLiteral("id"));
                                          node.SetValueItem({ValueItem()});
                                          xmlOf(node);
                                      });
        QTest::newRow("Node") << QStringLiteral(
            "IncompleteDefinitionException: Parameters for Node are not set properly in 'Component'.")
                              << WriteAny([] {
                                     Trusting<Component> component;
                                     static_cast<Component &>(component) = aComponent();
                                     component.SetNode({aNode(), Node()});
                                     xmlOf(component);
                                 });
        QTest::newRow("Component") << QStringLiteral(
            "IncompleteDefinitionException: Parameters for Component are not set properly in "
            "'TunerProperties'.") << WriteAny([] {
            Trusting<TunerProperties> document;
            static_cast<TunerProperties &>(document) = aDocument();
            document.SetComponent({Component()});
            xmlOf(document);
        });
    }

    void itemWithoutDataIsRefusedByItsWriter()
    {
        QFETCH(QString, thrown);
        QFETCH(WriteAny, write);
        QCOMPARE(thrownBy(write), thrown);
    }

    void mergingWithAnotherClassIdentifierChangesNothing()
    {
        Node node = aNode(QStringLiteral("mine"));
        TaggedNode tagged;
        tagged.Setid(QStringLiteral("theirs"));
        QCOMPARE(node.MergeRGObject(tagged), false);
        QCOMPARE(node.Getid(), QStringLiteral("mine"));
        QCOMPARE(tagged.MergeRGObject(node), false);
        QCOMPARE(tagged.Getid(), QStringLiteral("theirs"));

        TaggedNode other;
        other.Setid(QStringLiteral("third"));
        QCOMPARE(tagged.MergeRGObject(other), true);
        QCOMPARE(tagged.Getid(), QStringLiteral("third"));
    }

    void mergingWithADerivedClassOfTheSameIdentifierCopiesItsMembers()
    {
        Trusting<Node> derived;
        derived.Setid(QStringLiteral("theirs"));
        Node node = aNode(QStringLiteral("mine"));
        QCOMPARE(node.MergeRGObject(derived), true);
        QCOMPARE(node.Getid(), QStringLiteral("theirs"));
    }

    void flagChangedByAnElementAppliesToLaterElements_data()
    {
        QTest::addColumn<QString>("before");
        QTest::newRow("as the first element") << QString();
        QTest::newRow("after another element") << QStringLiteral("<MaxFFPDelay>1</MaxFFPDelay>");
    }

    void flagChangedByAnElementAppliesToLaterElements()
    {
        class Relaxing : public TunerProperties
        {
        public:
            void ProcessXmlStartElement(QXmlStreamReader &reader) override
            {
                if (reader.name() == QLatin1String("relaxed"))
                    IRGObject::SetValidate(false); // the children inherit it at the next element
                TunerProperties::ProcessXmlStartElement(reader);
            }
        };
        QFETCH(QString, before);
        Relaxing document;
        readXml(document,
                QStringLiteral("<TunerProperties Version=\"1.1\">") + before
                    + QStringLiteral("<relaxed/><StartupModes><StartupMode>none</StartupMode></StartupModes>"
                                     "</TunerProperties>"));
        QCOMPARE(std::as_const(document).GetStartupModes().GetStartupMode(),
                 QVector<StartupModes::StartupMode>{StartupModes::StartupMode::Invalid});
    }

    void componentReadByTheBaseLibraryHasAllItsNodes()
    {
        WalkedComponent component;
        const auto logger = std::make_shared<Logger>();
        component.SetLogger(logger);
        readXml(component, xmlOf(aComponent(QStringLiteral("Preselector"), 3)));
        QCOMPARE(std::as_const(component).GetNode().size(), 3);
        QCOMPARE(following(component, true, logger), 10);
        QCOMPARE(xmlOf(component),
                 xmlOf(aComponent(QStringLiteral("Preselector"), 3))
                     .replace(QLatin1String("\"false\""), QLatin1String("\"true\"")));
    }
};

TEST_SUITE(DerivedClassesTest)
#include "tst_DerivedClasses.moc"
