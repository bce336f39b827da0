// SPDX-License-Identifier: MIT
#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include "Expected.h"

namespace Damage {

namespace {

/// Lists an object and everything below it, set or not, except alternatives that are not chosen.
class Lister
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
        visit(shownObject, [this](const JobXml::MemberView &shownMember) { member(shownMember); });
    }

private:
    void member(const JobXml::MemberView &shown)
    {
        using Kind = JobXml::MemberKind;
        switch (shown.GetKind()) {
        case Kind::Choice:
            break;
        case Kind::EnumerationList: {
            const QVariantList values = shown.GetValue().toList();
            lines.list(shown.GetName(), values.size(), shown.IsSet());
            for (const QVariant &value : values)
                lines.value(shown.GetName(), value, true);
            break;
        }
        case Kind::ObjectList:
            lines.list(shown.GetName(), shown.GetSize(), shown.IsSet());
            for (int i = 0; i < shown.GetSize(); ++i)
                child(shown, i, i);
            break;
        case Kind::Object: // an unset one may contain values from a failed read
            if (shown.IsSet() || (shown.GetSize() == 1 && shown.GetChild().IsInitialized()))
                child(shown, 0, -1);
            break;
        case Kind::Alternative:
            if (shown.IsChosen() && shown.IsSet())
                child(shown, 0, -1);
            break;
        default:
            lines.value(shown.GetName(), shown.GetValue(), shown.IsSet());
        }
    }

    void child(const JobXml::MemberView &shown, int place, int index)
    {
        lines.enter(shown.GetName(), index, index >= 0 || shown.IsSet());
        object(shown.GetChild(place));
        lines.leave();
    }
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
