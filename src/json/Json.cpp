// SPDX-License-Identifier: MIT
#include "json/Json.h"

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
Json::Json(bool value) : m_value(value) { }
Json::Json(int value) : m_value(qint64(value)) { }
Json::Json(qint64 value) : m_value(value) { }
Json::Json(quint64 value) : m_value(value) { }
Json::Json(double value) : m_value(value) { }
Json::Json(const QByteArray &text) : m_value(text) { }
Json::Json(const char *text) : m_value(QByteArray(text)) { }
Json::Json(Json &&other) noexcept = default;
Json &Json::operator=(Json &&other) noexcept = default;
Json::~Json() = default;

Json Json::emptyList()
{
    Json list;
    list.m_value = std::make_unique<List>();
    return list;
}

Json Json::emptyObject()
{
    Json object;
    object.m_value = std::make_unique<Object>();
    return object;
}

bool Json::isEmpty() const
{
    return (isList() && items().empty()) || (isObject() && members().empty());
}

Json &Json::append(Json &&value)
{
    return std::get<std::unique_ptr<List>>(m_value)->emplace_back(std::move(value));
}

Json &Json::insert(const QByteArray &key, Json &&value)
{
    return std::get<std::unique_ptr<Object>>(m_value)->emplace_back(Member{key, std::move(value)}).value;
}

const Json *Json::find(const QByteArray &key) const
{
    const auto found = memberOf(members(), key);
    return found == members().end() ? nullptr : &found->value;
}

std::optional<Json> Json::take(const QByteArray &key)
{
    Object &all = *std::get<std::unique_ptr<Object>>(m_value);
    const auto found = memberOf(all, key);
    if (found == all.end())
        return {};
    std::optional<Json> value = std::move(found->value);
    all.erase(found);
    return value;
}
