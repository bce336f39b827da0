// SPDX-License-Identifier: MIT
#include "Generator.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

using namespace JobXml;

namespace {

/// What a document consists of, drawn at random. The same seed draws the same.
class Random
{
public:
    explicit Random(quint32 seed) : m_numbers(seed) { }

    bool chance(int percent) { return below(100) < percent; }
    int below(int end) { return int(m_numbers() % quint32(end)); }

    template <class T, std::size_t size>
    const T &oneOf(const T (&choices)[size])
    {
        return choices[below(int(size))];
    }

    /// Mostly one, now and then up to `most`.
    int few(int most) { return chance(60) ? 1 : 1 + below(most); }

    QString text()
    {
        static const QString pieces[] = {
            QStringLiteral("RX"),        QStringLiteral("tuner"),      QStringLiteral("12.5 kHz"),
            QStringLiteral(" "),         QStringLiteral("<"),          QStringLiteral(">"),
            QStringLiteral("&"),         QStringLiteral("\""),         QStringLiteral("'"),
            QStringLiteral("&amp;"),     QStringLiteral("]]>"),        QStringLiteral("%1"),
            QStringLiteral("\t"),        QStringLiteral("\n"),         QStringLiteral("\r"),
            QStringLiteral("\r\n"),      QStringLiteral("\u00E9"),     QStringLiteral("\u03A9"),
            QStringLiteral("\u2153"),    QStringLiteral("\u6F22"),     QStringLiteral("\u0085"),
            QStringLiteral("\u00A0"),    QStringLiteral("\u2028"),     QStringLiteral("\uFEFF"),
            QStringLiteral("\uFFFD"),    QStringLiteral("\U0001F600"), QStringLiteral("\U0010FFFF"),
            QStringLiteral("\U00010000")};
        static const QChar notForXml[] = {QChar(0),      QChar(1),      QChar(0xB),    QChar(0x1F),
                                          QChar(0xFFFE), QChar(0xFFFF), QChar(0xD800), QChar(0xDFFF)};
        QString text = QStringLiteral("");
        for (int i = chance(10) ? 0 : few(6); i > 0; --i)
            text += oneOf(pieces);
        if (chance(10) && chance(5))
            text.insert(below(text.size() + 1), oneOf(notForXml));
        return text;
    }

    template <class T>
    T integer()
    {
        using Limits = std::numeric_limits<T>;
        static const T limits[] = {Limits::lowest(), Limits::max(), 0, 1, T(-1)};
        if (chance(30))
            return oneOf(limits);
        const quint64 bits = quint64(m_numbers()) << 32 | m_numbers();
        return T(bits >> below(64));
    }

    template <class T>
    T real()
    {
        using Limits = std::numeric_limits<T>;
        static const T limits[] = {0,
                                   T(-0.0),
                                   Limits::max(),
                                   Limits::lowest(),
                                   Limits::min(),
                                   Limits::denorm_min(),
                                   Limits::infinity(),
                                   -Limits::infinity(),
                                   Limits::quiet_NaN(),
                                   Limits::epsilon(),
                                   T(0.005),
                                   T(-0.001),
                                   T(0.125),
                                   T(-0.375),
                                   T(1.005),
                                   T(999.995)};
        if (chance(30))
            return oneOf(limits);
        if (chance(60))
            return T(integer<qint32>()) / T(1 << below(11));
        const quint64 bits = quint64(m_numbers()) << 32 | m_numbers();
        T number;
        std::memcpy(&number, &bits, sizeof number);
        return std::isnan(number) ? Limits::quiet_NaN() : number;
    }

private:
    std::mt19937 m_numbers;
};

class Builder
{
public:
    Builder(quint32 seed, bool careless) : m_random(seed), m_careless(careless) { }

    void fill(TunerProperties &object)
    {
        if (optional())
            object.Setname(text());
        if (given())
            object.Settype(TunerProperties::type(m_random.below(5)));
        if (carelessly())
            object.Settype(TunerProperties::type(m_random.integer<qint8>()));
        if (given())
            object.Setbaseresource(text());
        if (optional())
            object.SetconnectableResources(text());
        if (optional())
            object.Setquantity(m_random.integer<int>());
        if (optional())
            object.SetparentBaseResource(text());
        if (optional())
            object.SethwProcessing(flag());
        if (optional())
            object.SetMaxFFPDelay(m_random.integer<quint64>());
        if (optional())
            object.SetHRPANSupported(flag());
        if (optional())
            fill(object.GetStartupModes());
        if (optional())
            object.SetBandwidthSelection(items<BandwidthSelection>(m_random.below(3)));
        if (given())
            object.SetComponent(items<Component>(m_random.few(3)));
        if (carelessly())
            object.ResetToDefault();
    }

    void fill(StartupModes &object)
    {
        if (!given())
            return;
        object.SetStartupMode({});
        for (int i = m_random.below(4); i > 0; --i)
            object.AppendStartupMode(StartupModes::StartupMode(m_random.below(11)));
        if (carelessly())
            object.AppendStartupMode(StartupModes::StartupMode(m_random.integer<qint8>()));
    }

    void fill(BandwidthSelection &object)
    {
        if (given())
            object.SetName(text());
        if (given())
            object.SetMaxBandwidth(m_random.real<double>());
    }

