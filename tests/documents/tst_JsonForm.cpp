// SPDX-License-Identifier: MIT
#include <cmath>
#include <cstring>
#include <ctime>
#include <optional>

#include <QtTest>

#include "Documents.h"
#include "documents/RandomChanges.h"
#include "documents/json/JsonForm.h"
#include "text/TextLocation.h"

using namespace TunerDocuments;
using JobXml::TunerProperties;

/// JSON stores everything in a document, whatever its state is.
class JsonFormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documentsReadBackUnchanged();
    void documentsInUnusualStatesReadBackUnchanged();
    void documentsOfDamagedSnapshotsReadBackUnchanged();
    void damagedJsonFailsOrReadsBackUnchanged();
    void everyFloatReadsBackExactly();
    void everyTextReadsBackUnchanged();
    void unpairedSurrogateFailsWithItsPath();
    void writingChangesNothing();
    void valuesKnowTheirPlacesInTheText_data();
    void valuesKnowTheirPlacesInTheText();
    void valuesThatWereNotReadHaveNoPlace();
    void locationsAreThoseThatPeopleCount();
    void everyMemberOfADocumentIsFoundInItsText();
    void problemsHaveTheirPlacesInTextAndDocument();
    void textThatIsNotJsonIsOneUnreadableProblem();
    void duplicatesAndNumbersThatAreTooLargeAreListedWithTheOthers();
    void manyNumbersThatAreTooLargeTakeLinearTime();
    void problemsBeyondTheMostAreCounted();
    void aProblemForEveryFewBytesTakesLinearTime();
    void failedReadingKeepsTheDocument();
    void readingKeepsTheValidateFlag();
};

namespace {

/// The document in all encodings, as one text.
QString encoded(const TunerProperties &document, bool withSnapshot = true)
{
    TunerProperties own = document;
    own.SetValidate(false);
    return own.GetXmlString() + QLatin1Char('\n') + hex(recordOf(own)) + QLatin1Char('\n')
        + (withSnapshot ? hex(snapshotOf(own)) : QString());
}

QVector<JsonProblem> problemsOf(const QByteArray &json)
{
    QVector<JsonProblem> problems;
    TunerProperties document;
    const qint64 count = JsonForm::read(document, json, [&](const JsonProblem &problem) { problems += problem; });
    if (count != problems.size())
        qFatal("%lld problems are not %lld", static_cast<long long>(count), static_cast<long long>(problems.size()));
    return problems;
}

/// The document, if it is one.
std::optional<TunerProperties> readIfPossible(const QByteArray &json)
{
    TunerProperties document;
    document.SetValidate(false);
    const bool isRead = JsonForm::read(document, json) == 0;
    return isRead ? std::optional<TunerProperties>(document) : std::nullopt;
}

TunerProperties read(const QByteArray &json)
{
    const auto document = readIfPossible(json);
    if (!document)
        qFatal("%s", qPrintable(problemsOf(json).first().message));
    return *document;
}

bool hasTextsForJson(const JobXml::DataObject &object)
{
    bool result = true;
    JobXml::visit(object, [&](const JobXml::MemberView &member) {
        result = result && member.GetValue().toString().isValidUtf16();
        for (int i = 0; i < member.GetSize(); ++i)
            result = result && hasTextsForJson(member.GetChild(i));
    });
    return result;
}

/// The JSON of a document that follows the rules of the setters, and whose texts JSON can represent.
QByteArray someJson(int seed)
{
    const TunerProperties document = randomDocument(3 * seed);
    return hasTextsForJson(document) ? JsonForm::compose(document) : someJson(seed + 1);
}

/// Whether the document reads back unchanged. Counts the documents that JSON can represent.
bool survivesRoundTrip(const TunerProperties &document, int &carried, bool withSnapshot = true)
{
    try {
        const QByteArray json = JsonForm::compose(document);
        const TunerProperties again = read(json);
        ++carried;
        return hasTextsForJson(document) && encoded(again, withSnapshot) == encoded(document, withSnapshot)
            && JsonForm::compose(again) == json;
    } catch (const JsonFailure &) {
        return !hasTextsForJson(document);
    }
}

} // namespace

