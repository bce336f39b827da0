// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Documents.h"
#include "Encodings.h"
#include "ExceptionText.h"
#include "Threads.h"
#include "WholeTree.h"

using namespace JobXml;
using REPORTGENERATOR::Logger;

namespace {

constexpr int rounds = 100; // so that the threads meet at many places

/// The work of a thread on an object of its own: sets a flag and a logger, uses the object in every way that traverses
/// its tree, and checks that the whole tree has this thread's flag and logger.
template <class Object>
class User
{
public:
    User(Object &object, bool validate) : m_object(object), m_validate(validate) { }

    void operator()()
    {
        m_object.SetValidate(m_validate);
        m_object.SetLogger(m_logger);
        m_failure = thrownBy([&] {
            m_object.Check();
            m_xml = xmlOf(m_object);
            m_record = recordOf(m_object);
        });
        const Object copy(m_object);
        m_equal = copy == m_object && m_object.GetProblems().isEmpty();
        m_strangers = WholeTree::count(m_object, [this](const DataObject &object) {
            return object.GetValidate() != m_validate || object.GetLogger() != m_logger;
        });
    }

    /// The difference to using the object alone; null if there is none.
    QString complaint(const Object &alone) const
    {
        if (!m_failure.isNull())
            return m_failure;
        if (m_strangers != 0)
            return QStringLiteral("%1 objects follow somebody else").arg(m_strangers);
        if (!m_equal || m_xml != xmlOf(alone) || m_record != recordOf(alone))
            return QStringLiteral("not the same: ") + m_xml;
        return QString();
    }

private:
    Object &m_object;
    const bool m_validate;
    const std::shared_ptr<Logger> m_logger = std::make_shared<Logger>();
    QString m_failure;
    QString m_xml;
    QByteArray m_record;
    bool m_equal = false;
    int m_strangers = -1;
};

/// Uses both at once, one of them validating, and compares them with `firstAlone` and `secondAlone` after the same use.
template <class First, class Second>
QString usedAtOnce(First &first, const First &firstAlone, Second &second, const Second &secondAlone, int round)
{
    User<First> firstUser(first, round % 2 == 0);
    User<Second> secondUser(second, round % 2 != 0);
    atOnce(firstUser, secondUser);
    const QString complaint = firstUser.complaint(firstAlone);
    return complaint.isNull() ? secondUser.complaint(secondAlone) : complaint;
}

StartupModes someModes()
{
    StartupModes modes;
    modes.AppendStartupMode(StartupModes::StartupMode::Scan);
    modes.AppendStartupMode(StartupModes::StartupMode::DF);
    return modes;
}

} // namespace

/// Two threads may use items and lists at once, however the objects received them. Meaningful with a thread sanitizer.
class ThreadsAndListsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anItemCopiedOutOfAListIsUsedBesideItsDocument();
    void anItemAssignedFromAListIsUsedBesideItsDocument();
    void anItemAssignedIntoAnotherDocumentIsUsedBesideTheFirst();
    void copiedListThatItsDocumentReleasedIsUsedBesideIt();
    void aListThatWasCopiedAndModifiedIsUsedBesideItsDocument();
    void listSetInAnotherDocumentIsUsedBesideTheFirst();
    void aListPutInThroughAReferenceIsUsedBesideItsFormerOwner();
    void childObjectIsUsedBesideTheDocumentThatItWasSetIn();
    void alternativeIsUsedBesideTheItemThatItWasSetIn();
    void movedAndSwappedDocumentsAreUsedBesideFormerOwnersOfTheirData();
    void modesSetInTwoObjectsAreExtendedAtOnce();
    void copiedAndReleasedModesAreExtendedAtOnce();
    void emptiedListsAreFilledAtOnce();
    void itemsWithoutDataAreComparedAtOnce();
};

void ThreadsAndListsTest::anItemCopiedOutOfAListIsUsedBesideItsDocument()
{
    for (int round = 0; round < rounds; ++round) {
        TunerProperties document = aDocument();
        Component item(std::as_const(document).GetComponent().at(0));
        QCOMPARE(usedAtOnce(document, aDocument(), item, aComponent(QStringLiteral("Preselector"), 2), round),
                 QString());
    }
}

// In this case the item shares its data with the one in the list.
void ThreadsAndListsTest::anItemAssignedFromAListIsUsedBesideItsDocument()
{
    for (int round = 0; round < rounds; ++round) {
        TunerProperties document = aDocument();
        Component item;
        item = std::as_const(document).GetComponent().at(0);
        QCOMPARE(usedAtOnce(document, aDocument(), item, aComponent(QStringLiteral("Preselector"), 2), round),
                 QString());
    }
}

