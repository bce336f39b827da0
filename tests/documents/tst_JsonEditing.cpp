// SPDX-License-Identifier: MIT
#include <cstring>
#include <ctime>
#include <optional>

#include <QTest>

#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Editor.h>
#include <tunerdocuments/Path.h>

#include "Rows.h"
#include "documents/ChangedBytes.h"
#include "documents/Edited.h"
#include "documents/RandomChanges.h"
#include "documents/RandomEdits.h"
#include "documents/json/JsonForm.h"
#include "framework/Random.h"

using namespace TunerDocuments;
using JobXml::TunerProperties;

/// Editing JSON in place changes only the values concerned.
class JsonEditingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyTheValueChanges_data();
    void onlyTheValueChanges();
    void unsetMemberDisappears_data();
    void unsetMemberDisappears();
    void olderDocumentIsEdited_data();
    void olderDocumentIsEdited();
    void otherKindOfValueReplacesTheMember();
    void laterEditsReplaceEarlierOnes();
    void editsBetweenOthersFindTheirPlaces();
    void textThatJsonCannotHoldIsRefused();
    void manyEditsTakeHardlyLongerThanOne();
    void randomEditsChangeNothingElse();
};

namespace {

const QString name = QStringLiteral("d.json");

QByteArray document(const QByteArray &members)
{
    return QByteArray("{\n \"$schema\": \"s\",\n \"TunerProperties\" : {\"Version\":\"1.1\"") + members + "}\n}";
}

} // namespace