void JsonFormTest::documentsReadBackUnchanged()
{
    int carried = 0;
    for (int seed = 0; seed < 250; ++seed)
        QVERIFY2(survivesRoundTrip(randomDocument(seed), carried), qPrintable(QString::number(seed)));
    QVERIFY(carried > 200);
}

void JsonFormTest::documentsInUnusualStatesReadBackUnchanged()
{
    int carried = 0;
    for (int seed = 0; seed < 500; ++seed)
        QVERIFY2(survivesRoundTrip(randomDocument(seed, 1 + seed % 60), carried), qPrintable(QString::number(seed)));
    QVERIFY(carried > 400);
}

void JsonFormTest::documentsOfDamagedSnapshotsReadBackUnchanged()
{
    int carried = 0;
    for (int seed = 0; seed < 400; ++seed) {
        RandomChanges random{quint32(seed)};
        QByteArray snapshot = snapshotOf(randomDocument(seed));
        for (int i = 0; i < 3; ++i) {
            const int at = random.below(snapshot.size());
            snapshot[at] = char(snapshot[at] ^ (1 << random.below(8)));
        }
        TunerProperties document;
        document.SetValidate(false);
        readSnapshot(document, snapshot);
        // In JSON there is only one NaN.
        const bool isExact = hasTextsForJson(document) && !JsonForm::compose(document).contains("\"NaN\"");
        QVERIFY2(survivesRoundTrip(document, carried, isExact), qPrintable(QString::number(seed)));
    }
    QVERIFY(carried > 200);
}

void JsonFormTest::damagedJsonFailsOrReadsBackUnchanged()
{
    int refused = 0;
    int carried = 0;
    for (int seed = 0; seed < 900; ++seed) {
        RandomChanges random{quint32(seed)};
        QByteArray json = someJson(seed % 10);
        const int at = random.below(json.size());
        switch (random.below(3)) {
        case 0:
            json[at] = char(random.below(4) == 0 ? random.below(256) : 32 + random.below(95));
            break;
        case 1:
            json.truncate(at);
            break;
        case 2:
            json.insert(random.below(json.size()), json.mid(at, random.below(40)));
            break;
        }
        if (const auto document = readIfPossible(json)) {
            QVERIFY2(survivesRoundTrip(*document, carried), qPrintable(QString::number(seed)));
            continue;
        }
        QVERIFY(!problemsOf(json).isEmpty());
        ++refused;
    }
    QVERIFY(carried > 20);
    QVERIFY(refused > 300);
}

void JsonFormTest::everyFloatReadsBackExactly()
{
    RandomChanges random(7);
    for (int i = 0; i < 3000; ++i) {
        const quint32 bits = quint32(random.below(0x10000)) << 16 | quint32(random.below(0x10000));
        float number = 0;
        std::memcpy(&number, &bits, sizeof number);
        if (std::isnan(number))
            continue;
        JobXml::ValueItem item;
        item.GetValueFloat().Setvalue(number);
        JobXml::Node node;
        node.SetValidate(false);
        node.AppendValueItem(item);
        const TunerProperties document = aDocumentWith(node);
        QCOMPARE(snapshotOf(read(JsonForm::compose(document))), snapshotOf(document));
    }
}

