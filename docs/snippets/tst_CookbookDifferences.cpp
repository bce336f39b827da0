// SPDX-License-Identifier: MIT
//
// The recipe of the cookbook that lists the differences between two documents: the manual shows the marked part, and
// the tests check its results.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <iterator>
#include <vector>

#include <QDebug>
#include <QHash>
#include <QVariant>
#include <QtTest>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include "ExampleDocument.h"

namespace {

//! [compare]
using namespace JobXml;

/// The shortest text that reads back to the same number, so that different numbers never look the same.
template <class Number>
QString shortest(Number value)
{
    char text[64];
    return QString::fromLatin1(text, int(std::to_chars(std::begin(text), std::end(text), value).ptr - text));
}

QString textOf(const MemberView &member)
{
    const QVariant value = member.GetValue();
    if (!member.IsSet())
        return QStringLiteral("(not set)");
    switch (member.GetKind()) {
    case MemberKind::Float:
        return shortest(value.toFloat());
    case MemberKind::Double:
        return shortest(value.toDouble());
    case MemberKind::EnumerationList:
        return QLatin1Char('[') + value.toStringList().join(QStringLiteral(", ")) + QLatin1Char(']');
    case MemberKind::Text:
        return value.toString().isNull() ? QStringLiteral("(null)")
                                         : QLatin1Char('"') + value.toString() + QLatin1Char('"');
    default:
        return value.toString();
    }
}

/// What identifies an item among its siblings: a component's type and name, a value's id.
QString nameOf(const DataObject &item)
{
    QStringList texts;
    visit(item, [&](const MemberView &member) {
        if (member.IsIdentifying())
            texts.append(member.GetValue().toString());
        else if (member.GetKind() == MemberKind::Alternative && member.IsChosen() && member.GetSize() > 0)
            texts.append(nameOf(member.GetChild()));
    });
    return texts.join(QLatin1Char(' '));
}

QString contentsOf(const DataObject &item)
{
    QString contents;
    QDebug(&contents) << item;
    return contents;
}

/// The paths of a list's items. Of items with one name, the second is "name #2".
QStringList pathsOf(const MemberView &list, const QString &path)
{
    QStringList paths;
    QHash<QString, int> alike;
    for (int i = 0; i < list.GetSize(); ++i) {
        const QString name = nameOf(list.GetChild(i));
        const int count = ++alike[name];
        paths.append(path + QLatin1Char(' ') + name + (count > 1 ? QStringLiteral(" #%1").arg(count) : QString()));
    }
    return paths;
}

/// For each item of the first list, the item of the second to compare it with, or -1: one with the same contents if
/// there is one, otherwise one with the same name.
QVector<int> partners(const MemberView &before, const MemberView &after)
{
    QVector<int> partner(before.GetSize(), -1);
    QVector<bool> taken(after.GetSize());
    for (const auto keyOf : {contentsOf, nameOf}) {
        QHash<QString, QVector<int>> free; // the last one first
        for (int i = after.GetSize() - 1; i >= 0; --i) {
            if (!taken[i])
                free[keyOf(after.GetChild(i))].append(i);
        }
        for (int i = 0; i < partner.size(); ++i) {
            QVector<int> &candidates = free[keyOf(before.GetChild(i))];
            if (partner[i] < 0 && !candidates.isEmpty())
                taken[partner[i] = candidates.takeLast()] = true;
        }
    }
    return partner;
}

void compare(const DataObject &before, const DataObject &after, const QString &path, QStringList &lines);

void compareLists(const MemberView &before, const MemberView &after, const QString &path, QStringList &lines)
{
    const QStringList pathsBefore = pathsOf(before, path);
    const QStringList pathsAfter = pathsOf(after, path);
    QVector<int> partner = partners(before, after);
    QVector<bool> isPaired(after.GetSize());
    for (int i = 0; i < partner.size(); ++i) {
        if (partner[i] < 0) {
            lines.append(pathsBefore[i] + QStringLiteral(": (removed)"));
            continue;
        }
        isPaired[partner[i]] = true;
        compare(before.GetChild(i), after.GetChild(partner[i]), pathsBefore[i], lines);
    }
    for (int i = 0; i < after.GetSize(); ++i) {
        if (!isPaired[i])
            lines.append(pathsAfter[i] + QStringLiteral(": (added)"));
    }
    partner.removeAll(-1);
    if (!std::is_sorted(partner.cbegin(), partner.cend()))
        lines.append(path + QStringLiteral(": (order changed)"));
    if (before.IsSet() != after.IsSet() && before.GetSize() == 0 && after.GetSize() == 0)
        lines.append(path + (after.IsSet() ? QStringLiteral(": (now set, but empty)") : QStringLiteral(": (unset)")));
}

void compare(const MemberView &before, const MemberView &after, const QString &path, QStringList &lines)
{
    const auto isThere = [](const MemberView &child) { return child.IsSet() && child.GetSize() > 0; };
    switch (before.GetKind()) {
    case MemberKind::ObjectList:
        compareLists(before, after, path, lines);
        break;
    case MemberKind::Object:
    case MemberKind::Alternative:
        if (!before.IsChosen() || !after.IsChosen())
            break; // the choice itself is a member as well
        if (isThere(before) && isThere(after))
            compare(before.GetChild(), after.GetChild(), path, lines);
        else if (before.IsSet() != after.IsSet())
            lines.append(path + (after.IsSet() ? QStringLiteral(": (added)") : QStringLiteral(": (removed)")));
        break;
    default:
        if (textOf(before) != textOf(after))
            lines.append(path + QStringLiteral(": ") + textOf(before) + QStringLiteral(" -> ") + textOf(after));
    }
}

/// Compares two objects of one class member by member.
void compare(const DataObject &before, const DataObject &after, const QString &path, QStringList &lines)
{
    std::vector<MemberView> members;
    visit(after, [&](const MemberView &member) { members.push_back(member); });
    std::size_t next = 0;
    visit(before, [&](const MemberView &member) {
        compare(member, members[next++], path + QLatin1Char('/') + member.GetName(), lines);
    });
}

QStringList differences(const TunerProperties &before, const TunerProperties &after)
{
    QStringList lines;
    compare(before, after, QString(), lines);
    return lines;
}
//! [compare]

} // namespace

