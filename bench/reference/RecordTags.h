// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// The tags of the format, see docs/formats.md.
namespace Bench::Tag {

constexpr quint32 document = 0xC10CBB5F;
constexpr quint32 version = 0xCCFEDFA1;

constexpr quint32 startupModes = 0x2A68BEF4;
constexpr quint32 bandwidthSelection = 0xC2483BA3;
constexpr quint32 maxFFPDelay = 0xC8B67267;
constexpr quint32 hrpanSupported = 0xC82D81E1;
constexpr quint32 component = 0x66BA8E61;
constexpr quint32 documentType = 0xA1F0EE2D;
constexpr quint32 baseresource = 0xE0CFAE8E;
constexpr quint32 connectableResources = 0x6ADAF7A6;
constexpr quint32 quantity = 0xA59D7D84;
constexpr quint32 parentBaseResource = 0x0BEE909A;
constexpr quint32 hwProcessing = 0x64D08C29;

constexpr quint32 startupMode = 0x627B74CE;
constexpr quint32 bandwidthName = 0x8C9FBCA8;
constexpr quint32 maxBandwidth = 0xA723FFDA;

constexpr quint32 node = 0xC5E53936;
constexpr quint32 componentType = 0x0BAD2053;
constexpr quint32 displayName = 0xA1939AA3;
constexpr quint32 optional = 0x44E09811;
constexpr quint32 valueItem = 0x4F71131F;
constexpr quint32 selectionItem = 0x4FB19F31;
constexpr quint32 stringItem = 0x2940EBDD;

/// Of the alternatives, in the order of Kind.
constexpr quint32 alternatives[] = {0xE8182C83, 0x07877B18, 0x4ACA6514, 0xC7AF86A5, 0x881D77BB,
                                    0x07114506, 0x8CD014A1, 0xAA5F786F, 0x022B9478, 0x491ED6FE};

// A tag belongs to a name and type.
constexpr quint32 id = 0x2B262DC9;
constexpr quint32 name = 0xCB4CF645;
constexpr quint32 text = 0xA323E10D;
constexpr quint32 index = 0x2128394B;
constexpr quint32 textValue = 0xCEFF51BA;
constexpr quint32 booleanValue = 0x89537E94;
constexpr quint32 doubleValue = 0xC14D665E;

/// Of value, min, max, step.
constexpr quint32 ofFloat[] = {0xE3DF649D, 0x655BA9DC, 0x81166ACB, 0xA8D464CF};
constexpr quint32 ofInt[] = {0x0BA44238, 0x685654A1, 0x25F6AFCC, 0x43766B23};
constexpr quint32 ofInt64[] = {0x64A03F86, 0x6A28E46A, 0x86123363, 0x27D34B73};

} // namespace Bench::Tag
