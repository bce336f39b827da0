// SPDX-License-Identifier: MIT
#include <tunerdocuments/Json.h>
#include <tunerdocuments/Path.h>

#include "Harness.h"

using namespace Fuzz;
using namespace TunerDocuments;

namespace {

// Items identified by one text, by two, by their position only, and by texts that contain special characters of paths.
const QString xml = QStringLiteral(
    R"(<TunerProperties Version="1.1" type="SCP" baseresource="b"><StartupModes><StartupMode>DF</StartupMode>)"
    R"(<StartupMode>Scan</StartupMode></StartupModes><BandwidthSelection><Name>w</Name><MaxBandwidth>1.00</MaxBandwidth>)"
    R"(</BandwidthSelection><Component type="t" name="c" optional="true"><Node id="n"><ValueItem><ValueInt id="i" )"
    R"(value="3"/></ValueItem><ValueItem><ValueInt id="i" value="4"/></ValueItem></Node><Node id="a,b=[c]/'d'"><ValueItem>)"
    R"(<ValueSelection id="i" value="1.50" text="t" index="1"><SelectionItem name="" value="1.50"/><SelectionItem )"
    R"(name="1" value="2.00"/></ValueSelection></ValueItem></Node></Component><Component type="t" name="d" )"
    R"(optional="false"><Node id="1"><ValueItem><ValueStringList id="s" value="a"><StringItem value="a"/><StringItem )"
    R"(value="\"/></ValueStringList></ValueItem></Node></Component></TunerProperties>)");

const JobXml::TunerProperties &document()
{
    static const JobXml::TunerProperties whole = [] {
        JobXml::TunerProperties object;
        require(object.SetXmlString(xml, true), "the document is valid");
        return object;
    }();
    return whole;
}

bool sameSteps(const QVector<JobXml::Step> &left, const QVector<JobXml::Step> &right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](const auto &one, const auto &other) {
        return one.member == other.member && one.index == other.index;
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    const QString path = QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
    if (path.contains(QChar(QChar::Null)))
        return 0; // no argument of a program has one
    try {
        const Paths::Target target = Paths::find(document(), path);
        require(!target.steps.isEmpty(), "what is found has a place");
        const auto member = Paths::at(document(), target.steps);
        require(member && member->GetName() == target.member.GetName(), "the steps lead to the member");
        const Paths::Target again = Paths::find(document(), target.path);
        require(sameSteps(again.steps, target.steps), "the full path leads to the same member");
        require(again.path == target.path, "the full path is the full path");
    } catch (const PathFailure &failure) {
        require(!failure.text().isEmpty(), "a failure is described");
    }
    return 0;
}
