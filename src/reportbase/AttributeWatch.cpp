// SPDX-License-Identifier: MIT
#include "AttributeWatch.h"

#include <algorithm>
#include <limits>

namespace REPORTGENERATOR {

namespace {

ushort codeOf(char character)
{
    return uchar(character);
}

ushort codeOf(QChar character)
{
    return character.unicode();
}

/// The position of the last '<', or `size` if there is none.
template <typename Character>
int lastOpening(const Character *text, int from, int size)
{
    for (int i = size - 1; i >= from; --i) {
        if (codeOf(text[i]) == '<')
            return i;
    }
    return size;
}

} // namespace

/// Returns false for the attribute that is one too many. Comments and the like may be taken for a tag here, which does
/// not matter: they would have to hold more than a thousand '=' and no '>'.
bool AttributeWatch::take(ushort character)
{
    switch (m_state) {
    case State::OutsideOfTags:
        if (character == '<')
            m_state = State::TagOpened;
        break;
    case State::TagOpened: {
        const bool isStartTag = character != '/' && character != '!' && character != '?';
        m_state = isStartTag ? State::InTag : State::OutsideOfTags;
        m_attributes = 0;
        break;
    }
    case State::InTag:
        if (character == '"' || character == '\'') {
            m_quote = character;
            m_state = State::InQuotes;
        } else if (character == '=') {
            return ++m_attributes <= Limit;
        } else if (character == '>') {
            m_state = State::OutsideOfTags;
        }
        break;
    case State::InQuotes:
        if (character == m_quote)
            m_state = State::InTag;
        break;
    }
    return true;
}

template <typename Character>
int AttributeWatch::readablePiece(const Character *text, int size)
{
    int i = 0;
    for (; i < size && m_state != State::OutsideOfTags; ++i) {
        if (!take(codeOf(text[i])))
            return i;
    }
    for (i = lastOpening(text, i, size); i < size; ++i) {
        if (!take(codeOf(text[i])))
            return i;
    }
    return size;
}

template <typename Character>
int AttributeWatch::readable(const Character *text, int size)
{
    for (int done = 0; done < size;) {
        const int piece = std::min(PieceSize, size - done);
        const int taken = readablePiece(text + done, piece);
        done += taken;
        if (taken < piece)
            return done;
    }
    return size;
}

template int AttributeWatch::readable(const char *text, int size);
template int AttributeWatch::readable(const QChar *text, int size);

WatchedDevice::WatchedDevice(QIODevice &device) : m_device(device)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 WatchedDevice::readData(char *bytes, qint64 size)
{
    if (isExceeded())
        return -1;
    const qint64 read = m_device.read(bytes, std::min(size, qint64(std::numeric_limits<int>::max())));
    return read <= 0 ? read : m_watch.readable(bytes, int(read));
}

qint64 WatchedDevice::writeData(const char *, qint64)
{
    return -1;
}

} // namespace REPORTGENERATOR
