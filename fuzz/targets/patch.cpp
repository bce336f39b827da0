// SPDX-License-Identifier: MIT
#include <tunerdocuments/Diff.h>
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Patch.h>

#include "documents/json/JsonForm.h"

#include "Harness.h"

using namespace Fuzz;
using namespace TunerDocuments;
using JobXml::TunerProperties;

namespace {

// Every kind of value, items with the same identity and without any, flags that no setter makes, and an alternative
// that is not chosen.
const QByteArray json =
    R"({"TunerProperties":{"Version":"1.1","type":"SCP","baseresource":"b","StartupModes":{"StartupMode":["DF","Scan"]},)"
    R"("BandwidthSelection":[{"Name":"w","MaxBandwidth":1.5},{"Name":"x","MaxBandwidth":2.5},{"Name":"w"}],)"
    R"("Component":[{"type":"t","name":"c","optional":true,"Node":[{"id":"n","ValueItem":[)"
    R"({"ChoiceValueItem":"ValueInt","ValueInt":{"id":"i","value":3},"ValueFloat":{"id":"i","value":0.5}},{}]},)"
    R"({"id":"m","ValueItem":[{"ChoiceValueItem":"ValueSelection","ValueSelection":{"SelectionItem":[)"
    R"({"name":"a","value":1.0},{"name":"b","value":2.0}],"id":"s","value":1.0,"text":"a","index":0}},)"
    R"({"ChoiceValueItem":"ValueStringList","ValueStringList":{"id":"l","value":"v","StringItem":[{"value":"v"}]}}]}]},)"
    R"({"displayName":"d","unset":{"optional":true}}],"unset":{"quantity":5}}})";

const TunerProperties &document()
{
    static const TunerProperties whole = [] {
        TunerProperties object;
        JsonForm::read(object, json);
        object.SetValidate(false);
        return object;
    }();
    return whole;
}

bool isApplied(const Patch &patch, TunerProperties &target, Patch::Direction direction = Patch::Direction::Forward)
{
    try {
        patch.apply(target, direction);
        return true;
    } catch (const PatchFailure &failure) {
        require(!failure.text().isEmpty(), "a failure is described");
        return false;
    }
}

bool areAlike(const TunerProperties &first, const TunerProperties &second)
{
    return findDifferences(first, second).isEmpty();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    const auto lines = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    Patch patch;
    try {
        patch = Patch::fromJson(lines, QStringLiteral("changes"));
    } catch (const DocumentError &error) {
        require(!error.text().isEmpty(), "an error is described");
        return 0;
    }
    TunerProperties patched = document();
    if (!isApplied(patch, patched)) {
        require(areAlike(patched, document()), "changes that do not fit leave the document as it was");
        return 0;
    }
    QByteArray written;
    findDifferences(document(), patched, [&](const Difference &difference) {
        written += toJson(difference, QStringLiteral("changes")) + '\n';
    });
    TunerProperties again = document();
    const Patch same = Patch::fromJson(written, QStringLiteral("changes"));
    require(isApplied(same, again) && areAlike(again, patched), "the differences make the same document");
    require(isApplied(same, again, Patch::Direction::Backward) && areAlike(again, document()),
            "the differences are undone");
    return 0;
}