class CookbookDifferences : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void differencesOfItemsWithOneNameAreListed();
    void differencesAreListedByPath();
    void swappedComponentsAreReported();
    void aSwapOfTwinsIsReported();
    void anInsertedItemProducesOneLine_data();
    void anInsertedItemProducesOneLine();
    void numbersAreShownByTheirShortestText();
    void everyDocumentThatDiffersProducesALine();
};

void CookbookDifferences::differencesOfItemsWithOneNameAreListed()
{
    JobXml::TunerProperties left = receiver();
    const JobXml::Component twin = left.GetComponent()[0];
    left.AppendComponent(twin);
    JobXml::TunerProperties right = left;
    right.GetComponent().last().SetdisplayName(QStringLiteral("the other"));
    const QStringList lines = differences(left, right);
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().contains(QStringLiteral(" #2/displayName: ")), qPrintable(lines.first()));
}

void CookbookDifferences::differencesAreListedByPath()
{
    const JobXml::TunerProperties left = receiver();
    JobXml::TunerProperties right = left;
    QCOMPARE(differences(left, right), QStringList());

    right.Setquantity(3);
    right.ResetparentBaseResource();
    right.GetStartupModes().SetStartupMode({JobXml::StartupModes::StartupMode::FFM});
    JobXml::Component &tuning = right.GetComponent()[3];
    QCOMPARE(tuning.Getname(), QStringLiteral("tuning"));
    tuning.GetNode()[0].GetValueItem()[0].GetValueNumericInt64().Setvalue(101700000);
    right.AppendBandwidthSelection([] {
        JobXml::BandwidthSelection wide;
        wide.SetName(QStringLiteral("Wide"));
        wide.SetMaxBandwidth(1000.0);
        return wide;
    }());
    QCOMPARE(
        differences(left, right),
        (QStringList{
            QStringLiteral("/quantity: 2 -> 3"),
            QStringLiteral("/parentBaseResource: \"RACK-A\" -> (not set)"),
            QStringLiteral("/StartupModes/StartupMode: [FFM, Scan, FastScan, MScan, Search, MSearch, Step, Stop] -> "
                           "[FFM]"),
            QStringLiteral("/BandwidthSelection Wide: (added)"),
            QStringLiteral("/Component Synthesizer tuning/Node frequency/ValueItem frequency/ValueNumericInt64/value: "
                           "98500000 -> 101700000"),
        }));
}

void CookbookDifferences::swappedComponentsAreReported()
{
    const JobXml::TunerProperties left = receiver();
    JobXml::TunerProperties right = left;
    right.GetComponent().swapItemsAt(0, 2);
    QVERIFY(left != right);
    QCOMPARE(differences(left, right), QStringList(QStringLiteral("/Component: (order changed)")));
}

void CookbookDifferences::aSwapOfTwinsIsReported()
{
    JobXml::TunerProperties left = receiver();
    JobXml::Component twin = left.GetComponent()[0];
    twin.Setoptional(!twin.Getoptional());
    left.AppendComponent(twin);
    JobXml::TunerProperties right = left;
    right.GetComponent().swapItemsAt(0, right.GetComponent().size() - 1);
    QVERIFY(left != right);
    QCOMPARE(differences(left, right), QStringList(QStringLiteral("/Component: (order changed)")));
}