void ThreadsAndListsTest::anItemAssignedIntoAnotherDocumentIsUsedBesideTheFirst()
{
    for (int round = 0; round < rounds; ++round) {
        TunerProperties first = aDocument();
        TunerProperties second = aDocument(1);
        second.GetComponent()[0] = std::as_const(first).GetComponent().at(0);
        second.GetBandwidthSelection()[0] = std::as_const(first).GetBandwidthSelection().at(0);
        QCOMPARE(usedAtOnce(first, aDocument(), second, aDocument(), round), QString());
    }
}

// Using the document once more detaches its list from the copy.
void ThreadsAndListsTest::copiedListThatItsDocumentReleasedIsUsedBesideIt()
{
    for (int round = 0; round < rounds; ++round) {
        TunerProperties document = aDocument();
        QVector<Component> list = std::as_const(document).GetComponent();
        std::as_const(document).GetComponent();
        TunerProperties other = aDocument(1);
        User<TunerProperties> user(document, round % 2 == 0);
        User<TunerProperties> otherUser(other, round % 2 != 0);
        atOnce(user, [&] {
            other.SetComponent(list);
            list.append(aComponent());
            list[0].Reset();
            otherUser();
        });
        QCOMPARE(user.complaint(aDocument()), QString());
        QCOMPARE(otherUser.complaint(aDocument()), QString());
        QVERIFY(!list.at(0).AnyData());
    }
}

void ThreadsAndListsTest::aListThatWasCopiedAndModifiedIsUsedBesideItsDocument()
{
    for (int round = 0; round < rounds; ++round) {
        TunerProperties document = aDocument();
        QVector<Component> list = std::as_const(document).GetComponent();
        Component &item = list[0];
        QCOMPARE(usedAtOnce(document, aDocument(), item, aComponent(QStringLiteral("Preselector"), 2), round),
                 QString());
    }
}

void ThreadsAndListsTest::listSetInAnotherDocumentIsUsedBesideTheFirst()
{
    for (int round = 0; round < rounds; ++round) {
        TunerProperties first = aDocument();
        TunerProperties second = aDocument(1);
        second.SetComponent(std::as_const(first).GetComponent());
        second.SetBandwidthSelection(std::as_const(first).GetBandwidthSelection());
        QCOMPARE(usedAtOnce(first, aDocument(), second, aDocument(), round), QString());
    }
}

void ThreadsAndListsTest::aListPutInThroughAReferenceIsUsedBesideItsFormerOwner()
{
    for (int round = 0; round < rounds; ++round) {
        TunerProperties first = aDocument();
        TunerProperties second = aDocument(1);
        second.GetComponent() = std::as_const(first).GetComponent();
        std::as_const(second).GetComponent(); // detaches
        TunerProperties third;
        third = second;
        User<TunerProperties> users[] = {{first, true}, {second, false}, {third, round % 2 == 0}};
        atOnce(users[0], users[1], users[2]);
        for (const User<TunerProperties> &user : users)
            QCOMPARE(user.complaint(aDocument()), QString());
    }
}

void ThreadsAndListsTest::childObjectIsUsedBesideTheDocumentThatItWasSetIn()
{
    for (int round = 0; round < rounds; ++round) {
        TunerProperties document = aDocument();
        StartupModes modes = someModes();
        document.SetStartupModes(modes);
        TunerProperties alone = aDocument();
        alone.GetStartupModes() = someModes();
        QCOMPARE(usedAtOnce(document, alone, modes, someModes(), round), QString());
    }
}

void ThreadsAndListsTest::alternativeIsUsedBesideTheItemThatItWasSetIn()
{
    for (int round = 0; round < rounds; ++round) {
        ValueItem item;
        ValueSelection alternative;
        alternative.Setid(QStringLiteral("choice"));
        SelectionItem choice;
        choice.Setname(QStringLiteral("one"));
        choice.Setvalue(1.5);
        alternative.AppendSelectionItem(choice);
        alternative.Setvalue(1.5);
        alternative.Settext(QStringLiteral("one"));
        alternative.Setindex(0);
        const ValueSelection alternativeAlone(alternative);
        item.SetValueSelection(alternative);
        const ValueItem itemAlone(item);
        QCOMPARE(usedAtOnce(item, itemAlone, alternative, alternativeAlone, round), QString());
    }
}

void ThreadsAndListsTest::movedAndSwappedDocumentsAreUsedBesideFormerOwnersOfTheirData()
{
    for (int round = 0; round < rounds; ++round) {
        TunerProperties first = aDocument();
        TunerProperties second;
        second = first;
        TunerProperties third;
        third = first;
        TunerProperties fourth;
        TunerProperties fifth;
        QString complaints[2];
        atOnce(
            [&] {
                fourth = std::move(first);
                User<TunerProperties> user(fourth, true);
                user();
                complaints[0] = user.complaint(aDocument());
            },
            [&] {
                fifth.swap(second);
                second = TunerProperties(std::move(third));
                User<TunerProperties> user(fifth, false);
                user();
                complaints[1] = user.complaint(aDocument());
            });
        QCOMPARE(complaints[0], QString());
        QCOMPARE(complaints[1], QString());
        QVERIFY(!first.IsInitialized());
        QVERIFY(second == aDocument());
    }
}