void JsonEditingTest::onlyTheValueChanges_data()
{
    const Rows<QByteArray, QString, QString, QByteArray> row("before", "path", "value", "after");
    row("number", ",  \"quantity\" :\t2 ", "quantity", "3", ",  \"quantity\" :\t3 ");
    row("number that is not one in JSON", ",\"quantity\":2", "quantity", "007", ",\"quantity\":7");
    row("number as it was typed", ",\"BandwidthSelection\":[{\"MaxBandwidth\":1e3}]", "BandwidthSelection/MaxBandwidth",
        "12.50", ",\"BandwidthSelection\":[{\"MaxBandwidth\":12.50}]");
    row("number with more decimals than it keeps", ",\"BandwidthSelection\":[{\"MaxBandwidth\":0.25000000000001}]",
        "BandwidthSelection/MaxBandwidth", "0.25", ",\"BandwidthSelection\":[{\"MaxBandwidth\":0.25}]");
    row("number to more decimals than it keeps", ",\"BandwidthSelection\":[{\"MaxBandwidth\":0.25}]",
        "BandwidthSelection/MaxBandwidth", "0.2500000000000000001",
        ",\"BandwidthSelection\":[{\"MaxBandwidth\":0.2500000000000000001}]");
    row("equal number", ",\"BandwidthSelection\":[{\"MaxBandwidth\":25.0e-2}]", "BandwidthSelection/MaxBandwidth",
        "0.250", ",\"BandwidthSelection\":[{\"MaxBandwidth\":25.0e-2}]");
    row("equal number as a text", ",\"MaxFFPDelay\":\"5\"", "MaxFFPDelay", "05", ",\"MaxFFPDelay\":\"5\"");
    row("beside values in unusual notations", ",\"type\":3,\"MaxFFPDelay\":9007199254740993,\"quantity\":2", "quantity",
        "3", ",\"type\":3,\"MaxFFPDelay\":9007199254740993,\"quantity\":3");
    row("beside decimals that are lost in reading",
        ",\"Component\":[{\"Node\":[{\"ValueItem\":[{\"ValueFloat\":{\"id\":\"i\",\"value\":0.1000000001}}]}]}]",
        "Component/Node/ValueItem/id", "j",
        ",\"Component\":[{\"Node\":[{\"ValueItem\":[{\"ValueFloat\":{\"id\":\"j\",\"value\":0.1000000001}}]}]}]");
    row("text", ",\"name\":\"\\u0041\"", "name", "\xC3\xA4\"", ",\"name\":\"\xC3\xA4\\\"\"");
    row("equal text", ",\"name\":\"\\u0041\"", "name", "A", ",\"name\":\"\\u0041\"");
    row("text to what is before its U+0000", ",\"name\":\"A\\u0000B\"", "name", "A", ",\"name\":\"A\"");
    row("null", ",\"name\":null", "name", "", ",\"name\":\"\"");
    row("list of names", ",\"StartupModes\":{\"StartupMode\":[ \"DF\" ]}", "StartupModes/StartupMode", "Scan,Stop",
        ",\"StartupModes\":{\"StartupMode\":[ \"Scan\", \"Stop\" ]}");
    row("names that others surround", ",\"StartupModes\":{\"StartupMode\":[\"FFM\" ,\"Scan\",\n\"DF\",  \"Stop\"]}",
        "StartupModes/StartupMode", "FFM,Polar,DF,Step,Stop",
        ",\"StartupModes\":{\"StartupMode\":[\"FFM\" ,\"Polar\",\n\"DF\",\n\"Step\",  \"Stop\"]}");
    row("fewer names", ",\"StartupModes\":{\"StartupMode\":[\"FFM\", \"Scan\",\t\"DF\"]}", "StartupModes/StartupMode",
        "FFM,DF", ",\"StartupModes\":{\"StartupMode\":[\"FFM\",\t\"DF\"]}");
    row("names beside numbers of names", ",\"StartupModes\":{\"StartupMode\":[ 0, null,  1, 77 ]}",
        "StartupModes/StartupMode", "Stop,Scan,FastScan", ",\"StartupModes\":{\"StartupMode\":[ \"Stop\", 0,  1 ]}");
    row("no names", ",\"StartupModes\":{\"StartupMode\":[ \"DF\", \"Stop\" ]}", "StartupModes/StartupMode", "",
        ",\"StartupModes\":{\"StartupMode\":[]}");
    row("new member after its neighbors", ",\n  \"name\": \"a\",\n  \"quantity\": 2", "type", "SCP",
        ",\n  \"name\": \"a\",\n  \"type\": \"SCP\",\n  \"quantity\": 2");
    row("new member of an object on one line", ",\"BandwidthSelection\":[{\"Name\": \"w\"}]",
        "BandwidthSelection/MaxBandwidth", "1", ",\"BandwidthSelection\":[{\"Name\": \"w\", \"MaxBandwidth\": 1.0}]");
    row("first member among objects that have a line for each",
        ",\n \"Component\": [\n  {\n   \"name\": \"b\"\n  },\n  {}\n ]", "Component[2]/name", "c",
        ",\n \"Component\": [\n  {\n   \"name\": \"b\"\n  },\n  {\n   \"name\": \"c\"\n  }\n ]");
    row("first member", ",\"Component\":[{}]", "Component/name", "c", ",\"Component\":[{\"name\": \"c\"}]");
    row("member before all others", ",\"Component\":[{\"optional\":true}]", "Component/type", "t",
        ",\"Component\":[{\"type\":\"t\", \"optional\":true}]");
    row("value that was not set", ",\"unset\":{\"quantity\":5,\"name\":\"n\"}", "quantity", "6",
        ",\"quantity\":6,\"unset\":{\"name\":\"n\"}");
    row("value of an object that was not set",
        ",\"unset\":{\"StartupModes\":{\"StartupMode\":[\"DF\"]},\"name\":\"n\"}", "StartupModes/StartupMode", "Scan",
        ",\"StartupModes\":{\"StartupMode\":[\"Scan\"]},\"unset\":{\"name\":\"n\"}");
    row("value in a list that was not set", ",\"unset\":{\"Component\":[{\"name\":\"c\"},{\"Node\":[{\"id\":\"n\"}]}]}",
        "Component[2]/Node/id", "m", ",\"Component\":[{\"name\":\"c\"},{\"Node\":[{\"id\":\"m\"}]}]");
    row("value of an object that is missing", ",\"quantity\":2", "StartupModes/StartupMode", "Scan",
        ",\"quantity\":2,\"StartupModes\":{\"StartupMode\":[\"Scan\"]}");
    row("the only value that was not set", ",\"unset\":{\"quantity\":5}", "quantity", "6", ",\"quantity\":6");
}

void JsonEditingTest::onlyTheValueChanges()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, path);
    QFETCH(QString, value);
    QFETCH(QByteArray, after);
    QCOMPARE(edited(document(before), {{path, value}}), document(after));
}

