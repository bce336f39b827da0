// SPDX-License-Identifier: MIT
#pragma once

#include "tools/Tool.h"

/// The base of suites that read and change members of a document by their paths. It is the file f.json.
class MemberTest : public QObject
{
protected:
    void beginTest()
    {
        m_workshop = std::make_unique<Workshop>();
        m_workshop->write(QStringLiteral("f.json"), document);
    }

    /// The status, and the output or error of get.
    QString get(const QString &path)
    {
        const Run run = m_workshop->run({QStringLiteral("get"), QStringLiteral("f.json"), path});
        return QStringLiteral("%1 ").arg(run.status) + run.out + run.err;
    }

    /// The status, the output or error of set, and the differences after it.
    QString set(const QStringList &arguments)
    {
        m_workshop->write(QStringLiteral("before.json"), m_workshop->read(QStringLiteral("f.json")));
        const Run run = m_workshop->run(QStringList{QStringLiteral("set")} + arguments);
        const Run diff = m_workshop->run(line("diff before.json f.json"));
        return QStringLiteral("%1 ").arg(run.status) + run.out + run.err + diff.out + diff.err;
    }

    static constexpr char document[] = R"({"TunerProperties": {"Version": "1.1", "name": "  two\n lines", "type": "SCP",
    "baseresource": "", "hwProcessing": true, "quantity": -2, "connectableResources": null,
    "unset": {"parentBaseResource": "kept"},
    "StartupModes": {"StartupMode": ["Scan", "DF", null, 99]}, "MaxFFPDelay": "18446744073709551615",
    "BandwidthSelection": [{"Name": "a,b]=\"c\"", "MaxBandwidth": 0.1}],
    "Component": [
      {"type": "Filter", "name": "Pre", "optional": false, "Node": [
        {"id": "gain", "ValueItem": [
          {"ChoiceValueItem": "ValueNumericInt",
           "ValueNumericInt": {"id": "gain", "value": 5, "min": 0, "max": 10, "step": 1}},
          {"ChoiceValueItem": "ValueFloat", "ValueFloat": {"id": "gain", "value": 0.1}},
          {"ChoiceValueItem": "ValueString", "ValueString": {"id": "unit", "value": "dB"}}]},
        {"id": "mode", "ValueItem": [
          {"ChoiceValueItem": "ValueSelection", "ValueSelection": {"id": "mode", "value": "-Infinity", "text": "x",
           "index": 0, "SelectionItem": [{"name": "x", "value": 1}, {"name": "x", "value": 2}]}}]}]},
      {"type": "Filter", "name": "Post", "optional": true, "Node": [
        {"id": "1", "ValueItem": [{"ChoiceValueItem": "ValueInt64", "ValueInt64":
          {"id": "", "value": "-9223372036854775808"}}]}]},
      {"type": "Mixer", "name": "Pre", "optional": true, "Node": [
        {"id": "n", "ValueItem": [{"ChoiceValueItem": "ValueBoolean", "ValueBoolean": {"id": "i", "value": true}}]}]}
    ]}})";

    static constexpr char gain[] = "Component[type=Filter,name=Pre]/Node[id=gain]/ValueItem[1]/ValueNumericInt/value";

    std::unique_ptr<Workshop> m_workshop;
};
