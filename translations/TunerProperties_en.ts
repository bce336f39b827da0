<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>QObject</name>
    <!-- Kinds of tuner, TunerProperties::Gettypes() -->
    <message>
        <source>MCP</source>
        <translation>MCP</translation>
    </message>
    <message>
        <source>SCP</source>
        <translation>SCP</translation>
    </message>
    <message>
        <source>FFP</source>
        <translation>FFP</translation>
    </message>
    <message>
        <source>Receiver</source>
        <translation>Receiver</translation>
    </message>
    <message>
        <source>DirectionFinder</source>
        <translation>Direction finder</translation>
    </message>
    <!-- Startup modes, StartupModes::GetStartupModes() -->
    <message>
        <source>Scan</source>
        <translation>Scan</translation>
    </message>
    <message>
        <source>FastScan</source>
        <translation>Fast scan</translation>
    </message>
    <message>
        <source>MScan</source>
        <translation>Memory scan (MScan)</translation>
    </message>
    <message>
        <source>FFM</source>
        <translation>Fixed frequency (FFM)</translation>
    </message>
    <message>
        <source>WFFM</source>
        <translation>Wideband fixed frequency (WFFM)</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>Step by step</translation>
    </message>
    <message>
        <source>DF</source>
        <translation>Direction finding</translation>
    </message>
    <message>
        <source>MSearch</source>
        <translation>Memory search (MSearch)</translation>
    </message>
    <message>
        <source>Polar</source>
        <translation>Polar display</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Search</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <!-- Kinds of value, ValueItem::GetChoiceValueItems() -->
    <message>
        <source>ValueBoolean</source>
        <translation>Yes or no</translation>
    </message>
    <message>
        <source>ValueFloat</source>
        <translation>Floating-point number</translation>
    </message>
    <message>
        <source>ValueInt</source>
        <translation>Integer (32-bit)</translation>
    </message>
    <message>
        <source>ValueInt64</source>
        <translation>Integer (64-bit)</translation>
    </message>
    <message>
        <source>ValueNumericFloat</source>
        <translation>Number with range (floating-point)</translation>
    </message>
    <message>
        <source>ValueNumericInt</source>
        <translation>Number with range (32-bit integer)</translation>
    </message>
    <message>
        <source>ValueNumericInt64</source>
        <translation>Number with range (64-bit integer)</translation>
    </message>
    <message>
        <source>ValueSelection</source>
        <translation>Selection</translation>
    </message>
    <message>
        <source>ValueString</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>ValueStringList</source>
        <translation>List of texts</translation>
    </message>
</context>
</TS>
