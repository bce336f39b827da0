// SPDX-License-Identifier: MIT
#pragma once

#include "OutOfMemory.h"

/// Where each version of Qt does not survive running out of memory.
namespace OutOfMemory::InQt {

// For a thread that Qt did not start, the first QObject, such as a QIODevice, allocates data of the thread, and Qt
// assumes that the allocation succeeds.
inline const QVector<KnownPlace> firstQObject{{Outcome::Ended, "QObject::QObject"}};

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
// The constructor keeps two stacks by bare pointers; a later failure loses them.
inline const QVector<KnownPlace> xmlReader{{Outcome::Leaked, "QXmlStreamReader::QXmlStreamReader", 2}};

// The constructor tries out its encoder before anyone owns it.
inline const QVector<KnownPlace> xmlWriter{{Outcome::Leaked, "QXmlStreamWriter::QXmlStreamWriter", 1}};

// An element on the writer's stack that has no name yet: closing it accesses invalid memory.
inline const QVector<KnownPlace> xmlWriterAfterwards{{Outcome::Ended, "QXmlStreamWriter::writeStartElement"}};

// The name of the first file is encoded for the system. Qt then loads the codec of the locale, and does without what
// ICU has no memory for.
inline const QVector<KnownPlace> firstFile =
    firstQObject + QVector<KnownPlace>{{Outcome::Unnoticed, "QTextCodec::codecForLocale"}};
#else
// The constructor keeps two stacks by bare pointers; a later failure loses them. It also reserves room for a list, and
// does without if there is no memory, and fills a hash table by a function that must not throw.
inline const QVector<KnownPlace> xmlReader{{Outcome::Leaked, "QXmlStreamReader::QXmlStreamReader", 2},
                                           {Outcome::Unnoticed, "QXmlStreamReader::QXmlStreamReader"},
                                           {Outcome::Ended, "QXmlStreamReader::QXmlStreamReader"}};

inline const QVector<KnownPlace> xmlWriter{};
inline const QVector<KnownPlace> xmlWriterAfterwards{};
inline const QVector<KnownPlace> firstFile = firstQObject;
#endif

} // namespace OutOfMemory::InQt
