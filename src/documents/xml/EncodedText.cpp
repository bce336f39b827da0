// SPDX-License-Identifier: MIT
#include "documents/xml/EncodedText.h"

#include <QRegularExpression>
#include <QTextCodec>

#include "text/Printable.h"

namespace TunerDocuments {

namespace {

constexpr int utf8Mib = 106; // the number by which IANA knows it; see QTextCodec::mibEnum()

/// The encoding that the declaration names; null if it names none, or none that is known.
QTextCodec *declaredCodec(const QByteArray &document)
{
    constexpr int longest = 200;
    static const QRegularExpression declaration(
        QStringLiteral(R"(^\s*<\?xml\s[^>]*\bencoding\s*=\s*["']([A-Za-z0-9._:-]+)["'])"));
    const auto match = declaration.match(QString::fromLatin1(document.left(longest)));
    return match.hasMatch() ? QTextCodec::codecForName(match.captured(1).toLatin1()) : nullptr;
}

QTextCodec *codecOf(const QByteArray &document)
{
    // Before UTF-16, whose marks are the first bytes of these.
    if (document.startsWith(QByteArray("\0\0\xFE\xFF", 4)) || document.startsWith(QByteArray("\0\0\0<", 4)))
        return QTextCodec::codecForName("UTF-32BE");
    if (document.startsWith(QByteArray("\xFF\xFE\0\0", 4)) || document.startsWith(QByteArray("<\0\0\0", 4)))
        return QTextCodec::codecForName("UTF-32LE");
    if (document.startsWith("\xFE\xFF") || document.startsWith(QByteArray("\0<", 2)))
        return QTextCodec::codecForName("UTF-16BE");
    if (document.startsWith("\xFF\xFE") || document.startsWith(QByteArray("<\0", 2)))
        return QTextCodec::codecForName("UTF-16LE");
    // Most documents begin like this. Compiling the regular expression takes as long as reading a small one.
    if (document.startsWith("\xEF\xBB\xBF") || document.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"))
        return nullptr;
    QTextCodec *const declared = declaredCodec(document);
    return declared && declared->mibEnum() != utf8Mib ? declared : nullptr;
}

QByteArray encoded(QTextCodec *codec, const QString &text)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return codec->fromUnicode(text.constData(), text.size(), &state);
}

} // namespace

QString textOf(uint character)
{
    if (!QChar::requiresSurrogates(character))
        return QString(QChar(ushort(character)));
    return QString(QChar(QChar::highSurrogate(character))) + QChar(QChar::lowSurrogate(character));
}

EncodedText::EncodedText(const QByteArray &document)
    : m_codec(codecOf(document)), m_document(document), m_utf8(document)
{
    if (!m_codec)
        return;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    m_utf8 = m_codec->toUnicode(document.constData(), document.size(), &state).toUtf8();
}

bool EncodedText::isExact() const
{
    return m_codec ? encode(m_utf8) == m_document : Printable::isUtf8(m_document);
}

QString EncodedText::encoding() const
{
    return m_codec ? QString::fromLatin1(m_codec->name()) : QStringLiteral("UTF-8");
}

QByteArray EncodedText::encode(const QByteArray &utf8) const
{
    if (!m_codec)
        return utf8;
    // QString::fromUtf8() drops a byte order mark at the beginning, which is a part of the document here.
    const bool hasMark = utf8.startsWith("\xEF\xBB\xBF");
    const QString text =
        (hasMark ? QString(QChar(QChar::ByteOrderMark)) : QString()) + QString::fromUtf8(hasMark ? utf8.mid(3) : utf8);
    return encoded(m_codec, text);
}

bool EncodedText::canEncode(uint character) const
{
    return !m_codec || m_codec->canEncode(textOf(character));
}

} // namespace TunerDocuments
