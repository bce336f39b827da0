<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<dependencies>
    <dependency catalog="Probe_de"/>
</dependencies>
<context>
    <name>Chain</name>
    <message>
        <source>link</source>
        <translation>Glied</translation>
    </message>
</context>
</TS>
