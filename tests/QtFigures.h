// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// What depends on the version of Qt. Everything else that the tests count or measure is the same.
namespace QtFigures {

constexpr bool isQt5 = QT_VERSION < QT_VERSION_CHECK(6, 0, 0);

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
/// How often QXmlStreamReader allocates memory for a node with an item and a value, whatever the library does.
constexpr int readerAllocationsPerNode = 0;

/// The most resident bytes that an element takes in QXmlStreamReader until it is closed, for each byte of the document.
constexpr int residentPerByteOfXml = 45;

/// What the tool takes at most: MiB for the results of 40 files in four threads, and bytes for each byte of the input
/// of `convert`.
constexpr int mostForResults = 20;
constexpr int convertPerByte = 180;
#else
// The reader allocates its text buffer anew after five of the six tags, with the size that it has.
constexpr int readerAllocationsPerNode = 5;

// Names on the reader's stack take 24 bytes each, not 16.
constexpr int residentPerByteOfXml = 60;

// A QString and a QList take 24 bytes each, not 8, so objects and lists of texts are larger. The process itself takes
// 1 MiB more.
constexpr int mostForResults = 28;
constexpr int convertPerByte = 220;
#endif

} // namespace QtFigures