void JsonFormTest::everyTextReadsBackUnchanged()
{
    TunerProperties document;
    document.SetValidate(false);
    for (char32_t code = 0; code <= 0x10FFFF; code += code < 0x300 ? 1 : 37) {
        if (code >= 0xD800 && code < 0xE000)
            continue;
        const QString text = QString::fromUcs4(&code, 1);
        document.Setname(text);
        QCOMPARE(read(JsonForm::compose(document)).Getname(), text);
    }
    for (const QString &text : {QString(), QStringLiteral(""), QStringLiteral("\uFEFF\uFEFFx\uFEFF"),
                                QString::fromLatin1("a\0b\0", 4), QString::fromLatin1("\0", 1)}) {
        document.Setname(text);
        const QString again = read(JsonForm::compose(document)).Getname();
        QCOMPARE(again, text);
        QCOMPARE(again.isNull(), text.isNull());
    }
}

void JsonFormTest::unpairedSurrogateFailsWithItsPath()
{
    TunerProperties document = randomDocument(3);
    JobXml::ValueString value;
    value.Setid(QStringLiteral("half"));
    value.Setvalue(QString(QChar(0xD800)));
    JobXml::ValueItem item;
    item.SetValueString(value);
    JobXml::Node node;
    node.Setid(QStringLiteral("n"));
    node.AppendValueItem(item);
    JobXml::Component component;
    component.Settype(QStringLiteral("t"));
    component.Setname(QStringLiteral("c"));
    component.AppendNode(node);
    document.AppendComponent(component);
    try {
        JsonForm::compose(document);
        QFAIL("it was written");
    } catch (const JsonFailure &refused) {
        QCOMPARE(refused.text(QStringLiteral("f")),
                 QStringLiteral("f: Component[type=t,name=c]/Node[id=n]/ValueItem[id=half]/ValueString/value: the text "
                                "contains an unpaired surrogate, which JSON cannot represent"));
    }
}

void JsonFormTest::writingChangesNothing()
{
    const TunerProperties document = randomDocument(5, 20);
    const QByteArray before = snapshotOf(document);
    JsonForm::compose(document);
    QCOMPARE(snapshotOf(document), before);

    const JobXml::ValueItem unused;
    QCOMPARE(JsonText::compact(JsonForm::ofObject(unused)), QByteArray("{}"));
    QVERIFY(!unused.IsInitialized());
}

namespace {

/// The error in the places of a value and its parts in the text that it was read from; null if they are right.
QString wrongPlace(const Json &value, const QByteArray &text, int from, int to)
{
    const int begin = int(value.textBegin());
    const int end = int(value.textEnd());
    if (begin < from || begin >= end || end > to)
        return QStringLiteral("%1 to %2 is not within %3 to %4").arg(begin).arg(end).arg(from).arg(to);
    const QByteArray itself = text.mid(begin, end - begin);
    if (itself.trimmed() != itself || JsonText::compact(JsonText::parse(itself)) != JsonText::compact(value))
        return QStringLiteral("the value is not '%1'").arg(QString::fromUtf8(itself));
    int at = begin + 1;
    const auto wrongPart = [&](const Json &part, int partBegin) {
        const QString wrong = wrongPlace(part, text, partBegin, end - 1);
        at = int(part.textEnd());
        return wrong;
    };
    if (value.isList()) {
        for (const Json &item : value.items()) {
            const QString wrong = wrongPart(item, at);
            if (!wrong.isNull() || item.memberBegin() != item.textBegin())
                return wrong + QStringLiteral(" in an array");
        }
    } else if (value.isObject()) {
        for (const Json::Member &member : value.members()) {
            const int keyBegin = int(member.value.memberBegin());
            const QByteArray pair = text.mid(keyBegin, int(member.value.textEnd()) - keyBegin);
            const Json alone = JsonText::parse('{' + pair + '}');
            if (keyBegin < at || alone.members().size() != 1 || alone.members().front().key != member.key)
                return QStringLiteral("the member is not '%1'").arg(QString::fromUtf8(pair));
            const QString wrong = wrongPart(member.value, keyBegin);
            if (!wrong.isNull())
                return wrong;
        }
    }
    return QString();
}

} // namespace