void ThreadsAndListsTest::modesSetInTwoObjectsAreExtendedAtOnce()
{
    for (int round = 0; round < rounds; ++round) {
        StartupModes first;
        StartupModes second;
        {
            QVector<StartupModes::StartupMode> list = someModes().GetStartupMode();
            list.reserve(4); // memory for another one
            first.SetStartupMode(list);
            second.SetStartupMode(list);
        }
        atOnce([&] { first.AppendStartupMode(StartupModes::StartupMode::Polar); },
               [&] { second.AppendStartupMode(StartupModes::StartupMode::Stop); });
        QCOMPARE(xmlOf(first),
                 QStringLiteral("<StartupModes><StartupMode>Scan</StartupMode><StartupMode>DF</StartupMode>"
                                "<StartupMode>Polar</StartupMode></StartupModes>"));
        QCOMPARE(xmlOf(second),
                 QStringLiteral("<StartupModes><StartupMode>Scan</StartupMode><StartupMode>DF</StartupMode>"
                                "<StartupMode>Stop</StartupMode></StartupModes>"));
    }
}

void ThreadsAndListsTest::copiedAndReleasedModesAreExtendedAtOnce()
{
    for (int round = 0; round < rounds; ++round) {
        StartupModes object = someModes();
        QVector<StartupModes::StartupMode> list = std::as_const(object).GetStartupMode();
        std::as_const(object).GetStartupMode();
        const auto put = [](QVector<StartupModes::StartupMode> &modes, StartupModes::StartupMode mode) {
            if (std::as_const(modes).at(0) == StartupModes::StartupMode::Scan)
                modes[0] = mode;
        };
        atOnce([&] { put(object.GetStartupMode(), StartupModes::StartupMode::Polar); },
               [&] { put(list, StartupModes::StartupMode::Stop); });
        QCOMPARE(xmlOf(object),
                 QStringLiteral("<StartupModes><StartupMode>Polar</StartupMode><StartupMode>DF</StartupMode>"
                                "</StartupModes>"));
        QCOMPARE(list,
                 (QVector<StartupModes::StartupMode>{StartupModes::StartupMode::Stop, StartupModes::StartupMode::DF}));
    }
}

// A list without items may have reserved memory, which is not shared either.
void ThreadsAndListsTest::emptiedListsAreFilledAtOnce()
{
    for (int round = 0; round < rounds; ++round) {
        TunerProperties first = aDocument();
        first.Reset();
        first.GetComponent().reserve(4);
        StartupModes firstModes = someModes();
        firstModes.Reset();
        firstModes.GetStartupMode().reserve(4);
        TunerProperties second;
        second = first;
        StartupModes secondModes;
        secondModes = firstModes;
        atOnce(
            [&] {
                first.AppendComponent(aComponent(QStringLiteral("first")));
                firstModes.AppendStartupMode(StartupModes::StartupMode::Polar);
            },
            [&] {
                second.AppendComponent(aComponent(QStringLiteral("second")));
                secondModes.AppendStartupMode(StartupModes::StartupMode::Stop);
            });
        QCOMPARE(std::as_const(first).GetComponent().size(), 1);
        QCOMPARE(std::as_const(second).GetComponent().size(), 1);
        QCOMPARE(std::as_const(first).GetComponent().at(0).Getname(), QStringLiteral("first"));
        QCOMPARE(std::as_const(second).GetComponent().at(0).Getname(), QStringLiteral("second"));
        QCOMPARE(std::as_const(firstModes).GetStartupMode().size(), 1);
        QVERIFY(std::as_const(secondModes).GetStartupMode().at(0) == StartupModes::StartupMode::Stop);
    }
}

// Comparing initializes them, separately in each object.
void ThreadsAndListsTest::itemsWithoutDataAreComparedAtOnce()
{
    const auto nodeWith = [](const ValueItem &item) {
        Node node;
        node.SetValidate(false);
        node.AppendValueItem(item);
        return node;
    };
    ValueItem initialized;
    initialized.ResetToDefault();
    for (int round = 0; round < rounds; ++round) {
        const Node source = nodeWith(ValueItem());
        Node first;
        Node second;
        first = source;
        second = source;
        const Node firstPartner = nodeWith(initialized);
        const Node secondPartner = nodeWith(initialized);
        bool equal[2] = {};
        atOnce([&] { equal[0] = first == firstPartner; }, [&] { equal[1] = secondPartner == second; });
        QVERIFY(equal[0] && equal[1]);
        QVERIFY(std::as_const(first).GetValueItem().at(0).IsInitialized());
        QVERIFY(std::as_const(second).GetValueItem().at(0).IsInitialized());
        QVERIFY(!source.GetValueItem().at(0).IsInitialized());
    }
}

TEST_SUITE(ThreadsAndListsTest)
#include "tst_ThreadsAndLists.moc"