    void fill(Component &object)
    {
        if (given())
            object.Settype(text());
        if (given())
            object.Setname(text());
        if (optional())
            object.SetdisplayName(text());
        if (given())
            object.Setoptional(flag());
        if (given())
            object.SetNode(items<Node>(m_random.few(3)));
    }

    void fill(Node &object)
    {
        if (given())
            object.Setid(text());
        if (given())
            object.SetValueItem(items<ValueItem>(m_random.few(3)));
    }

    void fill(ValueItem &object)
    {
        if (carelessly())
            object.SetValueString(one<ValueString>()); // chosen before, and still set behind what is chosen now
        if (!given())
            return;
        switch (m_random.below(10)) {
        case 0:
            return object.SetValueBoolean(one<ValueBoolean>());
        case 1:
            return object.SetValueFloat(one<ValueFloat>());
        case 2:
            return object.SetValueInt(one<ValueInt>());
        case 3:
            return object.SetValueInt64(one<ValueInt64>());
        case 4:
            return object.SetValueNumericFloat(one<ValueNumericFloat>());
        case 5:
            return object.SetValueNumericInt(one<ValueNumericInt>());
        case 6:
            return object.SetValueNumericInt64(one<ValueNumericInt64>());
        case 7:
            return object.SetValueSelection(one<ValueSelection>());
        case 8:
            object.SetValueString(one<ValueString>());
            if (carelessly())
                object.ResetValueString(); // chosen and not set
            return;
        case 9:
            return object.SetValueStringList(one<ValueStringList>());
        }
    }

    void fill(ValueBoolean &object)
    {
        if (given())
            object.Setid(text());
        if (given())
            object.Setvalue(flag());
    }
    void fill(ValueFloat &object) { fillValue(object, &Random::real<float>); }
    void fill(ValueInt &object) { fillValue(object, &Random::integer<int>); }
    void fill(ValueInt64 &object) { fillValue(object, &Random::integer<qint64>); }
    void fill(ValueNumericFloat &object) { fillRange(object, &Random::real<float>); }
    void fill(ValueNumericInt &object) { fillRange(object, &Random::integer<int>); }
    void fill(ValueNumericInt64 &object) { fillRange(object, &Random::integer<qint64>); }

    void fill(ValueSelection &object)
    {
        fillValue(object, &Random::real<double>);
        if (given())
            object.Settext(text());
        if (given())
            object.Setindex(m_random.integer<int>());
        if (given())
            object.SetSelectionItem(items<SelectionItem>(m_random.few(4)));
    }

    void fill(SelectionItem &object)
    {
        if (given())
            object.Setname(text());
        if (given())
            object.Setvalue(m_random.real<double>());
    }

    void fill(ValueString &object)
    {
        if (given())
            object.Setid(text());
        if (given())
            object.Setvalue(text());
    }

    void fill(ValueStringList &object)
    {
        if (given())
            object.Setid(text());
        if (given())
            object.Setvalue(text());
        if (given())
            object.SetStringItem(items<StringItem>(m_random.few(4)));
    }

    void fill(StringItem &object)
    {
        if (given())
            object.Setvalue(text());
    }

private:
    bool optional() { return m_random.chance(50); }
    bool given() { return !m_careless || m_random.chance(94); }
    bool carelessly() { return m_careless && m_random.chance(8); }
    bool flag() { return m_random.chance(50); }
    QString text() { return carelessly() ? QString() : m_random.text(); }

    template <class Object>
    Object one()
    {
        Object object;
        object.SetValidate(!m_careless);
        fill(object);
        return object;
    }

    template <class Item>
    QVector<Item> items(int count)
    {
        QVector<Item> items;
        if (!carelessly()) {
            for (int i = 0; i < count; ++i)
                items.append(one<Item>());
        }
        return items;
    }

    template <class Value, class Number>
    void fillValue(Value &object, Number (Random::*number)())
    {
        if (given())
            object.Setid(text());
        if (given())
            object.Setvalue((m_random.*number)());
    }

    template <class Value, class Number>
    void fillRange(Value &object, Number (Random::*number)())
    {
        fillValue(object, number);
        if (given())
            object.Setmin((m_random.*number)());
        if (given())
            object.Setmax((m_random.*number)());
        if (given())
            object.Setstep((m_random.*number)());
    }

    Random m_random;
    bool m_careless;
};

template <class... Classes>
void fillAs(DataObject &object, Builder builder)
{
    const auto fill = [&](auto *typed) { return typed && (builder.fill(*typed), true); };
    if (!(fill(dynamic_cast<Classes *>(&object)) || ...))
        qFatal("nothing is known of the class %s", qUtf8Printable(object.GetObjectName()));
}

} // namespace

void build(DataObject &object, const QByteArray &seed)
{
    fillAs<TunerProperties, StartupModes, BandwidthSelection, Component, Node, ValueItem, ValueBoolean, ValueFloat,
           ValueInt, ValueInt64, ValueNumericFloat, ValueNumericInt, ValueNumericInt64, ValueSelection, SelectionItem,
           ValueString, ValueStringList, StringItem>(object, Builder(seed.toUInt(), !object.GetValidate()));
}
