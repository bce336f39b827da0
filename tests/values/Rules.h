// SPDX-License-Identifier: MIT
#pragma once

#include <QtTest>

#include "Encodings.h"
#include "ExceptionText.h"
#include "Kinds.h"

/// Checks that the tests of the value classes have in common.

using ValueItemKinds::sample;

Q_DECLARE_METATYPE(StreamSettings)

/// The accessors that every member has.
template <class Object, class T, class Getter>
struct Accessors
{
    Getter get;
    void (Object::*set)(T);
    bool (Object::*isSet)() const;
    void (Object::*reset)();
    T (Object::*defaultValue)() const;
};

template <class Object, class T, class Getter>
Accessors<Object, T, Getter> accessors(Getter get, void (Object::*set)(T), bool (Object::*isSet)() const,
                                       void (Object::*reset)(), T (Object::*defaultValue)() const)
{
    return {get, set, isSet, reset, defaultValue};
}

/// The accessors of a text. Some classes have two getters of their id; this uses the const one.
template <class Object>
auto accessors(QString (Object::*get)() const, void (Object::*set)(QString), bool (Object::*isSet)() const,
               void (Object::*reset)(), QString (Object::*defaultValue)() const)
{
    return Accessors<Object, QString, decltype(get)>{get, set, isSet, reset, defaultValue};
}

#define ACCESSORS(Class, member)                                                                                       \
    accessors(&Class::Get##member, &Class::Set##member, &Class::Is##member##Set, &Class::Reset##member,                \
              &Class::GetDefault##member)

/// A null text is not an empty one.
inline bool isNullText(const QString &text)
{
    return text.isNull();
}

template <class Number>
bool isNullText(Number)
{
    return false;
}

/// Checks that the member has its default until it is set, and again after it is reset.
template <class Object, class T, class Getter>
void storesAndResets(const Accessors<Object, T, Getter> &member, const T &value, const T &defaultValue)
{
    Object object;
    QCOMPARE((object.*member.defaultValue)(), defaultValue);
    QVERIFY(!(object.*member.isSet)());
    (object.*member.reset)();
    QVERIFY(!object.IsInitialized());
    QCOMPARE((object.*member.get)(), defaultValue);
    QCOMPARE(isNullText((object.*member.get)()), isNullText(defaultValue));
    QVERIFY(object.IsInitialized());
    QVERIFY(!(object.*member.isSet)());

    (object.*member.set)(value);
    QVERIFY((object.*member.isSet)());
    QCOMPARE((object.*member.get)(), value);

    (object.*member.reset)();
    QVERIFY(!(object.*member.isSet)());
    QCOMPARE((object.*member.get)(), defaultValue);
    QCOMPARE(isNullText((object.*member.get)()), isNullText(defaultValue));

    object.SetValidate(false);
    (object.*member.set)(defaultValue); // set is what was stored, be it the default
    QVERIFY((object.*member.isSet)());
    QCOMPARE((object.*member.get)(), defaultValue);
}

/// Checks that the setter of a text refuses null while validating, and only then.
template <class Object, class Getter>
void refusesNull(const Accessors<Object, QString, Getter> &member, const QString &refusal)
{
    Object object;
    QCOMPARE(thrownBy([&] { (object.*member.set)(QString()); }), refusal);
    QVERIFY(!(object.*member.isSet)());

    (object.*member.set)(QStringLiteral("before"));
    QCOMPARE(thrownBy([&] { (object.*member.set)(QString()); }), refusal);
    QVERIFY((object.*member.isSet)());
    QCOMPARE((object.*member.get)(), QStringLiteral("before"));

    (object.*member.set)(QStringLiteral("")); // an empty text is a value
    QVERIFY((object.*member.isSet)());
    QVERIFY(!(object.*member.get)().isNull());

    object.SetValidate(false);
    (object.*member.set)(QString());
    QVERIFY((object.*member.isSet)());
    QVERIFY((object.*member.get)().isNull());
}

/// Checks that the object is written as this element, and that the element is read back as the object.
template <class Object>
void hasElement(const Object &object, const QString &element)
{
    QCOMPARE(xmlOf(object), element);
    Object read;
    readXml(read, element);
    QVERIFY(read == object);
    QCOMPARE(xmlOf(read), element);
}

/// The same for its record, which starts with its length.
template <class Object>
void hasRecord(const Object &object, const char *record, StreamSettings settings = stockSettings)
{
    QCOMPARE(hex(recordOf(object, settings)), hex(record));
    Object read;
    readRecord(read, bytes(record), settings);
    QVERIFY(read == object);
    QCOMPARE(hex(recordOf(read, settings)), hex(record));
}

/// The same for its snapshot.
template <class Object>
void hasSnapshot(const Object &object, const char *snapshot, StreamSettings settings = stockSettings)
{
    QCOMPARE(hex(snapshotOf(object, settings)), hex(snapshot));
    Object read;
    QCOMPARE(readSnapshot(read, bytes(snapshot), settings), 0);
    QVERIFY(read == object);
    QCOMPARE(hex(snapshotOf(read, settings)), hex(snapshot));
}

/// An object that does not validate.
template <class Object>
Object withoutValidation()
{
    Object object;
    object.SetValidate(false);
    return object;
}

/// An object whose name differs from that of its class.
template <class Object>
class Renamed : public Object
{
public:
    explicit Renamed(const QString &name) { this->SetObjectName(name); }
};

/// An object whose check always passes.
template <class Object>
class Unchecked : public Object
{
public:
    void Check() const override { }
    void Check(bool) const override { }
};

/// A record with one member, whose payload is this text, or a null one.
inline QByteArray recordWithText(quint32 tag, const QByteArray &utf8)
{
    QByteArray record;
    QDataStream stream(&record, QIODevice::WriteOnly);
    const qint32 payload = 4 + utf8.size();
    stream << qint32(8 + payload) << tag << payload << utf8;
    return record;
}

template <class Object>
using NumberOf = decltype(std::declval<const Object &>().Getvalue());

/// The number of a data row, which must have the type of the class.
template <class Object>
NumberOf<Object> numberOf(const Object &, const QVariant &number)
{
    if (number.userType() != qMetaTypeId<NumberOf<Object>>())
        qFatal("the row has a %s", number.typeName());
    return number.value<NumberOf<Object>>();
}

/// A data row for a class, named `Class: description`.
inline QTestData &newRow(const char *className, const char *description)
{
    return QTest::addRow("%s: %s", className, description) << QString::fromLatin1(className);
}