void JsonFormTest::valuesKnowTheirPlacesInTheText_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("a number alone") << QByteArray("17");
    QTest::newRow("a number between blanks") << QByteArray("\n -1.5e3\t ");
    QTest::newRow("a word alone") << QByteArray("null");
    QTest::newRow("a string alone") << QByteArray(R"( "a\"b\\" )");
    QTest::newRow("after a byte order mark") << QByteArray("\xEF\xBB\xBF\"a\"");
    QTest::newRow("brackets") << QByteArray("[ [ ] ,{},[{}]]");
    QTest::newRow("every kind without blanks")
        << QByteArray(R"({"a":1,"b":-2,"c":0.5,"d":true,"e":false,"f":null,"g":"x","h":[1,2.5,"]"],"i":{"j":[]}})");
    QTest::newRow("every kind with blanks")
        << QByteArray("\r\n{ \"a\" : 1 ,\t\"b:\" :[ true , false\n,null , \"\" , 1E5 ] , \"\\\"\\u007b\" :{ \"\" : "
                      "18446744073709551615 } } ");
    QTest::newRow("characters of several bytes") << QByteArray("{\"\u00E4\": [\"\U0001F600\", \"\u2028\"], \"b\": 1}");
    for (int seed = 0; seed < 4; ++seed)
        QTest::addRow("document %d", seed) << someJson(seed);
}

void JsonFormTest::valuesKnowTheirPlacesInTheText()
{
    QFETCH(QByteArray, text);
    const Json value = JsonText::parse(text);
    QCOMPARE(wrongPlace(value, text, 0, text.size()), QString());
    QCOMPARE(value.memberBegin(), value.textBegin());
    const QByteArray itself = text.mid(int(value.textBegin()), int(value.textEnd() - value.textBegin()));
    QCOMPARE(itself, (text.startsWith("\xEF\xBB\xBF") ? text.mid(3) : text).trimmed());
}

void JsonFormTest::valuesThatWereNotReadHaveNoPlace()
{
    Json list = Json::emptyList();
    const Json &item = list.append(Json(7));
    QCOMPARE(item.textBegin(), 0U);
    QCOMPARE(item.textEnd(), 0U);
    QCOMPARE(item.memberBegin(), 0U);
    QVERIFY(sizeof(Json) <= sizeof(QByteArray) + 16); // there may be one for every two bytes of a text
}

void JsonFormTest::locationsAreThoseThatPeopleCount()
{
    const QByteArray text = "\xEF\xBB\xBF\u00E4b\n\n\U0001F600x\r\ny";
    TextLocator locator(text);
    const auto at = [&](int offset) {
        const TextLocation location = locator.at(offset);
        return QStringLiteral("%1:%2").arg(location.line).arg(location.column);
    };
    QCOMPARE(at(0), QStringLiteral("1:1"));
    QCOMPARE(at(3), QStringLiteral("1:1"));
    QCOMPARE(at(5), QStringLiteral("1:2")); // b
    QCOMPARE(at(6), QStringLiteral("1:3")); // the end of the line
    QCOMPARE(at(7), QStringLiteral("2:1"));
    QCOMPARE(at(8), QStringLiteral("3:1"));
    QCOMPARE(at(12), QStringLiteral("3:3")); // x, after two units
    QCOMPARE(at(15), QStringLiteral("4:1"));
    QCOMPARE(at(16), QStringLiteral("4:2")); // the end
    QCOMPARE(at(5), QStringLiteral("1:2")); // back again
}

namespace {

/// Looks up the members of a document in the text from which it was read.
class MembersInText
{
public:
    explicit MembersInText(const QByteArray &text) : m_text(text), m_whole(JsonText::parse(text)) { }

