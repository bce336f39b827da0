// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include <QtTest>

#include <jobxml/DataObject.h>

/// The operations of one class that the tests of every class need.
class ClassUnderTest
{
public:
    using Object = JobXml::DataObject;
    using Pointer = std::unique_ptr<Object>;

    virtual ~ClassUnderTest() = default;

    virtual Pointer make() const = 0;
    /// With every member set.
    virtual Pointer full() const = 0;

    virtual Pointer copied(const Object &object) const = 0;
    virtual Pointer moved(Object &object) const = 0;
    virtual void assign(Object &to, const Object &from) const = 0;
    virtual void moveAssign(Object &to, Object &from) const = 0;
    virtual void swap(Object &left, Object &right) const = 0;
    /// Null if the class returns nothing.
    virtual Pointer fromXml(const QString &xml, QString *error) const = 0;
    virtual Pointer fromBinary(const QByteArray &representation, QString *error) const = 0;
    virtual Pointer fromBinary(const QByteArray &representation, QString *error,
                               const REPORTGENERATOR::ReadLimits &limits) const = 0;
    virtual bool equal(const Object &left, const Object &right) const = 0;
    virtual bool different(const Object &left, const Object &right) const = 0;

    virtual qint64 id() const = 0;
    virtual QString staticName() const = 0;
    virtual bool movesWithoutThrowing() const = 0;
    virtual bool isMovableInContainers() const = 0;
};

template <class T>
class ClassUnderTestOf final : public ClassUnderTest
{
public:
    using Fill = void (*)(T &);

    explicit ClassUnderTestOf(Fill fill) : m_fill(fill) { }

    Pointer make() const override { return std::make_unique<T>(); }
    Pointer full() const override
    {
        auto object = std::make_unique<T>();
        m_fill(*object);
        return object;
    }
    Pointer copied(const Object &object) const override { return std::make_unique<T>(of(object)); }
    Pointer moved(Object &object) const override { return std::make_unique<T>(std::move(of(object))); }
    void assign(Object &to, const Object &from) const override { of(to) = of(from); }
    void moveAssign(Object &to, Object &from) const override { of(to) = std::move(of(from)); }
    void swap(Object &left, Object &right) const override { of(left).swap(of(right)); }
    Pointer fromXml(const QString &xml, QString *error) const override { return pointer(T::fromXml(xml, error)); }
    Pointer fromBinary(const QByteArray &representation, QString *error) const override
    {
        return pointer(T::fromBinary(representation, error));
    }
    Pointer fromBinary(const QByteArray &representation, QString *error,
                       const REPORTGENERATOR::ReadLimits &limits) const override
    {
        return pointer(T::fromBinary(representation, error, limits));
    }
    bool equal(const Object &left, const Object &right) const override { return of(left) == of(right); }
    bool different(const Object &left, const Object &right) const override { return of(left) != of(right); }
    qint64 id() const override { return T::GetId(); }
    QString staticName() const override { return T::GetStaticObjectName(); }
    bool movesWithoutThrowing() const override
    {
        return std::is_nothrow_move_constructible_v<
                   T> && std::is_nothrow_move_assignable_v<T> &&noexcept(std::declval<T &>().swap(std::declval<T &>()));
    }
    bool isMovableInContainers() const override
    {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        return !QTypeInfo<T>::isStatic;
#else
        return QTypeInfo<T>::isRelocatable;
#endif
    }

private:
    static Pointer pointer(std::optional<T> object)
    {
        return object ? std::make_unique<T>(std::move(*object)) : nullptr;
    }
    static T &of(Object &object)
    {
        return static_cast<T &>(object);
    }
    static const T &of(const Object &object)
    {
        return static_cast<const T &>(object);
    }

    Fill m_fill;
};

using ClassPointer = std::shared_ptr<const ClassUnderTest>;
Q_DECLARE_METATYPE(ClassPointer)

/// Adds a row for each class, with the columns
/// `name` (QString), `type` (ClassPointer), `id` (qint64), `newXml` and `firstMissing` (QString).
void addEveryClass();

/// The names of these rows.
const QStringList &everyClassName();