void JsonEditingTest::unsetMemberDisappears_data()
{
    const Rows<QByteArray, QString, QByteArray> row("before", "path", "after");
    row("in the middle", ",\n\"name\": 0,\n\"quantity\": 2", "quantity", ",\n\"name\": 0"); // replaced below
    row("between others", ", \"quantity\": 2, \"hwProcessing\": true", "quantity", ", \"hwProcessing\": true");
    row("last", ", \"quantity\": 2 ", "quantity", " ");
    row("the only one", ", \"Component\": [{ \"name\": \"c\" }]", "Component/name", ", \"Component\": [{  }]");
    row("child object", ", \"StartupModes\": {\"StartupMode\": []}", "StartupModes", "");
    row("value that is not set", ", \"unset\": {\"name\": \"n\"}", "name", "");
}

void JsonEditingTest::unsetMemberDisappears()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, path);
    QFETCH(QByteArray, after);
    before.replace("\"name\": 0", "\"name\": \"n\"");
    after.replace("\"name\": 0", "\"name\": \"n\"");
    QCOMPARE(edited(document(before), {{path, QString()}}), document(after));
}

// Reading an older version sets the quantity, although the text does not have it.
void JsonEditingTest::olderDocumentIsEdited_data()
{
    const Rows<QByteArray, QString, QString, QByteArray> row("before", "path", "value", "after");
    row("without a version", R"({"TunerProperties":{}})", "name", "x", R"({"TunerProperties":{"name": "x"}})");
    row("of an older version", R"({"TunerProperties":{"Version":"1.0"}})", "name", "x",
        R"({"TunerProperties":{"Version":"1.0", "name":"x"}})");
    row("quantity that is only read", R"({"TunerProperties":{"Version":"1.0"}})", "quantity", "1",
        R"({"TunerProperties":{"Version":"1.0", "quantity":1}})");
    row("quantity that is unset", R"({"TunerProperties":{"Version":"1.0","quantity":2}})", "quantity", QString(),
        R"({"TunerProperties":{"Version":"1.0","unset":{"quantity":1}}})");
    row("quantity that was unset", R"({"TunerProperties":{"name":"n","unset":{"quantity":1}}})", "quantity", "3",
        R"({"TunerProperties":{"name":"n","quantity":3}})");
}

void JsonEditingTest::olderDocumentIsEdited()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, path);
    QFETCH(QString, value);
    QFETCH(QByteArray, after);
    QCOMPARE(edited(before, {{path, value}}), after);
}

void JsonEditingTest::otherKindOfValueReplacesTheMember()
{
    const QByteArray json = document(",\"Component\":[{\"Node\":[{\"ValueItem\":[{\"ValueInt\":{\"id\":\"i\"}}]}]}]");
    QCOMPARE(edited(json, {{QStringLiteral("Component/Node/ValueItem/ChoiceValueItem"), QStringLiteral("ValueFloat")}}),
             QByteArray(json).replace("{\"ValueInt\":{\"id\":\"i\"}}",
                                      "{\"ChoiceValueItem\":\"ValueFloat\", \"ValueFloat\":{}}"));
}

void JsonEditingTest::laterEditsReplaceEarlierOnes()
{
    const QByteArray json = document(",\n \"StartupModes\": { \"StartupMode\": [\"DF\"] }, \"Component\":[{\"Node\":[{"
                                     "\"ValueItem\":[{\"ValueInt\":{\"id\":\"i\",\"value\":7}}]}]}]");
    const QString item = QStringLiteral("Component/Node/ValueItem/");
    Editor editor(Document::fromBytes(json, name), json, name);
    editor.set(QStringLiteral("StartupModes/StartupMode"), QStringLiteral("Scan"));
    editor.unset(QStringLiteral("StartupModes"));
    editor.set(item + QStringLiteral("ValueInt/value"), QStringLiteral("8"));
    editor.set(item + QStringLiteral("ChoiceValueItem"), QStringLiteral("ValueFloat"));
    editor.set(item + QStringLiteral("ValueFloat/value"), QStringLiteral("0.5"));
    editor.set(item + QStringLiteral("ChoiceValueItem"), QStringLiteral("ValueInt"));
    QCOMPARE(editor.toBytes(),
             document(", \"Component\":[{\"Node\":[{"
                      "\"ValueItem\":[{\"ChoiceValueItem\":\"ValueInt\", \"ValueInt\":{}}]}]}]"));
    // Edits may follow after the text was required.
    editor.set(QStringLiteral("StartupModes/StartupMode"), QStringLiteral("Stop"));
    editor.set(item + QStringLiteral("ValueInt/value"), QStringLiteral("9"));
    QCOMPARE(editor.toBytes(),
             document(", \"StartupModes\":{\"StartupMode\":[\"Stop\"]}, \"Component\":[{\"Node\":[{"
                      "\"ValueItem\":[{\"ChoiceValueItem\":\"ValueInt\", \"ValueInt\":{\"value\": 9}}]}]}]"));
}