    void check(const JobXml::DataObject &object, const QVector<JobXml::Step> &steps, int &found) const
    {
        JobXml::visit(object, [&](const JobXml::MemberView &member) {
            const Json *const value =
                JsonForm::valueAt(m_whole, steps + QVector<JobXml::Step>{JobXml::Step{member.GetName(), -1}});
            if (!value && member.IsSet())
                qFatal("%s is not found", member.GetName().data());
            if (!value)
                return;
            ++found;
            const QByteArray itself = m_text.mid(int(value->textBegin()), int(value->textEnd() - value->textBegin()));
            QCOMPARE(JsonText::compact(JsonText::parse(itself)), JsonText::compact(JsonForm::ofMember(member)));
            const bool isList = member.GetKind() == JobXml::MemberKind::ObjectList;
            for (int i = 0; i < member.GetSize(); ++i)
                check(member.GetChild(i),
                      steps + QVector<JobXml::Step>{JobXml::Step{member.GetName(), isList ? i : -1}}, found);
        });
    }

private:
    const QByteArray m_text;
    const Json m_whole;
};

} // namespace

void JsonFormTest::everyMemberOfADocumentIsFoundInItsText()
{
    const QByteArray text = R"({"$schema": "s", "TunerProperties": {"Component": [ {}, {"Node" : [{"id": "n\u0031"}]}],
        "unset": {"name":  "x", "StartupModes": {"StartupMode": ["DF"]}}}})";
    const Json whole = JsonText::parse(text);
    const auto at = [&](const QVector<JobXml::Step> &steps) {
        const Json *const value = JsonForm::valueAt(whole, steps);
        const auto piece = [&](quint32 begin, quint32 end) { return text.mid(int(begin), int(end - begin)); };
        return value
            ? piece(value->textBegin(), value->textEnd()) + " of " + piece(value->memberBegin(), value->textEnd())
            : QByteArray();
    };
    const auto step = [](const char *member, int index = -1) { return JobXml::Step{QLatin1String(member), index}; };
    QCOMPARE(at({step("Component", 1), step("Node", 0), step("id")}), QByteArray(R"("n\u0031" of "id": "n\u0031")"));
    QCOMPARE(at({step("Component", 0)}), QByteArray("{} of {}"));
    QCOMPARE(at({step("Component", 1), step("Node")}),
             QByteArray(R"([{"id": "n\u0031"}] of "Node" : [{"id": "n\u0031"}])"));
    QCOMPARE(at({step("name")}), QByteArray(R"("x" of "name":  "x")"));
    QCOMPARE(at({step("StartupModes"), step("StartupMode")}), QByteArray(R"(["DF"] of "StartupMode": ["DF"])"));
    QCOMPARE(at({step("type")}), QByteArray());
    QCOMPARE(at({step("Component", 2)}), QByteArray());
    QCOMPARE(at({step("name"), step("name")}), QByteArray());
    QCOMPARE(at({step("name", 0)}), QByteArray());
    QVERIFY(!JsonForm::valueAt(JsonText::parse("[]"), {}));

    int found = 0;
    for (int seed = 0; seed < 30; ++seed) {
        const QByteArray json = someJson(seed);
        const MembersInText members(json);
        members.check(read(json), {}, found);
    }
    QVERIFY2(found > 500, qPrintable(QString::number(found)));
}

