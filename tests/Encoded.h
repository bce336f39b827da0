// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// The bytes of a text, including a byte order mark. Encodings with a byte for each character must have these
/// characters where Latin-1 has them.
inline QByteArray encoded(const QByteArray &encoding, const QString &text)
{
    if (encoding == "UTF-8")
        return text.toUtf8();
    if (encoding == "UTF-16")
        return encoded("UTF-16LE", QChar(QChar::ByteOrderMark) + text);
    if (!encoding.startsWith("UTF-"))
        return text.toLatin1();
    const int size = encoding.startsWith("UTF-16") ? 2 : 4;
    const bool isLittleEndian = encoding.endsWith("LE");
    QByteArray bytes;
    const auto append = [&](uint number) {
        for (int i = 0; i < size; ++i)
            bytes.append(char(number >> 8 * (isLittleEndian ? i : size - 1 - i) & 0xFF));
    };
    if (size == 2) {
        for (const QChar unit : text)
            append(unit.unicode());
    } else {
        const auto characters = text.toUcs4();
        for (const uint character : characters)
            append(character);
    }
    return bytes;
}
