// SPDX-License-Identifier: MIT
#include "framework/Source.h"

#include "framework/CollectedReading.h"
#include "framework/Label.h"
#include "framework/Member.h"
#include "framework/Problems.h"

namespace JobXml {

thread_local CollectedReading *CollectedReading::innermost = nullptr;

namespace {

bool hasPlace(const ReportException &exception)
{
    const REPORTGENERATOR::ErrorLocation place = exception.GetLocation();
    return place.line != 0 || place.offset >= 0 || !place.path.isEmpty();
}

} // namespace

void Source::setPlace(ReportException &exception, const ObjectPath &path, Position position) const
{
    REPORTGENERATOR::ErrorLocation location;
    location.path = path.path;
    resolve(position, location);
    exception.SetLocation(location);
}

void Source::locate(ReportException &exception) const
{
    if (!m_innermost)
        return;
    const ObjectPath path = pathTo(*m_innermost);
    setPlace(exception, path, position());
    if (m_visitor)
        CollectedReading::setPathOfEnd(path);
}

/// Called while the exception is handled.
void Source::refused(ReportException &refusal, const Member *member, Position position, const QString &value) const
{
    if (!m_innermost)
        throw;
    const ObjectPath path = pathTo(*m_innermost);
    if (!hasPlace(refusal))
        setPlace(refusal, path, position);
    if (!m_visitor)
        throw;
    Problem problem = problemOf(refusal, path, member ? QString(member->name()) : QString());
    problem.value = value;
    (*m_visitor)(problem);
}

void Source::storeUnvalidated(const ActionOn<> &action) const
{
    DataObject &object = m_innermost->object;
    const auto environment = ObjectAccess::environment(object);
    ObjectAccess::changeEnvironment(object, false, environment->logger,
                                    REPORTGENERATOR::EnvironmentPointer::plain(false));
    try {
        action();
    } catch (const ReportException &) { // the class is derived and refuses it in any case
    }
    ObjectAccess::setEnvironment(object, environment);
}

ObjectPath Source::pathTo(const Frame &frame) const
{
    if (!frame.outer)
        return {};
    const DataObject &parent = frame.outer->object;
    const Member &member = *frame.outer->children;
    // An item is the last one of its list while it is read, or will be if it is read separately.
    const Block *const block = ObjectAccess::existingBlock(parent);
    const int items = block && member.isList() ? member.childCount(*block) : 0;
    const int index = member.isList() ? items - (m_runsForeignCode ? 0 : 1) : -1;
    const ObjectPath outer = pathTo(*frame.outer);
    return outer.below(labelOf(frame, int(outer.steps.size()), index), {member.name(), index});
}

const QString &Source::labelOf(const Frame &frame, int depth, int index) const
{
    const auto isSame = [](const QString &one, const QString &other) {
        return one.constData() == other.constData() && one.size() == other.size();
    };
    if (m_labels.size() <= depth)
        m_labels.resize(depth + 1);
    Label &known = m_labels[depth];
    const QString text = identification(frame.object);
    const QString &name = frame.object.GetObjectName();
    if (known.text.isNull() || known.index != index || !isSame(known.identification, text) || !isSame(known.name, name))
        known = {text, name, index, label(frame.object, index)};
    return known.text;
}

} // namespace JobXml
