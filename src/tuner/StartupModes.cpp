// SPDX-License-Identifier: MIT
#include <jobxml/StartupModes.h>

#include <algorithm>

#include <QCoreApplication>

#include "framework/Hash.h"
#include "framework/ListOf.h"
#include "framework/NewObject.h"
#include "framework/Table.h"
#include "framework/XmlOutput.h"
#include "module/NameList.h"
#include "module/UnitStatics.h"

namespace JobXml {

namespace {

const UnitStatics unitStatics(QLatin1String("StartupModes"));

const NameList modeNames({
    QLatin1String("Scan"),
    QLatin1String("FastScan"),
    QLatin1String("MScan"),
    QLatin1String("FFM"),
    QLatin1String("WFFM"),
    QLatin1String("Step"),
    QLatin1String("DF"),
    QLatin1String("MSearch"),
    QLatin1String("Polar"),
    QLatin1String("Search"),
    QLatin1String("Stop"),
});

using Mode = StartupModes::StartupMode;

bool isMode(Mode mode)
{
    return modeNames.contains(int(mode));
}

Mode modeOf(const QString &name)
{
    static_assert(int(Mode::Invalid) == NameList::notFound, "an unknown name is the invalid mode");
    return Mode(modeNames.value(name));
}

struct StartupModesData
{
    ItemList<Mode> modes;
    QStringList ownNames; // always empty; see IsValidStartupMode()
};

// Departs: holds values instead of objects. Modes are encoded as their names; in snapshots, as their values.
class ModeList final : public ListOf<StartupModesData, Mode>
{
public:
    constexpr ModeList(int bit, const char *name, quint32 tag, ItemList<Mode> StartupModesData::*field, Traits traits)
        : ListOf(bit, name, tag, field, traits | MayBeInvalid)
    {
    }

    bool isInvalid(Block &block) const override
    {
        const QVector<Mode> &modes = detachedItems(block);
        return !std::all_of(modes.begin(), modes.end(), isMode);
    }

    MemberKind kind() const override { return MemberKind::EnumerationList; }
    QStringList names() const override { return modeNames.names(); }
    QVariant value(const Block *block) const override
    {
        QVariantList values;
        if (block) {
            for (const Mode mode : field(*block))
                values.append(modeNames.variant(int(mode), int(Mode::Invalid)));
        }
        return values;
    }
    bool setValue(DataObject &object, const QVariant &value) const override
    {
        if (value.userType() != QMetaType::QVariantList)
            return false;
        QVector<Mode> modes;
        const QVariantList entries = value.toList();
        for (const QVariant &entry : entries) {
            const auto mode = modeNames.fromVariant(entry, Mode::Invalid);
            if (!mode)
                return false;
            modes.append(*mode);
        }
        set(object, modes);
        return true;
    }

    void writeXml(const DataObject &, Block &block, XmlOutput &output) const override
    {
        noteProblems(block, output);
        for (const Mode mode : std::as_const(detachedItems(block)))
            output.writeTextElement(text(), modeNames.name(int(mode)));
    }

    void readXmlElement(DataObject &object, XmlInput &input) const override
    {
        XmlText text;
        if (input.readText(text))
            input.storeText(
                this, Source::noPosition, [&] { return text.toString(); },
                [&] { append(object, modeOf(text.toString())); });
    }

    void writeRecord(const DataObject &, Block &block, BinaryWriter &writer) const override
    {
        noteProblems(block, writer);
        const QVector<Mode> &modes = detachedItems(block);
        const auto list = writer.begin(tag());
        writer.put(qint32(modes.size()));
        for (const Mode mode : modes) {
            const auto entry = writer.beginUntagged();
            writer.putUtf8(modeNames.name(int(mode)));
            writer.end(entry);
        }
        writer.end(list);
    }

    void readRecord(DataObject &object, BinaryReader &reader, qint32) const override
    {
        const auto count = reader.read<qint32>(object);
        for (qint32 i = 0; i < count; ++i) {
            const Source::Position begin = reader.nextPosition();
            reader.read<qint32>(object); // the entry's length; its text contains it again
            QString name = reader.readText(object);
            reader.storeText(
                this, begin, [&] { return name; }, [&] { append(object, modeOf(name)); });
        }
    }

    void writeSnapshot(const DataObject &, Block &block, BinaryWriter &writer) const override
    {
        const QVector<Mode> &modes = detachedItems(block);
        writer.put(qint32(modes.size()));
        for (const Mode mode : modes)
            writer.put(qint8(mode));
    }

