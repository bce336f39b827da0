// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <variant>
#include <vector>

#include <QByteArray>

class Json;

/// A member of a JSON object; the key is UTF-8.
struct JsonMember;

using JsonList = std::vector<Json>;
using JsonObject = std::vector<JsonMember>;

/// What a JSON value holds. Large values are held by pointer, so it takes 16 bytes, of which 4 are padding that a
/// derived class can use.
using JsonVariant = std::variant<std::monostate, bool, qint64, quint64, double, QByteArray, std::unique_ptr<JsonList>,
                                 std::unique_ptr<JsonObject>>;

/// A JSON value in memory; texts and keys are UTF-8. The members of an object keep their order.
///
/// A value that was read knows its place in the text, so that it can be replaced or removed there and everything else
/// stays as it is.
class Json : private JsonVariant
{
public:
    using Member = JsonMember;
    using List = JsonList;
    using Object = JsonObject;

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
    bool isNegative() const { return is<qint64>() && std::get<qint64>(variant()) < 0; } ///< as a whole number
    bool isReal() const { return is<double>(); }
    bool isNumber() const { return isWholeNumber() || isReal(); }
    bool isText() const { return is<QByteArray>(); }
    bool isList() const { return is<std::unique_ptr<List>>(); }
    bool isObject() const { return is<std::unique_ptr<Object>>(); }

    /// The value, which must be of that type. Numbers are converted by static_cast.
    bool toBoolean() const { return std::get<bool>(variant()); }
    const QByteArray &text() const { return std::get<QByteArray>(variant()); }
    const List &items() const;
    const Object &members() const;
    template <class T>
    T toNumber() const
    {
        if (const auto *const whole = std::get_if<qint64>(&variant()))
            return static_cast<T>(*whole);
        if (const auto *const positive = std::get_if<quint64>(&variant()))
            return static_cast<T>(*positive);
        return static_cast<T>(std::get<double>(variant()));
    }

    /// Whether it is a list or an object with nothing in it.
    bool isEmpty() const;

    /// Adds an item to a list, and returns it.
    Json &append(Json &&value);

    /// Adds a member to an object, and returns its value. find() returns the first one of a key.
    Json &insert(const QByteArray &key, Json &&value);

    /// The first value of that key in an object; null if there is none.
    const Json *find(const QByteArray &key) const;

    /// \name Its place in the text that it was read from
    /// Offsets in bytes; all are 0 for a value that was not read from a text.
    /// @{
    quint32 textBegin() const { return m_textBegin; } ///< of its first byte
    quint32 textEnd() const { return m_textEnd; } ///< after its last byte

    /// Of a member of an object: where its key begins, with the quotes. The member ends at textEnd(). Of other values:
    /// textBegin().
    quint32 memberBegin() const { return m_memberBegin; }

    /// For the reader of texts.
    void setPlace(quint32 memberBegin, quint32 textBegin, quint32 textEnd)
    {
        m_memberBegin = memberBegin;
        m_textBegin = textBegin;
        m_textEnd = textEnd;
    }
    /// @}

    /// Whether it is a member of an object that has another one of that key before it.
    bool isDuplicate() const { return m_isDuplicate; }
    void setDuplicate() { m_isDuplicate = true; } ///< for the reader of texts

private:
    const JsonVariant &variant() const { return *this; }
    JsonVariant &variant() { return *this; }

    /// A list or an object without content has allocated nothing: a text may have one for every three bytes.
    template <class Content>
    const Content &contentOf() const
    {
        static const Content none;
        const auto &content = std::get<std::unique_ptr<Content>>(variant());
        return content ? *content : none;
    }

    template <class Content>
    Content &contentToChange()
    {
        auto &content = std::get<std::unique_ptr<Content>>(variant());
        if (!content)
            content = std::make_unique<Content>();
        return *content;
    }

    template <class T>
    bool is() const
    {
        return std::holds_alternative<T>(variant());
    }

    bool m_isDuplicate = false; // also in the padding
    quint32 m_memberBegin = 0;
    quint32 m_textBegin = 0;
    quint32 m_textEnd = 0;
};

struct JsonMember
{
    QByteArray key;
    Json value;
};

inline const JsonList &Json::items() const
{
    return contentOf<List>();
}

inline const JsonObject &Json::members() const
{
    return contentOf<Object>();
}
