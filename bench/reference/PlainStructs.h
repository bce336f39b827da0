// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QString>
#include <QVector>

namespace JobXml {
class TunerProperties;
}

/// A tuner description as plain data, on which the references work.
namespace Bench {

enum class Kind : qint8 {
    Boolean,
    Float,
    Int,
    Int64,
    NumericFloat,
    NumericInt,
    NumericInt64,
    Selection,
    String,
    StringList,
};

/// An item of a list; those of a string list have no number.
struct PlainItem
{
    QString text;
    double number = 0;
};

template <class Number>
struct PlainRange
{
    Number value = 0;
    Number min = 0;
    Number max = 0;
    Number step = 0;
};

/// A value of any kind, in one struct: the fields that a kind has no use for keep their defaults.
struct PlainValue
{
    Kind kind = Kind::Boolean;
    bool boolean = false;
    qint32 index = 0;
    QString id;
    QString text;
    PlainRange<qint64> whole; ///< Int, Int64, NumericInt, NumericInt64
    PlainRange<double> real; ///< Float, NumericFloat, Selection
    QVector<PlainItem> items;
};

struct PlainNode
{
    QString id;
    QVector<PlainValue> values;
};

struct PlainComponent
{
    QString type;
    QString name;
    QString displayName; ///< null if absent
    bool optional = false;
    QVector<PlainNode> nodes;
};

struct PlainBandwidth
{
    QString name;
    double max = 0;
};

/// Texts are null, the others empty if absent.
struct PlainDocument
{
    QString version;
    QString name;
    qint8 type = -1;
    QString baseresource;
    QString connectableResources;
    std::optional<qint32> quantity;
    QString parentBaseResource;
    std::optional<bool> hwProcessing;
    QVector<qint8> startupModes;
    QVector<PlainBandwidth> bandwidths;
    std::optional<quint64> maxFFPDelay;
    std::optional<bool> hrpanSupported;
    QVector<PlainComponent> components;
};

PlainDocument plain(const JobXml::TunerProperties &document);

bool operator==(const PlainDocument &left, const PlainDocument &right);

/// The names of the format, by index.
QString nameOfType(qint8 type);
QString nameOfMode(qint8 mode);
qint8 typeOfName(const QString &name);
qint8 modeOfName(const QString &name);

} // namespace Bench

Q_DECLARE_TYPEINFO(Bench::PlainItem, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(Bench::PlainValue, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(Bench::PlainNode, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(Bench::PlainComponent, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(Bench::PlainBandwidth, Q_MOVABLE_TYPE);