void CookbookDifferences::anInsertedItemProducesOneLine_data()
{
    QTest::addColumn<QString>("id"); // of the inserted item
    QTest::addColumn<QString>("line");

    const QString node = QStringLiteral("/Component Filter Preselector/Node att/ValueItem ");
    QTest::newRow("an id of its own") << QStringLiteral("new") << node + QStringLiteral("new: (added)");
    QTest::newRow("the id of the others") << QStringLiteral("value") << node + QStringLiteral("value: (added)");
    QTest::newRow("no id") << QString() << node + QStringLiteral(": (added)");
}

void CookbookDifferences::anInsertedItemProducesOneLine()
{
    QFETCH(QString, id);
    QFETCH(QString, line);

    const auto item = [](const QString &itemId, int value) {
        JobXml::ValueItem result;
        result.GetValueInt().SetValidate(false);
        if (!itemId.isNull())
            result.GetValueInt().Setid(itemId);
        result.GetValueInt().Setvalue(value);
        return result;
    };
    JobXml::Node node;
    node.Setid(QStringLiteral("att"));
    for (int i = 0; i < 28; ++i)
        node.AppendValueItem(item(QStringLiteral("value"), i));
    JobXml::Component component;
    component.Settype(QStringLiteral("Filter"));
    component.Setname(QStringLiteral("Preselector"));
    component.Setoptional(false);
    component.AppendNode(node);
    JobXml::TunerProperties left;
    left.AppendComponent(component);
    JobXml::TunerProperties right = left;
    right.GetComponent()[0].GetNode()[0].GetValueItem().prepend(item(id, 100));
    QCOMPARE(differences(left, right), QStringList(line));
}

void CookbookDifferences::numbersAreShownByTheirShortestText()
{
    JobXml::TunerProperties left = receiver();
    JobXml::ValueFloat number;
    number.Setid(QStringLiteral("f"));
    number.Setvalue(0.1F);
    left.GetComponent()[0].GetNode()[0].GetValueItem()[0].SetValueFloat(number);
    JobXml::BandwidthSelection bandwidth;
    bandwidth.SetName(QStringLiteral("b"));
    bandwidth.SetMaxBandwidth(2400.1);
    left.AppendBandwidthSelection(bandwidth);

    JobXml::TunerProperties right = left;
    right.GetComponent()[0].GetNode()[0].GetValueItem()[0].GetValueFloat().Setvalue(
        std::nextafter(0.1F, 1.0F)); // the next number that a float can hold
    right.GetBandwidthSelection().last().SetMaxBandwidth(0.30000000000000004);
    const QStringList lines = differences(left, right);
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines[0].endsWith(QStringLiteral("/BandwidthSelection b/MaxBandwidth: 2400.1 -> 0.30000000000000004")),
             qPrintable(lines[0]));
    QVERIFY2(lines[1].endsWith(QStringLiteral("/ValueItem f/ValueFloat/value: 0.1 -> 0.10000001")),
             qPrintable(lines[1]));
}

void CookbookDifferences::everyDocumentThatDiffersProducesALine()
{
    const JobXml::TunerProperties left = receiver();
    const std::function<void(JobXml::TunerProperties &)> changes[] = {
        [](auto &tuner) { tuner = JobXml::TunerProperties(); },
        [](auto &tuner) { tuner.ResetStartupModes(); },
        [](auto &tuner) { tuner.GetStartupModes().ResetStartupMode(); },
        [](auto &tuner) { tuner.ResetComponent(); },
        [](auto &tuner) { tuner.GetBandwidthSelection().clear(); },
        [](auto &tuner) { tuner.SetValidate(false), tuner.Setname(QString()); },
        [](auto &tuner) { tuner.Setname(QStringLiteral("(null)")); },
        [](auto &tuner) { tuner.Setname(QStringLiteral("(not set)")); },
        [](auto &tuner) { tuner.GetComponent()[0].GetNode()[0].GetValueItem()[0].ResetChoiceValueItem(); },
        [](auto &tuner) { tuner.GetComponent()[0].GetNode()[0].GetValueItem()[0].GetValueBoolean(); },
    };
    QVector<JobXml::TunerProperties> documents{left};
    for (const auto &change : changes) {
        JobXml::TunerProperties changed = left;
        change(changed);
        documents.append(changed);
    }
    for (const auto &one : documents) {
        for (const auto &other : documents)
            QCOMPARE(differences(one, other).isEmpty(), one == other);
    }
}

TEST_SUITE(CookbookDifferences)
#include "tst_CookbookDifferences.moc"
