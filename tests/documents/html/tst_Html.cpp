// SPDX-License-Identifier: MIT
#include <algorithm>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Value.h>

#include "Documents.h"
#include "documents/RandomChanges.h"
#include "documents/html/Pages.h"
#include "documents/html/ShownValues.h"

using JobXml::DataObject;
using JobXml::MemberKind;
using JobXml::MemberView;
using JobXml::TunerProperties;

using namespace TunerDocuments;

/// Every member of a document is on its page; layout and behavior are tested in a browser.
class HtmlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyMemberIsShownOnceWithItsValue_data() { addRandomDocuments(); }
    void everyMemberIsShownOnceWithItsValue();
    void everythingInJsonIsOnThePage_data() { addRandomDocuments(); }
    void everythingInJsonIsOnThePage();
    void alternativeThatIsNotChosenIsMarked();
    void missingListsAreShown();
    void longDocumentsOpenOnlyTheFirstComponent();
    void showingChangesNothing();
};

namespace {

QString described(const QString &name, const QStringList &values, bool isSet)
{
    return name + QStringLiteral(" = ") + values.join(QStringLiteral(" | "))
        + (isSet ? QString() : QStringLiteral(" (not set)"));
}

/// The expected content of a page for an object and everything below it. For a choice, that is its alternative, and the
/// others as far as they hold anything.
void collect(const DataObject &object, QStringList &values, QStringList &objects)
{
    bool hasChosen = false;
    JobXml::visit(object, [&](const MemberView &member) {
        hasChosen = hasChosen || (member.GetKind() == MemberKind::Alternative && member.IsChosen());
    });
    JobXml::visit(object, [&](const MemberView &member) {
        switch (member.GetKind()) {
        case MemberKind::Choice:
            if (!hasChosen && !isNull(member.GetValue()))
                values.append(described(member.GetName(), shownValues(member), member.IsSet()));
            return;
        case MemberKind::Object:
        case MemberKind::ObjectList:
        case MemberKind::Alternative:
            if (!member.IsChosen() && !member.IsSet() && (member.GetSize() == 0 || !isKept(member.GetChild())))
                return;
            objects.append(member.GetName());
            for (int i = 0; i < member.GetSize(); ++i)
                collect(member.GetChild(i), values, objects);
            return;
        default:
            values.append(described(member.GetName(), shownValues(member), member.IsSet()));
        }
    });
}

/// The actual content. `objectNames` are the names of members that are objects.
void collect(const PageNode &page, const QStringList &objectNames, QStringList &values, QStringList &objects)
{
    page.forEach([&](const PageNode &node) {
        if (!node.has("data-member"))
            return;
        const QString name = node.attribute("data-member");
        if (objectNames.contains(name)) {
            objects.append(name);
            return;
        }
        const bool isUnset = !node.all([](const PageNode &each) { return each.isOfClass("unset"); }).empty();
        values.append(described(name, node.values(), !isUnset));
    });
}

} // namespace

void HtmlTest::everyMemberIsShownOnceWithItsValue()
{
    QFETCH(int, seed);
    QFETCH(int, changes);
    QFETCH(int, count);
    for (int i = seed; i < seed + count; ++i) {
        const TunerProperties document = randomDocument(i, changes);
        const PageTree page = pageOf(document);
        QCOMPARE(page.error(), QString());
        QStringList values;
        QStringList objects;
        collect(document, values, objects);
        QStringList shown;
        QStringList shownObjects;
        collect(page.root(), objects, shown, shownObjects);
        const QString all = sorted(shown);
        for (const QString &each : qAsConst(values))
            QVERIFY2(shown.removeOne(each), qPrintable(each));
        QCOMPARE(shown.join(QLatin1Char('\n')), QString());
        QCOMPARE(all, sorted(values));
        QCOMPARE(sorted(shownObjects), sorted(objects));
    }
}

namespace {

/// A number or a text of a document in JSON, as the page shows it.
QString shownLeaf(const QJsonValue &value)
{
    if (value.isNull())
        return QStringLiteral("null");
    if (value.isBool())
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    if (value.isDouble())
        return ValueText::exactly(value.toDouble());
    const QString text = value.toString();
    if (text == QLatin1String("NaN"))
        return QStringLiteral("nan");
    if (text.endsWith(QLatin1String("Infinity")))
        return text.startsWith(QLatin1Char('-')) ? QStringLiteral("-inf") : QStringLiteral("inf");
    return text.isEmpty() ? QStringLiteral("empty") : text;
}

/// "name = value" for every member in JSON that has a value, wherever it is.
void collectLeaves(const QString &name, const QJsonValue &value, QStringList &leaves)
{
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto member = object.begin(); member != object.end(); ++member) {
            if (member.key() != QLatin1String("Version") && member.key() != QLatin1String("ChoiceValueItem"))
                collectLeaves(member.key(), member.value(), leaves);
        }
    } else if (value.isArray() && name == QLatin1String("StartupMode")) {
        QStringList modes;
        for (const QJsonValue &mode : value.toArray())
            modes.append(shownLeaf(mode));
        leaves.append(name + QStringLiteral(" = ")
                      + (modes.isEmpty() ? QStringLiteral("empty") : modes.join(QStringLiteral(" | "))));
    } else if (value.isArray()) {
        for (const QJsonValue &item : value.toArray())
            collectLeaves(name, item, leaves);
    } else {
        leaves.append(name + QStringLiteral(" = ") + shownLeaf(value));
    }
}

} // namespace

