// SPDX-License-Identifier: MIT
#include "json/Json.h"

#include <algorithm>
#include <utility>

Json::Json() = default;
Json::Json(bool value) : JsonVariant(value) { }
Json::Json(int value) : JsonVariant(qint64(value)) { }
Json::Json(qint64 value) : JsonVariant(value) { }
Json::Json(quint64 value) : JsonVariant(value) { }
Json::Json(double value) : JsonVariant(value) { }
Json::Json(const QByteArray &text) : JsonVariant(text) { }
Json::Json(const char *text) : JsonVariant(QByteArray(text)) { }
Json::Json(Json &&other) noexcept = default;
Json &Json::operator=(Json &&other) noexcept = default;
Json::~Json() = default;

Json Json::emptyList()
{
    Json list;
    list.variant() = std::unique_ptr<List>();
    return list;
}

Json Json::emptyObject()
{
    Json object;
    object.variant() = std::unique_ptr<Object>();
    return object;
}

bool Json::isEmpty() const
{
    return (isList() && items().empty()) || (isObject() && members().empty());
}

Json &Json::append(Json &&value)
{
    return contentToChange<List>().emplace_back(std::move(value));
}

Json &Json::insert(const QByteArray &key, Json &&value)
{
    return contentToChange<Object>().emplace_back(Member{key, std::move(value)}).value;
}

const Json *Json::find(const QByteArray &key) const
{
    const Object &all = members();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Member &member) { return member.key == key; });
    return found == all.end() ? nullptr : &found->value;
}