void JsonFormTest::problemsHaveTheirPlacesInTextAndDocument()
{
    const QVector<JsonProblem> problems = problemsOf(R"({"TunerProperties": {
        "StartupModes": {"StartupMode": 7},
        "Component": [{}, {"Node": [0, {"ValueItem": [{"ValueInt": {"value": ""}}], "Id": 1}], "name": "c", "type": "t"}]
    }})");
    const auto text = [](const JsonProblem &problem) {
        QStringList steps;
        for (const JobXml::Step &step : problem.steps)
            steps += step.member + QString::number(step.index);
        return QStringLiteral("%1:%2 %3 %4 [%5]")
            .arg(problem.line)
            .arg(problem.column)
            .arg(steps.join(QLatin1Char(',')), problem.member, problem.path);
    };
    QCOMPARE(problems.size(), 4);
    QCOMPARE(text(problems[0]), QStringLiteral("2:41 StartupModes-1 StartupMode [StartupModes/StartupMode]"));
    QCOMPARE(text(problems[1]), QStringLiteral("3:37 Component1,Node0  [Component[type=t,name=c]/Node[1]]"));
    QCOMPARE(text(problems[2]),
             QStringLiteral("3:78 Component1,Node1,ValueItem0,ValueInt-1 value "
                            "[Component[type=t,name=c]/Node[2]/ValueItem[1]/ValueInt/value]"));
    QCOMPARE(text(problems[3]), QStringLiteral("3:85 Component1,Node1  [Component[type=t,name=c]/Node[2]]"));
    QCOMPARE(problems[0].message, QStringLiteral("'7' is not an array"));
    QCOMPARE(problems[1].message, QStringLiteral("'0' is not an object"));
    QCOMPARE(problems[2].message, QStringLiteral("the string '' is not a whole number"));
    QCOMPARE(problems[3].message, QStringLiteral("unknown member 'Id' of Node; did you mean 'id'?"));
    QVERIFY(std::none_of(problems.begin(), problems.end(), [](const JsonProblem &one) { return one.isUnreadable; }));
    QVERIFY(problems[1].member.isNull());
}

void JsonFormTest::textThatIsNotJsonIsOneUnreadableProblem()
{
    const QVector<JsonProblem> problems = problemsOf("{\"TunerProperties\":\n {\"name\": 7, \"name\" 8}}");
    QCOMPARE(problems.size(), 1);
    QVERIFY(problems[0].isUnreadable);
    QCOMPARE(problems[0].line, 2);
    QCOMPARE(problems[0].column, 21);
    QCOMPARE(problems[0].message,
             QStringLiteral("syntax error while parsing object separator - unexpected number literal; "
                            "expected ':'"));
    QVERIFY(problems[0].path.isEmpty() && problems[0].steps.isEmpty() && problems[0].member.isNull());
}

void JsonFormTest::duplicatesAndNumbersThatAreTooLargeAreListedWithTheOthers()
{
    const QVector<JsonProblem> problems = problemsOf(R"({"TunerProperties": {"quantity": 1e400, "Component": [
        {"name": "c", "type": "t", "Node": [{"id": "n", "id": "m", "ValueItem": [
            {"ValueFloat": {"id": "i", "value": -1e400, "value": "x", "Value": "1", "value": 3}},
            {"ValueInt": {"id": "j", "value": 1.5}, "ValueInt": {"value": {"a": 1e999}}}]}]}], "quantity": 1}})");
    QStringList texts;
    for (const JsonProblem &problem : problems)
        texts +=
            QStringLiteral("%1:%2 [%3] %4").arg(problem.line).arg(problem.column).arg(problem.path, problem.message);
    const QString component = QStringLiteral("Component[type=t,name=c]/Node[id=n]");
    const QString value = component + QStringLiteral("/ValueItem[id=i]/ValueFloat");
    QCOMPARE(texts,
             QStringList(
                 {QStringLiteral("1:34 [quantity] '1e400' is not a whole number"),
                  QStringLiteral("2:57 [%1] duplicate member 'id'").arg(component),
                  QStringLiteral("3:49 [%1/value] '-1e400' is out of range; expected "
                                 "-3.4028235e+38 to 3.4028235e+38")
                      .arg(value),
                  QStringLiteral("3:57 [%1] duplicate member 'value'").arg(value),
                  QStringLiteral("3:71 [%1] unknown member 'Value' of ValueFloat; did you mean 'value'?").arg(value),
                  QStringLiteral("3:85 [%1] duplicate member 'value'").arg(value),
                  QStringLiteral("4:47 [%1/ValueItem[id=j]/ValueInt/value] '1.5' is not a whole number").arg(component),
                  QStringLiteral("4:53 [%1/ValueItem[id=j]] duplicate member 'ValueInt'").arg(component),
                  QStringLiteral("4:96 [] duplicate member 'quantity'")}));
    QVERIFY(std::none_of(problems.begin(), problems.end(), [](const JsonProblem &one) { return one.isUnreadable; }));
    QCOMPARE(problems[1].value, QStringLiteral("id"));
    QCOMPARE(problems[2].member, QStringLiteral("value"));
}

