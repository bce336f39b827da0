<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
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
        <translation>Empfänger</translation>
    </message>
    <message>
        <source>DirectionFinder</source>
        <translation>Peiler</translation>
    </message>
    <!-- Startup modes, StartupModes::GetStartupModes() -->
    <message>
        <source>Scan</source>
        <translation>Suchlauf</translation>
    </message>
    <message>
        <source>FastScan</source>
        <translation>Schneller Suchlauf</translation>
    </message>
    <message>
        <source>MScan</source>
        <translation>Speichersuchlauf (MScan)</translation>
    </message>
    <message>
        <source>FFM</source>
        <translation>Festfrequenz (FFM)</translation>
    </message>
    <message>
        <source>WFFM</source>
        <translation>Breitband-Festfrequenz (WFFM)</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>Schrittweise</translation>
    </message>
    <message>
        <source>DF</source>
        <translation>Peilung</translation>
    </message>
    <message>
        <source>MSearch</source>
        <translation>Speichersuche (MSearch)</translation>
    </message>
    <message>
        <source>Polar</source>
        <translation>Polardarstellung</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Halt</translation>
    </message>
    <!-- Kinds of value, ValueItem::GetChoiceValueItems() -->
    <message>
        <source>ValueBoolean</source>
        <translation>Ja oder Nein</translation>
    </message>
    <message>
        <source>ValueFloat</source>
        <translation>Gleitkommazahl</translation>
    </message>
    <message>
        <source>ValueInt</source>
        <translation>Ganzzahl (32 Bit)</translation>
    </message>
    <message>
        <source>ValueInt64</source>
        <translation>Ganzzahl (64 Bit)</translation>
    </message>
    <message>
        <source>ValueNumericFloat</source>
        <translation>Zahl mit Bereich (Gleitkommazahl)</translation>
    </message>
    <message>
        <source>ValueNumericInt</source>
        <translation>Zahl mit Bereich (Ganzzahl, 32 Bit)</translation>
    </message>
    <message>
        <source>ValueNumericInt64</source>
        <translation>Zahl mit Bereich (Ganzzahl, 64 Bit)</translation>
    </message>
    <message>
        <source>ValueSelection</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>ValueString</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>ValueStringList</source>
        <translation>Liste von Texten</translation>
    </message>
</context>
</TS>