void HtmlTest::everythingInJsonIsOnThePage()
{
    QFETCH(int, seed);
    QFETCH(int, changes);
    QFETCH(int, count);
    int found = 0;
    for (int i = seed; i < seed + count; ++i) {
        TunerProperties document = randomDocument(i, changes);
        QByteArray json;
        try {
            json = Document(document).toBytes(Form::Json, {});
        } catch (const DocumentError &) { // half of a surrogate pair, which JSON cannot hold
            continue;
        }
        QStringList leaves;
        collectLeaves(QString(), QJsonDocument::fromJson(json).object(), leaves);
        const PageTree page = pageOf(document);
        page.root().forEach([&](const PageNode &node) {
            if (!node.has("data-member"))
                return;
            const QString member = node.attribute("data-member") + QStringLiteral(" = ");
            const QStringList shown = node.values();
            ++found;
            if (leaves.removeOne(member + shown.join(QStringLiteral(" | "))))
                return;
            // QJsonDocument has doubles, which have other digits than floats, and no sign of zero.
            bool isNumber = false;
            const float number = shown.value(0).toFloat(&isNumber);
            const auto same = std::find_if(leaves.begin(), leaves.end(), [&](const QString &leaf) {
                bool isAlsoNumber = false;
                const float other = leaf.mid(member.size()).toFloat(&isAlsoNumber);
                return leaf.startsWith(member) && isNumber && isAlsoNumber && !(other < number) && !(other > number);
            });
            if (same != leaves.end())
                leaves.erase(same);
        });
        QCOMPARE(leaves.join(QLatin1Char('\n')), QString());
    }
    QVERIFY2(found > 10 * count, qPrintable(QString::number(found)));
}

void HtmlTest::alternativeThatIsNotChosenIsMarked()
{
    TunerProperties document = aDocument(1);
    document.SetValidate(false);
    JobXml::ValueItem &item = document.GetComponent()[0].GetNode()[0].GetValueItem()[0];
    JobXml::ValueString text;
    text.Setid(QStringLiteral("left"));
    text.Setvalue(QStringLiteral("over"));
    item.SetValueString(text);
    item.GetValueInt().Setvalue(7); // chooses it
    const PageTree page = pageOf(document);
    const PageNode *other = only(ofClass(page, "other"));
    QCOMPARE(other->attribute("data-member"), QStringLiteral("ValueString"));
    QCOMPARE(only(other->allTagged("h5"))->wholeText(), QStringLiteral("ValueString not chosen"));
    QCOMPARE(other->values(), (QStringList{QStringLiteral("left"), QStringLiteral("over")}));
    // The chosen one is not marked, and alternatives that were never used are not shown.
    QCOMPARE(int(ofClass(page, "unchosen").size()), 1);
}

void HtmlTest::missingListsAreShown()
{
    TunerProperties document = aDocument();
    document.SetValidate(false);
    document.ResetBandwidthSelection();
    document.GetComponent()[0].ResetNode();
    JobXml::Component component;
    component.SetValidate(false);
    component.AppendNode(aNode(QStringLiteral("n"), 0));
    component.GetNode()[0].SetValueItem({});
    document.AppendComponent(component);
    const PageTree page = pageOf(document);
    QStringList headings;
    for (const char *tag : {"h2", "h5"}) {
        for (const PageNode *heading : page.root().allTagged(tag))
            headings.append(heading->wholeText());
    }
    QCOMPARE(headings,
             (QStringList{QStringLiteral("5 problems"), QStringLiteral("StartupModes"),
                          QStringLiteral("BandwidthSelection 0 not set"), QStringLiteral("Component 2"),
                          QStringLiteral("Node 0 not set"), QStringLiteral("ValueItem 0")}));
}

void HtmlTest::longDocumentsOpenOnlyTheFirstComponent()
{
    const auto open = [](const TunerProperties &document) {
        QString states;
        const PageTree page = pageOf(document);
        for (const PageNode *card : page.root().all([](const PageNode &node) { return node.isOfClass("card"); }))
            states += card->has("open") ? QLatin1Char('o') : QLatin1Char('c');
        return states;
    };
    TunerProperties document = aDocument(12);
    document.AppendComponent(aComponent(QStringLiteral("second"), 12));
    QCOMPARE(open(document), QStringLiteral("oo"));
    document.AppendComponent(aComponent(QStringLiteral("third"), 1));
    QCOMPARE(open(document), QStringLiteral("occ"));
}

void HtmlTest::showingChangesNothing()
{
    for (int seed = 0; seed < 20; ++seed) {
        TunerProperties document = randomDocument(seed, 20);
        const QString before = hex(snapshotOf(document));
        html(document, {}, QStringLiteral("file.xml"));
        QCOMPARE(hex(snapshotOf(document)), before);
    }
}

TEST_SUITE(HtmlTest)
#include "tst_Html.moc"
