// SPDX-License-Identifier: MIT
#include "documents/lint/Cases.h"

QByteArray inDocument(const QByteArray &xml)
{
    return "<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\">\n" + xml + "\n</TunerProperties>\n";
}

QByteArray inValue(const QByteArray &xml)
{
    return inDocument("<Component type=\"t\" name=\"c\" optional=\"true\"><Node id=\"n\">\n<ValueItem>\n" + xml
                      + "\n</ValueItem></Node></Component>");
}

namespace {

const char component[] = R"(<Component type="t" name="c" optional="true"><Node id="n"/></Component>)";
const char bandwidth[] = "<BandwidthSelection><Name>a</Name><MaxBandwidth>1</MaxBandwidth></BandwidthSelection>";

QByteArray numeric(const char *kind, const char *value, const char *min, const char *max, const char *step)
{
    return QByteArray("<ValueNumeric") + kind + " id=\"i\" value=\"" + value + "\" min=\"" + min + "\" max=\"" + max
        + "\" step=\"" + step + "\"/>";
}

QByteArray selection(const char *value, const char *text, const char *index, const char *items)
{
    return QByteArray("<ValueSelection id=\"i\" value=\"") + value + "\" text=\"" + text + "\" index=\"" + index
        + "\">\n" + items + "</ValueSelection>";
}

const char twoOptions[] = R"(<SelectionItem name="a" value="1"/><SelectionItem name="b" value="2"/>)";

QByteArray texts(const char *value, const char *items)
{
    return QByteArray("<ValueStringList id=\"i\" value=\"") + value + "\">\n" + items + "</ValueStringList>";
}

QByteArray inRoot(const char *attributes)
{
    return QByteArray("<TunerProperties type=\"SCP\" baseresource=\"b\" ") + attributes + ">" + component
        + "</TunerProperties>";
}

/// The path of the value in inValue().
QString at(int line, int column, const char *rest, const char *text)
{
    return QStringLiteral("a.xml:%1:%2: Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]/%3: %4")
        .arg(line)
        .arg(column)
        .arg(QString::fromUtf8(rest), QString::fromUtf8(text));
}

QString inRootAt(int line, int column, const char *text)
{
    return QStringLiteral("a.xml:%1:%2: ").arg(line).arg(column) + QString::fromUtf8(text);
}

} // namespace