void JsonEditingTest::editsBetweenOthersFindTheirPlaces()
{
    const QByteArray json = document(",\"BandwidthSelection\":[{\"Name\":\"a\"},{\"Name\":\"b\"}]");
    Editor editor(Document::fromBytes(json, name), json, name);
    editor.set(QStringLiteral("BandwidthSelection[1]/Name"), QStringLiteral("one"));
    editor.set(QStringLiteral("BandwidthSelection[2]/Name"), QStringLiteral("two"));
    editor.move(QStringLiteral("BandwidthSelection[2]"), 1);
    editor.set(QStringLiteral("BandwidthSelection[1]/Name"), QStringLiteral("first"));
    editor.remove({QStringLiteral("BandwidthSelection[2]")});
    editor.set(QStringLiteral("BandwidthSelection[1]/MaxBandwidth"), QStringLiteral("3"));
    QCOMPARE(editor.toBytes(), document(",\"BandwidthSelection\":[{\"Name\":\"first\", \"MaxBandwidth\":3.0}]"));
}

void JsonEditingTest::textThatJsonCannotHoldIsRefused()
{
    const QByteArray json = document(",\"Component\":[{\"name\":\"c\"}]");
    Editor editor(Document::fromBytes(json, name), json, name);
    editor.set(QStringLiteral("Component/name"), QString(QChar(0xD800)));
    for (int i = 0; i < 2; ++i) { // the second time, too
        try {
            editor.toBytes();
            QFAIL("it was written");
        } catch (const DocumentError &error) {
            QCOMPARE(
                error.text(),
                QStringLiteral("d.json: cannot edit the document in place: Component[1]/name: the text contains an "
                               "unpaired surrogate, which JSON cannot represent"));
        }
    }
}

namespace {

/// The time at the processor in which a large document is changed that many times, and written.
qint64 timeOfEdits(int count)
{
    const QByteArray json = document(",\"StartupModes\":{\"StartupMode\":[\"DF\"]},\"Component\":[{}"
                                     + QByteArray(",{}").repeated(20000) + ']');
    Editor editor(Document::fromBytes(json, name), json, name);
    const std::clock_t start = std::clock();
    for (int i = 1; i <= count; ++i)
        editor.set(QStringLiteral("StartupModes/StartupMode"),
                   i % 2 == 0 ? QStringLiteral("Scan") : QStringLiteral("Stop"));
    if (editor.toBytes() != QByteArray(json).replace("DF", count % 2 == 0 ? "Scan" : "Stop"))
        qFatal("an edit is missing");
    return qint64(std::clock() - start);
}

} // namespace

// The text used to be read for each of them.
void JsonEditingTest::manyEditsTakeHardlyLongerThanOne()
{
    timeOfEdits(1);
    const qint64 one = timeOfEdits(1);
    const qint64 many = timeOfEdits(100);
    QVERIFY2(many < 5 * one, qPrintable(QStringLiteral("%1 and %2 ticks").arg(one).arg(many)));
}

