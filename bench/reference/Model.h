// SPDX-License-Identifier: MIT
// The tags and names of the model, made by scripts/model.sh.
// clang-format off
#pragma once

#include <array>

#include <QtGlobal>

namespace Bench::Tag {

constexpr quint32 document = 0xC10CBB5F;
constexpr quint32 version = 0xCCFEDFA1;

namespace TunerProperties {
constexpr quint32 StartupModes = 0x2A68BEF4;
constexpr quint32 BandwidthSelection = 0xC2483BA3;
constexpr quint32 MaxFFPDelay = 0xC8B67267;
constexpr quint32 HRPANSupported = 0xC82D81E1;
constexpr quint32 Component = 0x66BA8E61;
constexpr quint32 name = 0xCB4CF645;
constexpr quint32 type = 0xA1F0EE2D;
constexpr quint32 baseresource = 0xE0CFAE8E;
constexpr quint32 connectableResources = 0x6ADAF7A6;
constexpr quint32 quantity = 0xA59D7D84;
constexpr quint32 parentBaseResource = 0x0BEE909A;
constexpr quint32 hwProcessing = 0x64D08C29;
} // namespace TunerProperties

namespace StartupModes {
constexpr quint32 StartupMode = 0x627B74CE;
} // namespace StartupModes

namespace BandwidthSelection {
constexpr quint32 Name = 0x8C9FBCA8;
constexpr quint32 MaxBandwidth = 0xA723FFDA;
} // namespace BandwidthSelection

namespace Component {
constexpr quint32 Node = 0xC5E53936;
constexpr quint32 type = 0x0BAD2053;
constexpr quint32 name = 0xCB4CF645;
constexpr quint32 displayName = 0xA1939AA3;
constexpr quint32 optional = 0x44E09811;
} // namespace Component

namespace Node {
constexpr quint32 ValueItem = 0x4F71131F;
constexpr quint32 id = 0x2B262DC9;
} // namespace Node

namespace ValueItem {
constexpr quint32 ValueBoolean = 0xE8182C83;
constexpr quint32 ValueFloat = 0x07877B18;
constexpr quint32 ValueInt = 0x4ACA6514;
constexpr quint32 ValueInt64 = 0xC7AF86A5;
constexpr quint32 ValueNumericFloat = 0x881D77BB;
constexpr quint32 ValueNumericInt = 0x07114506;
constexpr quint32 ValueNumericInt64 = 0x8CD014A1;
constexpr quint32 ValueSelection = 0xAA5F786F;
constexpr quint32 ValueString = 0x022B9478;
constexpr quint32 ValueStringList = 0x491ED6FE;
} // namespace ValueItem

namespace ValueBoolean {
constexpr quint32 id = 0x2B262DC9;
constexpr quint32 value = 0x89537E94;
} // namespace ValueBoolean

namespace ValueFloat {
constexpr quint32 id = 0x2B262DC9;
constexpr quint32 value = 0xE3DF649D;
} // namespace ValueFloat

namespace ValueInt {
constexpr quint32 id = 0x2B262DC9;
constexpr quint32 value = 0x0BA44238;
} // namespace ValueInt

namespace ValueInt64 {
constexpr quint32 id = 0x2B262DC9;
constexpr quint32 value = 0x64A03F86;
} // namespace ValueInt64

namespace ValueNumericFloat {
constexpr quint32 id = 0x2B262DC9;
constexpr quint32 value = 0xE3DF649D;
constexpr quint32 min = 0x655BA9DC;
constexpr quint32 max = 0x81166ACB;
constexpr quint32 step = 0xA8D464CF;
} // namespace ValueNumericFloat

namespace ValueNumericInt {
constexpr quint32 id = 0x2B262DC9;
constexpr quint32 value = 0x0BA44238;
constexpr quint32 min = 0x685654A1;
constexpr quint32 max = 0x25F6AFCC;
constexpr quint32 step = 0x43766B23;
} // namespace ValueNumericInt

namespace ValueNumericInt64 {
constexpr quint32 id = 0x2B262DC9;
constexpr quint32 value = 0x64A03F86;
constexpr quint32 min = 0x6A28E46A;
constexpr quint32 max = 0x86123363;
constexpr quint32 step = 0x27D34B73;
} // namespace ValueNumericInt64

namespace ValueSelection {
constexpr quint32 SelectionItem = 0x4FB19F31;
constexpr quint32 id = 0x2B262DC9;
constexpr quint32 value = 0xC14D665E;
constexpr quint32 text = 0xA323E10D;
constexpr quint32 index = 0x2128394B;
} // namespace ValueSelection

namespace SelectionItem {
constexpr quint32 name = 0xCB4CF645;
constexpr quint32 value = 0xC14D665E;
} // namespace SelectionItem

namespace ValueString {
constexpr quint32 id = 0x2B262DC9;
constexpr quint32 value = 0xCEFF51BA;
} // namespace ValueString

namespace ValueStringList {
constexpr quint32 StringItem = 0x2940EBDD;
constexpr quint32 id = 0x2B262DC9;
constexpr quint32 value = 0xCEFF51BA;
} // namespace ValueStringList

namespace StringItem {
constexpr quint32 value = 0xCEFF51BA;
} // namespace StringItem

/// Of the alternatives, in the order of their bits.
constexpr quint32 alternatives[] = {
    0xE8182C83,
    0x07877B18,
    0x4ACA6514,
    0xC7AF86A5,
    0x881D77BB,
    0x07114506,
    0x8CD014A1,
    0xAA5F786F,
    0x022B9478,
    0x491ED6FE,
};

} // namespace Bench::Tag

namespace Bench {

constexpr std::array typeNames{
    "MCP",
    "SCP",
    "FFP",
    "Receiver",
    "DirectionFinder",
};

constexpr std::array modeNames{
    "Scan",
    "FastScan",
    "MScan",
    "FFM",
    "WFFM",
    "Step",
    "DF",
    "MSearch",
    "Polar",
    "Search",
    "Stop",
};

} // namespace Bench
