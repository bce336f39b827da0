// SPDX-License-Identifier: MIT
#include <random>

#include <QTemporaryDir>
#include <QtTest>

#include "Documents.h"
#include "Encodings.h"
#include "ExceptionText.h"
#include "WholeTree.h"

using namespace JobXml;
using REPORTGENERATOR::IRGObject;
using REPORTGENERATOR::Logger;

namespace {

/// A value whose item passes the check, because the list is not empty, although the value itself fails it.
ValueStringList aListWithAnEmptyItem()
{
    ValueStringList list;
    list.Setid(QStringLiteral("list"));
    list.Setvalue(QStringLiteral("x"));
    list.SetStringItem({StringItem()});
    return list;
}

void appendItem(Node &node, const ValueStringList &value)
{
    ValueItem item;
    item.SetValueStringList(value);
    node.AppendValueItem(item);
}

Node &node(TunerProperties &document, int component, int index)
{
    return document.GetComponent()[component].GetNode()[index];
}

/// A document of two components with two nodes each.
TunerProperties twoComponents()
{
    TunerProperties document = aDocument(2);
    document.AppendComponent(aComponent(QStringLiteral("Demodulator"), 2));
    return document;
}

/// Clears the flag of a member alone, as reading a snapshot may.
void clearFlag(DataObject &object, const char *name)
{
    visit(object, [&](MemberEditor &member) {
        if (member.GetName() == QLatin1String(name))
            member.SetFlag(false);
    });
}

/// An operation that writes a document, and what it returns when it writes nothing.
struct Writer
{
    const char *name;
    bool writesXml;
    std::function<QByteArray(TunerProperties &)> write;
};

QByteArray fileWrittenBy(const std::function<bool(const QString &)> &save)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document"));
    QFile file(path);
    return save(path) && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

const QVector<Writer> &writers()
{
    static const QVector<Writer> all{
        {"GetXml", true, [](TunerProperties &o) { return xmlOf(o).toUtf8(); }},
        {"GetXmlString", true, [](TunerProperties &o) { return o.GetXmlString().toUtf8(); }},
        {"SaveXml", true,
         [](TunerProperties &o) { return fileWrittenBy([&](const QString &path) { return o.SaveXml(path); }); }},
        {"GetBinary", false, [](TunerProperties &o) { return recordOf(o); }},
        {"GetBinary, little-endian", false, [](TunerProperties &o) { return recordOf(o, littleEndian); }},
        {"GetBinaryRepresentation", false,
         [](TunerProperties &o) {
             QByteArray bytes;
             QDataStream stream(&bytes, QIODevice::WriteOnly);
             o.GetBinaryRepresentation(stream);
             return bytes;
         }},
        {"GetBinaryRepresentationAsQByteArray", false,
         [](TunerProperties &o) { return o.GetBinaryRepresentationAsQByteArray(); }},
        {"GetCompressedBinaryRepresentationAsQByteArray", false,
         [](TunerProperties &o) { return o.GetCompressedBinaryRepresentationAsQByteArray(1); }},
        {"SaveBinary", false,
         [](TunerProperties &o) { return fileWrittenBy([&](const QString &path) { return o.SaveBinary(path); }); }},
        {"SaveCompressedBinary", false,
         [](TunerProperties &o) {
             return fileWrittenBy([&](const QString &path) { return o.SaveCompressedBinary(path, 1); });
         }},
    };
    return all;
}

using Change = std::function<void(TunerProperties &)>;

/// Flag, logger and presence of data of an object and everything below it, alternatives that are not chosen and
/// members that are not set included.
QString environments(const DataObject &object)
{
    QString text = object.IsInitialized() ? QStringLiteral("D") : QStringLiteral("d");
    text += object.GetValidate() ? QLatin1Char('V') : QLatin1Char('v');
    text += object.GetLogger() ? QLatin1Char('L') : QLatin1Char('l');
    visit(object, [&](const MemberView &member) {
        const bool hasChildren = member.GetKind() >= MemberKind::Object;
        for (int i = 0; hasChildren && i < member.GetSize(); ++i)
            text += QLatin1Char('(') + environments(member.GetChild(i)) + QLatin1Char(')');
    });
    return text;
}

} // namespace

Q_DECLARE_METATYPE(Change)