// The parser gives up at each of them.
void JsonFormTest::manyNumbersThatAreTooLargeTakeLinearTime()
{
    const auto timeOf = [](int items) {
        const QByteArray json =
            R"({"TunerProperties": {"Component": [)" + QByteArray("1e400,\n").repeated(items) + "{}]}}";
        const std::clock_t start = std::clock(); // of this process alone
        TunerProperties document;
        if (JsonForm::read(document, json) != items)
            qFatal("not every number is a problem");
        return qint64(std::clock() - start);
    };
    timeOf(100);
    const qint64 few = timeOf(10'000);
    const qint64 many = timeOf(100'000);
    QVERIFY2(many < 40 * few, qPrintable(QStringLiteral("%1 and %2 ticks").arg(few).arg(many)));
}

void JsonFormTest::problemsBeyondTheMostAreCounted()
{
    const QByteArray json = R"({"TunerProperties": {"Component": [)" + QByteArray("1,").repeated(9) + "{}]}}";
    for (const qint64 most : {0, 4, 9, 10}) {
        TunerProperties document;
        qint64 visited = 0;
        const qint64 count = JsonForm::read(
            document, json, [&](const JsonProblem &) { ++visited; }, most);
        QCOMPARE(count, qint64(9));
        QCOMPARE(visited, std::min(most, count));
        QVERIFY(!document.HasData());
    }
}

// Each line has a problem with a long path, near the end of a long list.
void JsonFormTest::aProblemForEveryFewBytesTakesLinearTime()
{
    const auto timeOf = [](int items) {
        const QByteArray json = R"({"TunerProperties": {"Component": [{"name": "c", "type": "t", "Node": [)"
            + QByteArray("{\"id\":\"n\",\"x\":1},{\"ValueItem\":[1]},\n").repeated(items) + "{}]}]}}";
        const std::clock_t start = std::clock(); // of this process alone
        TunerProperties document;
        qint64 visited = 0;
        const qint64 count = JsonForm::read(document, json, [&](const JsonProblem &problem) {
            ++visited;
            if (visited == 2 * items && problem.line != items)
                qFatal("the last problem is in line %d", problem.line);
        });
        if (count != 2 * items || visited != count)
            qFatal("not all problems were visited");
        return qint64(std::clock() - start);
    };
    timeOf(100);
    const qint64 few = timeOf(2000);
    const qint64 many = timeOf(20000);
    QVERIFY2(many < 40 * few, qPrintable(QStringLiteral("%1 and %2 ticks").arg(few).arg(many)));
}

void JsonFormTest::failedReadingKeepsTheDocument()
{
    TunerProperties document = randomDocument(6);
    const QString before = encoded(document);
    const QByteArray json = JsonForm::compose(randomDocument(9));
    const QByteArray damaged = json.left(json.lastIndexOf("true")) + "7" + json.mid(json.lastIndexOf("true") + 4);
    for (const QByteArray &text : {damaged, json.left(json.size() / 2)}) {
        QCOMPARE(JsonForm::read(document, text), qint64(1));
        QCOMPARE(encoded(document), before);
    }
}

void JsonFormTest::readingKeepsTheValidateFlag()
{
    const QByteArray json = JsonForm::compose(randomDocument(0));
    for (const bool validate : {true, false}) {
        TunerProperties document;
        document.SetValidate(validate);
        QCOMPARE(JsonForm::read(document, json), qint64(0));
        QCOMPARE(document.GetValidate(), validate);
        QCOMPARE(std::as_const(document).GetComponent().first().GetValidate(), validate);
    }
}

TEST_SUITE(JsonFormTest)
#include "tst_JsonForm.moc"