namespace {

/// The same JSON with random blanks between its tokens.
QByteArray loosened(const QByteArray &json, Random &random)
{
    QByteArray result;
    bool isInText = false;
    for (int i = 0; i < json.size(); ++i) {
        const char character = json.at(i);
        const bool isEscaped = isInText && character == '\\';
        const bool isToken = !isInText && strchr("{}[]:,", character);
        const auto blanks = [&] {
            return QByteArray(isToken ? random.oneOf({"", "", " ", "  ", "\t", "\n", "\r\n", "\r\n\t ", "\n\n"}) : "");
        };
        if (character == '"')
            isInText = !isInText;
        result += blanks();
        result += character;
        if (isEscaped)
            result += json.at(++i);
        result += blanks();
    }
    return result;
}

/// The same JSON with line ends of Windows, and tabs as indentation.
QByteArray withTabs(QByteArray json)
{
    json.replace("\n", "\r\n").replace("\n  ", "\n\t");
    while (json.contains("\t  "))
        json.replace("\t  ", "\t\t");
    return json;
}

QByteArray inSomeLayout(const QByteArray &canonical, int seed)
{
    Random random{quint32(seed)};
    switch (seed / 4 % 4) {
    case 0:
        return canonical;
    case 1:
        return withTabs(canonical);
    case 2:
        return JsonText::compact(JsonText::parse(canonical));
    default:
        return loosened(JsonText::compact(JsonText::parse(canonical)), random);
    }
}

/// Compares the bytes before and after one edit.
class JsonComparison
{
public:
    /// To be made before the edit.
    JsonComparison(const QByteArray &text, const RandomEdit &edit)
        : m_text(text), m_json(JsonText::parse(text)), m_edit(edit), m_kind(edit.target.member.GetKind()),
          m_isUnset(edit.value.isNull())
    {
        const JobXml::MemberKind kind = m_kind;
        const QVector<JobXml::Step> &steps = edit.target.steps;
        // A choice exchanges another member, and what is in "unset" moves: the description is compared for them.
        if (kind == JobXml::MemberKind::Choice || kind == JobXml::MemberKind::Alternative)
            return;
        // The quantity of an older version is set unless "unset" has it.
        if (m_isUnset && edit.target.path == QLatin1String("quantity") && !text.contains("\"1.1\""))
            return;
        const Json *object = nullptr;
        for (int depth = 0; depth < steps.size(); ++depth) {
            object = JsonForm::valueAt(m_json, steps.mid(0, depth));
            const Json *const unset = object && object->isObject() ? object->find(JsonForm::unsetKey) : nullptr;
            if (!object || !object->isObject() || (unset && unset->find(steps.at(depth).member.toLatin1())))
                return;
        }
        m_object = object;
        m_value = JsonForm::valueAt(m_json, steps);
        if (!isList())
            return;
        const QVariantList entries = edit.target.member.GetValue().toList();
        for (const QVariant &entry : entries)
            m_names.append(entry.toString());
    }

    /// Whether the edit has a single place, which is known.
    bool isStrict() const { return m_object; }
    bool isAddition() const { return !m_value; }
    bool isList() const { return m_kind == JobXml::MemberKind::EnumerationList; }

    /// Whether the text differs only in that place.
    bool holds(const QByteArray &after) const
    {
        if (m_isUnset)
            return m_value ? isRemoved(after) : after == m_text;
        return isRequested(after)
            && (m_value ? ChangedBytes::areWithin(m_text, after, isList() ? changedNames() : partOf(*m_value))
                        : isAdded(after));
    }

private:
    /// From the first name that differs to the last one, with what separates them from the others.
    ChangedBytes::Part changedNames() const
    {
        const SharedNames shared(m_names, m_edit.value.split(QLatin1Char(',')));
        const Json::List &entries = m_value->items();
        ChangedBytes::Part part = partOf(*m_value);
        if (shared.first > 0)
            part.begin = int(entries.at(std::size_t(shared.first) - 1).textEnd());
        if (shared.last > 0)
            part.end = int(entries.at(entries.size() - std::size_t(shared.last)).textBegin());
        return part;
    }

    /// Whether the text of the value denotes what was requested.
    bool isRequested(const QByteArray &after) const
    {
        const Json json = JsonText::parse(after);
        const Json *const value = JsonForm::valueAt(json, m_edit.target.steps);
        if (!value)
            return false;
        const ChangedBytes::Part part = partOf(*value);
        return denotes(
            m_kind, QString::fromUtf8(value->isText() ? value->text() : after.mid(part.begin, part.end - part.begin)),
            m_edit.value);
    }

    static ChangedBytes::Part partOf(const Json &value) { return {int(value.textBegin()), int(value.textEnd())}; }