    bool readSnapshot(DataObject &object, Block &, BinaryReader &reader) const override
    {
        qint32 count = 0;
        if (!reader.take(count))
            return false;
        for (qint32 i = 0; i < count; ++i) {
            qint8 mode = 0;
            if (!reader.take(mode))
                return false;
            append(object, Mode(mode));
        }
        return true;
    }

private:
    void noteProblems(Block &block, WriteTarget &target) const
    {
        if (!isPresent(block) || isInvalid(block))
            target.noteProblem();
    }

    void checkForAppending(const DataObject &object, const Mode &mode) const override
    {
        if (object.GetValidate() && !isMode(mode))
            Errors::incompleteItem(object, name());
    }
};

// clang-format off
namespace row {
constexpr ModeList StartupMode{0, "StartupMode", 0x627B74CE, &StartupModesData::modes, Mandatory};
} // namespace row

constexpr Table members{row::StartupMode};
constexpr ClassInfo startupModes = describe<StartupModes, members, 1>(unitStatics.objectName, 0xA7563754);
// clang-format on

} // namespace

// clang-format off
StartupModes::StartupModes() : DataObject(startupModes) {}
StartupModes::StartupModes(const StartupModes &other) = default;
StartupModes::StartupModes(StartupModes &&other) noexcept = default;
StartupModes &StartupModes::operator=(const StartupModes &other) noexcept = default;
StartupModes &StartupModes::operator=(StartupModes &&other) noexcept = default;
StartupModes::~StartupModes() = default;

bool StartupModes::operator==(const StartupModes &other) const { return areEqual(*this, other); }
bool StartupModes::operator!=(const StartupModes &other) const { return !areEqual(*this, other); }
void StartupModes::swap(StartupModes &other) noexcept { ObjectAccess::swapBlocks(*this, other); }

qint64 StartupModes::GetId() { return startupModes.identifier; }
QString StartupModes::GetStaticObjectName() { return unitStatics.objectName; }

QVector<Mode> &StartupModes::GetStartupMode()                 { return row::StartupMode.modify(*this); }
const QVector<Mode> &StartupModes::GetStartupMode() const     { return row::StartupMode.get(*this); }
void StartupModes::SetStartupMode(const QVector<Mode> &modes) { row::StartupMode.set(*this, modes); }
void StartupModes::AppendStartupMode(StartupMode mode)        { row::StartupMode.append(*this, mode); }
bool StartupModes::IsStartupModeSet() const                   { return row::StartupMode.isSet(*this); }
void StartupModes::ResetStartupMode()                         { row::StartupMode.reset(*this); }
Mode StartupModes::GetDefaultStartupMode() const              { return Mode::Invalid; }
Mode StartupModes::GetInvalidStartupMode() const              { return Mode::Invalid; }
bool StartupModes::IsValidStartupMode(StartupMode mode) const { return isMode(mode); }
// clang-format on

// Departs: checks the modes against `ownNames`, which is always empty, so only an empty list is valid. Callers rely on
// this.
bool StartupModes::IsValidStartupMode(const QVector<StartupMode> &modes) const
{
    const auto names =
        static_cast<const BlockOf<StartupModesData> &>(ObjectAccess::block(*this)).members.ownNames.size();
    return std::all_of(modes.begin(), modes.end(), [=](Mode mode) { return int(mode) >= 0 && int(mode) < names; });
}

QString StartupModes::StartupModeToName(StartupMode mode) const
{
    return modeNames.name(int(mode));
}

StartupModes::StartupMode StartupModes::NameToStartupMode(const QString &name) const
{
    return modeOf(name);
}

QStringList StartupModes::GetStartupModes()
{
    return modeNames.names();
}

QStringList StartupModes::GetGUIStartupModes()
{
    return modeNames.displayNames();
}

QString StartupModes::tr(const char *sourceText, const char *disambiguation, int n)
{
    return QCoreApplication::translate("JobXml::StartupModes", sourceText, disambiguation, n);
}

QString StartupModes::trUtf8(const char *sourceText, const char *disambiguation, int n)
{
    return tr(sourceText, disambiguation, n);
}

HashValue qHash(const StartupModes &object, HashValue seed)
{
    return hashOf(object, seed);
}

QDebug operator<<(QDebug debug, StartupModes::StartupMode value)
{
    return modeNames.write(std::move(debug), "StartupModes::StartupMode", int(value),
                           int(StartupModes::StartupMode::Invalid), "Invalid");
}

std::optional<StartupModes> StartupModes::fromXml(const QString &xml, QString *error)
{
    return newFromXml<StartupModes>(xml, error);
}

std::optional<StartupModes> StartupModes::fromBinary(const QByteArray &representation, QString *error,
                                                     const ReadLimits &limits)
{
    return newFromBinary<StartupModes>(representation, error, limits);
}

} // namespace JobXml
