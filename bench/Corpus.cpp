// SPDX-License-Identifier: MIT
#include "Corpus.h"

#include <array>
#include <cstdint>

using namespace JobXml;

namespace Bench {
namespace {

/// The standard library's engines are the same everywhere, but its distributions are not.
class Numbers
{
public:
    explicit Numbers(std::uint64_t seed) : m_state(seed) { }

    std::uint64_t next()
    {
        m_state += 0x9E3779B97F4A7C15;
        std::uint64_t mixed = m_state;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
        return mixed ^ (mixed >> 31);
    }
    int upTo(int last) { return int(next() % std::uint64_t(last + 1)); }
    int between(int first, int last) { return first + upTo(last - first); }
    bool percent(int share) { return upTo(99) < share; }
    float hundredths(int first, int last) { return float(double(between(first, last)) / 100); }

    template <class Element, std::size_t Size>
    Element oneOf(const std::array<Element, Size> &elements)
    {
        return elements[std::size_t(upTo(int(Size) - 1))];
    }
    template <std::size_t Size>
    QString textOf(const std::array<const char *, Size> &texts)
    {
        return QString::fromUtf8(oneOf(texts));
    }

private:
    std::uint64_t m_state;
};

using Kind = ValueItem::ChoiceValueItem;

// Of ValueBoolean, ValueFloat, ...: how many of so many values are of the kind. Kinds that are newer than the recorded
// figures are left out, so that figures of one state of the library can be compared with those of another.
constexpr std::array shares{1, 2, 2, 2, 7, 3, 4, 3, 1, 1};
constexpr int allShares = 26;

constexpr std::array groups{"Preselector",           "Synthesizer",      "Demodulator", "AntennaControl",
                            "IntermediateFrequency", "SignalProcessing", "ScanControl", "DirectionFinding"};
constexpr std::array subjects{"Attenuation", "Bandwidth",   "CenterFrequency", "SquelchThreshold",
                              "GainControl", "DwellTime",   "ReferenceLevel",  "DetectorMode",
                              "HoldTime",    "AntennaPath", "StepWidth",       "AveragingCycles"};
constexpr std::array settings{"Lower",   "Upper",  "Nominal", "Default", "Manual", "Automatic",
                              "Startup", "Backup", "Coarse",  "Fine",    "Remote", "Local"};
constexpr std::array words{"low noise",      "low distortion", "narrow band",  "wide band",      "fast attack",
                           "slow release",   "peak detector",  "root mean sq", "field strength", "upper sideband",
                           "lower sideband", "pulse",          "continuous",   "calibrated"};
constexpr std::array units{"dBµV", "µV/m", "°C", "±1 kHz", "Ω (50)"};

QString word(Numbers &numbers)
{
    return numbers.percent(4) ? numbers.textOf(units) : numbers.textOf(words);
}

QString valueId(Numbers &numbers)
{
    const QString setting = numbers.textOf(settings); // on its own: operands are evaluated in no certain order
    return setting + numbers.textOf(subjects);
}

ValueSelection selection(Numbers &numbers)
{
    ValueSelection value;
    QVector<SelectionItem> items(numbers.between(3, 8));
    for (int i = 0; i < items.size(); ++i) {
        items[i].Setname(word(numbers) + QLatin1Char(' ') + QString::number(i + 1));
        items[i].Setvalue(double(numbers.between(10, 2000000)) / 100);
    }
    const int chosen = numbers.upTo(items.size() - 1);
    value.Settext(std::as_const(items)[chosen].Getname());
    value.Setvalue(std::as_const(items)[chosen].Getvalue());
    value.Setindex(chosen);
    value.SetSelectionItem(items);
    return value;
}

ValueStringList stringList(Numbers &numbers)
{
    ValueStringList value;
    QVector<StringItem> items(numbers.between(3, 8));
    for (int i = 0; i < items.size(); ++i)
        items[i].Setvalue(word(numbers) + QLatin1Char(' ') + QString::number(i + 1));
    value.Setvalue(std::as_const(items)[numbers.upTo(items.size() - 1)].Getvalue());
    value.SetStringItem(items);
    return value;
}

template <class Number>
struct Range // whose braces are evaluated in order, unlike arguments
{
    Number value;
    Number min;
    Number max;
    Number step;
};

template <class Value, class Number>
Value ranged(const Range<Number> &range)
{
    Value ranged;
    ranged.Setvalue(range.value);
    ranged.Setmin(range.min);
    ranged.Setmax(range.max);
    ranged.Setstep(range.step);
    return ranged;
}

template <class Value>
Value named(Value value, const QString &id)
{
    value.Setid(id);
    return value;
}

template <class Value, class Number>
Value plain(Number number)
{
    Value value;
    value.Setvalue(number);
    return value;
}

Kind kind(Numbers &numbers)
{
    int left = numbers.upTo(allShares - 1);
    int kind = 0;
    for (; left >= shares[std::size_t(kind)]; ++kind)
        left -= shares[std::size_t(kind)];
    return Kind(kind);
}

ValueItem item(Numbers &numbers)
{
    const QString id = valueId(numbers);
    ValueItem item;
    switch (kind(numbers)) {
    case Kind::ValueBoolean:
        item.SetValueBoolean(named(plain<ValueBoolean>(numbers.percent(50)), id));
        break;
    case Kind::ValueFloat:
        item.SetValueFloat(named(plain<ValueFloat>(numbers.hundredths(-12000, 300000)), id));
        break;
    case Kind::ValueInt:
        item.SetValueInt(named(plain<ValueInt>(numbers.between(-120, 40000)), id));
        break;
    case Kind::ValueInt64:
        item.SetValueInt64(named(plain<ValueInt64>(qint64(numbers.between(20000, 30000000)) * 100), id));
        break;
    case Kind::ValueNumericFloat:
        item.SetValueNumericFloat(named(ranged<ValueNumericFloat>(Range<float>{numbers.hundredths(-5000, 9000), -50, 90,
                                                                               numbers.hundredths(1, 100)}),
                                        id));
        break;
    case Kind::ValueNumericInt:
        item.SetValueNumericInt(
            named(ranged<ValueNumericInt>(Range<int>{numbers.between(0, 9999), 0, 10000, numbers.between(1, 25)}), id));
        break;
    case Kind::ValueNumericInt64:
        item.SetValueNumericInt64(
            named(ranged<ValueNumericInt64>(Range<qint64>{numbers.between(20000, 29999999) * qint64(100), 2000000,
                                                          3000000000, numbers.between(1, 100) * qint64(25)}),
                  id));
        break;
    case Kind::ValueSelection:
        item.SetValueSelection(named(selection(numbers), id));
        break;
    case Kind::ValueString:
        item.SetValueString(named(plain<ValueString>(word(numbers)), id));
        break;
    default:
        item.SetValueStringList(named(stringList(numbers), id));
    }
    return item;
}

Node node(Numbers &numbers, int number)
{
    Node node;
    const QString group = numbers.textOf(groups);
    node.Setid(group + QLatin1Char('.') + numbers.textOf(subjects) + QLatin1Char('.') + QString::number(number));
    const int dice = numbers.upTo(99);
    const int values = dice < 60 ? 1 : dice < 95 ? 2 : 3;
    for (int i = 0; i < values; ++i)
        node.AppendValueItem(item(numbers));
    return node;
}

Component component(Numbers &numbers, int number, int firstNode, int nodes)
{
    Component component;
    component.Settype(numbers.textOf(groups));
    component.Setname(numbers.textOf(groups) + QString::number(number));
    if (numbers.percent(50)) {
        const QString subject = numbers.textOf(subjects);
        component.SetdisplayName(subject + QLatin1String(" (") + word(numbers) + QLatin1Char(')'));
    }
    component.Setoptional(numbers.percent(20));
    QVector<Node> list;
    list.reserve(nodes);
    for (int i = 0; i < nodes; ++i)
        list.append(node(numbers, firstNode + i));
    component.SetNode(list);
    return component;
}

BandwidthSelection bandwidth(const QString &name, double width)
{
    BandwidthSelection bandwidth;
    bandwidth.SetName(name);
    bandwidth.SetMaxBandwidth(width);
    return bandwidth;
}

} // namespace

const char *nameOf(Shape shape)
{
    return shape == Shape::Tree ? "tree" : "flat";
}

TunerProperties document(Shape shape, int nodes)
{
    Numbers numbers(0x54554E4552);
    TunerProperties document;
    document.Setname(QStringLiteral("Receiver, 20 MHz to 3 GHz"));
    document.Settype(TunerProperties::type::Receiver);
    document.Setbaseresource(QStringLiteral("RX1"));
    document.SetconnectableResources(QStringLiteral("ANT1;ANT2"));
    document.Setquantity(2);
    document.SethwProcessing(true);
    document.SetMaxFFPDelay(250000);
    document.SetHRPANSupported(true);
    StartupModes modes;
    for (const auto mode : {StartupModes::StartupMode::Scan, StartupModes::StartupMode::FFM,
                            StartupModes::StartupMode::DF, StartupModes::StartupMode::Stop})
        modes.AppendStartupMode(mode);
    document.SetStartupModes(modes);
    document.AppendBandwidthSelection(bandwidth(QStringLiteral("narrow"), 12500));
    document.AppendBandwidthSelection(bandwidth(QStringLiteral("medium"), 250000));
    document.AppendBandwidthSelection(bandwidth(QStringLiteral("wide"), 20000000));
    QVector<Component> components;
    for (int done = 0; done < nodes;) {
        const int wanted = shape == Shape::Flat ? nodes : numbers.between(20, 50);
        const int inThisOne = qMin(wanted, nodes - done);
        components.append(component(numbers, components.size() + 1, done + 1, inThisOne));
        done += inThisOne;
    }
    document.SetComponent(components);
    return document;
}

} // namespace Bench