    bool isAdded(const QByteArray &after) const
    {
        const ChangedBytes::Part object = partOf(*m_object);
        if (!ChangedBytes::areWithin(m_text, after, object))
            return false;
        // The blanks of an object without members go.
        const bool isFirst = m_object->members().empty();
        return ChangedBytes::areOnePiece(isFirst ? m_text.left(object.begin) + "{}" + m_text.mid(object.end) : m_text,
                                         after);
    }

    /// Whether the member, the blanks beside it and its comma are missing.
    bool isRemoved(const QByteArray &after) const
    {
        ChangedBytes::Part part = {int(m_value->memberBegin()), int(m_value->textEnd())};
        const int size = part.end - part.begin;
        part = ChangedBytes::withBlanks(m_text, part);
        part.begin -= m_text.at(part.begin - 1) == ',';
        part.end += m_text.at(part.end) == ',';
        part = ChangedBytes::withBlanks(m_text, part);
        if (!ChangedBytes::areWithin(m_text, after, part) || !ChangedBytes::areOnePiece(after, m_text)
            || m_text.size() - after.size() < size)
            return false;
        const QByteArray left = ChangedBytes::replacementOf(m_text, after, part);
        return std::all_of(left.begin(), left.end(),
                           [](char character) { return character == ',' || ChangedBytes::isBlank(character); });
    }

    const QByteArray m_text;
    const Json m_json;
    const RandomEdit m_edit;
    const JobXml::MemberKind m_kind;
    QStringList m_names; // of a list
    const bool m_isUnset;
    const Json *m_object = nullptr; // that has the member
    const Json *m_value = nullptr;
};

} // namespace

void JsonEditingTest::randomEditsChangeNothingElse()
{
    int edits = 0;
    int replaced = 0;
    int added = 0;
    int removed = 0;
    int lists = 0;
    for (int seed = 0; seed < 2400; ++seed) {
        const TunerProperties description = randomDocument(seed, seed % 5);
        QByteArray json;
        try {
            json = inSomeLayout(JsonForm::compose(description), seed);
            if (seed % 7 == 0)
                json.replace("\"1.1\"", "\"1.0\"");
        } catch (const JsonFailure &) {
            continue; // JSON cannot carry it
        }
        RandomChanges random{quint32(seed)};
        Editor editor(Document::fromBytes(json, name), json, name);
        QByteArray result = json;
        try {
            for (int i = 0; i < 1 + seed % 4; ++i) {
                std::optional<RandomEdit> edit;
                try {
                    edit = randomEdit(editor.document().tuner, random);
                } catch (const PathFailure &) {
                    continue; // an alternative that has no data
                }
                const JsonComparison comparison(result, *edit);
                if (!apply(editor, *edit))
                    continue;
                ++edits;
                const QByteArray before = result;
                result = editor.toBytes();
                const QString problem = problemAfter(Document::fromBytes(result, name).tuner, *edit);
                QVERIFY2(problem.isNull(),
                         QByteArray(QByteArray::number(seed) + ' ' + problem.toUtf8() + ": " + before
                                    + "\n--- became ---\n" + result)
                             .constData());
                if (!comparison.isStrict())
                    continue;
                QVERIFY2(comparison.holds(result),
                         QByteArray(QByteArray::number(seed) + ' ' + edit->target.path.toUtf8() + ": " + before
                                    + "\n--- became ---\n" + result)
                             .constData());
                if (result == before)
                    continue;
                ++(edit->value.isNull() ? removed : comparison.isAddition() ? added : replaced);
                lists += comparison.isList();
            }
        } catch (const DocumentError &error) {
            QFAIL(qPrintable(error.text()));
        }
        const TunerProperties read = Document::fromBytes(result, name).tuner;
        QVERIFY2(JsonForm::compose(read) == JsonForm::compose(editor.document().tuner), result.constData());
    }
    QVERIFY2(edits > 5800, qPrintable(QString::number(edits)));
    QVERIFY2(replaced > 2550, qPrintable(QString::number(replaced)));
    QVERIFY2(added > 800, qPrintable(QString::number(added)));
    QVERIFY2(removed > 950, qPrintable(QString::number(removed)));
    QVERIFY2(lists > 110, qPrintable(QString::number(lists)));
}

TEST_SUITE(JsonEditingTest)
#include "tst_JsonEditing.moc"
