// SPDX-License-Identifier: MIT
#include "documents/lint/Shape.h"

#include <algorithm>

#include <jobxml/TunerProperties.h>

#include "documents/lint/Rules.h"
#include "documents/values/FindMember.h"

using JobXml::MemberEditor;
using JobXml::MemberKind;

namespace TunerDocuments {

int Shape::search(QLatin1String name) const
{
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (members[i].name == name)
            return int(i);
    }
    return none;
}

int Shape::findNumber(const char *name) const
{
    const int found = find(QLatin1String(name));
    return found >= 0 && isNumeric(members[std::size_t(found)].kind) ? found : none;
}

int Shape::findText(const char *name) const
{
    const int found = find(QLatin1String(name));
    return found >= 0 && members[std::size_t(found)].kind == MemberKind::Text ? found : none;
}

int Shape::findKind(MemberKind kind) const
{
    const auto found =
        std::find_if(members.begin(), members.end(), [&](const Member &member) { return member.kind == kind; });
    return found == members.end() ? none : int(found - members.begin());
}

namespace {

/// Notes the kind of a member that is about to be appended.
void noteKind(Shape &shape, const Shape::Member &member)
{
    const auto index = int(shape.members.size());
    if (member.kind == MemberKind::Text)
        shape.texts.push_back(index);
    if (member.kind == MemberKind::Text && member.isIdentifying)
        shape.identifying.push_back(index);
    if (isNumeric(member.kind))
        shape.numbers.push_back(index);
    if (member.child)
        shape.parts.push_back(index);
    if (member.kind == MemberKind::Alternative)
        shape.alternatives.push_back(index);
}

Shape shapeOf(JobXml::DataObject &sample)
{
    Shape shape;
    shape.className = sample.GetObjectName();
    JobXml::visit(sample, [&](MemberEditor &member) {
        Shape::Member entry{member.GetName(),     member.GetKind(),           member.IsIdentifying(),
                            member.IsAttribute(), JobXml::MemberView(member), nullptr};
        if (entry.kind == MemberKind::ObjectList)
            entry.child = std::make_unique<Shape>(shapeOf(member.AppendChild()));
        else if (entry.kind == MemberKind::Object || entry.kind == MemberKind::Alternative)
            entry.child = std::make_unique<Shape>(shapeOf(member.EditChild()));
        if (entry.isAttribute)
            shape.attributeNames.append(entry.name);
        if (entry.kind != MemberKind::Choice)
            shape.elementNames.append(entry.name);
        noteKind(shape, entry);
        shape.members.push_back(std::move(entry));
    });
    shape.value.number = shape.findNumber("value");
    shape.value.text = shape.findText("value");
    shape.min = shape.findNumber("min");
    shape.max = shape.findNumber("max");
    shape.step = shape.findNumber("step");
    shape.index = shape.findNumber("index");
    shape.text = shape.findText("text");
    shape.list = shape.findKind(MemberKind::ObjectList);
    shape.choice = shape.findKind(MemberKind::Choice);
    shape.rules = rulesFor(shape);
    return shape;
}

} // namespace

const Shape &documentShape()
{
    static const Shape shape = [] {
        JobXml::TunerProperties sample;
        sample.SetValidate(false);
        return shapeOf(sample);
    }();
    return shape;
}

} // namespace TunerDocuments
