// SPDX-License-Identifier: MIT
#include <jobxml/TunerProperties.h>
#include <jobxml/Visitor.h>

#include "Expected.h"

namespace Damage {

namespace {

class Lister : public JobXml::Visitor
{
public:
    Lines lines;

    void object(const JobXml::DataObject &shownObject)
    {
        if (!shownObject.IsInitialized())
            return;
        const auto *item = dynamic_cast<const JobXml::ValueItem *>(&shownObject);
        if (item)
            lines.value(QLatin1String("choice"), int(item->GetChoiceValueItem()), true);
        const auto *document = dynamic_cast<const JobXml::TunerProperties *>(&shownObject);
        if (document)
            lines.value(QLatin1String("version loaded"), document->GetInitialVersionLoaded(), true);
        m_unsetModes = document && !document->IsStartupModesSet() ? &document->GetStartupModes() : nullptr;
        shownObject.Accept(*this);
    }

    void VisitValue(QLatin1String name, const QVariant &value, bool set) override { lines.value(name, value, set); }

    void VisitList(QLatin1String name, int size, bool set) override
    {
        // A visitor is not shown a child that is not set; but what a failed read left in it is there. It is listed in
        // its place, which is in front of the bandwidths.
        if (name == QLatin1String("BandwidthSelection"))
            listUnsetModes();
        lines.list(name, size, set);
    }

    void VisitChild(QLatin1String name, const JobXml::DataObject &child, int index) override
    {
        lines.enter(name, index);
        object(child);
        lines.leave();
    }

private:
    void listUnsetModes()
    {
        const JobXml::StartupModes *modes = std::exchange(m_unsetModes, nullptr);
        if (!modes || !modes->IsInitialized())
            return;
        lines.enter(QLatin1String("StartupModes"), -1, false);
        object(*modes);
        lines.leave();
    }

    const JobXml::StartupModes *m_unsetModes = nullptr;
};

} // namespace

void Lines::value(QLatin1String name, const QVariant &value, bool set)
{
    text += m_where;
    text += name;
    text += QLatin1String(" = ");
    if (value.userType() == QMetaType::QString) {
        const QString shown = value.toString();
        text += shown.isNull() ? QStringLiteral("null") : QLatin1Char('"') + shown + QLatin1Char('"');
    } else if (value.userType() == QMetaType::Float || value.userType() == QMetaType::Double) {
        text += QString::number(value.toDouble(), 'g', 17);
    } else {
        text += value.toString();
    }
    end(set);
}

void Lines::list(QLatin1String name, int size, bool set)
{
    text += m_where;
    text += name;
    text += QLatin1String(": ");
    text += QString::number(size);
    end(set);
}

void Lines::enter(QLatin1String name, int index, bool set)
{
    m_outer.append(m_where.size());
    m_where += name;
    if (index >= 0)
        m_where += QLatin1Char('[') + QString::number(index) + QLatin1Char(']');
    text += m_where;
    m_where += QLatin1Char('/');
    end(set);
}

void Lines::leave()
{
    m_where.truncate(m_outer.takeLast());
}

void Lines::end(bool set)
{
    text += set ? QLatin1String("\n") : QLatin1String(" (not set)\n");
}

QString listing(const JobXml::DataObject &object)
{
    Lister lister;
    lister.object(object);
    return lister.lines.text;
}

QString difference(const QString &found, const QString &wanted)
{
    if (found == wanted)
        return QString();
    const QStringList foundLines = found.split(QLatin1Char('\n'));
    const QStringList wantedLines = wanted.split(QLatin1Char('\n'));
    int line = 0;
    while (foundLines.value(line) == wantedLines.value(line))
        ++line;
    return QStringLiteral("found '%1', wanted '%2'").arg(foundLines.value(line), wantedLines.value(line));
}

} // namespace Damage
