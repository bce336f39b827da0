// SPDX-License-Identifier: MIT
#pragma once

#include <QIODevice>
#include <QString>

namespace REPORTGENERATOR {

/// Watches an XML document on its way to the reader, and ends it at an element with too many attributes.
///
/// QXmlStreamReader compares each attribute of an element with each other one, so that a document that is one long list
/// of attributes would keep it busy for hours. No element of a model has more than a dozen.
class AttributeWatch
{
public:
    static constexpr int Limit = 1024;

    /// How many of the next characters (or bytes) of the document may be read: all of them, or those up to the
    /// attribute that is one too many.
    template <typename Character>
    int readable(const Character *text, int size);

    bool isExceeded() const { return m_attributes > Limit; }

private:
    // An attribute takes five characters at least (` a=""`), so a tag that lies within a piece has fewer than Limit.
    // What is looked at is only what reaches from one piece into another: a small part of any ordinary document.
    static constexpr int PieceSize = 4 * Limit;

    enum class State : quint8 { OutsideOfTags, TagOpened, InTag, InQuotes };

    template <typename Character>
    int readablePiece(const Character *text, int size);
    bool take(ushort character);

    State m_state = State::OutsideOfTags;
    ushort m_quote = 0;
    int m_attributes = 0; // of the tag that is being read
};

/// A device that hands on what another device holds, as far as an AttributeWatch lets it.
class WatchedDevice : public QIODevice
{
public:
    explicit WatchedDevice(QIODevice &device);

    bool isExceeded() const { return m_watch.isExceeded(); }

    bool isSequential() const override { return true; }
    bool atEnd() const override { return isExceeded() || m_device.atEnd(); }

protected:
    qint64 readData(char *bytes, qint64 size) override;
    qint64 writeData(const char *bytes, qint64 size) override;

private:
    QIODevice &m_device;
    AttributeWatch m_watch;
};

} // namespace REPORTGENERATOR
