// SPDX-License-Identifier: MIT
#include "model/Json.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

QJsonValue jsonValue(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QString:
        return value.toString().isNull() ? QJsonValue() : QJsonValue(value.toString());
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value.toString();
    default:
        return QJsonValue::fromVariant(value);
    }
}

QByteArray onLinesBetween(const char *brackets, const QByteArrayList &entries, const QByteArray &indent)
{
    const QByteArray lineFeed = '\n' + indent;
    return brackets[0] + lineFeed + "  " + entries.join(',' + lineFeed + "  ") + lineFeed + brackets[1];
}

} // namespace

QByteArray Json::value(const QVariant &value)
{
    const QByteArray inBrackets = QJsonDocument(QJsonArray{jsonValue(value)}).toJson(QJsonDocument::Compact);
    return inBrackets.mid(1, inBrackets.size() - 2).replace("\",\"", "\", \"");
}

QByteArray Json::hex(quint32 number)
{
    return "\"0x" + QByteArray::number(number, 16).rightJustified(8, '0').toUpper() + '"';
}

Json::Object &Json::Object::add(const char *key, const QByteArray &json)
{
    m_entries.append('"' + QByteArray(key) + "\": " + json);
    return *this;
}

QByteArray Json::Object::onOneLine() const
{
    return '{' + m_entries.join(", ") + '}';
}

QByteArray Json::Object::onLines(const QByteArray &indent) const
{
    return onLinesBetween("{}", m_entries, indent);
}

QByteArray Json::listOnLines(const QByteArrayList &items, const QByteArray &indent)
{
    return items.isEmpty() ? QByteArrayLiteral("[]") : onLinesBetween("[]", items, indent);
}
