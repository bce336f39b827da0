// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <variant>
#include <vector>

#include <QByteArray>

/// A JSON value in memory; texts and keys are UTF-8. The members of an object keep their order.
class Json
{
public:
    struct Member;
    using List = std::vector<Json>;
    using Object = std::vector<Member>;

    Json(); ///< null
    Json(bool value);
    Json(int value);
    Json(qint64 value);
    Json(quint64 value);
    Json(double value);
    Json(const QByteArray &text);
    Json(const char *text);
    Json(Json &&other) noexcept;
    Json &operator=(Json &&other) noexcept;
    ~Json();
    static Json emptyList();
    static Json emptyObject();

    bool isNull() const { return is<std::monostate>(); }
    bool isBoolean() const { return is<bool>(); }
    bool isWholeNumber() const { return is<qint64>() || is<quint64>(); }
    bool isNegative() const { return is<qint64>() && std::get<qint64>(m_value) < 0; } ///< as a whole number
    bool isReal() const { return is<double>(); }
    bool isNumber() const { return isWholeNumber() || isReal(); }
    bool isText() const { return is<QByteArray>(); }
    bool isList() const { return is<std::unique_ptr<List>>(); }
    bool isObject() const { return is<std::unique_ptr<Object>>(); }

    /// The value, which must be of that type. Numbers are converted by static_cast.
    bool toBoolean() const { return std::get<bool>(m_value); }
    const QByteArray &text() const { return std::get<QByteArray>(m_value); }
    const List &items() const { return *std::get<std::unique_ptr<List>>(m_value); }
    const Object &members() const { return *std::get<std::unique_ptr<Object>>(m_value); }
    template <class T>
    T toNumber() const
    {
        if (const auto *const whole = std::get_if<qint64>(&m_value))
            return static_cast<T>(*whole);
        if (const auto *const positive = std::get_if<quint64>(&m_value))
            return static_cast<T>(*positive);
        return static_cast<T>(std::get<double>(m_value));
    }

    /// Whether it is a list or an object with nothing in it.
    bool isEmpty() const;

    /// Adds an item to a list, and returns it.
    Json &append(Json &&value);

    /// Adds a member to an object, which has none of that key, and returns its value.
    Json &insert(const QByteArray &key, Json &&value);

    /// The value of that key in an object; null if there is none.
    const Json *find(const QByteArray &key) const;

    /// Removes that member from an object, and returns its value.
    std::optional<Json> take(const QByteArray &key);

private:
    template <class T>
    bool is() const
    {
        return std::holds_alternative<T>(m_value);
    }

    // Large values are held by pointer, so a value takes 16 bytes.
    std::variant<std::monostate, bool, qint64, quint64, double, QByteArray, std::unique_ptr<List>,
                 std::unique_ptr<Object>>
        m_value;
};

struct Json::Member
{
    QByteArray key;
    Json value;
};