/// While validating, a document is checked as it is written. The bytes, the exceptions and the state of the objects are
/// as if Check() came first, and then HasData() and the check of each object that Check() does not include.
class CheckedWritingTest : public QObject
{
    Q_OBJECT

private:
    static void addFailures()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("thrownForXml");
        QTest::addColumn<QString>("thrownForRecords");
        const auto add = [](const char *name, const Change &change, const QString &thrown) {
            QTest::newRow(name) << change << thrown << thrown;
        };
        const auto addOfXml = [](const char *name, const Change &change, const QString &thrown) {
            QTest::newRow(name) << change << thrown << QString();
        };
        add(
            "a missing member", [](TunerProperties &o) { node(o, 1, 0).Resetid(); },
            QStringLiteral("OutOfRangeException: Node: Please set id properly."));
        add(
            "a child before a missing member of its parent",
            [](TunerProperties &o) {
                o.Resettype();
                node(o, 1, 1).Resetid();
            },
            QStringLiteral("OutOfRangeException: Node: Please set id properly."));
        add(
            "a missing member before a later sibling",
            [](TunerProperties &o) {
                o.GetComponent()[0].Resetname();
                node(o, 1, 0).Resetid();
            },
            QStringLiteral("OutOfRangeException: Component: Please set name properly."));
        add(
            "the lowest bit first",
            [](TunerProperties &o) { o.GetComponent()[1].Resetname(), o.GetComponent()[1].Resettype(); },
            QStringLiteral("OutOfRangeException: Component: Please set type properly."));
        add(
            "a null text",
            [](TunerProperties &o) {
                o.SetValidate(false);
                node(o, 0, 1).Setid(QString());
                o.SetValidate(true);
            },
            QStringLiteral("OutOfRangeException: Node: Please set id properly."));
        add(
            "a null text that is optional",
            [](TunerProperties &o) {
                o.SetValidate(false);
                o.GetComponent()[0].SetdisplayName(QString());
                o.SetValidate(true);
            },
            QStringLiteral("OutOfRangeException: Component: Please set displayName properly."));
        add(
            "an invalid type",
            [](TunerProperties &o) {
                o.SetValidate(false);
                o.Settype(TunerProperties::type(7));
                o.SetValidate(true);
            },
            QStringLiteral("OutOfRangeException: TunerProperties: Please set type properly."));
        add(
            "an invalid start-up mode",
            [](TunerProperties &o) {
                o.GetStartupModes().SetStartupMode({StartupModes::StartupMode::DF, StartupModes::StartupMode(99)});
            },
            QStringLiteral("OutOfRangeException: StartupModes: Please set StartupMode properly."));
        add(
            "start-up modes that are set but were never filled", [](TunerProperties &o) { o.SetStartupModes({}); },
            QStringLiteral("OutOfRangeException: StartupModes: Please set StartupMode properly."));
        add(
            "an item without a choice", [](TunerProperties &o) { node(o, 1, 1).SetValueItem({ValueItem()}); },
            QStringLiteral("IncompleteDefinitionException: ValueItem:Check failed. The mandatory choice "
                           "ChoiceValueItem is not initialized"));
        add(
            "a choice that is not set",
            [](TunerProperties &o) { clearFlag(node(o, 0, 0).GetValueItem()[0], "ValueInt"); },
            QStringLiteral("IncompleteDefinitionException: ValueItem:Check failed. The mandatory member (choice "
                           "element) m_valueInt is not set."));
        add(
            "a choice without data",
            [](TunerProperties &o) { node(o, 0, 0).GetValueItem()[0].GetValueInt().Resetid(); },
            QStringLiteral("IncompleteDefinitionException: ValueItem:Check failed. Mandatory data of the member "
                           "(choice element) m_valueInt is not set."));
        add(
            "a choice that was never used",
            [](TunerProperties &o) {
                visit(node(o, 0, 0).GetValueItem()[0], [](MemberEditor &member) {
                    if (member.GetKind() == MemberKind::Choice)
                        QVERIFY(member.SetValue(QStringLiteral("ValueBoolean")));
                    if (member.GetName() == QLatin1String("ValueBoolean"))
                        member.SetFlag(true);
                });
            },
            QStringLiteral("IncompleteDefinitionException: ValueItem:Check failed. Mandatory data of the member "
                           "(choice element) m_valueBoolean is not set."));
        add(
            "an alternative, which the check of its item does not include",
            [](TunerProperties &o) { appendItem(node(o, 0, 0), aListWithAnEmptyItem()); },
            QStringLiteral("OutOfRangeException: StringItem: Please set value properly."));
        add(
            "an alternative, and a later member, which the check includes",
            [](TunerProperties &o) {
                appendItem(node(o, 0, 0), aListWithAnEmptyItem());
                o.GetComponent()[1].Resetname();
            },
            QStringLiteral("OutOfRangeException: Component: Please set name properly."));
        add(
            "a bandwidth of a list that is not set",
            [](TunerProperties &o) {
                o.GetBandwidthSelection()[0].ResetMaxBandwidth();
                clearFlag(o, "BandwidthSelection");
            },
            QStringLiteral("OutOfRangeException: BandwidthSelection: Please set MaxBandwidth properly."));
        addOfXml(
            "an item without data", [](TunerProperties &o) { node(o, 0, 1).SetValueItem({}); },
            QStringLiteral("IncompleteDefinitionException: Parameters for Node are not set properly in 'Component'."));
        add(
            "an item without data, and a later member, which the check includes",
            [](TunerProperties &o) {
                node(o, 0, 0).SetValueItem({});
                o.GetComponent()[1].Resetname();
            },
            QStringLiteral("OutOfRangeException: Component: Please set name properly."));
        QTest::newRow("an item without data, and an earlier alternative")
            << Change([](TunerProperties &o) {
                   appendItem(node(o, 0, 0), aListWithAnEmptyItem());
                   node(o, 0, 1).SetValueItem({});
               })
            << QStringLiteral("OutOfRangeException: StringItem: Please set value properly.")
            << QStringLiteral("OutOfRangeException: StringItem: Please set value properly.");
        QTest::newRow("an item without data, and a later alternative")
            << Change([](TunerProperties &o) {
                   node(o, 0, 0).SetValueItem({});
                   appendItem(node(o, 0, 1), aListWithAnEmptyItem());
               })
            << QStringLiteral("IncompleteDefinitionException: Parameters for Node are not set properly in "
                              "'Component'.")
            << QStringLiteral("OutOfRangeException: StringItem: Please set value properly.");
    }

