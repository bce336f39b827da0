// SPDX-License-Identifier: MIT
#include "documents/Json.h"

#include <algorithm>
#include <utility>

namespace {

template <class Members>
auto memberOf(Members &members, const QByteArray &key)
{
    return std::find_if(members.begin(), members.end(), [&](const Json::Member &member) { return member.key == key; });
}

} // namespace

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
    list.variant() = std::make_unique<List>();
    return list;
}

Json Json::emptyObject()
{
    Json object;
    object.variant() = std::make_unique<Object>();
    return object;
}

bool Json::isEmpty() const
{
    return (isList() && items().empty()) || (isObject() && members().empty());
}

Json &Json::append(Json &&value)
{
    return std::get<std::unique_ptr<List>>(variant())->emplace_back(std::move(value));
}

Json &Json::insert(const QByteArray &key, Json &&value)
{
    return std::get<std::unique_ptr<Object>>(variant())->emplace_back(Member{key, std::move(value)}).value;
}

const Json *Json::find(const QByteArray &key) const
{
    const auto found = memberOf(members(), key);
    return found == members().end() ? nullptr : &found->value;
}

std::optional<Json> Json::take(const QByteArray &key)
{
    Object &all = *std::get<std::unique_ptr<Object>>(variant());
    const auto found = memberOf(all, key);
    if (found == all.end())
        return {};
    std::optional<Json> value = std::move(found->value);
    all.erase(found);
    return value;
}
