// SPDX-License-Identifier: MIT
#pragma once

#include <QDataStream>
#include <QString>
#include <QVector>

/// All settings of a stream that concern its bytes.
struct StreamForm
{
    int version;
    QDataStream::ByteOrder order;
    QDataStream::FloatingPointPrecision precision;

    void applyTo(QDataStream &stream) const
    {
        stream.setVersion(version);
        stream.setByteOrder(order);
        stream.setFloatingPointPrecision(precision);
    }

    QString text() const
    {
        return QStringLiteral("version %1, %2 endian, %3 precision")
            .arg(version)
            .arg(order == QDataStream::BigEndian ? QStringLiteral("big") : QStringLiteral("little"),
                 precision == QDataStream::SinglePrecision ? QStringLiteral("single") : QStringLiteral("double"));
    }
};

/// The versions in both byte orders and both precisions.
inline QVector<StreamForm> formsOfVersions(const QVector<int> &versions)
{
    QVector<StreamForm> forms;
    for (const int version : versions) {
        for (const auto order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
            for (const auto precision : {QDataStream::SinglePrecision, QDataStream::DoublePrecision})
                forms.append({version, order, precision});
        }
    }
    return forms;
}

inline QVector<StreamForm> everyForm()
{
    QVector<int> versions;
    for (int version = 1; version <= QDataStream::Qt_DefaultCompiledVersion; ++version)
        versions.append(version);
    return formsOfVersions(versions);
}