QVector<LintCase> lintCases()
{
    return {
        {"value-out-of-range",
         inValue(numeric("Int", "11", "0", "10", "1")),
         {at(4, 25, "ValueNumericInt/value",
             "value 11 is above max 10; use a value from 0 to 10 [value-out-of-range]")},
         inValue(numeric("Int", "10", "0", "10", "1"))},
        {"value-out-of-range",
         inValue(numeric("Float", "-0.50", "-0.25", "10", "0.25")),
         {at(4, 27, "ValueNumericFloat/value",
             "value -0.5 is below min -0.25; use a value from -0.25 to 10 [value-out-of-range]")},
         inValue(numeric("Float", "-0.25", "-0.25", "10", "0.25"))},
        {"value-out-of-range",
         inValue(numeric("Float", "nan", "0", "10", "1")),
         {at(4, 27, "ValueNumericFloat/value",
             "value nan is not a number; use a value from 0 to 10 [value-out-of-range]")},
         inValue(numeric("Int64", "9223372036854775807", "0", "9223372036854775807", "1"))},
        {"min-above-max",
         inValue(numeric("Int64", "5", "10", "9", "1")),
         {at(4, 37, "ValueNumericInt64/min", "min 10 is above max 9; exchange them [min-above-max]")},
         inValue(numeric("Int64", "9", "9", "9", "1"))},
        {"step-not-positive",
         inValue(numeric("Int", "5", "0", "10", "0")),
         {at(4, 52, "ValueNumericInt/step", "step 0 is not a positive number [step-not-positive]")},
         inValue(numeric("Int", "5", "0", "10", "1"))},
        {"step-not-positive",
         inValue(numeric("Float", "5", "0", "10", "-0.5")),
         {at(4, 54, "ValueNumericFloat/step", "step -0.5 is not a positive number; use 0.5 [step-not-positive]")},
         inValue(numeric("Float", "5", "0", "10", "0.5"))},
        {"value-off-grid",
         inValue(numeric("Int", "6", "1", "10", "2")),
         {at(4, 25, "ValueNumericInt/value",
             "value 6 is not min 1 plus a multiple of step 2; the nearest are 5 and 7 [value-off-grid]")},
         inValue(numeric("Int", "7", "1", "10", "2"))},
        {"value-off-grid",
         inValue(numeric("Float", "10", "0", "10", "0.3")),
         {at(4, 27, "ValueNumericFloat/value",
             "value 10 is not min 0 plus a multiple of step 0.3; the nearest is 9.9 [value-off-grid]")},
         // No float is 0.1 or 9.9: the multiples are only as exact as floats.
         inValue(numeric("Float", "9.9", "-0.1", "10", "0.1"))},
        {"value-off-grid",
         inValue(numeric("Int64", "9223372036854775806", "0", "9223372036854775807", "10")),
         {at(4, 27, "ValueNumericInt64/value",
             "value 9223372036854775806 is not min 0 plus a multiple of step 10; the nearest is 9223372036854775800 "
             "[value-off-grid]")},
         // Far from the range is not off the grid as well.
         inValue(numeric("Int64", "5", "10", "20", "2"))},
        {"index-out-of-range",
         inValue(selection("1", "a", "2", twoOptions)),
         {at(4, 43, "ValueSelection/index",
             "no option has the index 2; there are 2 options; use an index from 0 to 1 [index-out-of-range]")},
         inValue(selection("2", "b", "1", twoOptions))},
        {"index-out-of-range",
         inValue(selection("1", "a", "-1", R"(<SelectionItem name="a" value="1"/>)")),
         {at(4, 43, "ValueSelection/index",
             "no option has the index -1; there is 1 option; use the index 0 [index-out-of-range]")},
         inValue(selection("1", "a", "0", R"(<SelectionItem name="a" value="1"/>)"))},
        {"option-differs",
         inValue(selection("2", "c", "0", twoOptions)),
         {at(4, 24, "ValueSelection/value",
             "value 2 differs from option 0, which has 1; option 1 has it [option-differs]"),
          at(4, 34, "ValueSelection/text", "text 'c' differs from option 0, which has 'a'; use 'a' [option-differs]")},
         inValue(selection("1", "a", "0", twoOptions))},
        {"duplicate-option",
         inValue(selection("1", "a", "0", R"(<SelectionItem name="a" value="1"/><SelectionItem name="a" value="2"/>)")),
         {at(5, 51, "ValueSelection/SelectionItem[name=a][2]/name",
             "option 0 already has name 'a' [duplicate-option]")},
         inValue(selection("1", "a", "0", twoOptions))},
        {"duplicate-option",
         inValue(
             selection("1", "a", "0", R"(<SelectionItem name="a" value="1"/><SelectionItem name="b" value="1.0"/>)")),
         {at(5, 60, "ValueSelection/SelectionItem[name=b]/value", "option 0 already has value 1 [duplicate-option]")},
         inValue(selection("1", "a", "0", twoOptions))},
        {"duplicate-option",
         inValue(texts("x", R"(<StringItem value="x"/><StringItem><value>x</value></StringItem>)")),
         {at(5, 36, "ValueStringList/StringItem[value=x][2]/value",
             "option 0 already has value 'x' [duplicate-option]")},
         inValue(texts("x", R"(<StringItem value="x"/><StringItem value="X"/>)"))},
        {"value-not-listed",
         inValue(texts("vertcal", R"(<StringItem value="vertical"/><StringItem value="horizontal"/>)")),
         {at(4, 25, "ValueStringList/value",
             "value 'vertcal' is not in the list; did you mean 'vertical'? [value-not-listed]")},
         inValue(texts("vertical", R"(<StringItem value="vertical"/>)"))},
        {"value-not-listed",
         inValue(texts("z", R"(<StringItem value="vertical"/>)")),
         {at(4, 25, "ValueStringList/value", "value 'z' is not in the list [value-not-listed]")},
         inValue(texts("", R"(<StringItem value="vertical"/>)"))}, // nothing is chosen
        {"duplicate-component",
         inDocument(QByteArray(component) + "\n" + component),
         {inRootAt(3, 12,
                   "Component[type=t,name=c][2]/type: component 1 already has type 't' and name 'c' "
                   "[duplicate-component]")},
         inDocument(QByteArray(component) + R"(<Component type="t" name="d" optional="true"/>)")},
        {"duplicate-node",
         inDocument(
             "<Component type=\"t\" name=\"c\" optional=\"true\">\n<Node id=\"n\"/><Node id=\"m\"/><Node id=\"n\"/>"
             "</Component>"),
         {inRootAt(3, 35, "Component[type=t,name=c]/Node[id=n][2]/id: node 1 already has id 'n' [duplicate-node]")},
         inDocument(QByteArray(component) + R"(<Component type="u" name="c" optional="1"><Node id="n"/></Component>)")},
        {"duplicate-value",
         inValue("<ValueInt id=\"i\" value=\"1\"/></ValueItem>\n<ValueItem><ValueFloat id=\"i\" value=\"1\"/>"),
         {inRootAt(5, 1,
                   "Component[type=t,name=c]/Node[id=n]/ValueItem[id=i][2]/id: value 1 already has id 'i' "
                   "[duplicate-value]")},
         inValue("<ValueInt id=\"i\" value=\"1\"/></ValueItem>\n<ValueItem><ValueInt id=\"j\" value=\"1\"/>")},
        {"duplicate-bandwidth",
         inDocument(QByteArray(bandwidth) + "\n" + bandwidth),
         {inRootAt(3, 21,
                   "BandwidthSelection[Name=a][2]/Name: bandwidth 1 already has Name 'a' [duplicate-bandwidth]")},
         inDocument(bandwidth)},
        {"duplicate-startup-mode",
         inDocument("<StartupModes>\n<StartupMode>DF</StartupMode><StartupMode>Scan</StartupMode>\n"
                    "<StartupMode>DF</StartupMode></StartupModes>"),
         {inRootAt(4, 1,
                   "StartupModes/StartupMode: start-up mode 'DF' is already at position 1 [duplicate-startup-mode]")},
         // Names that are not modes are problems of the model.
         inDocument("<StartupModes><StartupMode>DF</StartupMode><StartupMode>Skan</StartupMode>"
                    "<StartupMode>Skan</StartupMode></StartupModes>")},
        {"bandwidth-not-positive",
         inDocument("<BandwidthSelection><Name>a</Name>\n<MaxBandwidth>0</MaxBandwidth></BandwidthSelection>"),
         {inRootAt(3, 1,
                   "BandwidthSelection[Name=a]/MaxBandwidth: bandwidth 0 is not a positive, finite number "
                   "[bandwidth-not-positive]")},
         inDocument(bandwidth)},
        {"bandwidth-not-positive",
         inDocument("<BandwidthSelection><Name>a</Name>\n<MaxBandwidth>inf</MaxBandwidth></BandwidthSelection>"),
         {inRootAt(3, 1,
                   "BandwidthSelection[Name=a]/MaxBandwidth: bandwidth inf is not a positive, finite number "
                   "[bandwidth-not-positive]")},
         inDocument(bandwidth)},
        {"unchosen-data",
         inValue("<ValueInt id=\"j\" value=\"1\"/>\n<ValueFloat id=\"i\" value=\"1\"/>"),
         {at(4, 1, "ValueInt", "ValueInt has data, but ValueFloat is chosen; remove one of them [unchosen-data]")},
         inValue("<ValueInt id=\"j\" value=\"1\"/><ValueInt id=\"i\" value=\"2\"/>")},
        {"unprintable-text",
         inValue("<ValueString id=\"i\" value=\"a\xE2\x80\x8B\"/>"),
         {at(4, 21, "ValueString/value",
             "value contains U+200B as character 2, which is not printable [unprintable-text]")},
         inValue("<ValueString id=\"i\" value=\"\xC3\xA4 \xF0\x9F\x98\x80\"/>")},
        {"unprintable-text",
         inValue("<ValueString id=\"i\">\n<value>\xF0\x9F\x98\x80&#10;</value></ValueString>"),
         {at(5, 1, "ValueString/value",
             "value contains U+000A as character 3, which is not printable [unprintable-text]")},
         inValue("<ValueString id=\"i\" value=\"a&#9;b\" ><value>b</value></ValueString>")},
        {"not-a-number",
         inValue("<ValueInt id=\"i\" value=\"abc\"/>"),
         {at(4, 18, "ValueInt/value", "'abc' of value is not a number; it is read as 0 [not-a-number]")},
         inValue("<ValueInt id=\"i\" value=\" +12 \"/>")},
        {"not-a-number",
         inValue("<ValueInt64 id=\"i\" value=\"2.0\"/>"),
         {at(4, 20, "ValueInt64/value",
             "'2.0' of value is not a whole number; it is read as 0; did you mean 2? [not-a-number]")},
         inValue("<ValueInt64 id=\"i\" value=\"20\"/>")},
        {"not-a-number",
         inValue("<ValueFloat id=\"i\"><value/></ValueFloat>"),
         {at(4, 20, "ValueFloat/value", "'' of value is not a number; it is read as 0 [not-a-number]")},
         inValue("<ValueFloat id=\"i\"><value>1<!-- one -->2<x>abc</x><![CDATA[.5]]></value></ValueFloat>")},
        {"not-a-number",
         inValue(numeric("Int", "-1e3", "2.5", "1e10", "1,00")),
         {at(4, 25, "ValueNumericInt/value",
             "'-1e3' of value is not a whole number; it is read as 0; did you mean -1000? [not-a-number]"),
          at(4, 38, "ValueNumericInt/min", "'2.5' of min is not a whole number; it is read as 0 [not-a-number]"),
          at(4, 48, "ValueNumericInt/max", "'1e10' of max is not a whole number; it is read as 0 [not-a-number]"),
          at(4, 59, "ValueNumericInt/step",
             "'1,00' of step is not a number; it is read as 0; did you mean 1? [not-a-number]")},
         inValue(numeric("Int", "-1000", "-2147483648", "2147483647", "+1"))},
        {"not-a-number",
         inValue(numeric("Float", " -1,5 ", "1,500", "1,2,3", "1,5.0")),
         {at(4, 27, "ValueNumericFloat/value",
             "' -1,5 ' of value is not a number; it is read as 0; did you mean -1.5? [not-a-number]"),
          // The others may mean several numbers.
          at(4, 42, "ValueNumericFloat/min", "'1,500' of min is not a number; it is read as 0 [not-a-number]"),
          at(4, 54, "ValueNumericFloat/max", "'1,2,3' of max is not a number; it is read as 0 [not-a-number]"),
          at(4, 66, "ValueNumericFloat/step", "'1,5.0' of step is not a number; it is read as 0 [not-a-number]")},
         inValue(numeric("Float", " -1.5 ", "1.500", "1e3", "1"))},
        {"number-out-of-range",
         inValue("<ValueInt id=\"i\" value=\"2147483648\"/>"),
         {at(4, 18, "ValueInt/value",
             "'2147483648' of value is out of range; it is read as 0; use a number from -2147483648 to 2147483647 "
             "[number-out-of-range]")},
         inValue("<ValueInt id=\"i\" value=\"-2147483648\"/>")},
        {"number-out-of-range",
         inDocument("<MaxFFPDelay>-1</MaxFFPDelay>"),
         {inRootAt(2, 1,
                   "MaxFFPDelay: '-1' of MaxFFPDelay is out of range; it is read as 18446744073709551615; use a number "
                   "from 0 to 9223372036854775807 [number-out-of-range]")},
         inDocument("<MaxFFPDelay>9223372036854775807</MaxFFPDelay>")},
        {"number-out-of-range",
         inValue("<ValueFloat id=\"i\" value=\"1e39\"/>"),
         {at(4, 20, "ValueFloat/value",
             "'1e39' of value is out of range; it is read as inf; use a number from -3.4e38 to 3.4e38 "
             "[number-out-of-range]")},
         inValue("<ValueFloat id=\"i\" value=\"1e38\"/>")},
        {"lost-decimals",
         inValue("<ValueFloat id=\"i\" value=\"0.2567\"/>"),
         {at(4, 20, "ValueFloat/value",
             "'0.2567' of value has more than two decimals; it is written as 0.26; keep it in JSON, or round it "
             "[lost-decimals]")},
         inValue("<ValueFloat id=\"i\" value=\"0.250000\"/>")},
        {"lost-decimals",
         inValue("<ValueFloat id=\"i\" value=\"12e-4\"/>"),
         {at(4, 20, "ValueFloat/value",
             "'12e-4' of value has more than two decimals; it is written as 0.00; keep it in JSON, or round it "
             "[lost-decimals]")},
         inValue("<ValueFloat id=\"i\" value=\"1200e-4\"/>")},
        {"lost-decimals",
         inValue("<ValueFloat id=\"i\" value=\"16777217\"/>"),
         {at(4, 20, "ValueFloat/value",
             "'16777217' of value has more digits than its type; it is written as 16777216.00; use 16777216 "
             "[lost-decimals]")},
         inValue("<ValueFloat id=\"i\" value=\"16777216\"/>")},
        {"lost-decimals",
         inValue("<ValueFloat id=\"i\" value=\"-0131072.01\"/>"), // floats are 1/64 apart
         {at(4, 20, "ValueFloat/value",
             "'-0131072.01' of value has more digits than its type; it is written as -131072.02; use -131072.02 "
             "[lost-decimals]")},
         inValue("<ValueFloat id=\"i\" value=\"-99999.99\"/>")},
        {"lost-decimals",
         inValue("<ValueFloat id=\"i\" value=\"1e11\"/>"),
         {at(4, 20, "ValueFloat/value",
             "'1e11' of value has more digits than its type; it is written as 99999997952.00; use 99999997952 "
             "[lost-decimals]")},
         inValue("<ValueFloat id=\"i\" value=\"10000000000.00\"/>")},
        {"lost-decimals",
         inDocument("<BandwidthSelection><Name>a</Name>\n<MaxBandwidth>9007199254740993</MaxBandwidth>"
                    "</BandwidthSelection>"),
         {inRootAt(
             3, 1,
             "BandwidthSelection[Name=a]/MaxBandwidth: '9007199254740993' of MaxBandwidth has more digits than its "
             "type; it is written as 9007199254740992.00; use 9007199254740992 [lost-decimals]")},
         inDocument("<BandwidthSelection><Name>a</Name><MaxBandwidth>9007199254740992</MaxBandwidth>"
                    "</BandwidthSelection>")},
        {"lost-decimals",
         inValue(numeric("Float", "0.125", "0", "1", "0.125")),
         {at(4, 27, "ValueNumericFloat/value",
             "'0.125' of value has more than two decimals; it is written as 0.13; keep it in JSON, or round it "
             "[lost-decimals]"),
          at(4, 57, "ValueNumericFloat/step",
             "'0.125' of step has more than two decimals; it is written as 0.13; keep it in JSON, or round it "
             "[lost-decimals]")},
         // All of their digits are kept.
         inValue(numeric("Int64", "9007199254740993", "9007199254740993", "9223372036854775807", "9007199254740993"))},
        {"not-a-boolean",
         inValue("<ValueBoolean id=\"i\" value=\"no\"/>"),
         {at(4, 22, "ValueBoolean/value",
             "'no' of value is not a boolean; it is read as true; use 'false' [not-a-boolean]")},
         inValue("<ValueBoolean id=\"i\" value=\"FALSE\"/>")},
        {"not-a-boolean",
         inValue("<ValueBoolean id=\"i\"><value> false </value></ValueBoolean>"),
         {at(4, 22, "ValueBoolean/value",
             "' false ' of value is not a boolean; it is read as true; use 'false' [not-a-boolean]")},
         inValue("<ValueBoolean id=\"i\"><value></value></ValueBoolean>")}, // a problem of the model
        {"unknown-attribute",
         inValue("<ValueInt id=\"i\" valeu=\"1\"/>"),
         {at(4, 18, "ValueInt",
             "unknown attribute 'valeu' of ValueInt; it is ignored; did you mean 'value'? [unknown-attribute]")},
         inValue("<ValueInt id=\"i\" value=\"1\" xmlns:x=\"urn:x\" x:valeu=\"1\" xml:lang=\"en\"/>")},
        {"unknown-attribute",
         inDocument("<BandwidthSelection Name=\"a\"><MaxBandwidth>1</MaxBandwidth></BandwidthSelection>"),
         {inRootAt(
             2, 21,
             "BandwidthSelection[1]: unknown attribute 'Name' of BandwidthSelection; it is ignored; write 'Name' as "
             "an element [unknown-attribute]")},
         inDocument(bandwidth)},
        {"unknown-attribute",
         inDocument("<BandwidthSelection Nam=\"a\"><MaxBandwidth>1</MaxBandwidth></BandwidthSelection>"),
         {inRootAt(2, 21,
                   "BandwidthSelection[1]: unknown attribute 'Nam' of BandwidthSelection; it is ignored "
                   "[unknown-attribute]")},
         inDocument(bandwidth)},
        {"unknown-attribute",
         inDocument("<StartupModes StartupMode=\"DF\"/>"),
         {inRootAt(2, 15,
                   "StartupModes: unknown attribute 'StartupMode' of StartupModes; it is ignored; write 'StartupMode' "
                   "as an element [unknown-attribute]")},
         inDocument("<StartupModes><StartupMode>DF</StartupMode></StartupModes>")},
        {"unknown-attribute",
         inRoot("Version=\"1.1\" MaxFFPDelay=\"5\""),
         {inRootAt(1, 60,
                   "unknown attribute 'MaxFFPDelay' of TunerProperties; it is ignored; write 'MaxFFPDelay' as an "
                   "element [unknown-attribute]")},
         inDocument("<MaxFFPDelay>5</MaxFFPDelay>")},
        {"unknown-attribute",
         inValue("<ValueInt xmlns:x=\"urn:x\" id=\"i\" x:value=\"1\"/>"),
         {at(4, 34, "ValueInt",
             "unknown attribute 'x:value' of ValueInt; it is ignored; did you mean 'value'? [unknown-attribute]")},
         inValue("<x:ValueInt xmlns:x=\"urn:x\" id=\"i\" value=\"1\"/>")},
        {"unknown-attribute",
         inDocument(
             "<name value=\"R\" xml:lang=\"en\"/>\n<StartupModes><StartupMode m=\"1\">DF</StartupMode></StartupModes>"),
         {inRootAt(2, 7, "name: unknown attribute 'value' of name; it is ignored [unknown-attribute]"),
          inRootAt(3, 28,
                   "StartupModes/StartupMode: unknown attribute 'm' of StartupMode; it is ignored "
                   "[unknown-attribute]")},
         inDocument("<name xmlns=\"\" xmlns:x=\"urn:x\" x:value=\"S\">R</name>")},
        {"unknown-element",
         inValue("<ValueInt id=\"i\"><valu>1</valu></ValueInt>"),
         {at(4, 18, "ValueInt",
             "unknown element 'valu' in ValueInt; it is skipped; did you mean 'value'? [unknown-element]")},
         inValue("<ValueInt><id>i</id><value>1</value></ValueInt>")},
        {"unknown-element",
         inDocument("<Componant><MaxFFPDelay>1</MaxFFPDelay></Componant>"),
         {inRootAt(2, 1,
                   "unknown element 'Componant' in TunerProperties; what is in it counts as if it were in "
                   "TunerProperties; did you mean 'Component'? [unknown-element]")},
         inDocument("<MaxFFPDelay>1</MaxFFPDelay>")},
        {"repeated-member",
         inRoot("Version=\"1.1\" name=\"R\"")
             .replace("<Component", "<x:name xmlns:x=\"urn:x\">second</x:name><Component"),
         {inRootAt(1, 60,
                   "name: 'R' of name has no effect, since 'second' follows; remove one of them [repeated-member]")},
         inRoot("Version=\"1.1\"").replace("<Component", "<name>second</name><Component")},
        {"repeated-member",
         inDocument("<MaxFFPDelay>1</MaxFFPDelay>\n<MaxFFPDelay>2<!-- or --></MaxFFPDelay>\n<MaxFFPDelay/>"),
         {inRootAt(2, 1,
                   "MaxFFPDelay: '1' of MaxFFPDelay has no effect, since '2' follows; remove one of them "
                   "[repeated-member]"),
          inRootAt(3, 1,
                   "MaxFFPDelay: '2' of MaxFFPDelay has no effect, since '' follows; remove one of them "
                   "[repeated-member]")},
         // Lists, and child objects that are read further, keep everything.
         inDocument("<StartupModes><StartupMode>DF</StartupMode><StartupMode>Scan</StartupMode></StartupModes>"
                    "<StartupModes><StartupMode>FFM</StartupMode></StartupModes>")},
        {"repeated-member",
         inValue("<ValueInt id=\"i\" value=\"&#49;\"><value><![CDATA[2]]></value></ValueInt>"),
         {at(4, 18, "ValueInt/value",
             "'1' of value has no effect, since '2' follows; remove one of them [repeated-member]")},
         inValue("<ValueInt id=\"i\"><x><value>1</value></x><value>2</value></ValueInt>")}, // skipped with x
        {"repeated-alternative",
         inValue(
             "<ValueInt id=\"a\" value=\"1\"/>\n<ValueFloat id=\"b\" value=\"1\"/><ValueInt id=\"i\" value=\"2\"/>"),
         {at(4, 1, "ValueInt",
             "ValueInt has no effect, since another ValueInt follows; remove one of them [repeated-alternative]")},
         // The document keeps one that is not chosen.
         inValue("<ValueInt id=\"a\" value=\"1\"/>\n<ValueFloat id=\"i\" value=\"1\"/>")},
        {"stray-text",
         inDocument("<MaxFFPDelay>1</MaxFFPDelay>\n stray\n\ttext <!-- and --><?why not?>\n"),
         {inRootAt(3, 2,
                   "the text 'stray text' in TunerProperties is ignored; remove it, or make it a comment "
                   "[stray-text]")},
         inDocument("\n<!-- text -->\t<?text text?>\r\n<![CDATA[ ]]>&#32;<MaxFFPDelay>1<!-- one --></MaxFFPDelay>")},
        {"stray-text",
         inValue("<ValueInt id=\"i\" value=\"1\">2&lt;</ValueInt>\n<![CDATA[<x/>]]>"),
         {at(4, 28, "ValueInt", "the text '2<' in ValueInt is ignored; remove it, or make it a comment [stray-text]"),
          inRootAt(5, 1,
                   "Component[type=t,name=c]/Node[id=n]/ValueItem[id=i]: the text '<x/>' in ValueItem is ignored; "
                   "remove it, or make it a comment [stray-text]")},
         // An unknown element is a finding with everything in it.
         inValue("<ValueInt id=\"i\" value=\"1\"><x>2<y/>3</x></ValueInt>")},
        {"element-in-value",
         inValue("<ValueInt id=\"i\">\n<value>1<x>2<value/></x><!-- or -->\n<y:value "
                 "xmlns:y=\"urn:y\"/>3</value></ValueInt>"),
         {at(5, 9, "ValueInt/value",
             "the element 'x' in value is skipped; remove it, or make it a comment [element-in-value]"),
          at(6, 1, "ValueInt/value",
             "the element 'value' in value is skipped; remove it, or make it a comment [element-in-value]")},
         inValue("<ValueInt id=\"i\"><value>1<!-- <x>2</x> --><?x <y/>?><![CDATA[2]]></value></ValueInt>")},
        {"unknown-version",
         inRoot("Version=\"1.2\""),
         {inRootAt(1, 46, "version '1.2' is unknown; the newest is 1.1; use '1.1' [unknown-version]")},
         inRoot("Version=\"1.10\"")},
        {"reset-by-version",
         inRoot(""),
         {inRootAt(1, 1,
                   "the version is missing; readers reset the document to its defaults; use Version=\"1.1\" "
                   "[reset-by-version]")},
         inRoot("Version=\"1.1\"")},
        {"reset-by-version",
         inRoot("Version=\"1.0\""),
         {inRootAt(1, 46,
                   "version '1.0' is older than 1.1; readers reset the document to its defaults; use Version=\"1.1\" "
                   "[reset-by-version]")},
         inRoot("Version=\"2\"")},
        {"useless-comment",
         inDocument("<!-- tunerproperties-lint-disable unknown-elment -->\n<MaxFFPDelay>1</MaxFFPDelay>"),
         {inRootAt(2, 1, "unknown rule 'unknown-elment'; did you mean 'unknown-element'? [useless-comment]")},
         inDocument("<!-- tunerproperties-lint-disable unknown-element -->\n<MaxFFPDelay>1</MaxFFPDelay>")},
        {"useless-comment",
         inDocument("<MaxFFPDelay>1</MaxFFPDelay>\n<!-- tunerproperties-lint-disable lost-decimals -->"),
         {inRootAt(3, 1,
                   "the comment disables nothing, since it is not directly before an element; put it before the "
                   "element concerned [useless-comment]")},
         inDocument("<!-- tunerproperties-lint-disable lost-decimals --><!-- why --> <MaxFFPDelay>1</MaxFFPDelay>")},
        {"useless-comment",
         inDocument("<!--tunerproperties-lint-disable-->\n<MaxFFPDelay>1</MaxFFPDelay>"),
         {inRootAt(2, 1,
                   "the comment disables nothing, since it names no rule; add the name of a rule [useless-comment]")},
         inDocument("<!-- not tunerproperties-lint-disable -->\n<MaxFFPDelay>1</MaxFFPDelay>")},
    };
}
