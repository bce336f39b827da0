// SPDX-License-Identifier: MIT
#include <jobxml/BandwidthSelection.h>

#include "framework/Hash.h"
#include "framework/NewObject.h"
#include "framework/Scalar.h"
#include "framework/Table.h"
#include "module/UnitStatics.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("BandwidthSelection"));

struct BandwidthSelectionData
{
    QString name;
    double maxBandwidth = 0.0;
};

// clang-format off
namespace row {
constexpr Scalar Name{        0, "Name",         0x8C9FBCA8, &BandwidthSelectionData::name,         Mandatory | Identifies};
constexpr Scalar MaxBandwidth{1, "MaxBandwidth", 0xA723FFDA, &BandwidthSelectionData::maxBandwidth, Mandatory};
} // namespace row

constexpr Table members{row::Name, row::MaxBandwidth};
constexpr ClassInfo bandwidthSelection = describe<BandwidthSelection, members>(unitStatics.objectName, 0x09F7EAA9);
// clang-format on

} // namespace

// clang-format off
BandwidthSelection::BandwidthSelection() : DataObject(bandwidthSelection) {}
BandwidthSelection::BandwidthSelection(const BandwidthSelection &other) = default;
BandwidthSelection::BandwidthSelection(BandwidthSelection &&other) noexcept = default;
BandwidthSelection &BandwidthSelection::operator=(const BandwidthSelection &other) noexcept = default;
BandwidthSelection &BandwidthSelection::operator=(BandwidthSelection &&other) noexcept = default;
BandwidthSelection::~BandwidthSelection() = default;

bool BandwidthSelection::operator==(const BandwidthSelection &other) const { return areEqual(*this, other); }
bool BandwidthSelection::operator!=(const BandwidthSelection &other) const { return !areEqual(*this, other); }
void BandwidthSelection::swap(BandwidthSelection &other) noexcept { ObjectAccess::swapBlocks(*this, other); }
HashValue qHash(const BandwidthSelection &object, HashValue seed) { return hashOf(object, seed); }

std::optional<BandwidthSelection> BandwidthSelection::fromXml(const QString &xml, QString *error) { return newFromXml<BandwidthSelection>(xml, error); }
std::optional<BandwidthSelection> BandwidthSelection::fromBinary(const QByteArray &representation, QString *error, const ReadLimits &limits)
{
    return newFromBinary<BandwidthSelection>(representation, error, limits);
}

qint64 BandwidthSelection::GetId() { return bandwidthSelection.identifier; }
QString BandwidthSelection::GetStaticObjectName() { return unitStatics.objectName; }

QString BandwidthSelection::GetName() const                      { return row::Name.get(*this); }
void BandwidthSelection::SetName(QString value)                  { row::Name.set(*this, std::move(value)); }
bool BandwidthSelection::IsNameSet() const                       { return row::Name.isSet(*this); }
void BandwidthSelection::ResetName()                             { row::Name.reset(*this); }
QString BandwidthSelection::GetDefaultName() const               { return row::Name.defaultValue(); }
bool BandwidthSelection::IsValidName(const QString &value) const { return row::Name.isValid(value); }

double BandwidthSelection::GetMaxBandwidth() const                      { return row::MaxBandwidth.get(*this); }
void BandwidthSelection::SetMaxBandwidth(double value)                  { row::MaxBandwidth.set(*this, value); }
bool BandwidthSelection::IsMaxBandwidthSet() const                      { return row::MaxBandwidth.isSet(*this); }
void BandwidthSelection::ResetMaxBandwidth()                            { row::MaxBandwidth.reset(*this); }
double BandwidthSelection::GetDefaultMaxBandwidth() const               { return row::MaxBandwidth.defaultValue(); }
bool BandwidthSelection::IsValidMaxBandwidth(const double &value) const { return row::MaxBandwidth.isValid(value); }
// clang-format on

} // namespace JobXml
