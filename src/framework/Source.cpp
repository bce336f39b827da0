// SPDX-License-Identifier: MIT
#include "framework/Source.h"

#include "framework/CollectedReading.h"
#include "framework/Label.h"
#include "framework/Member.h"
#include "framework/Problems.h"

namespace JobXml {

namespace {

bool hasPlace(const ReportException &exception)
{
    const REPORTGENERATOR::ErrorLocation known = exception.GetLocation();
    return known.line != 0 || known.offset >= 0 || !known.path.isEmpty();
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
    if (hasPlace(exception))
        return;
    const ObjectPath path = pathTo(*m_innermost);
    setPlace(exception, path, position());
    CollectedReading::setPathOfEnd(path);
}

/// Called while the exception is handled.
void Source::refused(ReportException &refusal, const Member *member, Position position) const
{
    if (!m_innermost)
        throw;
    const ObjectPath path = pathTo(*m_innermost);
    if (!hasPlace(refusal)) // an object of a derived class is read by several sources
        setPlace(refusal, path, position);
    if (!m_visitor)
        throw;
    (*m_visitor)(problemOf(refusal, path, member ? QString(member->name()) : QString()));
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
    return pathTo(*frame.outer).below(label(frame.object, index), {member.name(), index});
}

} // namespace JobXml