private Q_SLOTS:
    void theFirstFailureIsThrown_data() { addFailures(); }
    void theFirstFailureIsThrown()
    {
        QFETCH(Change, change);
        QFETCH(QString, thrownForXml);
        QFETCH(QString, thrownForRecords);
        for (const Writer &writer : writers()) {
            TunerProperties document = twoComponents();
            change(document);
            QByteArray written;
            const QString thrown = thrownBy([&] { written = writer.write(document); });
            const QString &expected = writer.writesXml ? thrownForXml : thrownForRecords;
            QVERIFY2(thrown == expected, qPrintable(QLatin1String(writer.name) + QLatin1String(": ") + thrown));
            QCOMPARE(written.isEmpty(), !expected.isNull());

            document.SetValidate(false); // anything is written then
            QCOMPARE(thrownBy([&] { written = writer.write(document); }), QString());
            QVERIFY(!written.isEmpty());
        }
    }

    // What was not reached by the time of the failure is propagated to as well; and no object without data is
    // initialized that the check does not reach.
    void aFailureLeavesTheObjectsAsTheCheckDoes_data() { addFailures(); }
    void aFailureLeavesTheObjectsAsTheCheckDoes()
    {
        QFETCH(Change, change);
        const auto logger = std::make_shared<Logger>();
        const auto prepared = [&] {
            TunerProperties document = twoComponents();
            document.GetComponent()[1].GetNode().append(Node()); // never initialized unless the check reaches it
            change(document);
            document.IRGObject::SetLogger(logger); // the root alone
            document.SetMaxFFPDelay(1);
            return document;
        };
        TunerProperties checked = prepared();
        checked.IRGObject::SetLogger(logger); // a copy has none
        const QString thrown = thrownBy([&] { checked.Check(); });
        QVERIFY(!thrown.isNull()); // at the latest for the empty node
        const QString left = environments(checked);
        QVERIFY(!left.contains(QLatin1Char('l')));

        for (const Writer &writer : writers()) {
            TunerProperties document = prepared();
            document.IRGObject::SetLogger(logger);
            QCOMPARE(thrownBy([&] { writer.write(document); }), thrown);
            QCOMPARE(environments(document), left);
        }
    }

    void everythingWrittenIsPropagatedTo()
    {
        const auto logger = std::make_shared<Logger>();
        for (const bool validate : {true, false}) {
            for (const Writer &writer : writers()) {
                TunerProperties document = twoComponents();
                document.ResetStartupModes(); // not written, but propagated to
                ValueItem &item = node(document, 0, 0).GetValueItem()[0];
                item.SetValueStringList(aListWithAnEmptyItem()); // not written: another alternative is chosen
                item.SetValueInt(anInt());
                document.IRGObject::SetValidate(validate);
                document.IRGObject::SetLogger(logger);
                QVERIFY(!writer.write(document).isEmpty());
                const QString left = environments(document);
                QVERIFY2(!left.contains(QLatin1Char('l')), writer.name);
                QVERIFY2(!left.contains(validate ? QLatin1Char('v') : QLatin1Char('V')), writer.name);
                QCOMPARE(std::as_const(document).GetStartupModes().GetLogger(), logger);
                // one that is created later inherits both
                const ValueItem &written = std::as_const(node(document, 0, 0)).GetValueItem()[0];
                QCOMPARE(written.GetValueBoolean().GetLogger(), logger);
                QCOMPARE(written.GetValueBoolean().GetValidate(), validate);
            }
        }
    }

    void childrenThatAreNotWrittenAreNotInitialized()
    {
        for (const Writer &writer : writers()) {
            TunerProperties document = twoComponents();
            document.ResetStartupModes();
            node(document, 0, 0).GetValueItem()[0].SetValueStringList(aListWithAnEmptyItem());
            node(document, 0, 0).GetValueItem()[0].SetValueInt(anInt());
            QVERIFY(!writer.write(document).isEmpty());
            const TunerProperties &written = document;
            QVERIFY2(!written.GetStartupModes().IsInitialized(), writer.name);
            const ValueItem &item = written.GetComponent()[0].GetNode()[0].GetValueItem()[0];
            QVERIFY2(!item.GetValueStringList().GetStringItem()[0].IsInitialized(), writer.name);
        }
    }

    // Check() and HasData() of the root both come before its first byte.
    void aDocumentWithoutDataWritesNothing()
    {
        for (const Writer &writer : writers()) {
            TunerProperties document = aDocument();
            document.SetComponent({});
            document.Check();
            QVERIFY2(writer.write(document).isEmpty(), writer.name);
        }
    }

    void recordsCountItemsWithoutDataButLeaveThemOut()
    {
        Component component = aComponent(QStringLiteral("a"), 2);
        component.GetNode()[1].SetValueItem({});
        const QByteArray node = recordOf(std::as_const(component).GetNode()[0]);
        QCOMPARE(hex(recordOf(component).right(4 + node.size())), hex(bytes("00 00 00 02") + node));
    }

    void objectsThatShareTheirDataAreWrittenAsOthersAre()
    {
        for (const Writer &writer : writers()) {
            TunerProperties document = twoComponents();
            const QByteArray alone = writer.write(document);
            TunerProperties sharing;
            sharing.SetValidate(true);
            sharing = document;
            const auto logger = std::make_shared<Logger>();
            sharing.SetLogger(logger);
            sharing = document;
            QCOMPARE(writer.write(sharing), alone);
            QCOMPARE(WholeTree::count(sharing, [&](const DataObject &o) { return o.GetLogger() == logger; }),
                     WholeTree::size(sharing));
            QCOMPARE(WholeTree::count(document, [&](const DataObject &o) { return o.GetLogger() == nullptr; }),
                     WholeTree::size(document));
        }
    }

    // Random damage: every writer throws what the check throws.
    void randomDamageIsFoundInTheOrderOfTheCheck()
    {
        std::mt19937 random(14); // NOLINT(bugprone-random-generator-seed): the same in each run
        const auto below = [&](int end) { return int(random() % quint32(end)); };
        int thrownByCheck = 0;
        for (int round = 0; round < 300; ++round) {
            TunerProperties damaged = twoComponents();
            for (int i = 1 + below(2); i > 0; --i) {
                Component &component = damaged.GetComponent()[below(2)];
                Node &which = component.GetNode()[below(2)];
                switch (below(8)) {
                case 0:
                    which.Resetid();
                    break;
                case 1:
                    component.Resetname();
                    break;
                case 2:
                    component.Resetoptional();
                    break;
                case 3:
                    which.SetValueItem({ValueItem()});
                    break;
                case 4:
                    appendItem(which, aListWithAnEmptyItem());
                    break;
                case 5:
                    which.SetValueItem({});
                    break;
                case 6:
                    damaged.Resetbaseresource();
                    break;
                default:
                    damaged.GetBandwidthSelection()[0].ResetName();
                }
            }
            const QString thrown = thrownBy([&] { TunerProperties(damaged).Check(); });
            thrownByCheck += thrown.isNull() ? 0 : 1;
            for (const Writer &writer : writers()) {
                if (QByteArray(writer.name).startsWith("Save")) // as the others, but each file takes its time
                    continue;
                TunerProperties document(damaged);
                const QString thrownByWriter = thrownBy([&] { writer.write(document); });
                if (thrown.isNull())
                    QVERIFY(
                        thrownByWriter.isNull()
                        || thrownByWriter
                            == QLatin1String("OutOfRangeException: StringItem: Please set value properly.")
                        || thrownByWriter.startsWith(QLatin1String("IncompleteDefinitionException: Parameters for")));
                else
                    QCOMPARE(thrownByWriter, thrown);
            }
        }
        QVERIFY(thrownByCheck > 100 && thrownByCheck < 300);
    }
};

TEST_SUITE(CheckedWritingTest)
#include "tst_CheckedWriting.moc"
