// SPDX-License-Identifier: MIT
#pragma once

#include "Documents.h"
#include "Encodings.h"

/// Documents for the tests of that class: with every member, with the mandatory members, and in rare states.
namespace TunerDocuments {

using namespace JobXml;

/// Type, base resource and one component.
inline TunerProperties minimalDocument()
{
    TunerProperties document;
    document.Settype(TunerProperties::type::Receiver);
    document.Setbaseresource(QStringLiteral("RX"));
    document.AppendComponent(aComponent(QStringLiteral("Pre")));
    return document;
}

/// All twelve members.
inline TunerProperties wholeDocument()
{
    TunerProperties document = minimalDocument();
    document.Setname(QStringLiteral("T"));
    document.SetconnectableResources(QStringLiteral("A;B"));
    document.Setquantity(-2);
    document.SetparentBaseResource(QStringLiteral("P"));
    document.SethwProcessing(true);
    document.GetStartupModes().SetStartupMode({StartupModes::StartupMode::Scan, StartupModes::StartupMode::Stop});
    document.AppendBandwidthSelection(aBandwidth());
    document.SetMaxFFPDelay(250);
    document.SetHRPANSupported(false);
    return document;
}

/// An empty document that does not validate.
inline TunerProperties withoutValidation()
{
    TunerProperties document;
    document.SetValidate(false);
    return document;
}

/// The minimal document with a bandwidth, but the flag of the list is clear. Only reading a snapshot clears a flag and
/// keeps the value.
inline TunerProperties withUnsetBandwidths(const BandwidthSelection &bandwidth = aBandwidth())
{
    TunerProperties document = minimalDocument();
    document.SetBandwidthSelection({bandwidth});
    readSnapshot(document,
                 bytes("D0 00" // type, base resource and components set
                       "00 00 00 06 00 31 00 2E 00 31" // version "1.1"
                       "00 00 00 00" // no component to append
                       "03 00 00 00 04 00 52 00 58")); // a receiver, "RX"
    return document;
}

/// The minimal document, but the flag of its list of components is clear.
inline TunerProperties withUnsetComponents()
{
    TunerProperties document = minimalDocument();
    readSnapshot(document,
                 bytes("C0 00" // type and base resource set
                       "00 00 00 06 00 31 00 2E 00 31"
                       "00 00 00 00 03 00 00 00 04 00 52 00 58"));
    return document;
}

/// A component whose check passes although it has no data.
inline Component componentWithEmptyList()
{
    Component component = aComponent();
    component.SetNode({});
    return component;
}

} // namespace TunerDocuments
