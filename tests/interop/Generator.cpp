// SPDX-License-Identifier: MIT
#include "Generator.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include <QSet>

#include <jobxml/Visit.h>

#include "Members.h"

using namespace JobXml;

namespace {

/// Random members of documents. The same seed generates the same ones.
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

    /// Mostly one, sometimes up to `most`.
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

    /// Sets the members of an object; mandatory ones nearly always.
    template <class T>
    void fill(T &object)
    {
        const QSet<QString> mandatory = mandatoryMembers(object);
        Members::forEach<T>([&](const auto &member) {
            const bool isMandatory = mandatory.contains(QLatin1String(member.name));
            if (isMandatory ? given() : optional())
                fillMember(object, member, isMandatory);
        });
    }

    void fill(ValueItem &object)
    {
        if (carelessly())
            object.SetValueString(one<ValueString>()); // no longer chosen, but still set
        if (!given())
            return;
        const int chosen = m_random.below(Kinds::size);
        int kind = 0;
        Members::forEach<ValueItem>([&](const auto &member) {
            if (kind++ != chosen)
                return;
            fillMember(object, member, false);
            if (carelessly())
                (object.*member.reset)(); // chosen and not set
        });
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

    static QSet<QString> mandatoryMembers(const DataObject &object)
    {
        QSet<QString> names;
        visit(object, [&](const MemberView &member) {
            if (member.IsMandatory())
                names += member.GetName();
        });
        return names;
    }

    template <class V>
    V value()
    {
        if constexpr (std::is_same_v<V, QString>)
            return text();
        else if constexpr (std::is_same_v<V, bool>)
            return flag();
        else if constexpr (std::is_floating_point_v<V>)
            return m_random.real<V>();
        else
            return m_random.integer<V>();
    }

    template <class T, class V>
    void fillMember(T &object, const Members::Value<T, V> &member, bool)
    {
        if constexpr (std::is_enum_v<V>)
            (object
             .*member.set)(V(carelessly() ? m_random.integer<qint8>() : m_random.below(names(object, member.name))));
        else
            (object.*member.set)(value<V>());
    }

    template <class T, class C>
    void fillMember(T &object, const Members::Child<T, C> &member, bool)
    {
        (object.*member.set)(one<C>());
    }

    template <class T, class Item, class Argument>
    void fillMember(T &object, const Members::List<T, Item, Argument> &member, bool isMandatory)
    {
        if constexpr (std::is_enum_v<Item>) {
            (object.*member.set)({});
            for (int i = m_random.below(4); i > 0; --i)
                (object.*member.append)(Item(m_random.below(names(object, member.name))));
            if (carelessly())
                (object.*member.append)(Item(m_random.integer<qint8>()));
        } else {
            (object.*member.set)(items<Item>(isMandatory ? m_random.few(4) : m_random.below(3)));
        }
    }

    /// The number of names of an enumeration.
    static int names(const DataObject &object, const char *name)
    {
        int count = 0;
        visit(object, [&](const MemberView &member) {
            if (member.GetName() == QLatin1String(name))
                count = member.GetNames().size();
        });
        return count;
    }

    Random m_random;
    bool m_careless;
};

} // namespace

void build(DataObject &object, const QByteArray &seed)
{
    Builder builder(seed.toUInt(), !object.GetValidate());
    bool isKnown = false;
    Classes::forEach([&](auto tag) {
        if (auto *const typed = dynamic_cast<typename decltype(tag)::Class *>(&object)) {
            builder.fill(*typed);
            isKnown = true;
        }
    });
    if (!isKnown)
        qFatal("nothing is known of the class %s", qUtf8Printable(object.GetObjectName()));
}
